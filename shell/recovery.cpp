#include "shell/recovery.h"

#include "platform/file_system.h"
#include "shell/ignore_errors.h"
#include "shell/paths.h"

#include <QDateTime>
#include <QFileInfo>

#include <algorithm>

namespace orvel {

namespace {

const QString stampFormat = QStringLiteral("yyyyMMdd-HHmmss-zzz");

/// The time in a kept file's name, which sorts by age.
QString stampOf(const QString &fileName) {
    return QFileInfo(fileName).completeBaseName().right(stampFormat.size() + 4);
}

} // namespace

Recovery::Recovery(FileSystem &files, const QString &programFolder)
    : files_(files), folder_(joined(programFolder, QStringLiteral("\\herstel"))) {}

QString Recovery::newPlace(const QString &path) const {
    const QFileInfo file(path);
    const QString stamp = QDateTime::currentDateTime().toString(stampFormat);
    for (int copy = 0;; ++copy) {
        const QString place = QStringLiteral("%1/%2.%3-%4.%5")
                                  .arg(folder_, file.completeBaseName(), stamp)
                                  .arg(copy, 3, 10, QLatin1Char('0'))
                                  .arg(file.suffix());
        if (!files_.fileExists(place)) {
            return place;
        }
    }
}

QString Recovery::keep(const QString &path) {
    files_.makeFolder(folder_);
    const QString place = newPlace(path);
    files_.move(path, place);
    dropOldest(QFileInfo(path).suffix());
    return place;
}

void Recovery::keepCopy(const QString &path) {
    ignoringErrors([&] {
        files_.makeFolder(folder_);
        files_.copy(path, newPlace(path));
        dropOldest(QFileInfo(path).suffix());
    });
}

void Recovery::discard(const QString &kept) {
    ignoringErrors([&] { files_.remove(kept); });
}

void Recovery::dropOldest(const QString &extension) {
    QStringList names = files_.list(folder_, QStringLiteral("*.") + extension);
    std::sort(names.begin(), names.end(), [](const QString &a, const QString &b) { return stampOf(a) < stampOf(b); });
    while (names.size() > keptFiles) {
        const QString oldest = names.takeFirst();
        ignoringErrors([&] { files_.remove(folder_ + u'/' + oldest); });
    }
}

} // namespace orvel
