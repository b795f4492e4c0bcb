#include "station/recovery.h"

#include "platform/file_system.h"
#include "station/ignore_errors.h"
#include "station/paths.h"
#include "station/places.h"

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

const QString stampForm = QStringLiteral("yyyyMMdd-HHmmss-zzz");
const QString playlistExtension = QStringLiteral("mdb");

/// A file that was kept by this class, by what its name tells.
struct Kept {
    QString name;
    /// Counts up over the whole folder; 0 for the files of before it was counted.
    qint64 number;
    QString stamp;
    QString originalName;
};

/// Clocks are set back and forth, so that the number tells the order of keeping; the stamp is for people, and for files
/// without a number. Names of another form are somebody else's.
std::optional<Kept> keptFile(const QString &name) {
    static const QRegularExpression form(QStringLiteral("\\.(\\d{8}-\\d{6}-\\d{3}-(?:\\d{3}|(\\d{6,9})))(\\.[^.]*)?$"));
    const QRegularExpressionMatch match = form.match(name);
    if (!match.hasMatch()) {
        return {};
    }
    return Kept{name, match.captured(2).toLongLong(), match.captured(1),
                name.left(match.capturedStart()) + match.captured(3)};
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

std::optional<KeptKind> kindOf(const QString &name) {
    if (isOfKind(name, QStringLiteral("wav"))) {
        return KeptKind::Take;
    }
    if (isOfKind(name, QStringLiteral("mp3"))) {
        return KeptKind::VoiceTrack;
    }
    return isOfKind(name, playlistExtension) ? std::optional(KeptKind::Playlist) : std::nullopt;
}

} // namespace

Recovery::Recovery(FileSystem &files, const QString &programFolder)
    : files_(files), folder_(Places(programFolder).recoveryFolder()) {}

QString Recovery::newPlace(const QString &path) const {
    qint64 number = 0;
    for (const Kept &kept : filesKeptIn(files_, folder_)) {
        number = std::max(number, kept.number);
    }
    const QFileInfo file(path);
    const QString stamp = QDateTime::currentDateTime().toString(stampForm);
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
    return keepSparing(path, {});
}

QString Recovery::keepSparing(const QString &path, const QString &spared) {
    files_.makeFolder(folder_);
    const QString place = newPlace(path);
    files_.move(path, place);
    dropOldest(place, spared);
    return place;
}

QString Recovery::keepCopy(const QString &path) {
    const auto notKept = [&](const QString &why) {
        return QObject::tr("Van %1 is geen kopie bewaard in de map herstel (%2).").arg(QFileInfo(path).fileName(), why);
    };
    const auto kind = kindOf(path);
    const bool isSound = kind == KeptKind::Take || kind == KeptKind::VoiceTrack;
    try {
        if (!isSound && files_.fileSize(path) > largestCopy) {
            return notKept(QObject::tr("het bestand is te groot"));
        }
        files_.makeFolder(folder_);
        const QString place = newPlace(path);
        if (isSound) {
            files_.link(path, place);
        } else {
            files_.copy(path, place);
        }
        dropOldest(place);
    } catch (const RuntimeError &error) {
        return notKept(error.description());
    }
    return {};
}

std::vector<KeptFile> Recovery::kept() const {
    std::vector<Kept> found = filesKeptIn(files_, folder_);
    std::sort(found.begin(), found.end(), [](const Kept &a, const Kept &b) { return isOlder(b, a); });
    std::vector<KeptFile> kept;
    for (const Kept &file : found) {
        if (const auto kind = kindOf(file.name)) {
            kept.push_back({inFolder(folder_, file.name), file.originalName, *kind,
                            QDateTime::fromString(file.stamp.left(stampForm.size()), stampForm)});
        }
    }
    return kept;
}

void Recovery::putBack(const KeptFile &kept, const QString &folder) {
    const QString target = inFolder(folder, kept.name);
    const QString replaced = files_.fileExists(target) ? keepSparing(target, kept.path) : QString();
    try {
        files_.move(kept.path, target);
    } catch (const RuntimeError &) {
        if (!replaced.isEmpty()) {
            ignoringErrors([&] { files_.move(replaced, target); });
        }
        throw;
    }
}

void Recovery::discard(const QString &kept) {
    ignoringErrors([&] { files_.remove(kept); });
}

void Recovery::dropOldest(const QString &newest, const QString &spared) {
    const QFileInfo last(newest);
    const QString sparedName = QFileInfo(spared).fileName();
    std::vector<Kept> others = filesKeptIn(files_, folder_);
    std::erase_if(others, [&](const Kept &kept) {
        return kept.name == last.fileName() || kept.name == sparedName || !isOfKind(kept.name, last.suffix());
    });
    std::sort(others.begin(), others.end(), isOlder);
    const std::size_t most = isOfKind(newest, playlistExtension) ? keptPlaylists : keptFiles;
    for (std::size_t i = 0; i + most - 1 < others.size(); ++i) {
        ignoringErrors([&] { files_.remove(folder_ + u'/' + others[i].name); });
    }
}

} // namespace orvel
