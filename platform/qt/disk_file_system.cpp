#include "platform/qt/disk_file_system.h"

#include "platform/runtime_error.h"
#include "platform/storage/file_lock.h"
#include "platform/storage/new_content.h"

#include <QCollator>
#include <QDir>
#include <QFileInfo>
#include <QStorageInfo>

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <span>
#include <system_error>
#include <utility>
#include <vector>

namespace orvel {

namespace {

constexpr qint64 chunkBytes = 256LL * 1024;

RuntimeError missing(const QString &path) {
    const bool hasFolder = QFileInfo(QFileInfo(path).path()).isDir();
    return RuntimeError(hasFolder ? ErrorNumber::FileNotFound : ErrorNumber::PathNotFound, path);
}

std::unique_ptr<StorageFile> openForReading(Storage &storage, const QString &path) {
    if (!QFileInfo(path).isFile()) {
        throw missing(path);
    }
    return storage.open(path, Storage::Access::Read);
}

std::span<std::byte> bytesOf(QByteArray &bytes) {
    return std::as_writable_bytes(std::span(bytes.data(), static_cast<std::size_t>(bytes.size())));
}

/// A link stays a link: what it points to gets the new content.
QString behindLinks(const QString &path) {
    const QString canonical = QFileInfo(path).isSymLink() ? QFileInfo(path).canonicalFilePath() : QString();
    return canonical.isEmpty() ? path : canonical;
}

/// Throws when a file cannot get new content.
void checkTarget(Storage &storage, const QString &path) {
    const QFileInfo target(path);
    if (!QFileInfo(target.path()).isDir()) {
        throw RuntimeError(ErrorNumber::PathNotFound, path);
    }
    if (target.isDir()) {
        throw RuntimeError(ErrorNumber::PathAccess, path);
    }
    // A rename would replace a read-only file all the same.
    if (target.exists()) {
        static_cast<void>(storage.open(path, Storage::Access::Change));
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

qint64 DiskFileSystem::freeBytes(const QString &folder) const {
    std::error_code failure;
    const std::filesystem::space_info space = std::filesystem::space(folder.toStdU16String(), failure);
    return failure ? -1 : static_cast<qint64>(std::min<std::uintmax_t>(space.available, INT64_MAX));
}

std::shared_ptr<const std::atomic<Writable>> DiskFileSystem::askWritable(const QString &folder) {
    return std::make_shared<const std::atomic<Writable>>(isWritable(folder) ? Writable::Yes : Writable::No);
}

bool DiskFileSystem::isWritable(const QString &folder) {
    try {
        // Removed when it goes, at once or as soon as that can be.
        const NewContent probe(storage_, folder + QStringLiteral("/probe"), leftovers_);
        return true;
    } catch (const RuntimeError &) {
        return false;
    }
}

QByteArray DiskFileSystem::read(const QString &path) const {
    const auto file = openForReading(storage_, path);
    QByteArray content(file->size(), Qt::Uninitialized);
    content.truncate(static_cast<qsizetype>(file->read(0, bytesOf(content))));
    return content;
}

void DiskFileSystem::write(const QString &path, const QByteArray &content) {
    const QString target = behindLinks(path);
    checkTarget(storage_, target);
    NewContent replacement(storage_, target, leftovers_);
    replacement.append(std::as_bytes(std::span(content)));
    replacement.replaceTarget();
}

bool DiskFileSystem::copy(const QString &source, const QString &target, const Progress &progress) {
    const auto file = openForReading(storage_, source);
    const QString realTarget = behindLinks(target);
    checkTarget(storage_, realTarget);
    if (sameFile(source, realTarget)) {
        throw RuntimeError(ErrorNumber::PermissionDenied, target);
    }
    NewContent replacement(storage_, realTarget, leftovers_);
    const qint64 total = file->size();
    std::vector<std::byte> chunk(static_cast<std::size_t>(std::min(chunkBytes, total)));
    qint64 done = 0;
    while (done < total) {
        const auto part = std::span(chunk).first(static_cast<std::size_t>(std::min(chunkBytes, total - done)));
        if (file->read(done, part) < part.size()) { // somebody is shortening the file
            throw RuntimeError(ErrorNumber::DeviceError, source);
        }
        replacement.append(part);
        done += static_cast<qint64>(part.size());
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
    if (!storage_.link(source, target)) { // another disk, or one that knows no second names
        copy(source, target, {});
    }
}

void DiskFileSystem::move(const QString &source, const QString &target) {
    if (!fileExists(source)) {
        throw missing(source);
    }
    checkTarget(storage_, target);
    if (!storage_.rename(source, target)) {
        copy(source, target, {});
        remove(source);
    }
}

void DiskFileSystem::remove(const QString &path) {
    if (!fileExists(path)) {
        throw missing(path);
    }
    storage_.remove(path);
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
        storage_.makeFolder(folder);
    }
}

std::unique_ptr<FileLock> DiskFileSystem::tryLock(const QString &path, const QByteArray &content) {
    return lockFile(storage_, path, content);
}

} // namespace orvel
