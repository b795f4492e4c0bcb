#pragma once

#include "station/station_list.h"

#include <QString>

#include <functional>
#include <vector>

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
    const std::vector<NetworkStation> *stations = nullptr; ///< of the network, where there are any
};

/// What happens to the open playlist when one of its steps was done.
class Completion {
  public:
    explicit Completion(CompletionContext context) : context_(std::move(context)) {}

    /// Selects the first unfinished step or, when there is none, offers to move the playlist to the finished ones.
    /// Voice tracks that are not where they should be, and stations without their version, are told first; then
    /// finishing is not the preset answer. Throws what the disk and the database throw.
    void CheckLijst();

  private:
    /// Whether there was anything to tell.
    [[nodiscard]] bool tellMissing() const;
    void finishPlaylist();

    CompletionContext context_;
};

} // namespace orvel
