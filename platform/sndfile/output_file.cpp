#include "platform/sndfile/output_file.h"

#include "platform/runtime_error.h"

#include <QFileInfo>

#include <cerrno>
#include <unistd.h>

namespace orvel {
namespace {

ErrorNumber whyNotCreated(const QFile &file) {
    const QFileInfo info(file.fileName());
    if (info.isDir() || file.fileName().isEmpty()) {
        return ErrorNumber::PathAccess;
    }
    if (!QFileInfo(info.absolutePath()).isDir()) {
        return ErrorNumber::PathNotFound;
    }
    return file.error() == QFileDevice::ResourceError ? ErrorNumber::DiskFull : ErrorNumber::PermissionDenied;
}

/// What a presenter calls a full disk: no room, no quota left, or a file that may not grow.
bool meansFull(int error) {
    return error == ENOSPC || error == EDQUOT || error == EFBIG;
}

[[noreturn]] void throwWriteError(const QFile &file, int error) {
    throw RuntimeError(meansFull(error) || file.error() == QFileDevice::ResourceError ? ErrorNumber::DiskFull
                                                                                      : ErrorNumber::DeviceError,
                       file.fileName());
}

} // namespace

void OutputFile::create(const QString &path) {
    file_.setFileName(path);
    if (!file_.open(QIODevice::ReadWrite | QIODevice::Truncate | QIODevice::Unbuffered)) {
        throw RuntimeError(whyNotCreated(file_), path);
    }
}

void OutputFile::write(const char *data, qint64 size) {
    // A short write is not an error yet: the rest of it tells why.
    while (size > 0) {
        errno = 0;
        const qint64 done = file_.write(data, size);
        if (done <= 0) {
            throwWriteError(file_, errno);
        }
        data += done;
        size -= done;
    }
}

void OutputFile::seek(qint64 position) {
    if (!file_.seek(position)) {
        throw RuntimeError(ErrorNumber::DeviceError, file_.fileName());
    }
}

void OutputFile::resize(qint64 size) {
    if (!file_.resize(size)) {
        throw RuntimeError(ErrorNumber::DeviceError, file_.fileName());
    }
}

void OutputFile::sync() {
    // A file on something that cannot sync (a pipe, /dev/full) says EINVAL; there is nothing to wait for then.
    if (fsync(file_.handle()) != 0 && errno != EINVAL) {
        throwWriteError(file_, errno);
    }
}

} // namespace orvel
