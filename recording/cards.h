#pragma once

#include "settings/settings.h"

#include <QString>

#include <vector>

namespace orvel {

class AudioRecord;

/// A card that can record, as the presenter's list shows it. What records an output (a monitor) is no input.
struct ListedCard {
    QString name;
    int device = 0; ///< as AudioRecord counts them
    bool isInput = true;
};

/// The cards that can record, in AudioRecord's order: inputs first.
[[nodiscard]] std::vector<ListedCard> listedCards(const AudioRecord &audioRecord);

/// Which recording card the settings file holds. A stored card that is away stays the stored one, whatever is recorded
/// with meanwhile, until the presenter chooses.
class CardChoice {
  public:
    /// Where to begin in the list.
    struct Start {
        int position = 0;
        QString sentence; ///< for the status line, when another card is taken than the stored one
    };

    /// At the start of the program: the stored card by its name, or by its position where no name is known. One that
    /// is not there, and a position where a monitor stands, give the first card, which is no monitor.
    /// The list has at least one card.
    Start begin(const StoredCard &stored, const std::vector<ListedCard> &cards);
    /// The presenter chose a card.
    void choose(int position, const ListedCard &card);
    /// The card that is recorded with has another place in the list now, or the same.
    void follow(int position, const ListedCard &card);
    [[nodiscard]] const StoredCard &toStore() const { return toStore_; }

  private:
    StoredCard toStore_;
};

} // namespace orvel
