#include "windows/transfer.h"

#include "windows/folder_browser.h"

namespace orvel {

void chooseFolder(FolderBrowser &browser, const QString &settingsPath, const DriveMap &drives) {
    if (const auto forced = forcedFolder(settingsPath, drives)) {
        browser.force(forced->folder, forced->drive);
    } else {
        browser.letChoose();
    }
}

} // namespace orvel
