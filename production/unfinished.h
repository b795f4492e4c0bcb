#pragma once

#include "recording/take.h"

#include <QString>

#include <functional>
#include <vector>

namespace orvel {

class Journal;
class Places;
class Recovery;
class TakeStore;
struct JournalEntry;
struct Platform;
struct Settings;

/// A take that was recorded and is not filed.
struct UnfiledTake {
    enum class Why {
        NotSaved,
        RecordingBroken, ///< the program ended while it was recorded
        FilingBroken     ///< the program ended while it was filed
    };

    Take take;
    QString wav;
    QString begun; ///< ISO date and time, local; empty when it is not known
    Why why = Why::NotSaved;
};

/// What finding unfinished work needs of the rest of the program; all of it outlives it.
struct UnfinishedContext {
    Platform &platform;
    const Settings &settings;
    const Places &places;
    Recovery &recovery;
    Journal &journal;
    TakeStore &takes;
    StepMarks &marks;
    /// One sentence for the status line.
    std::function<void(const QString &sentence)> tell;
};

/// What the last run of the program left behind: a recording that was cut off is repaired, a filing that was cut off is
/// finished or taken back, a half MP3 is cleared away. Another program's takes on this station are left alone.
class Unfinished {
  public:
    explicit Unfinished(UnfinishedContext context) : context_(std::move(context)) {}

    /// Settles everything and gives the takes that are waiting, of the plain recorder or of playlists. What the disk
    /// refuses is left for the next start.
    std::vector<UnfiledTake> settle(bool recorderOnly);

  private:
    void settleOne(const JournalEntry &entry, std::vector<UnfiledTake> &waiting);
    void settleRecording(const JournalEntry &entry);
    /// False when the mark could not be taken back: the next start tries again.
    bool settleFiling(const JournalEntry &entry);
    bool takeBackMark(const Take &take, bool markBefore);
    void removeIfThere(const QString &path);

    UnfinishedContext context_;
};

} // namespace orvel
