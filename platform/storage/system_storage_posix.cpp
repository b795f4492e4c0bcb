#include "platform/storage/storage.h"
#include "platform/storage/storage_error.h"

#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/vfs.h>
#include <unistd.h>
#include <utility>

namespace orvel {

namespace {

/// Beyond every content, and within what every disk can count.
constexpr off_t lockMark = 0x7fff0000;

QByteArray native(const QString &path) {
    return QFile::encodeName(path);
}

[[noreturn]] void fail(const QString &path, StorageSubject subject) {
    throw storageError(errno, path, subject);
}

/// Of a call that makes a name: what it misses is the folder, or the folder takes no files (as /proc).
[[noreturn]] void failToMake(const QString &path) {
    const int code = errno;
    const bool hasFolder = QFileInfo(QFileInfo(path).path()).isDir();
    throw storageError(code == ENOENT ? (hasFolder ? EACCES : ENOTDIR) : code, path, StorageSubject::Name);
}

/// Repeats a call that a signal cuts short.
template <class Call>
auto patiently(Call call) {
    auto result = call();
    while (result < 0 && errno == EINTR) {
        result = call();
    }
    return result;
}

struct flock writeLock(off_t begin, off_t length) {
    struct flock lock = {};
    lock.l_type = F_WRLCK;
    lock.l_whence = SEEK_SET;
    lock.l_start = begin;
    lock.l_len = length;
    return lock;
}

struct flock wholeFile() {
    return writeLock(0, 0);
}

enum class LockAnswer { Got, Taken, NoLocks };

LockAnswer lockRange(int handle, struct flock range) {
    if (::fcntl(handle, F_OFD_SETLK, &range) == 0) {
        return LockAnswer::Got;
    }
    return errno == EAGAIN || errno == EACCES ? LockAnswer::Taken : LockAnswer::NoLocks;
}

LockAnswer lockHandle(int handle) {
    if (::flock(handle, LOCK_EX | LOCK_NB) == 0) {
        return LockAnswer::Got;
    }
    return errno == EWOULDBLOCK ? LockAnswer::Taken : LockAnswer::NoLocks;
}

/// There a lock on the whole file is a record lock to the server, so that our own two would meet.
bool isNetworkFile(int handle) {
    constexpr std::array<unsigned, 4> networks{0x6969U /* NFS */, 0x517bU /* SMB */, 0xff534d42U /* CIFS */,
                                               0xfe534d42U /* SMB2 */};
    struct statfs status = {};
    return ::fstatfs(handle, &status) == 0 && std::ranges::count(networks, static_cast<unsigned>(status.f_type)) != 0;
}

class PosixFile : public StorageFile {
  public:
    PosixFile(int handle, QString path) : handle_(handle), path_(std::move(path)) {}
    PosixFile(const PosixFile &) = delete;
    PosixFile(PosixFile &&) = delete;
    PosixFile &operator=(const PosixFile &) = delete;
    PosixFile &operator=(PosixFile &&) = delete;
    ~PosixFile() override {
        if (handle_ >= 0) {
            ::close(handle_);
        }
    }

    [[nodiscard]] struct stat status() const {
        struct stat result = {};
        if (::fstat(handle_, &result) != 0) {
            fail(path_, StorageSubject::Content);
        }
        return result;
    }

    [[nodiscard]] qint64 size() const override { return status().st_size; }

    [[nodiscard]] FileIdentity identity() const override {
        const struct stat now = status();
        return {.device = now.st_dev, .file = now.st_ino};
    }

    [[nodiscard]] std::size_t read(qint64 at, std::span<std::byte> into) const override {
        std::size_t done = 0;
        while (done < into.size()) {
            const auto rest = into.subspan(done);
            const ssize_t got =
                patiently([&] { return ::pread(handle_, rest.data(), rest.size(), at + static_cast<off_t>(done)); });
            if (got < 0) {
                fail(path_, StorageSubject::Content);
            }
            if (got == 0) {
                break;
            }
            done += static_cast<std::size_t>(got);
        }
        return done;
    }

    void write(qint64 at, std::span<const std::byte> bytes) override {
        // A short write is not an error yet: the rest of it tells why.
        while (!bytes.empty()) {
            const ssize_t put = patiently([&] { return ::pwrite(handle_, bytes.data(), bytes.size(), at); });
            if (put < 0) {
                fail(path_, StorageSubject::Content);
            }
            at += put;
            bytes = bytes.subspan(static_cast<std::size_t>(put));
        }
    }

    void resize(qint64 size) override {
        if (patiently([&] { return ::ftruncate(handle_, size); }) != 0) {
            fail(path_, StorageSubject::Content);
        }
    }

    void takePermissionsOf(const QString &path) override {
        struct stat other = {};
        if (::stat(native(path).constData(), &other) == 0) {
            // Disks without permissions refuse; they have none to keep.
            static_cast<void>(::fchmod(handle_, other.st_mode & 07777));
        }
    }

    void sync() override {
        if (patiently([&] { return ::fsync(handle_); }) != 0 && !meansNoSync(errno)) {
            fail(path_, StorageSubject::Content);
        }
    }

    void close() override {
        if (::close(std::exchange(handle_, -1)) != 0 && errno != EINTR) {
            fail(path_, StorageSubject::Content);
        }
    }

    /// Programs of this system lock the whole file; Wine, and Samba for Windows machines, lock records.
    [[nodiscard]] bool tryLockAll() override {
        return lockRange(handle_, wholeFile()) != LockAnswer::Taken &&
               (isNetworkFile(handle_) || lockHandle(handle_) != LockAnswer::Taken);
    }

    [[nodiscard]] bool isLockedElsewhere() const override {
        struct flock probe = wholeFile();
        const bool records = ::fcntl(handle_, F_OFD_GETLK, &probe) == 0 && probe.l_type != F_UNLCK;
        return records || lockHandle(handle_) == LockAnswer::Taken;
    }

    [[nodiscard]] bool tryLockMark() override {
        const LockAnswer answer = lockRange(handle_, writeLock(lockMark, 1));
        return (answer == LockAnswer::NoLocks ? lockHandle(handle_) : answer) != LockAnswer::Taken;
    }

  private:
    int handle_;
    QString path_;
};

class SystemStorage : public Storage {
  public:
    [[nodiscard]] std::unique_ptr<StorageFile> open(const QString &path, Access access) override {
        const int handle = openHandle(path, flagsOf(access));
        if (handle < 0) {
            failToOpen(path, access);
        }
        auto file = std::make_unique<PosixFile>(handle, path);
        const mode_t mode = file->status().st_mode;
        if (!S_ISREG(mode)) {
            throw RuntimeError(ErrorNumber::PathAccess, path);
        }
        // An administrator could write regardless of the mark; the mark is still there to be respected.
        if (access == Access::Change && (mode & (S_IWUSR | S_IWGRP | S_IWOTH)) == 0) {
            throw RuntimeError(ErrorNumber::PermissionDenied, path, QStringLiteral("het bestand is alleen-lezen"));
        }
        return file;
    }

    [[nodiscard]] std::unique_ptr<StorageFile> create(const QString &path, const QString &toldAs) override {
        const int handle = openHandle(path, O_RDWR | O_CREAT | O_EXCL);
        if (handle < 0) {
            failToMake(toldAs);
        }
        return std::make_unique<PosixFile>(handle, toldAs);
    }

    [[nodiscard]] bool rename(const QString &source, const QString &target) override {
        if (std::rename(native(source).constData(), native(target).constData()) != 0) {
            if (errno == EXDEV) {
                return false;
            }
            throw storageError(errno == ENOENT ? ENOTDIR : errno, target, StorageSubject::Name);
        }
        syncFolder(QFileInfo(target).path());
        return true;
    }

    [[nodiscard]] bool link(const QString &source, const QString &target) override {
        return ::link(native(source).constData(), native(target).constData()) == 0;
    }

    void remove(const QString &path) override {
        if (::unlink(native(path).constData()) != 0) {
            fail(path, StorageSubject::Name);
        }
    }

    void makeFolder(const QString &path) override {
        if (::mkdir(native(path).constData(), 0777) != 0) {
            if (errno != EEXIST) {
                failToMake(path);
            }
            if (!QFileInfo(path).isDir()) {
                throw RuntimeError(ErrorNumber::PathAccess, path);
            }
        }
    }

  private:
    static int openHandle(const QString &path, int flags) {
        // Not blocking: a pipe that somebody named "x.mdb" must not stop the program.
        return patiently(
            [&] { return ::open(native(path).constData(), flags | O_CLOEXEC | O_NONBLOCK | O_NOCTTY, 0666); });
    }

    static int flagsOf(Access access) {
        switch (access) {
        case Access::Read:
            return O_RDONLY;
        case Access::Change:
            return O_RDWR;
        case Access::ChangeOrNew:
            break;
        }
        return O_RDWR | O_CREAT;
    }

    [[noreturn]] static void failToOpen(const QString &path, Access access) {
        if (errno == EISDIR) {
            throw RuntimeError(ErrorNumber::PathAccess, path);
        }
        if (access == Access::ChangeOrNew) {
            failToMake(path);
        }
        fail(path, StorageSubject::Name);
    }

    /// Makes a rename permanent. Too late to fail: the file has its new content.
    static void syncFolder(const QString &folder) {
        const int handle = ::open(native(folder).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
        if (handle >= 0) {
            ::fsync(handle);
            ::close(handle);
        }
    }
};

} // namespace

Storage &systemStorage() {
    static SystemStorage system;
    return system;
}

} // namespace orvel
