#pragma once

#include "platform/database.h"

#include <QString>

#include <functional>

namespace orvel {

class Playlist;

/// Which step of which playlist.
struct StepId {
    QString playlist; ///< file name in the to-do folder
    int stap = 0;
    QString name; ///< its `Atrack`

    bool operator==(const StepId &) const = default;
};

/// Marks steps as done (`Imported`) by what they are, not by what is selected: in the open playlist, or in another one
/// of the to-do folder, which is opened for it.
class StepMarks {
  public:
    /// newPath: the to-do folder. changed: a row of the open playlist has another mark now.
    StepMarks(Playlist &open, DatabaseEngine &databases, const QString &newPath, std::function<void(int row)> changed)
        : open_(open), databases_(databases), newPath_(newPath), changed_(std::move(changed)) {}

    /// Row of the step in the open playlist; -1 when it is not there.
    [[nodiscard]] int rowOf(const StepId &step) const;
    /// False for a step that is not there any more. Throws what opening a playlist throws.
    [[nodiscard]] bool isMarked(const StepId &step) const;
    /// False, and nothing happens, when the step is not there any more. Throws what Playlist::setValue() throws.
    bool mark(const StepId &step, bool done);

  private:
    Playlist &open_;
    DatabaseEngine &databases_;
    const QString &newPath_;
    std::function<void(int row)> changed_;
};

} // namespace orvel
