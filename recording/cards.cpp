#include "recording/cards.h"

#include "platform/audio.h"

#include <QObject>

#include <algorithm>

namespace orvel {

namespace {

/// Where the stored card stands in the list; -1 when it is not there.
int positionOf(const StoredCard &stored, const std::vector<ListedCard> &cards) {
    if (stored.name.isEmpty()) {
        const bool isListed = stored.position >= 0 && stored.position < static_cast<int>(cards.size());
        return isListed && cards[static_cast<std::size_t>(stored.position)].isInput ? stored.position : -1;
    }
    const auto found = std::find_if(cards.begin(), cards.end(),
                                    [&](const ListedCard &card) { return card.name.simplified() == stored.name; });
    return found == cards.end() ? -1 : static_cast<int>(found - cards.begin());
}

} // namespace

std::vector<ListedCard> listedCards(const AudioRecord &audioRecord) {
    std::vector<ListedCard> cards;
    // One past the last card on purpose: it is reported as not valid.
    for (int DeviceIndex = 0; DeviceIndex <= audioRecord.deviceCount(); ++DeviceIndex) {
        if (audioRecord.canRecord(DeviceIndex)) {
            cards.push_back(
                {audioRecord.deviceName(DeviceIndex), DeviceIndex, DeviceIndex <= audioRecord.inputCount()});
        }
    }
    return cards;
}

CardChoice::Start CardChoice::begin(const StoredCard &stored, const std::vector<ListedCard> &cards) {
    if (const int position = positionOf(stored, cards); position >= 0) {
        choose(position, cards[static_cast<std::size_t>(position)]);
        return {position, {}};
    }
    toStore_ = stored;
    const QString missing = stored.name.isEmpty()
                                ? QObject::tr("De opnamekaart op plaats %1 van de lijst").arg(stored.position + 1)
                                : QObject::tr("De opnamekaart %1").arg(stored.name);
    return {0, QObject::tr("%1 is er niet; er wordt opgenomen met %2.").arg(missing, cards.front().name)};
}

void CardChoice::choose(int position, const ListedCard &card) {
    toStore_ = {position, card.name.simplified()};
}

void CardChoice::follow(int position, const ListedCard &card) {
    if (card.name.simplified() == toStore_.name) {
        toStore_.position = position;
    }
}

} // namespace orvel
