#include "platform/sndfile/output_file.h"

#include "platform/runtime_error.h"

#include <QFileInfo>
#include <QRandomGenerator>

#include <cerrno>
#include <cstdio>
#include <fcntl.h>
#include <unistd.h>

namespace orvel {
namespace {

/// What a presenter calls a full disk: no room, no quota left, or a file that may not grow.
bool meansFull(int error) {
    return error == ENOSPC || error == EDQUOT || error == EFBIG;
}

/// What to say of a system's error while a file is made or written; other: what any other error stands for.
ErrorNumber numberOf(int error, ErrorNumber other) {
    if (error == EIO) {
        return ErrorNumber::DeviceError;
    }
    return meansFull(error) ? ErrorNumber::DiskFull : other;
}

/// Throws when there can be no such file, whatever the disk says.
void checkPlace(const QString &path) {
    const QFileInfo info(path);
    // A device or a pipe is not replaced either. A link is: what it points to does not matter.
    if (path.isEmpty() || info.isDir() || (info.exists() && !info.isFile() && !info.isSymLink())) {
        throw RuntimeError(ErrorNumber::PathAccess, path);
    }
    if (!QFileInfo(info.absolutePath()).isDir()) {
        throw RuntimeError(ErrorNumber::PathNotFound, path);
    }
}

QByteArray temporaryBeside(const QString &path) {
    const QByteArray number = QByteArray::number(QRandomGenerator::global()->generate64(), 36);
    return QFile::encodeName(QFileInfo(path).path()) + "/.orvel-" + number + ".tmp";
}

} // namespace

void OutputFile::create(const QString &path) {
    close();
    path_ = path;
    checkPlace(path);
    const QByteArray temporary = temporaryBeside(path);
    const int handle = ::open(temporary.constData(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
    if (handle < 0) {
        throw RuntimeError(numberOf(errno, ErrorNumber::PermissionDenied), path);
    }
    file_.open(handle, QIODevice::ReadWrite | QIODevice::Unbuffered, QFileDevice::AutoCloseHandle);
    if (std::rename(temporary.constData(), QFile::encodeName(path).constData()) != 0) {
        const int error = errno;
        ::unlink(temporary.constData());
        close();
        throw RuntimeError(numberOf(error, ErrorNumber::PermissionDenied), path);
    }
}

void OutputFile::fail(int error) const {
    const bool isFull = file_.error() == QFileDevice::ResourceError;
    throw RuntimeError(isFull ? ErrorNumber::DiskFull : numberOf(error, ErrorNumber::DeviceError), path_);
}

void OutputFile::write(const char *data, qint64 size) {
    // A short write is not an error yet: the rest of it tells why.
    while (size > 0) {
        errno = 0;
        const qint64 done = file_.write(data, size);
        if (done <= 0) {
            fail(errno);
        }
        data += done;
        size -= done;
    }
}

void OutputFile::seek(qint64 position) {
    if (!file_.seek(position)) {
        throw RuntimeError(ErrorNumber::DeviceError, path_);
    }
}

void OutputFile::resize(qint64 size) {
    if (!file_.resize(size)) {
        throw RuntimeError(ErrorNumber::DeviceError, path_);
    }
}

void OutputFile::sync() {
    // A file on something that cannot sync (a pipe, /dev/full) says EINVAL; there is nothing to wait for then.
    if (fsync(file_.handle()) != 0 && errno != EINVAL) {
        fail(errno);
    }
}

} // namespace orvel
