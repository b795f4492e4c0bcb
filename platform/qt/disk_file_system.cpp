#include "platform/qt/disk_file_system.h"

#include "platform/qt/disk_calls.h"
#include "platform/runtime_error.h"
#include "platform/storage/file_lock.h"

#include <QCollator>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStorageInfo>

#include <algorithm>
#include <filesystem>
#include <system_error>
#include <utility>

namespace orvel {

namespace {

constexpr qint64 chunkBytes = 256LL * 1024;

RuntimeError missing(const QString &path) {
    const bool hasFolder = QFileInfo(QFileInfo(path).path()).isDir();
    return RuntimeError(hasFolder ? ErrorNumber::FileNotFound : ErrorNumber::PathNotFound, path);
}

void openForReading(QFile &file) {
    if (!QFileInfo(file.fileName()).isFile()) {
        throw missing(file.fileName());
    }
    if (!file.open(QIODevice::ReadOnly | QIODevice::Unbuffered)) {
        throw RuntimeError(ErrorNumber::PermissionDenied, file.fileName());
    }
}

/// A link stays a link: what it points to gets the new content.
QString behindLinks(const QString &path) {
    const QString canonical = QFileInfo(path).isSymLink() ? QFileInfo(path).canonicalFilePath() : QString();
    return canonical.isEmpty() ? path : canonical;
}

/// Throws when a file cannot get new content.
void checkTarget(const QString &path) {
    const QFileInfo target(path);
    if (!QFileInfo(target.path()).isDir()) {
        throw RuntimeError(ErrorNumber::PathNotFound, path);
    }
    if (target.isDir()) {
        throw RuntimeError(ErrorNumber::PathAccess, path);
    }
    // A rename would replace a read-only file all the same.
    QFile probe(path);
    if (target.exists() && !probe.open(QIODevice::ReadWrite | QIODevice::ExistingOnly)) {
        throw RuntimeError(ErrorNumber::PermissionDenied, path);
    }
}

void sortForPeople(QStringList &names) {
    QCollator order;
    order.setCaseSensitivity(Qt::CaseInsensitive);
    order.setNumericMode(false);
    std::stable_sort(names.begin(), names.end(), order);
}

bool sameFile(const QString &a, const QString &b) {
    return QFileInfo(b).exists() && QFileInfo(a).canonicalFilePath() == QFileInfo(b).canonicalFilePath();
}

} // namespace

bool DiskFileSystem::fileExists(const QString &path) const {
    return QFileInfo(path).isFile();
}

qint64 DiskFileSystem::fileSize(const QString &path) const {
    if (!fileExists(path)) {
        throw missing(path);
    }
    return QFileInfo(path).size();
}

bool DiskFileSystem::folderExists(const QString &path) const {
    return !path.isEmpty() && QFileInfo(path).isDir();
}

bool DiskFileSystem::isSameFolder(const QString &one, const QString &other) const {
    const QString canonical = QFileInfo(one).canonicalFilePath();
    return !canonical.isEmpty() && canonical == QFileInfo(other).canonicalFilePath();
}

QStringList DiskFileSystem::list(const QString &folder, const QString &pattern) const {
    if (!folderExists(folder)) {
        return {};
    }
    // Only * and ? are wild; Qt would take brackets for a set.
    QString wild = pattern;
    wild.replace(u'[', QStringLiteral("[[]"));
    // QDir matches name filters without regard to case unless told otherwise.
    QStringList names = QDir(folder).entryList({wild}, QDir::Files, QDir::Name);
    sortForPeople(names);
    return names;
}

QStringList DiskFileSystem::folders(const QString &folder) const {
    if (!folderExists(folder)) {
        return {};
    }
    QStringList names = QDir(folder).entryList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name);
    sortForPeople(names);
    return names;
}

QStringList DiskFileSystem::drives() const {
    QStringList drives;
    const QFileInfoList roots = QDir::drives();
    for (const QFileInfo &root : roots) {
        drives << root.absoluteFilePath();
    }
    // Where desktops and administrators mount sticks, discs and shares.
    const QStringList mountPlaces = {QStringLiteral("/media/"), QStringLiteral("/run/media/"), QStringLiteral("/mnt/")};
    const QList<QStorageInfo> volumes = QStorageInfo::mountedVolumes();
    for (const QStorageInfo &volume : volumes) {
        const QString path = volume.rootPath();
        const bool isMedium = std::any_of(mountPlaces.begin(), mountPlaces.end(),
                                          [&](const QString &place) { return path.startsWith(place); });
        // A mount point can be a file, too.
        if (isMedium && volume.isReady() && folderExists(path) && !drives.contains(path)) {
            drives << path;
        }
    }
    return drives;
}

QByteArray DiskFileSystem::read(const QString &path) const {
    QFile file(path);
    openForReading(file);
    QByteArray content = file.readAll();
    if (file.error() != QFileDevice::NoError) {
        throw RuntimeError(ErrorNumber::DeviceError, path);
    }
    return content;
}

void DiskFileSystem::write(const QString &path, const QByteArray &content) {
    const QString target = behindLinks(path);
    checkTarget(target);
    NewContent replacement(target, leftovers_);
    replacement.append(content);
    replacement.replaceTarget();
}

bool DiskFileSystem::copy(const QString &source, const QString &target, const Progress &progress) {
    QFile file(source);
    openForReading(file);
    const QString realTarget = behindLinks(target);
    checkTarget(realTarget);
    if (sameFile(source, realTarget)) {
        throw RuntimeError(ErrorNumber::PermissionDenied, target);
    }
    NewContent replacement(realTarget, leftovers_);
    const qint64 total = file.size();
    qint64 done = 0;
    while (done < total) {
        const QByteArray chunk = file.read(std::min(chunkBytes, total - done));
        if (chunk.isEmpty()) { // the disk failed, or somebody is shortening the file
            throw RuntimeError(ErrorNumber::DeviceError, source);
        }
        replacement.append(chunk);
        done += chunk.size();
        if (progress && !progress(done, total)) {
            return false;
        }
    }
    replacement.finish();
    // The last moment at which nothing has happened yet: waiting for the disk may have taken long.
    if (progress && !progress(total, total)) {
        return false;
    }
    replacement.replaceTarget();
    return true;
}

void DiskFileSystem::link(const QString &source, const QString &target) {
    if (!fileExists(source)) {
        throw missing(source);
    }
    if (QFileInfo::exists(target)) {
        throw RuntimeError(ErrorNumber::PermissionDenied, target);
    }
    std::error_code error;
    std::filesystem::create_hard_link(QFileInfo(source).filesystemFilePath(), QFileInfo(target).filesystemFilePath(),
                                      error);
    if (error) { // another disk, or one that knows no second names
        copy(source, target, {});
    }
}

void DiskFileSystem::move(const QString &source, const QString &target) {
    if (!fileExists(source)) {
        throw missing(source);
    }
    checkTarget(target);
    if (!renameFile(source, target)) {
        copy(source, target, {});
        remove(source);
    }
}

void DiskFileSystem::remove(const QString &path) {
    if (!fileExists(path)) {
        throw missing(path);
    }
    removeFile(path);
}

void DiskFileSystem::makeFolder(const QString &path) {
    QStringList toMake;
    for (QString folder = QDir::cleanPath(path); !folderExists(folder); folder = QFileInfo(folder).path()) {
        if (folder.isEmpty() || toMake.contains(folder)) {
            throw RuntimeError(ErrorNumber::PathNotFound, path);
        }
        toMake.prepend(folder);
    }
    for (const QString &folder : std::as_const(toMake)) {
        makeOneFolder(folder);
    }
}

std::unique_ptr<FileLock> DiskFileSystem::tryLock(const QString &path, const QByteArray &content) {
    return lockFile(systemStorage(), path, content);
}

} // namespace orvel
