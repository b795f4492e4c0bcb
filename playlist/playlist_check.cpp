#include "playlist/playlist_check.h"

#include "platform/runtime_error.h"
#include "playlist/playlist.h"
#include "station/paths.h"

#include <QDateTime>
#include <QFileInfo>

namespace orvel {

namespace {

/// Whether the error may be gone while the file stays as it is.
bool mayPass(ErrorNumber number) {
    switch (number) {
    case ErrorNumber::PermissionDenied:
    case ErrorNumber::DatabaseLocked:
    case ErrorNumber::PathAccess:
    case ErrorNumber::DeviceError:
    case ErrorNumber::DiskNotReady:
    case ErrorNumber::FileNotFound:
        return true;
    default:
        return false;
    }
}

} // namespace

QString PlaylistCheck::problem(const QString &folder, const QString &name) {
    const QString path = inFolder(folder, name);
    const QFileInfo file(path);
    Answer &known = answers_[path];
    const qint64 time = file.lastModified().toMSecsSinceEpoch();
    if (known.size == file.size() && known.time == time) {
        return known.problem;
    }
    known = {file.size(), time, {}};
    try {
        Playlist(databases_, [](const QString &) {}).open(folder, name);
    } catch (const RuntimeError &error) {
        known.problem = error.description();
        if (mayPass(error.number())) {
            known.size = -1;
        }
    }
    return known.problem;
}

} // namespace orvel
