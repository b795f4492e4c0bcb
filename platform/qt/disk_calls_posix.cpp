#include "platform/qt/disk_calls.h"
#include "platform/qt/leftovers.h"
#include "platform/runtime_error.h"

#include <QFile>
#include <QFileInfo>
#include <QRandomGenerator>

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace orvel {

namespace {

ErrorNumber numberOf(int error) {
    switch (error) {
    case ENOENT:
    case ENOTDIR:
        return ErrorNumber::PathNotFound;
    case EACCES:
    case EPERM:
    case EROFS:
    case EBUSY:
    case ETXTBSY:
        return ErrorNumber::PermissionDenied;
    case ENOSPC:
    case EDQUOT:
    case EFBIG:
        return ErrorNumber::DiskFull;
    case ENAMETOOLONG:
    case EINVAL:
    case EILSEQ:
        return ErrorNumber::BadFileName;
    case EIO:
        return ErrorNumber::DeviceError;
    case ENXIO:
    case ENODEV:
    case ENOTCONN:
    case ECONNABORTED:
    case ECONNREFUSED:
    case ECONNRESET:
    case EHOSTDOWN:
    case EHOSTUNREACH:
    case ENETDOWN:
    case ENETUNREACH:
    case ESHUTDOWN:
    case ESTALE:
    case ETIMEDOUT:
        return ErrorNumber::DiskNotReady;
    default:
        return ErrorNumber::PathAccess;
    }
}

/// What the number's description leaves open.
QString detailOf(ErrorNumber number) {
    switch (number) {
    case ErrorNumber::DeviceError:
        return QStringLiteral("lezen of schrijven is mislukt");
    case ErrorNumber::DiskNotReady:
        return QStringLiteral("de schijf of de server is niet bereikbaar");
    default:
        return {};
    }
}

[[noreturn]] void fail(const QString &path) {
    const ErrorNumber number = numberOf(errno);
    throw RuntimeError(number, path, detailOf(number));
}

QByteArray native(const QString &path) {
    return QFile::encodeName(path);
}

/// Some network and user-space file systems cannot sync; that is no failure.
bool synced(int handle) {
    return ::fsync(handle) == 0 || errno == EINVAL || errno == ENOSYS || errno == ENOTSUP;
}

/// Makes a rename permanent. Too late to fail: the file has its new content.
void syncFolder(const QString &folder) {
    const int handle = ::open(native(folder).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (handle >= 0) {
        ::fsync(handle);
        ::close(handle);
    }
}

} // namespace

NewContent::NewContent(const QString &target, Leftovers &leftovers) : target_(target), leftovers_(leftovers) {
    const QString folder = QFileInfo(target).path();
    leftovers_.sweep(folder);
    do {
        const QByteArray number = QByteArray::number(QRandomGenerator::global()->generate64(), 36);
        temporary_ = native(folder + u'/' + Leftovers::nameOf(number));
        handle_ = ::open(temporary_.constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
    } while (handle_ < 0 && (errno == EEXIST || errno == EINTR));
    if (handle_ < 0) {
        fail(target_);
    }
}

NewContent::~NewContent() {
    if (!temporary_.isEmpty()) {
        if (handle_ >= 0) {
            ::close(handle_);
        }
        if (::unlink(temporary_.constData()) != 0 && errno != ENOENT) {
            leftovers_.remember(QFile::decodeName(temporary_));
        }
    }
}

void NewContent::append(const QByteArray &bytes) {
    qsizetype done = 0;
    while (done < bytes.size()) {
        const ssize_t written =
            ::write(handle_, bytes.constData() + done, static_cast<std::size_t>(bytes.size() - done));
        if (written < 0 && errno != EINTR) {
            fail(target_);
        }
        done += written > 0 ? written : 0;
    }
}

void NewContent::close() {
    const int handle = std::exchange(handle_, -1);
    // Network disks tell here what they could not write.
    if (::close(handle) != 0 && errno != EINTR) {
        fail(target_);
    }
}

void NewContent::finish() {
    struct stat before = {};
    if (::stat(native(target_).constData(), &before) == 0) {
        // Disks without permissions refuse; they have none to keep.
        static_cast<void>(::fchmod(handle_, before.st_mode & 07777));
    }
    if (!synced(handle_)) {
        fail(target_);
    }
    close();
}

void NewContent::replaceTarget() {
    if (handle_ >= 0) {
        finish();
    }
    if (std::rename(temporary_.constData(), native(target_).constData()) != 0) {
        fail(target_);
    }
    temporary_.clear();
    syncFolder(QFileInfo(target_).path());
}

bool renameFile(const QString &source, const QString &target) {
    if (std::rename(native(source).constData(), native(target).constData()) != 0) {
        if (errno == EXDEV) {
            return false;
        }
        fail(target);
    }
    syncFolder(QFileInfo(target).path());
    return true;
}

void removeFile(const QString &path) {
    if (::unlink(native(path).constData()) != 0) {
        fail(path);
    }
}

void makeOneFolder(const QString &path) {
    if (::mkdir(native(path).constData(), 0777) != 0 && !(errno == EEXIST && QFileInfo(path).isDir())) {
        fail(path);
    }
}

} // namespace orvel
