#include "windows/completion.h"

#include "platform/file_system.h"
#include "platform/prompts.h"
#include "station/paths.h"

namespace orvel {

void Completion::CheckLijst() {
    if (!playlist_.isOpen()) {
        return;
    }
    grid_.refresh();
    const int unfinished = playlist_.firstUnfinished();
    if (unfinished >= 0) {
        grid_.selectRow(unfinished);
        // The selection may have stood there already: its labels are shown anew all the same.
        grid_.dbgLijst_RowColChange();
        return;
    }
    if (prompts_.ask(QStringLiteral("Playlist Klaar ?"), QStringLiteral("Playlist overzetten"))) {
        finishPlaylist();
    }
}

void Completion::finishPlaylist() {
    const QString name = playlist_.fileName();
    grid_.closePlaylist();
    const QString toDo = inFolder(settings_.NewPath, name);
    if (!settings_.ServerMode) {
        files_.copy(toDo, inFolder(settings_.OkPath, name));
    }
    files_.remove(toDo);
    lists_.refreshNew();
    lists_.refreshOk();
}

} // namespace orvel
