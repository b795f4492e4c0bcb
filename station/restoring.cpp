#include "station/restoring.h"

#include "platform/file_system.h"
#include "platform/prompts.h"
#include "platform/runtime_error.h"
#include "station/paths.h"

#include <QObject>

namespace orvel {

namespace {

QString folderName(KeptKind kind) {
    switch (kind) {
    case KeptKind::Take:
        return QStringLiteral("temp");
    case KeptKind::VoiceTrack:
        return QStringLiteral("ok");
    case KeptKind::Playlist:
        break;
    }
    return QStringLiteral("new");
}

/// Where people look for a kind.
QString placeName(KeptKind kind) {
    switch (kind) {
    case KeptKind::Take:
        return QObject::tr("bij de opnamen");
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

Restoring::Result Restoring::putBack(const KeptFile &kept) {
    const QString place = placeName(kept.kind);
    const QString folder = joined(context_.programFolder, u'\\' + folderName(kept.kind));
    const QString takeRuns = QObject::tr("Er loopt een opname. Zet terug als die gestopt is.");
    if (context_.takeRuns()) {
        return {false, false, takeRuns};
    }
    const bool replaces = context_.files.fileExists(inFolder(folder, kept.name));
    const QString question = QObject::tr("%1 staat al %2. Wilt U dat vervangen ?\n\nWat er nu staat, blijft bewaard "
                                         "en kan ook weer teruggezet worden.");
    if (replaces && !context_.prompts.ask(question.arg(place.at(0).toUpper() + place.mid(1), kept.name),
                                          QObject::tr("Herstellen"), Preset::No)) {
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
