#pragma once

#include <QString>

namespace orvel {

class Playlist;

/// How far a playlist is.
struct Progress {
    int links = 0; ///< presentation slots
    int done = 0;  ///< of them

    bool operator==(const Progress &) const = default;
};

/// Of the open playlist; nothing without one. A slot whose mark cannot be read is not done.
[[nodiscard]] Progress progressOf(const Playlist &playlist);

/// "3 van 5 links klaar"; empty for a playlist without any slot.
[[nodiscard]] QString toText(const Progress &progress);

/// Row of the first slot after a row that is not done, or else before it; -1 when there is none.
[[nodiscard]] int nextOpenSlot(const Playlist &playlist, int row);

} // namespace orvel
