#include "windows/transfer.h"

#include "windows/folder_browser.h"

namespace orvel {

void chooseFolder(FolderBrowser &browser, const QString &settingsPath, const DriveMap &drives) {
    constexpr qsizetype shortestPath = 3;
    if (settingsPath.size() < shortestPath) {
        browser.Drive1->setEnabled(true);
        browser.Dir1->setEnabled(true);
        browser.setFolder(browser.folder());
        return;
    }
    const QString drive = settingsPath.at(1) == u':' ? settingsPath.left(2) : QString();
    browser.force(drives.resolve(settingsPath), drive);
}

QString withoutRootSeparator(const QString &folder) {
    constexpr qsizetype rootLength = 3;
    const bool isDriveRoot = folder.size() == rootLength && folder.at(1) == u':';
    return isDriveRoot ? folder.left(2) : folder;
}

} // namespace orvel
