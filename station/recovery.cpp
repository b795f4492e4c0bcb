#include "station/recovery.h"

#include "platform/file_system.h"
#include "station/ignore_errors.h"
#include "station/paths.h"

#include <QDateTime>
#include <QFileInfo>
#include <QObject>
#include <QRegularExpression>

#include <algorithm>
#include <optional>
#include <utility>
#include <vector>

namespace orvel {

namespace {

/// A file that was kept by this class, by what its name tells.
struct Kept {
    QString name;
    /// Counts up over the whole folder; 0 for the files of before it was counted.
    qint64 number;
    QString stamp;
};

/// Clocks are set back and forth, so that the number tells the order of keeping; the stamp is for people, and for files
/// without a number. Names of another form are somebody else's.
std::optional<Kept> keptFile(const QString &name) {
    static const QRegularExpression form(QStringLiteral("\\.(\\d{8}-\\d{6}-\\d{3}-(?:\\d{3}|(\\d{6,9})))(\\.[^.]*)?$"));
    const QRegularExpressionMatch match = form.match(name);
    if (!match.hasMatch()) {
        return {};
    }
    return Kept{name, match.captured(2).toLongLong(), match.captured(1)};
}

bool isOlder(const Kept &a, const Kept &b) {
    return a.number != b.number ? a.number < b.number : a.stamp < b.stamp;
}

std::vector<Kept> filesKeptIn(const FileSystem &files, const QString &folder) {
    QStringList names;
    ignoringErrors([&] { names = files.list(folder, QStringLiteral("*")); });
    std::vector<Kept> kept;
    for (const QString &name : std::as_const(names)) {
        if (auto file = keptFile(name)) {
            kept.push_back(std::move(*file));
        }
    }
    return kept;
}

bool isOfKind(const QString &name, const QString &extension) {
    return QFileInfo(name).suffix().compare(extension, Qt::CaseInsensitive) == 0;
}

} // namespace

Recovery::Recovery(FileSystem &files, const QString &programFolder)
    : files_(files), folder_(joined(programFolder, QStringLiteral("\\herstel"))) {}

QString Recovery::newPlace(const QString &path) const {
    qint64 number = 0;
    for (const Kept &kept : filesKeptIn(files_, folder_)) {
        number = std::max(number, kept.number);
    }
    const QFileInfo file(path);
    const QString stamp = QDateTime::currentDateTime().toString(QStringLiteral("yyyyMMdd-HHmmss-zzz"));
    const QString start = folder_ + u'/' + file.completeBaseName() + u'.' + stamp + u'-';
    const QString end = file.suffix().isEmpty() ? QString() : u'.' + file.suffix();
    for (;;) {
        const QString place = start + QStringLiteral("%1").arg(++number, 6, 10, QLatin1Char('0')) + end;
        if (!files_.fileExists(place)) {
            return place;
        }
    }
}

QString Recovery::keep(const QString &path) {
    files_.makeFolder(folder_);
    const QString place = newPlace(path);
    files_.move(path, place);
    dropOldest(place);
    return place;
}

QString Recovery::keepCopy(const QString &path) {
    const auto notKept = [&](const QString &why) {
        return QObject::tr("Van %1 is geen kopie bewaard in de map herstel (%2).").arg(QFileInfo(path).fileName(), why);
    };
    try {
        if (files_.fileSize(path) > largestCopy) {
            return notKept(QObject::tr("het bestand is te groot"));
        }
        files_.makeFolder(folder_);
        const QString place = newPlace(path);
        files_.copy(path, place);
        dropOldest(place);
    } catch (const RuntimeError &error) {
        return notKept(error.description());
    }
    return {};
}

void Recovery::discard(const QString &kept) {
    ignoringErrors([&] { files_.remove(kept); });
}

void Recovery::dropOldest(const QString &newest) {
    const QFileInfo last(newest);
    std::vector<Kept> others = filesKeptIn(files_, folder_);
    std::erase_if(
        others, [&](const Kept &kept) { return kept.name == last.fileName() || !isOfKind(kept.name, last.suffix()); });
    std::sort(others.begin(), others.end(), isOlder);
    for (std::size_t i = 0; i + keptFiles - 1 < others.size(); ++i) {
        ignoringErrors([&] { files_.remove(folder_ + u'/' + others[i].name); });
    }
}

} // namespace orvel
