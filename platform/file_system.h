#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <atomic>
#include <functional>
#include <memory>

namespace orvel {

/// A lock that is held as long as this lives.
class FileLock {
  public:
    FileLock() = default;
    FileLock(const FileLock &) = delete;
    FileLock(FileLock &&) = delete;
    FileLock &operator=(const FileLock &) = delete;
    FileLock &operator=(FileLock &&) = delete;
    virtual ~FileLock() = default;
};

/// Whether files can be made in a folder, as far as it is known.
enum class Writable { Unknown, No, Yes };

/// What the rooms ask of the disk. Every failing call throws RuntimeError with the file's path: FileNotFound,
/// PathNotFound, PermissionDenied, DiskFull, PathAccess, BadFileName. Patterns match without regard to case.
class FileSystem {
  public:
    virtual ~FileSystem() = default;

    [[nodiscard]] virtual bool fileExists(const QString &path) const = 0;
    /// Bytes of a file.
    [[nodiscard]] virtual qint64 fileSize(const QString &path) const = 0;
    [[nodiscard]] virtual bool folderExists(const QString &path) const = 0;
    /// Whether both are the same folder, by whatever path; a folder that does not exist is none.
    [[nodiscard]] virtual bool isSameFolder(const QString &one, const QString &other) const = 0;
    /// Names (not paths) of the normal files of a folder that match the pattern ("*.mdb"), sorted by the user's locale
    /// without regard to case. A folder that does not exist gives an empty list.
    [[nodiscard]] virtual QStringList list(const QString &folder, const QString &pattern) const = 0;

    /// Names of the folders in a folder that the user may see, sorted like list(). One that cannot be read is empty.
    [[nodiscard]] virtual QStringList folders(const QString &folder) const = 0;
    /// Where folders begin, as people know them: drive letters, or the root and every medium that is mounted.
    [[nodiscard]] virtual QStringList drives() const = 0;

    /// Bytes that may still be written on the disk of a folder; -1 when it does not say.
    [[nodiscard]] virtual qint64 freeBytes(const QString &folder) const = 0;
    /// Looks whether files can be made in a folder, by making an empty one under a temporary name and removing it.
    /// Never waits and never fails: the answer stands in what is returned once there is one, which may be never.
    [[nodiscard]] virtual std::shared_ptr<const std::atomic<Writable>> askWritable(const QString &folder) = 0;

    [[nodiscard]] virtual QByteArray read(const QString &path) const = 0;
    /// Replaces the file's content as one step: written beside it, synced, renamed.
    virtual void write(const QString &path, const QByteArray &content) = 0;

    /// Called during a copy with the bytes done and the bytes to do; may run window events. false stops the copy, and
    /// nothing is left of the target's new content.
    using Progress = std::function<bool(qint64 done, qint64 total)>;
    /// Copies over an existing target as one step: to a temporary name in the target's folder, synced, renamed, so
    /// that nobody sees half a file. false when progress stopped it.
    virtual bool copy(const QString &source, const QString &target, const Progress &progress = {}) = 0;
    /// Gives a file's present content a second name, at no cost where the disk can (elsewhere it is copied): what later
    /// replaces the file by a copy or a move leaves the other. An existing target is an error (PermissionDenied).
    virtual void link(const QString &source, const QString &target) = 0;
    /// Moves within or across disks; an existing target is overwritten.
    virtual void move(const QString &source, const QString &target) = 0;
    virtual void remove(const QString &path) = 0;
    /// Makes a folder and those above it; one that is there already is fine.
    virtual void makeFolder(const QString &path) = 0;

    /// Locks a file, which is made where there is none, against every other program, machine and caller that locks it
    /// this way; content tells them who has it. Null when somebody else has it: what read() gives is theirs then. The
    /// lock ends, and the file with it, when what is returned goes; it ends also with a process that is killed and with
    /// a machine that goes down, and then the file stays behind, locked by nobody. On a disk without locks everybody
    /// gets one. What is returned must not outlive the file system.
    [[nodiscard]] virtual std::unique_ptr<FileLock> tryLock(const QString &path, const QByteArray &content) = 0;
};

} // namespace orvel
