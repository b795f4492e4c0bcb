#include "platform/card_list.h"

#include <algorithm>

namespace orvel {
namespace {

/// Two cards of one make have one name; a presenter must be able to tell them apart.
void tellApart(std::vector<Card> &cards) {
    for (std::size_t i = 0; i < cards.size(); ++i) {
        int twins = 1;
        for (std::size_t j = i + 1; j < cards.size(); ++j) {
            if (cards[j].name == cards[i].name) {
                cards[j].name += QStringLiteral(" (%1)").arg(++twins);
            }
        }
    }
}

} // namespace

CardList::CardList(std::function<std::vector<Card>()> look) : look_(std::move(look)), cards_(look_()) {
    tellApart(cards_);
    setCurrentDevice(cards_.empty() ? 0 : 1);
}

bool CardList::refresh() {
    std::vector<Card> found = look_();
    tellApart(found);
    if (found == cards_) {
        return false;
    }
    cards_ = std::move(found);
    if (currentKey_.isEmpty()) {
        setCurrentDevice(cards_.empty() ? 0 : 1);
        return true;
    }
    const auto current =
        std::find_if(cards_.begin(), cards_.end(), [&](const Card &c) { return c.key == currentKey_; });
    currentDevice_ = current == cards_.end() ? 0 : static_cast<int>(current - cards_.begin()) + 1;
    return true;
}

int CardList::deviceCount() const {
    return static_cast<int>(cards_.size());
}

bool CardList::canRecord(int device) const {
    const Card *card = find(device);
    return card != nullptr && card->canRecord;
}

QString CardList::deviceName(int device) const {
    const Card *card = find(device);
    return card != nullptr ? card->name : QString();
}

void CardList::setCurrentDevice(int device) {
    currentDevice_ = device;
    const Card *card = find(device);
    currentLine_ = card != nullptr ? card->activeLine : 1;
    // A number without a card does not make the card forgotten that was chosen before.
    if (card != nullptr) {
        currentKey_ = card->key;
    }
}

int CardList::lineCount() const {
    const Card *card = find(currentDevice_);
    return card != nullptr ? static_cast<int>(card->lines.size()) : 0;
}

QString CardList::lineName() const {
    const Card *card = find(currentDevice_);
    return card != nullptr ? card->lines.value(currentLine_ - 1) : QString();
}

QString CardList::key(int device) const {
    const Card *card = find(device);
    return card != nullptr ? card->key : QString();
}

const Card *CardList::find(int device) const {
    return device >= 1 && device <= deviceCount() ? &cards_[static_cast<std::size_t>(device) - 1] : nullptr;
}

} // namespace orvel
