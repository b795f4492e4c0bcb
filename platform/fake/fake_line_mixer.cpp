#include "platform/fake/fake_line_mixer.h"

#include <algorithm>

namespace orvel {

FakeLineMixer::Line &FakeLineMixer::line(const QString &key, int line) const {
    const auto [found, isNew] = lines_.try_emplace({key, line});
    if (isNew) {
        found->second.state.selected = line == 1;
    }
    return found->second;
}

void FakeLineMixer::setVolume(const QString &key, int line, int volume) {
    this->line(key, line).state.volume = volume / volumeStep_ * volumeStep_;
}

void FakeLineMixer::setBalance(const QString &key, int line, int balance) {
    this->line(key, line).state.balance = balance;
}

void FakeLineMixer::select(const QString &key, int line, bool selected) {
    if (!selected) {
        return; // a card always records from one of its lines
    }
    for (auto &[place, other] : lines_) {
        if (place.first == key) {
            other.state.selected = false;
        }
    }
    this->line(key, line).state.selected = true;
}

void FakeLineMixer::setProperty(const QString &key, int line, const QString &name, const QVariant &value) {
    std::vector<LineProperty> &all = this->line(key, line).properties;
    const auto property = std::find_if(all.begin(), all.end(), [&](const LineProperty &p) { return p.name == name; });
    if (property != all.end() && !refusesProperties_) {
        property->value = value;
    }
}

} // namespace orvel
