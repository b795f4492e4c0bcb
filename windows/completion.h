#pragma once

#include "settings/settings.h"
#include "windows/file_panel.h"
#include "windows/grid_panel.h"

namespace orvel {

class FileSystem;
class Prompts;

/// What happens to the open playlist when one of its steps was done.
class Completion {
  public:
    Completion(FileSystem &files, Prompts &prompts, const Settings &settings, Playlist &playlist, GridPanel &grid,
               FilePanel &lists)
        : files_(files), prompts_(prompts), settings_(settings), playlist_(playlist), grid_(grid), lists_(lists) {}

    /// Selects the first unfinished step or, when there is none, offers to move the playlist to the finished ones.
    /// Throws what the disk and the database throw.
    void CheckLijst();

  private:
    void finishPlaylist();

    FileSystem &files_;
    Prompts &prompts_;
    const Settings &settings_;
    Playlist &playlist_;
    GridPanel &grid_;
    FilePanel &lists_;
};

} // namespace orvel
