#include "platform/jet/error.h"
#include "platform/jet/raw_file.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/vfs.h>
#include <unistd.h>

namespace orvel::jet {

namespace {

[[noreturn]] void throwErrno(int code) {
    switch (code) {
    case ENOENT:
    case ENOTDIR:
        throw Error(Fault::NotFound, "");
    case EACCES:
    case EPERM:
    case EROFS:
        throw Error(Fault::AccessDenied, "");
    case ENOSPC:
    case EDQUOT:
        throw Error(Fault::DiskFull, "");
    default:
        throw Error(Fault::InOut, "systeemfout " + std::to_string(code));
    }
}

struct flock wholeFile() {
    struct flock all = {};
    all.l_type = F_WRLCK;
    all.l_whence = SEEK_SET;
    return all;
}

/// There a lock on the whole file is a record lock to the server, so that our own two would meet.
bool isNetworkFile(int fd) {
    constexpr std::array<unsigned, 4> networks{0x6969U /* NFS */, 0x517bU /* SMB */, 0xff534d42U /* CIFS */,
                                               0xfe534d42U /* SMB2 */};
    struct statfs status = {};
    return ::fstatfs(fd, &status) == 0 && std::ranges::count(networks, static_cast<unsigned>(status.f_type)) != 0;
}

/// Programs of this system lock the whole file; Wine, and Samba for Windows machines, lock records.
void lockWholeFile(int fd) {
    struct flock all = wholeFile();
    const bool records = ::fcntl(fd, F_OFD_SETLK, &all) != 0 && (errno == EAGAIN || errno == EACCES);
    // File systems without locks refuse with other codes: nobody can hold the file there either.
    if (records || (!isNetworkFile(fd) && ::flock(fd, LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK)) {
        throw Error(Fault::Locked, "");
    }
}

class PosixFile : public RawFile {
  public:
    explicit PosixFile(int fd) : fd_(fd) {}
    PosixFile(const PosixFile &) = delete;
    PosixFile &operator=(const PosixFile &) = delete;
    PosixFile(PosixFile &&) = delete;
    PosixFile &operator=(PosixFile &&) = delete;
    ~PosixFile() override { ::close(fd_); }

    [[nodiscard]] struct stat status() const {
        struct stat result = {};
        if (::fstat(fd_, &result) != 0) {
            throwErrno(errno);
        }
        return result;
    }

    [[nodiscard]] std::uint64_t size() const override { return static_cast<std::uint64_t>(status().st_size); }

    [[nodiscard]] FileIdentity identity() const override {
        const struct stat now = status();
        return {.device = now.st_dev, .file = now.st_ino};
    }

    void read(std::uint64_t at, std::span<std::uint8_t> into) const override {
        while (!into.empty()) {
            const ssize_t got = ::pread(fd_, into.data(), into.size(), static_cast<off_t>(at));
            if (got < 0 && errno == EINTR) {
                continue;
            }
            if (got < 0) {
                throwErrno(errno);
            }
            if (got == 0) {
                throw Error(Fault::Damaged, "het bestand is korter dan het hoort te zijn");
            }
            at += static_cast<std::uint64_t>(got);
            into = into.subspan(static_cast<std::size_t>(got));
        }
    }

    void write(std::uint64_t at, std::span<const std::uint8_t> bytes) override {
        while (!bytes.empty()) {
            const ssize_t put = ::pwrite(fd_, bytes.data(), bytes.size(), static_cast<off_t>(at));
            if (put < 0 && errno == EINTR) {
                continue;
            }
            if (put < 0) {
                throwErrno(errno);
            }
            at += static_cast<std::uint64_t>(put);
            bytes = bytes.subspan(static_cast<std::size_t>(put));
        }
    }

    void sync() override {
        if (::fsync(fd_) != 0) {
            throwErrno(errno);
        }
    }

    void lock() override { lockWholeFile(fd_); }

  private:
    int fd_;
};

} // namespace

std::unique_ptr<RawFile> openRawFile(const std::filesystem::path &path, RawFile::Mode mode) {
    // Not blocking: a pipe that somebody named "x.mdb" must not stop the program.
    const int access = mode == RawFile::Mode::Write ? O_RDWR : O_RDONLY;
    const int fd = ::open(path.c_str(), access | O_CLOEXEC | O_NONBLOCK);
    if (fd < 0) {
        throwErrno(errno == EISDIR ? EACCES : errno);
    }
    auto file = std::make_unique<PosixFile>(fd);
    const struct stat status = file->status();
    if (!S_ISREG(status.st_mode)) {
        throw Error(Fault::NotADatabase, "");
    }
    // An administrator could write regardless of the mark; the mark is still there to be respected.
    if (mode == RawFile::Mode::Write && (status.st_mode & (S_IWUSR | S_IWGRP | S_IWOTH)) == 0) {
        throw Error(Fault::AccessDenied, "het bestand is alleen-lezen");
    }
    return file;
}

bool isHeld(const std::filesystem::path &path) {
    const int fd = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    if (fd < 0) {
        return errno != ENOENT;
    }
    struct flock probe = wholeFile();
    const bool records = ::fcntl(fd, F_OFD_GETLK, &probe) == 0 && probe.l_type != F_UNLCK;
    const bool held = records || (::flock(fd, LOCK_EX | LOCK_NB) != 0 && errno == EWOULDBLOCK);
    ::close(fd);
    return held;
}

} // namespace orvel::jet
