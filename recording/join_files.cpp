#include "recording/join_files.h"

#include "platform/file_system.h"
#include "platform/runtime_error.h"
#include "playlist/field_values.h"
#include "playlist/playlist.h"
#include "playlist/step_types.h"
#include "recording/catalogues.h"
#include "recording/music_files.h"
#include "recording/take_file.h"
#include "settings/settings.h"
#include "station/ignore_errors.h"

namespace orvel {

JoinParts JoinFiles::around(int row) const {
    const Playlist &playlist = sources_.playlist;
    // The neighbours are those whose times the desk shows: by number, not by row.
    const std::int32_t stap = toWholeNumber(playlist.value(row, StapColumn));
    return {item(stap - 2, playlist.outtro(stap - 1)), takeOf(row), item(stap, playlist.intro(stap + 1))};
}

QString JoinFiles::takeOf(int row) const {
    QString path;
    ignoringErrors([&] {
        const Playlist &playlist = sources_.playlist;
        const QString name = toText(playlist.value(row, AtrackColumn));
        if (toWholeNumber(playlist.value(row, TypeColumn)) == PresStep) {
            path = audibleTake(playlist, row, name, sources_.places, sources_.settings);
        }
    });
    return !path.isEmpty() && sources_.files.fileExists(path) ? path : QString();
}

std::optional<JoinItem> JoinFiles::item(int row, std::int32_t talkMs) const {
    const Playlist &playlist = sources_.playlist;
    if (row < 0 || row >= playlist.stepCount()) {
        return {};
    }
    JoinItem item;
    item.talkMs = talkMs;
    item.title = asStored(playlist.value(row, stepColumn("Titel")));
    if (item.title.isEmpty()) {
        item.title = tr("stap %1").arg(row + 1);
    }
    const QVariant type = playlist.value(row, TypeColumn);
    if (type == PresStep) {
        item.path = takeOf(row);
        item.problem = item.path.isEmpty() ? tr("'%1' is nog niet opgenomen.").arg(item.title) : QString();
    } else if (type == TrackStep || type == JingleStep) {
        findMusicOf(row, type.toInt(), item);
    } else {
        item.problem = tr("'%1' heeft geen geluidsbestand.").arg(item.title);
    }
    return item;
}

void JoinFiles::findMusicOf(int row, int type, JoinItem &item) const {
    if (!sources_.settings.Network) {
        item.problem = tr("Geen bestand van '%1': de muziekdatabase staat uit in de instellingen.").arg(item.title);
        return;
    }
    RecordSet *records = nullptr;
    try {
        records = &freshRecords(sources_.catalogues, type);
    } catch (const RuntimeError &) {
        item.problem =
            tr("Geen bestand van '%1': %2 kon niet worden geopend.").arg(item.title, Catalogues::fileName(type));
        return;
    }
    ignoringErrors([&] {
        const std::int32_t track = toWholeNumber(sources_.playlist.value(row, TrackidColumn));
        const std::optional<FoundMusic> found = findMusic(*records, type, track, sources_.drives);
        if (found && sources_.files.fileExists(found->path)) {
            item.path = found->path;
        }
    });
    if (item.path.isEmpty()) {
        item.problem = tr("Geen bestand van '%1' gevonden.").arg(item.title);
    }
}

} // namespace orvel
