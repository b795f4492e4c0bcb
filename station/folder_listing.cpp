#include "station/folder_listing.h"

#include "platform/file_system.h"

#include <QCollator>

#include <algorithm>

namespace orvel {

namespace {

bool isBelow(const QString &folder, const QString &drive) {
    const QString root = drive.endsWith(u'/') ? drive : drive + u'/';
    return folder == drive || folder.startsWith(root, Qt::CaseInsensitive);
}

} // namespace

QStringList filesIn(const FileSystem &files, const QString &folder, const QStringList &patterns) {
    QStringList names;
    for (const QString &pattern : patterns) {
        names += files.list(folder, pattern);
    }
    QCollator order;
    order.setCaseSensitivity(Qt::CaseInsensitive);
    std::stable_sort(names.begin(), names.end(), order);
    names.removeDuplicates();
    return names;
}

int driveOf(const QString &folder, const QStringList &drives) {
    qsizetype best = -1;
    for (qsizetype index = 0; index < drives.size(); ++index) {
        if (isBelow(folder, drives.at(index)) && (best < 0 || drives.at(index).size() > drives.at(best).size())) {
            best = index;
        }
    }
    return static_cast<int>(best);
}

} // namespace orvel
