#include "platform/qt/disk_sync.h"

#include <QFile>
#include <QStorageInfo>

#include <cstdio>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace orvel {

bool syncFile(int handle) {
    return ::fsync(handle) == 0;
}

void syncFolder(const QString &folder) {
    const int handle = ::open(QFile::encodeName(folder).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (handle >= 0) {
        ::fsync(handle);
        ::close(handle);
    }
}

bool replaceFile(const QString &source, const QString &target) {
    return std::rename(QFile::encodeName(source).constData(), QFile::encodeName(target).constData()) == 0;
}

QFileDevice::Permissions newFilePermissions() {
    const mode_t mask = ::umask(0);
    ::umask(mask);
    QFileDevice::Permissions permissions = QFileDevice::ReadOwner | QFileDevice::WriteOwner;
    permissions.setFlag(QFileDevice::ReadGroup, (mask & S_IRGRP) == 0);
    permissions.setFlag(QFileDevice::WriteGroup, (mask & S_IWGRP) == 0);
    permissions.setFlag(QFileDevice::ReadOther, (mask & S_IROTH) == 0);
    permissions.setFlag(QFileDevice::WriteOther, (mask & S_IWOTH) == 0);
    return permissions;
}

bool isFull(const QString &folder) {
    return QStorageInfo(folder).bytesAvailable() == 0;
}

} // namespace orvel
