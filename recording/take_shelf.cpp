#include "recording/take_shelf.h"

#include "platform/file_system.h"
#include "platform/runtime_error.h"
#include "station/ignore_errors.h"
#include "station/paths.h"
#include "station/places.h"
#include "station/recovery.h"

#include <QDateTime>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>

namespace orvel {

namespace {

constexpr qint64 shelfWavHeader = 44; // bytes
constexpr qint64 bytesPerSecond = 88200;

bool hasShelf(const Take &take) {
    return take.kind == Take::Kind::Playlist && !take.name().isEmpty();
}

} // namespace

std::optional<TakeShelf::Shelf> TakeShelf::read(const QString &name) const {
    QByteArray text;
    ignoringErrors([&] {
        if (files_.fileExists(places_.shelf(name))) {
            text = files_.read(places_.shelf(name));
        }
    });
    const QJsonDocument document = QJsonDocument::fromJson(text);
    if (!document.isObject()) {
        return {};
    }
    const QJsonObject object = document.object();
    Shelf shelf{object[QStringLiteral("playlist")].toString(),
                object[QStringLiteral("stap")].toInt(),
                object[QStringLiteral("current")].toInt(),
                {}};
    const QJsonArray takes = object[QStringLiteral("takes")].toArray();
    for (const auto &value : takes) {
        const QJsonObject entry = value.toObject();
        shelf.entries.push_back({entry[QStringLiteral("number")].toInt(), entry[QStringLiteral("begun")].toString(),
                                 entry[QStringLiteral("filed")].toBool()});
    }
    return shelf;
}

TakeShelf::Shelf TakeShelf::shelfOf(const Take &take) const {
    const auto shelf = read(take.name());
    const bool isOurs = shelf && shelf->playlist == take.step.playlist && shelf->stap == take.step.stap;
    return isOurs ? *shelf : Shelf{take.step.playlist, take.step.stap, 0, {}};
}

void TakeShelf::write(const QString &name, const Shelf &shelf) {
    QJsonArray takes;
    for (const Entry &entry : shelf.entries) {
        takes.append(QJsonObject{{QStringLiteral("number"), entry.number},
                                 {QStringLiteral("begun"), entry.begun},
                                 {QStringLiteral("filed"), entry.isFiled}});
    }
    files_.write(places_.shelf(name), QJsonDocument(QJsonObject{{QStringLiteral("playlist"), shelf.playlist},
                                                                {QStringLiteral("stap"), shelf.stap},
                                                                {QStringLiteral("current"), shelf.current},
                                                                {QStringLiteral("takes"), takes}})
                                          .toJson());
}

/// The target has the source's content, which keeps its own name.
void TakeShelf::replace(const QString &source, const QString &target) {
    if (files_.fileExists(target)) {
        files_.remove(target);
    }
    files_.link(source, target);
}

std::int32_t TakeShelf::lengthOf(const QString &wav) const {
    qint64 size = shelfWavHeader;
    ignoringErrors([&] { size = files_.fileSize(wav); });
    return static_cast<std::int32_t>(std::max<qint64>(size - shelfWavHeader, 0) * 1000 / bytesPerSecond);
}

std::vector<ShelvedTake> TakeShelf::takes(const Take &take) const {
    std::vector<ShelvedTake> found;
    if (!hasShelf(take)) {
        return found;
    }
    ignoringErrors([&] {
        const Shelf shelf = shelfOf(take);
        const QString onDesk = places_.take(take.name());
        for (const Entry &entry : shelf.entries) {
            const bool isCurrent = entry.number == shownOf(shelf);
            const QString shelved = places_.shelvedTake(take.name(), entry.number);
            const bool isOnDesk = entry.number == shelf.current && files_.fileExists(onDesk);
            if (isOnDesk || files_.fileExists(shelved)) {
                found.push_back({entry.number,
                                 QDateTime::fromString(entry.begun, Qt::ISODate).toString(QStringLiteral("HH:mm")),
                                 lengthOf(isOnDesk ? onDesk : shelved), entry.isFiled, isCurrent});
            }
        }
    });
    return found;
}

void TakeShelf::add(const Take &take) {
    if (!hasShelf(take)) {
        return;
    }
    if (const auto other = read(take.name());
        other && (other->playlist != take.step.playlist || other->stap != take.step.stap)) {
        clear(take.name(), *other);
    }
    files_.makeFolder(places_.takesFolder());
    Shelf shelf = shelfOf(take);
    const int number = addEntry(shelf).number;
    replace(places_.take(take.name()), places_.dryTake(take.name(), number));
    shelf.current = number;
    write(take.name(), shelf);
}

TakeShelf::Entry &TakeShelf::addEntry(Shelf &shelf) {
    const int number = shelf.entries.empty() ? 1 : shelf.entries.back().number + 1;
    return shelf.entries.emplace_back(Entry{number, QDateTime::currentDateTime().toString(Qt::ISODate), false});
}

int TakeShelf::shownOf(const Shelf &shelf) {
    const auto filed =
        std::find_if(shelf.entries.begin(), shelf.entries.end(), [](const Entry &entry) { return entry.isFiled; });
    return shelf.current > 0 || filed == shelf.entries.end() ? shelf.current : filed->number;
}

void TakeShelf::putAside(const Take &take) {
    if (!hasShelf(take)) {
        return;
    }
    files_.makeFolder(places_.takesFolder());
    Shelf shelf = shelfOf(take);
    if (shelf.current == 0) {
        shelf.current = addEntry(shelf).number;
        write(take.name(), shelf);
    }
    replace(places_.take(take.name()), places_.shelvedTake(take.name(), shelf.current));
}

void TakeShelf::filed(const Take &take) {
    if (!hasShelf(take)) {
        return;
    }
    putAside(take);
    Shelf shelf = shelfOf(take);
    for (Entry &entry : shelf.entries) {
        entry.isFiled = entry.number == shelf.current;
    }
    shelf.current = 0;
    write(take.name(), shelf);
}

void TakeShelf::choose(const Take &take, int number) {
    Shelf shelf = shelfOf(take);
    const auto chosen = std::find_if(shelf.entries.begin(), shelf.entries.end(),
                                     [number](const Entry &entry) { return entry.number == number; });
    if (!hasShelf(take) || chosen == shelf.entries.end()) {
        throw RuntimeError(ErrorNumber::SubscriptOutOfRange);
    }
    const QString onDesk = places_.take(take.name());
    const bool isFiled = chosen->isFiled;
    if (number == shownOf(shelf)) {
        return;
    }
    if (files_.fileExists(onDesk)) {
        putAside(take);
        shelf = shelfOf(take);
    }
    if (isFiled && files_.fileExists(onDesk)) {
        files_.remove(onDesk);
    } else if (!isFiled) {
        // Beside its place first, so that at no moment half a take stands there.
        const QString next = places_.shelvedTake(take.name(), 0);
        replace(places_.shelvedTake(take.name(), number), next);
        files_.move(next, onDesk);
    }
    shelf.current = isFiled ? 0 : number;
    write(take.name(), shelf);
}

QString TakeShelf::dry(const Take &take) const {
    QString found;
    ignoringErrors([&] {
        const int current = hasShelf(take) ? shownOf(shelfOf(take)) : 0;
        for (const QString &path :
             {places_.dryTake(take.name(), current), places_.packedDryTake(take.name(), current)}) {
            if (current > 0 && files_.fileExists(path)) {
                found = path;
            }
        }
    });
    return found;
}

QString TakeShelf::packed(const QString &dry) {
    return dry.chopped(QStringLiteral(".wav").size()) + QStringLiteral(".flac");
}

std::vector<QString> TakeShelf::unpacked() const {
    std::vector<QString> paths;
    ignoringErrors([&] {
        for (const QString &name : files_.list(places_.takesFolder(), QStringLiteral("*.droog.wav"))) {
            paths.push_back(inFolder(places_.takesFolder(), name));
        }
    });
    return paths;
}

void TakeShelf::clearFinished(const QString &newFolder) {
    const QString extension = QStringLiteral(".takes");
    QStringList shelves;
    // In a folder that is away, a share that is not mounted say, no playlist is finished.
    ignoringErrors([&] {
        if (files_.folderExists(newFolder)) {
            shelves = files_.list(places_.takesFolder(), u'*' + extension);
        }
    });
    for (const QString &file : std::as_const(shelves)) {
        const QString name = file.chopped(extension.size());
        if (const auto shelf = read(name); shelf && !files_.fileExists(inFolder(newFolder, shelf->playlist))) {
            ignoringErrors([&] { clear(name, *shelf); });
        }
    }
}

/// What was recorded goes to recovery; what was made of it can be made again.
void TakeShelf::clear(const QString &name, const Shelf &shelf) {
    for (const Entry &entry : shelf.entries) {
        for (const QString &dry : {places_.dryTake(name, entry.number), places_.packedDryTake(name, entry.number)}) {
            ignoringErrors([&] { keepDry(name, dry); });
        }
        ignoringErrors([&] {
            const QString shelved = places_.shelvedTake(name, entry.number);
            if (files_.fileExists(shelved)) {
                files_.remove(shelved);
            }
        });
    }
    files_.remove(places_.shelf(name));
}

void TakeShelf::keepDry(const QString &name, const QString &path) {
    if (!files_.fileExists(path)) {
        return;
    }
    // Under the name that people know it by.
    const QString named =
        takeFile(places_.programFolder(), QStringLiteral("\\takes\\"), name, path.mid(path.lastIndexOf(u'.')));
    files_.move(path, named);
    recovery_.keep(named);
}

} // namespace orvel
