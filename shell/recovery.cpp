#include "shell/recovery.h"

#include "platform/file_system.h"
#include "shell/ignore_errors.h"
#include "shell/paths.h"

#include <QDateTime>
#include <QFileInfo>
#include <QRegularExpression>

#include <algorithm>

namespace orvel {

namespace {

/// The time in a kept file's name, which sorts by age; empty for a file that was not kept by this class.
QString stampOf(const QString &fileName) {
    static const QRegularExpression stamp(QStringLiteral("\\.(\\d{8}-\\d{6}-\\d{3}-\\d{3})(\\.[^.]*)?$"));
    return stamp.match(fileName).captured(1);
}

QString extensionOf(const QFileInfo &file) {
    return file.suffix().isEmpty() ? QString() : u'.' + file.suffix();
}

} // namespace

Recovery::Recovery(FileSystem &files, const QString &programFolder)
    : files_(files), folder_(joined(programFolder, QStringLiteral("\\herstel"))) {}

QString Recovery::newPlace(const QString &path) const {
    const QFileInfo file(path);
    const QString stamp = QDateTime::currentDateTime().toString(QStringLiteral("yyyyMMdd-HHmmss-zzz"));
    const QString start = folder_ + u'/' + file.completeBaseName() + u'.' + stamp + u'-';
    for (int number = 0;; ++number) {
        const QString place = start + QStringLiteral("%1").arg(number, 3, 10, QLatin1Char('0')) + extensionOf(file);
        if (!files_.fileExists(place)) {
            return place;
        }
    }
}

QString Recovery::keep(const QString &path) {
    files_.makeFolder(folder_);
    const QString place = newPlace(path);
    files_.move(path, place);
    dropOldest(extensionOf(QFileInfo(path)));
    return place;
}

bool Recovery::keepCopy(const QString &path) {
    try {
        files_.makeFolder(folder_);
        files_.copy(path, newPlace(path));
    } catch (const RuntimeError &) {
        return false;
    }
    dropOldest(extensionOf(QFileInfo(path)));
    return true;
}

void Recovery::discard(const QString &kept) {
    ignoringErrors([&] { files_.remove(kept); });
}

void Recovery::dropOldest(const QString &extension) {
    QStringList names;
    ignoringErrors([&] { names = files_.list(folder_, u'*' + extension); });
    names.removeIf([](const QString &name) { return stampOf(name).isEmpty(); });
    std::sort(names.begin(), names.end(), [](const QString &a, const QString &b) { return stampOf(a) < stampOf(b); });
    while (names.size() > keptFiles) {
        const QString oldest = names.takeFirst();
        ignoringErrors([&] { files_.remove(folder_ + u'/' + oldest); });
    }
}

} // namespace orvel
