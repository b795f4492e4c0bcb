#include "station/journal.h"

#include "platform/file_system.h"
#include "station/ignore_errors.h"
#include "station/places.h"

#include <QJsonDocument>
#include <QJsonObject>

#include <array>

namespace orvel {

namespace {

constexpr std::array<const char *, 3> phaseNames = {"recording", "kept", "filing"};
const QString journalExtension = QStringLiteral(".take");

QString phaseName(JournalEntry::Phase phase) {
    return QString::fromLatin1(phaseNames.at(static_cast<std::size_t>(phase)));
}

std::optional<JournalEntry::Phase> phaseOf(const QString &name) {
    for (std::size_t i = 0; i < phaseNames.size(); ++i) {
        if (name == QLatin1String(phaseNames.at(i))) {
            return static_cast<JournalEntry::Phase>(i);
        }
    }
    return {};
}

QByteArray toJson(const JournalEntry &entry) {
    return QJsonDocument(QJsonObject{{QStringLiteral("name"), entry.name},
                                     {QStringLiteral("playlist"), entry.playlist},
                                     {QStringLiteral("stap"), entry.stap},
                                     {QStringLiteral("phase"), phaseName(entry.phase)},
                                     {QStringLiteral("markBefore"), entry.markBefore},
                                     {QStringLiteral("target"), entry.target},
                                     {QStringLiteral("begun"), entry.begun}})
        .toJson();
}

std::optional<JournalEntry> fromJson(const QByteArray &text) {
    const QJsonObject object = QJsonDocument::fromJson(text).object();
    const auto phase = phaseOf(object[QStringLiteral("phase")].toString());
    if (!phase) {
        return {};
    }
    return JournalEntry{object[QStringLiteral("name")].toString(),     object[QStringLiteral("playlist")].toString(),
                        object[QStringLiteral("stap")].toInt(),        *phase,
                        object[QStringLiteral("markBefore")].toBool(), object[QStringLiteral("target")].toString(),
                        object[QStringLiteral("begun")].toString()};
}

} // namespace

void Journal::write(const JournalEntry &entry) {
    files_.write(places_.journalEntry(entry.name), toJson(entry));
}

void Journal::remove(const QString &name) {
    ignoringErrors([&] {
        if (files_.fileExists(places_.journalEntry(name))) {
            files_.remove(places_.journalEntry(name));
        }
    });
}

std::optional<JournalEntry> Journal::entry(const QString &name) const {
    std::optional<JournalEntry> found;
    ignoringErrors([&] {
        if (files_.fileExists(places_.journalEntry(name))) {
            found = fromJson(files_.read(places_.journalEntry(name)));
        }
    });
    // A file that somebody renamed tells of another take.
    return found && found->name == name ? found : std::nullopt;
}

std::vector<JournalEntry> Journal::entries() const {
    QStringList names;
    ignoringErrors([&] { names = files_.list(places_.journalFolder(), u'*' + journalExtension); });
    std::vector<JournalEntry> all;
    for (const QString &name : std::as_const(names)) {
        if (auto found = entry(name.chopped(journalExtension.size()))) {
            all.push_back(std::move(*found));
        }
    }
    return all;
}

} // namespace orvel
