#include "station/restoring.h"

#include "platform/file_system.h"
#include "platform/prompts.h"
#include "platform/runtime_error.h"
#include "station/paths.h"
#include "station/places.h"

#include <QFileInfo>
#include <QObject>

namespace orvel {

namespace {

QString folderOf(KeptKind kind, const Places &places) {
    switch (kind) {
    case KeptKind::Take:
        return places.tempFolder();
    case KeptKind::VoiceTrack:
        return places.okFolder();
    case KeptKind::Playlist:
        break;
    }
    return places.newFolder();
}

/// Where people look for a kind.
QString placeName(KeptKind kind) {
    switch (kind) {
    case KeptKind::Take:
        return QObject::tr("bij de opnames");
    case KeptKind::VoiceTrack:
        return QObject::tr("bij de voicetracks");
    case KeptKind::Playlist:
        break;
    }
    return QObject::tr("bij de te bewerken playlists");
}

} // namespace

QString kindName(KeptKind kind) {
    switch (kind) {
    case KeptKind::Take:
        return QObject::tr("Opname");
    case KeptKind::VoiceTrack:
        return QObject::tr("Voicetrack");
    case KeptKind::Playlist:
        break;
    }
    return QObject::tr("Playlist");
}

QString takeNameOf(const KeptFile &kept) {
    const QString name = QFileInfo(kept.name).completeBaseName();
    const QString raw = QStringLiteral(".ruw");
    return name.endsWith(raw) ? name.chopped(raw.size()) : name;
}

Restoring::Result Restoring::putBack(const KeptFile &file) {
    KeptFile kept = file;
    if (kept.kind == KeptKind::Take) {
        kept.name = takeNameOf(file) + QStringLiteral(".wav");
    }
    const QString place = placeName(kept.kind);
    const QString folder = folderOf(kept.kind, Places(context_.programFolder));
    const QString takeRuns = QObject::tr("Er loopt een opname. Zet terug als die gestopt is.");
    if (context_.takeRuns()) {
        return {false, false, takeRuns};
    }
    const bool replaces = context_.files.fileExists(inFolder(folder, kept.name));
    const QString question = QObject::tr("%1 staat al %2. Wilt U dat vervangen ?\n\nWat er nu staat, blijft bewaard "
                                         "en kan ook weer teruggezet worden.");
    if (replaces &&
        !context_.prompts.ask(question.arg(place.at(0).toUpper() + place.mid(1), kept.name), QObject::tr("Herstellen"),
                              Preset::No, {QObject::tr("&Vervang"), QObject::tr("&Laat staan")})) {
        return {false, false, QObject::tr("Er is niets teruggezet.")};
    }
    if (context_.takeRuns()) { // one was started while the question stood open
        return {false, false, takeRuns};
    }
    try {
        context_.recovery.putBack(kept, folder);
    } catch (const RuntimeError &error) {
        return {false, false, QObject::tr("%1 kon niet worden teruggezet: %2.").arg(kept.name, error.description())};
    }
    const QString sentence = QObject::tr("%1 staat weer %2.").arg(kept.name, place);
    return {true, replaces, replaces ? sentence + u' ' + QObject::tr("Wat daar stond, is nu bewaard.") : sentence};
}

} // namespace orvel
