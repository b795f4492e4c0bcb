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
    const Preset preset = tellMissing() ? Preset::No : Preset::Yes;
    if (context_.platform.prompts.ask(QStringLiteral("Playlist Klaar ?"), QStringLiteral("Playlist overzetten"),
                                      preset)) {
        finishPlaylist();
    }
}

bool Completion::tellMissing() const {
    const TrackLook seen =
        VoiceTracks(context_.platform.files, context_.settings, context_.stations).look(context_.playlist);
    QStringList missing;
    QStringList lacking;
    for (int row = 0; row < context_.playlist.stepCount(); ++row) {
        const QString name = context_.playlist.value(row, AtrackColumn).toString();
        if (seen.missing.contains(row)) {
            missing << name;
        }
        if (const QStringList stations = seen.stations.value(row).lacking; !stations.isEmpty()) {
            lacking << QStringLiteral("%1 (%2)").arg(name, stations.join(QStringLiteral(", ")));
        }
    }
    QStringList sentences;
    if (!missing.isEmpty()) {
        sentences << QCoreApplication::translate(
                         "Completion", "Van deze stappen staat de voicetrack niet waar hij moet staan: %1.\nNeem ze "
                                       "opnieuw op voor de playlist klaar is.")
                         .arg(missing.join(QStringLiteral(", ")));
    }
    if (!lacking.isEmpty()) {
        sentences << QCoreApplication::translate("Completion",
                                                 "Deze stappen zijn nog niet voor alle stations ingesproken: %1.")
                         .arg(lacking.join(QStringLiteral(", ")));
    }
    if (!sentences.isEmpty()) {
        context_.platform.prompts.message(sentences.join(QStringLiteral("\n\n")), QStringLiteral("Playlist overzetten"),
                                          MessageIcon::Exclamation);
    }
    return !sentences.isEmpty();
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
