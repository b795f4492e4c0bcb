#pragma once

#include <QString>

#include <functional>

namespace orvel {

class Completion;
class Filing;
class Places;
class Playlist;
class StepMarks;
class TakeSession;
struct CurrentStep;
struct Platform;
struct Settings;

/// What importing sound files needs of the rest of the program; all of it outlives who imports.
struct ImportDesk {
    Platform &platform;
    const Settings &settings;
    const Places &places;
    CurrentStep &step;
    const Playlist &datList;
    TakeSession &session;
    StepMarks &marks;
    Filing &filing;
    Completion &completion;
    /// Selects a row of the grid.
    std::function<void(int row)> showRow;
    /// One sentence for the status line.
    std::function<void(const QString &sentence)> tell;
};

} // namespace orvel
