#pragma once

#include <QString>

#include <compare>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>

namespace orvel {

/// Tells two files with the same path apart.
struct FileIdentity {
    std::uint64_t device = 0;
    std::uint64_t file = 0;
    auto operator<=>(const FileIdentity &) const = default;
};

/// An open file, read and written at positions in bytes, without a buffer of its own: what write() has taken survives
/// the death of the process. Every failing call throws RuntimeError with the path that the file was opened by.
/// Destroying it closes it, and keeps quiet. One thread; only sync() may run beside the other calls, on another.
class StorageFile {
  public:
    StorageFile() = default;
    StorageFile(const StorageFile &) = delete;
    StorageFile(StorageFile &&) = delete;
    StorageFile &operator=(const StorageFile &) = delete;
    StorageFile &operator=(StorageFile &&) = delete;
    virtual ~StorageFile() = default;

    [[nodiscard]] virtual qint64 size() const = 0;
    [[nodiscard]] virtual FileIdentity identity() const = 0;
    /// How many bytes were read: as many as asked for, or what there is before the end.
    [[nodiscard]] virtual std::size_t read(qint64 at, std::span<std::byte> into) const = 0;
    /// All of it; some of it may be written when it throws.
    virtual void write(qint64 at, std::span<const std::byte> bytes) = 0;
    /// Cuts the file off, or fills it up with zeros.
    virtual void resize(qint64 size) = 0;
    /// Gives it the permissions that another file has; where that is not to be had it keeps its own.
    virtual void takePermissionsOf(const QString &path) = 0;
    /// Returns when the disk has what was written. On a disk that cannot do that there is nothing to wait for.
    virtual void sync() = 0;
    /// No call after that. Network disks tell here what they could not write.
    virtual void close() = 0;

    // Locks go with the file, however it is closed, and with the process or the machine that held them. Two openings
    // of a file exclude each other, also in one process. A disk without locks locks nothing out.

    /// Keeps everybody who looks from using the file, programs of other systems too; false when somebody does.
    [[nodiscard]] virtual bool tryLockAll() = 0;
    /// Whether somebody else keeps others from the file, or a part of it.
    [[nodiscard]] virtual bool isLockedElsewhere() const = 0;
    /// Locks one byte far beyond the content, which everybody can read on; false when somebody else has it.
    [[nodiscard]] virtual bool tryLockMark() = 0;
};

/// The disks below everything that writes a file: takes, encoder, databases, settings, copies. A failing call throws
/// RuntimeError with the path, its number from one table (storageError). Thread-safe. Links are followed, unless it is
/// said.
class Storage {
  public:
    enum class Access {
        Read,        ///< an existing file
        Change,      ///< an existing file, for reading and writing; PermissionDenied when it is marked read-only
        ChangeOrNew, ///< for reading and writing, whether it exists or not
    };

    Storage() = default;
    Storage(const Storage &) = delete;
    Storage(Storage &&) = delete;
    Storage &operator=(const Storage &) = delete;
    Storage &operator=(Storage &&) = delete;
    virtual ~Storage() = default;

    /// Throws PathAccess for what is no ordinary file, FileNotFound, PermissionDenied and all that the disk may say.
    [[nodiscard]] virtual std::unique_ptr<StorageFile> open(const QString &path, Access access) = 0;
    /// Makes a file that must not exist yet (FileExists), for reading and writing; never through a link. toldAs: the
    /// path that its errors name, for one that has another name only for a while.
    [[nodiscard]] virtual std::unique_ptr<StorageFile> create(const QString &path, const QString &toldAs) = 0;
    /// Gives a file another name as one step, that of an existing file too, and sees to it that it stays so. False, and
    /// nothing happened, when the two are on different disks.
    [[nodiscard]] virtual bool rename(const QString &source, const QString &target) = 0;
    /// Gives a file a second name, which must not exist; false when the disk cannot.
    [[nodiscard]] virtual bool link(const QString &source, const QString &target) = 0;
    virtual void remove(const QString &path) = 0;
    /// Makes one folder; one that is there already is fine.
    virtual void makeFolder(const QString &path) = 0;
};

/// The disks of this machine.
Storage &systemStorage();

} // namespace orvel
