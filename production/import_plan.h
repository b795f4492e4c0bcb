#pragma once

#include <QString>
#include <QStringList>

#include <cstdint>
#include <functional>
#include <vector>

namespace orvel {

class Playlist;

/// One line of what a batch of sound files would do: a file, a slot, or both.
struct PlannedImport {
    QString file; ///< its name; empty for a slot that no file is left for
    QString length;
    QString slot;    ///< number and name; empty for a file that no slot is left for
    QString talk;    ///< outro before it and intro behind it
    QString problem; ///< what does not fit; empty where everything does

    bool operator==(const PlannedImport &) const = default;
};

/// The n-th file goes to the n-th presentation step, as SoundImport::batch() has it. lengthOf: of the file with a
/// number, in milliseconds or as SoundLengths gives it. What cannot be read of the playlist is left out of its line.
[[nodiscard]] std::vector<PlannedImport> planBatch(const Playlist &playlist, const QStringList &files,
                                                   const std::function<std::int32_t(std::size_t number)> &lengthOf);

/// Which step a single file would be imported for, as a sentence. row: of the selected step, -1 for none.
[[nodiscard]] QString singleTarget(const Playlist &playlist, int row);

} // namespace orvel
