#include "platform/card_list.h"

#include "platform/runtime_error.h"

#include <algorithm>

namespace orvel {
namespace {

bool isInput(const Card &card) {
    return card.canRecord && !card.isMonitor;
}

void tellCardsApart(std::vector<Card> &cards) {
    QStringList names;
    for (const Card &card : cards) {
        names << card.name;
    }
    tellApart(names);
    for (std::size_t i = 0; i < cards.size(); ++i) {
        cards[i].name = names.at(static_cast<qsizetype>(i));
    }
}

} // namespace

void tellApart(QStringList &names) {
    for (qsizetype i = 0; i < names.size(); ++i) {
        int twins = 1;
        for (qsizetype j = i + 1; j < names.size(); ++j) {
            if (names.at(j) == names.at(i)) {
                names[j] += QStringLiteral(" (%1)").arg(++twins);
            }
        }
    }
}

CardList::CardList(std::function<std::vector<Card>()> look, LineMixer &mixer)
    : look_(std::move(look)), mixer_(mixer), cards_(lookInOrder()) {
    chooseFirstInput();
}

std::vector<Card> CardList::lookInOrder() const {
    std::vector<Card> cards = look_();
    std::stable_partition(cards.begin(), cards.end(), isInput);
    tellCardsApart(cards);
    return cards;
}

bool CardList::refresh() {
    std::vector<Card> found = lookInOrder();
    if (found == cards_) {
        return false;
    }
    cards_ = std::move(found);
    if (currentKey_.isEmpty()) {
        chooseFirstInput();
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

int CardList::inputCount() const {
    return static_cast<int>(std::count_if(cards_.begin(), cards_.end(), isInput));
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

const Card *CardList::cardOfLine() const {
    const Card *card = find(currentDevice_);
    const bool valid = card != nullptr && currentLine_ >= 1 && currentLine_ <= card->lines.size();
    return valid ? card : nullptr;
}

LineState CardList::state() const {
    const Card *card = cardOfLine();
    return card != nullptr ? mixer_.state(card->key, currentLine_) : LineState();
}

void CardList::setLineVolume(int volume) {
    if (const Card *card = cardOfLine()) {
        mixer_.setVolume(card->key, currentLine_, std::clamp(volume, 0, 65535));
    }
}

void CardList::setLineBalance(int balance) {
    if (const Card *card = cardOfLine()) {
        mixer_.setBalance(card->key, currentLine_, std::clamp(balance, -100, 100));
    }
}

void CardList::setLineSelected(bool selected) {
    if (const Card *card = cardOfLine()) {
        mixer_.select(card->key, currentLine_, selected);
    }
}

int CardList::propertyCount() const {
    const Card *card = cardOfLine();
    return card != nullptr ? static_cast<int>(mixer_.properties(card->key, currentLine_).size()) : 0;
}

LineProperty CardList::lineProperty(int index) const {
    if (index < 0 || index >= propertyCount()) {
        throw RuntimeError(ErrorNumber::SubscriptOutOfRange);
    }
    return mixer_.properties(cardOfLine()->key, currentLine_)[static_cast<std::size_t>(index)];
}

void CardList::setLineProperty(int index, const QVariant &value) {
    const LineProperty property = lineProperty(index);
    if (value.metaType() != property.value.metaType()) {
        throw RuntimeError(ErrorNumber::TypeMismatch);
    }
    mixer_.setProperty(cardOfLine()->key, currentLine_, property.name, value);
}

QString CardList::key(int device) const {
    const Card *card = find(device);
    return card != nullptr ? card->key : QString();
}

const Card *CardList::find(int device) const {
    return device >= 1 && device <= deviceCount() ? &cards_[static_cast<std::size_t>(device) - 1] : nullptr;
}

} // namespace orvel
