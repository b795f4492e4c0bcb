#include "platform/qt/disk_file_system.h"

#include "platform/qt/disk_sync.h"
#include "platform/runtime_error.h"

#include <QCollator>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryFile>

#include <algorithm>

namespace orvel {

namespace {

constexpr qint64 chunkBytes = 256 * 1024;

RuntimeError missing(const QString &path) {
    const bool hasFolder = QFileInfo(QFileInfo(path).path()).isDir();
    return RuntimeError(hasFolder ? ErrorNumber::FileNotFound : ErrorNumber::PathNotFound, path);
}

void openForReading(QFile &file) {
    if (!QFileInfo(file.fileName()).isFile()) {
        throw missing(file.fileName());
    }
    if (!file.open(QIODevice::ReadOnly)) {
        throw RuntimeError(ErrorNumber::PermissionDenied, file.fileName());
    }
}

/// New content of a file: written under a temporary name in the file's folder, which the file gets when it is whole.
class Replacement {
  public:
    explicit Replacement(const QString &target) : target_(target), file_(temporaryName(target)) {
        const QFileInfo folder(QFileInfo(target).path());
        if (!folder.isDir()) {
            throw RuntimeError(ErrorNumber::PathNotFound, target);
        }
        if (QFileInfo(target).isDir()) {
            throw RuntimeError(ErrorNumber::PathAccess, target);
        }
        if (QFileInfo::exists(target) && !QFileInfo(target).isWritable()) {
            throw RuntimeError(ErrorNumber::PermissionDenied, target);
        }
        if (!file_.open()) {
            throw RuntimeError(isFull(folder.filePath()) ? ErrorNumber::DiskFull : ErrorNumber::PermissionDenied,
                               target);
        }
    }

    void append(const QByteArray &bytes) {
        if (file_.write(bytes) != bytes.size()) {
            throw RuntimeError(ErrorNumber::DiskFull, target_);
        }
    }

    /// Makes it the file. Permissions are those of the file before, or what any new file gets.
    void commit() {
        if (!file_.flush() || !syncFile(file_.handle())) {
            throw RuntimeError(ErrorNumber::DiskFull, target_);
        }
        const QFileInfo before(target_);
        file_.setPermissions(before.exists() ? before.permissions() : newFilePermissions());
        file_.setAutoRemove(false);
        if (!replaceFile(file_.fileName(), target_)) {
            file_.setAutoRemove(true);
            throw RuntimeError(ErrorNumber::PathAccess, target_);
        }
        syncFolder(QFileInfo(target_).path());
    }

  private:
    static QString temporaryName(const QString &target) {
        // No "*.mdb" or "*.mp3": nobody may take it for a whole file.
        return QFileInfo(target).path() + QStringLiteral("/.orvel-XXXXXX.tmp");
    }

    QString target_;
    QTemporaryFile file_;
};

} // namespace

bool DiskFileSystem::fileExists(const QString &path) const {
    return QFileInfo(path).isFile();
}

bool DiskFileSystem::folderExists(const QString &path) const {
    return !path.isEmpty() && QFileInfo(path).isDir();
}

QStringList DiskFileSystem::list(const QString &folder, const QString &pattern) const {
    if (!folderExists(folder)) {
        return {};
    }
    // QDir matches name filters without regard to case unless told otherwise.
    QStringList names = QDir(folder).entryList({pattern}, QDir::Files, QDir::Unsorted);
    QCollator order;
    order.setCaseSensitivity(Qt::CaseInsensitive);
    order.setNumericMode(false);
    std::sort(names.begin(), names.end(), order);
    return names;
}

QByteArray DiskFileSystem::read(const QString &path) const {
    QFile file(path);
    openForReading(file);
    return file.readAll();
}

void DiskFileSystem::write(const QString &path, const QByteArray &content) {
    Replacement replacement(path);
    replacement.append(content);
    replacement.commit();
}

bool DiskFileSystem::copy(const QString &source, const QString &target, const Progress &progress) {
    QFile file(source);
    openForReading(file);
    if (QFileInfo(target).exists() && QFileInfo(source).canonicalFilePath() == QFileInfo(target).canonicalFilePath()) {
        throw RuntimeError(ErrorNumber::PermissionDenied, target);
    }
    Replacement replacement(target);
    const qint64 total = file.size();
    qint64 done = 0;
    while (!file.atEnd()) {
        const QByteArray chunk = file.read(chunkBytes);
        if (chunk.isEmpty()) {
            throw RuntimeError(ErrorNumber::PathAccess, source);
        }
        replacement.append(chunk);
        done += chunk.size();
        if (progress && !progress(done, total)) {
            return false;
        }
    }
    replacement.commit();
    return true;
}

void DiskFileSystem::move(const QString &source, const QString &target) {
    if (!fileExists(source)) {
        throw missing(source);
    }
    if (!QFileInfo(QFileInfo(target).path()).isDir()) {
        throw RuntimeError(ErrorNumber::PathNotFound, target);
    }
    if (replaceFile(source, target)) {
        syncFolder(QFileInfo(target).path());
        return;
    }
    // Another disk, most likely.
    copy(source, target, {});
    remove(source);
}

void DiskFileSystem::remove(const QString &path) {
    if (!fileExists(path)) {
        throw missing(path);
    }
    if (!QFile::remove(path)) {
        throw RuntimeError(ErrorNumber::PermissionDenied, path);
    }
}

void DiskFileSystem::makeFolder(const QString &path) {
    if (!QDir().mkpath(path)) {
        throw RuntimeError(ErrorNumber::PathAccess, path);
    }
}

} // namespace orvel
