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
    const QString place = folderName(kept.kind);
    const QString folder = joined(context_.programFolder, u'\\' + place);
    const QString takeRuns = QObject::tr("Er loopt een opname. Zet terug als die gestopt is.");
    if (context_.takeRuns()) {
        return {false, false, takeRuns};
    }
    const bool replaces = context_.files.fileExists(inFolder(folder, kept.name));
    const QString question = QObject::tr("In de map %1 staat al een bestand %2. Wilt U het vervangen ?\n\nWat er nu "
                                         "staat, blijft bewaard in de map herstel.");
    if (replaces && !context_.prompts.ask(question.arg(place, kept.name), QObject::tr("Herstellen"), Preset::No)) {
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
    const QString sentence = QObject::tr("%1 is teruggezet in de map %2.").arg(kept.name, place);
    return {true, replaces,
            replaces ? sentence + u' ' + QObject::tr("Wat daar stond, is nu bewaard in de map herstel.") : sentence};
}

} // namespace orvel
