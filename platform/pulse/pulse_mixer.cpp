#include "platform/pulse/pulse_mixer.h"

#include "platform/runtime_error.h"

#include <algorithm>

namespace orvel {
namespace {

constexpr int kMostDelay = 1000; // ms
constexpr int kMillisecond = 1000;

QString muteName() {
    return QStringLiteral("Dempen");
}
QString delayName() {
    return QStringLiteral("Vertraging (ms)");
}

const PulsePort *portOf(const PulseSource &source, int line) {
    const bool isPort = line >= 1 && static_cast<std::size_t>(line) <= source.ports.size();
    return isPort ? &source.ports[static_cast<std::size_t>(line) - 1] : nullptr;
}

/// Whether the source records from this line.
bool isActive(const PulseSource &source, int line) {
    return line == (source.ports.empty() ? 1 : source.activePort + 1);
}

/// For setting, where a source that is not there is an error.
PulseSource sourceOf(const PulseControls &controls, const QString &key) {
    const PulseDevices devices = controls.devices();
    if (const PulseSource *source = devices.source(key.toUtf8())) {
        return *source;
    }
    throw RuntimeError(ErrorNumber::DeviceError, {}, QStringLiteral("de geluidskaart is niet gevonden"));
}

} // namespace

LineState PulseMixer::state(const QString &key, int line) const {
    const PulseDevices devices = controls_.devices();
    const PulseSource *source = devices.source(key.toUtf8());
    LineState state;
    if (source == nullptr) {
        return state;
    }
    state.hasSelect = source->ports.size() > 1;
    state.selected = isActive(*source, line);
    if (state.selected) {
        state.hasVolume = true;
        state.hasBalance = source->levels.canBalance();
        state.volume = source->levels.volume();
        const auto silent = silentBalances_.find(key);
        state.balance =
            state.volume == 0 && silent != silentBalances_.end() ? silent->second : source->levels.balance();
    }
    return state;
}

void PulseMixer::setVolume(const QString &key, int line, int volume) {
    const PulseSource source = sourceOf(controls_, key);
    if (!isActive(source, line)) {
        return;
    }
    PulseLevels levels = source.levels.withVolume(volume);
    if (source.levels.volume() > 0) {
        silentBalances_[key] = source.levels.balance();
    } else if (const auto silent = silentBalances_.find(key); silent != silentBalances_.end()) {
        levels = levels.withBalance(silent->second);
    }
    controls_.setLevels(source.name, levels);
}

void PulseMixer::setBalance(const QString &key, int line, int balance) {
    const PulseSource source = sourceOf(controls_, key);
    if (!isActive(source, line) || !source.levels.canBalance()) {
        return;
    }
    silentBalances_[key] = balance;
    controls_.setLevels(source.name, source.levels.withBalance(balance));
}

void PulseMixer::select(const QString &key, int line, bool selected) {
    const PulseSource source = sourceOf(controls_, key);
    const PulsePort *port = portOf(source, line);
    if (port != nullptr && selected && !isActive(source, line)) {
        controls_.setPort(source.name, port->name);
    }
}

std::vector<LineProperty> PulseMixer::properties(const QString &key, int line) const {
    const PulseDevices devices = controls_.devices();
    const PulseSource *source = devices.source(key.toUtf8());
    std::vector<LineProperty> properties;
    if (source == nullptr) {
        return properties;
    }
    if (isActive(*source, line)) {
        properties.push_back({muteName(), source->isMuted, 0, 1});
    }
    const PulsePort *port = portOf(*source, line);
    if (port != nullptr && port->latencyOffset) {
        const auto delay = static_cast<int>(*port->latencyOffset / kMillisecond);
        properties.push_back({delayName(), delay, -kMostDelay, kMostDelay});
    }
    if (isActive(*source, line)) {
        const std::vector<LineProperty> own = gain_.properties(source->alsaCard);
        properties.insert(properties.end(), own.begin(), own.end());
    }
    return properties;
}

void PulseMixer::setProperty(const QString &key, int line, const QString &name, const QVariant &value) {
    const PulseSource source = sourceOf(controls_, key);
    const PulsePort *port = portOf(source, line);
    if (name == muteName()) {
        controls_.setSourceMute(source.name, value.toBool());
    } else if (name == delayName() && port != nullptr) {
        const int delay = std::clamp(value.toInt(), -kMostDelay, kMostDelay);
        controls_.setLatencyOffset(source.cardName, port->name, std::int64_t{delay} * kMillisecond);
    } else if (isActive(source, line)) {
        gain_.set(source.alsaCard, name, value);
    }
}

} // namespace orvel
