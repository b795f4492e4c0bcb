#pragma once

#include "platform/platform.h"
#include "settings/settings.h"
#include "station/drive_map.h"

#include <QString>

#include <functional>

namespace orvel {

class FolderBrowser;

/// What the import and the export window need of the rest of the program; all of it outlives them.
struct TransferContext {
    Platform &platform;
    const Settings &settings;
    const DriveMap &drives;
    /// Both playlist lists, and the open playlist, show what is on the disk now.
    std::function<void()> refreshLists;
    /// One sentence for the status line.
    std::function<void(const QString &sentence)> tell;
    /// Whether a take of a playlist runs.
    std::function<bool()> takeRuns;
};

/// Shows the folder that the settings force, or lets the presenter choose: a path of less than three characters forces
/// nothing. Drive letters are the station's own.
void chooseFolder(FolderBrowser &browser, const QString &settingsPath, const DriveMap &drives);

/// A folder that "\*.mdb" can be put behind: of a bare drive root only the letter and the colon.
QString withoutRootSeparator(const QString &folder);

} // namespace orvel
