#pragma once

#include <QString>

#include <functional>

namespace orvel {

class Playlist;
class Recovery;
struct CurrentStep;
struct Platform;
struct Settings;

/// What completing a playlist needs of the rest of the program; all of it outlives it.
struct CompletionContext {
    Platform &platform;
    const Settings &settings;
    Playlist &playlist;
    CurrentStep &step;
    Recovery &recovery;
    /// Reads the playlist again, keeping the selected row.
    std::function<void()> refresh;
    /// Selects a row; its handlers run when it was another one before.
    std::function<void(int row)> showRow;
    /// The step's times are others now.
    std::function<void()> changed;
    /// Lets the open playlist's file go.
    std::function<void()> closePlaylist;
    /// Both lists show what is on the disk now.
    std::function<void()> refreshLists;
    /// One sentence for the status line.
    std::function<void(const QString &sentence)> tell;
};

/// What happens to the open playlist when one of its steps was done.
class Completion {
  public:
    explicit Completion(CompletionContext context) : context_(std::move(context)) {}

    /// Selects the first unfinished step or, when there is none, offers to move the playlist to the finished ones.
    /// Voice tracks that are not where they should be are told first. Throws what the disk and the database throw.
    void CheckLijst();

  private:
    void tellMissing() const;
    void finishPlaylist();

    CompletionContext context_;
};

} // namespace orvel
