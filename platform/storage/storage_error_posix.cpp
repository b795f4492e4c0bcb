#include "platform/storage/storage_error.h"

#include <cerrno>

namespace orvel {

namespace {

ErrorNumber numberOf(int code, StorageSubject subject) {
    const bool isName = subject == StorageSubject::Name;
    switch (code) {
    case ENOENT:
        return isName ? ErrorNumber::FileNotFound : ErrorNumber::DiskNotReady; // the share forgot an open file
    case ENOTDIR:
        return ErrorNumber::PathNotFound;
    case EEXIST:
        return ErrorNumber::FileExists;
    case EACCES:
    case EPERM:
    case EROFS:
    case EBUSY:
    case ETXTBSY:
        return ErrorNumber::PermissionDenied;
    // What a presenter calls a full disk: no room, no quota left, or a file that may not grow.
    case ENOSPC:
    case EDQUOT:
    case EFBIG:
        return ErrorNumber::DiskFull;
    case ENAMETOOLONG:
    case EINVAL:
    case EILSEQ:
        return isName ? ErrorNumber::BadFileName : ErrorNumber::DeviceError;
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
        return isName ? ErrorNumber::PathAccess : ErrorNumber::DeviceError;
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

} // namespace

RuntimeError storageError(int code, const QString &path, StorageSubject subject) {
    const ErrorNumber number = numberOf(code, subject);
    return RuntimeError(number, path, detailOf(number));
}

bool meansNoSync(int code) {
    return code == EINVAL || code == ENOSYS || code == ENOTSUP;
}

} // namespace orvel
