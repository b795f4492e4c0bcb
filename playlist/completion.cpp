#include "playlist/completion.h"

#include "platform/file_system.h"
#include "platform/platform.h"
#include "platform/prompts.h"
#include "playlist/current_step.h"
#include "playlist/playlist.h"
#include "playlist/voice_tracks.h"
#include "settings/settings.h"
#include "station/paths.h"
#include "station/recovery.h"

#include <QCoreApplication>

namespace orvel {

void Completion::CheckLijst() {
    if (!context_.playlist.isOpen()) {
        return;
    }
    context_.refresh();
    const int unfinished = context_.playlist.firstUnfinished();
    if (unfinished >= 0) {
        context_.showRow(unfinished);
        // The selection may have stood there already: its labels are shown anew all the same.
        showTimes(context_.playlist, unfinished, context_.step);
        context_.changed();
        return;
    }
    tellMissing();
    if (context_.platform.prompts.ask(QStringLiteral("Playlist Klaar ?"), QStringLiteral("Playlist overzetten"))) {
        finishPlaylist();
    }
}

void Completion::tellMissing() const {
    QStringList names;
    const QSet<int> missing = VoiceTracks(context_.platform.files, context_.settings).missing(context_.playlist);
    for (int row = 0; row < context_.playlist.stepCount(); ++row) {
        if (missing.contains(row)) {
            names << context_.playlist.value(row, AtrackColumn).toString();
        }
    }
    if (!names.isEmpty()) {
        context_.platform.prompts.message(
            QCoreApplication::translate("Completion",
                                        "Van deze stappen staat de voicetrack niet waar hij moet staan: %1.\nNeem ze "
                                        "opnieuw op voor de playlist klaar is.")
                .arg(names.join(QStringLiteral(", "))),
            QStringLiteral("Playlist overzetten"), MessageIcon::Exclamation);
    }
}

void Completion::finishPlaylist() {
    FileSystem &files = context_.platform.files;
    const QString name = context_.playlist.fileName();
    context_.closePlaylist();
    const QString toDo = inFolder(context_.settings.NewPath, name);
    if (!context_.settings.ServerMode) {
        const QString finished = inFolder(context_.settings.OkPath, name);
        if (files.fileExists(finished)) {
            if (const QString problem = context_.recovery.keepCopy(finished); !problem.isEmpty()) {
                context_.tell(problem);
            }
        }
        files.copy(toDo, finished);
    }
    files.remove(toDo);
    context_.refreshLists();
}

} // namespace orvel
