#include "platform/storage/leftovers.h"

#include <QCryptographicHash>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QSysInfo>

namespace orvel {

namespace {

/// What is written at the moment, here or by another program of this user, is younger.
constexpr qint64 oldSeconds = 600;

QString owner() {
    const QByteArray who = QSysInfo::machineUniqueId() + QDir::homePath().toUtf8();
    return QString::fromLatin1(QCryptographicHash::hash(who, QCryptographicHash::Sha1).toHex().left(8));
}

} // namespace

QString Leftovers::nameOf(const QByteArray &random) {
    return QStringLiteral(".orvel-%1-%2.tmp").arg(owner(), QString::fromLatin1(random));
}

void Leftovers::remember(const QString &path) {
    const QMutexLocker lock(&mutex_);
    paths_.insert(path);
}

void Leftovers::sweep(const QString &folder) {
    QSet<QString> mine;
    bool isFirst = false;
    {
        const QMutexLocker lock(&mutex_);
        for (const QString &path : std::as_const(paths_)) {
            if (path.section(u'/', 0, -2) == folder) {
                mine.insert(path);
            }
        }
        isFirst = !sweptFolders_.contains(folder);
        sweptFolders_.insert(folder);
    }
    // Without the lock: another folder's disk may hang.
    for (const QString &path : std::as_const(mine)) {
        if (QFile::remove(path) || !QFile::exists(path)) {
            const QMutexLocker lock(&mutex_);
            paths_.remove(path);
        }
    }
    if (isFirst) {
        removeOld(folder);
    }
}

void Leftovers::removeOld(const QString &folder) {
    const QDir::Filters all = QDir::Files | QDir::Hidden | QDir::System;
    const QFileInfoList files = QDir(folder).entryInfoList({nameOf("*")}, all);
    for (const QFileInfo &file : files) {
        if (file.lastModified().secsTo(QDateTime::currentDateTime()) > oldSeconds) {
            QFile::remove(file.filePath());
        }
    }
}

} // namespace orvel
