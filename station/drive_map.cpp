#include "station/drive_map.h"

#include "platform/file_system.h"

#include <QDir>

namespace orvel {

namespace {

/// The entry of a folder that has this name when case does not count; the name itself when there is none.
QString entryLike(const FileSystem &files, const QString &folder, const QString &name) {
    const QString path = folder + u'/' + name;
    if (files.fileExists(path) || files.folderExists(path)) {
        return name;
    }
    const QStringList entries = files.folders(folder) + files.list(folder, QStringLiteral("*"));
    for (const QString &entry : entries) {
        if (entry.compare(name, Qt::CaseInsensitive) == 0) {
            return entry;
        }
    }
    return name;
}

} // namespace

QString DriveMap::resolve(const QString &cataloguePath) const {
    QString path = cataloguePath;
    path.replace(u'\\', u'/');
    const bool hasDrive = path.size() >= 2 && path.at(1) == u':';
    const auto mapped = hasDrive ? folders_.constFind(path.at(0).toUpper()) : folders_.constEnd();
    if (mapped == folders_.constEnd()) {
        return path;
    }
    QString real = QDir(programFolder_).absoluteFilePath(*mapped);
    const QStringList parts = path.mid(2).split(u'/', Qt::SkipEmptyParts);
    for (const QString &part : parts) {
        real += u'/' + entryLike(*files_, real, part);
    }
    return real;
}

} // namespace orvel
