#pragma once

#include "playlist/transfer.h"

namespace orvel {

class FolderBrowser;

/// Shows the folder that the settings force, or lets the presenter choose.
void chooseFolder(FolderBrowser &browser, const QString &settingsPath, const DriveMap &drives);

} // namespace orvel
