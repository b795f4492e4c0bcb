#include "recording/preview.h"

#include "platform/file_system.h"
#include "platform/runtime_error.h"
#include "playlist/step_types.h"
#include "recording/catalogues.h"
#include "recording/music_files.h"
#include "station/checked.h"

#include <QObject>

namespace orvel {

std::optional<Previewed> Preview::load(int kind, std::int32_t track, WavePlayer &player) {
    if (!sources_.settings.Network || (kind != TrackStep && kind != JingleStep)) {
        return {};
    }
    Previewed shown;
    RecordSet *records = nullptr;
    try {
        records = &freshRecords(sources_.catalogues, kind);
    } catch (const RuntimeError &error) {
        stop(player);
        player.close(); // what is shown is not the track before
        shown.problem =
            QObject::tr("%1 kon niet worden geopend: %2.").arg(Catalogues::fileName(kind), error.description());
        shown.details = error.report();
        return shown;
    }
    const std::optional<FoundMusic> found = findMusic(*records, kind, track, sources_.drives);
    if (!found) {
        return {};
    }
    loadFile(*found, player, shown);
    shown.title = found->title;
    shown.description = found->description;
    return shown;
}

void Preview::loadFile(const FoundMusic &found, WavePlayer &player, Previewed &shown) {
    stop(player);
    try {
        player.setFileName(found.path);
    } catch (const RuntimeError &error) {
        const bool missing = !sources_.files.fileExists(found.path);
        shown.problem = (missing ? QObject::tr("Het bestand %1 werd niet gevonden.")
                                 : QObject::tr("Het bestand %1 is niet leesbaar."))
                            .arg(found.cataloguePath);
        shown.details = error.report();
        player.close();
    }
}

void Preview::play(WavePlayer &player) {
    stop(player);
    player.start();
}

void Preview::stop(WavePlayer &player) {
    isPaused_ = false;
    player.stop();
}

void Preview::pauseOrGoOn(WavePlayer &player) {
    if (isPaused_) {
        isPaused_ = false;
        player.resume();
    } else if (player.state() == WavePlayer::playing) {
        player.pause();
        isPaused_ = true;
    }
}

void Preview::seek(WavePlayer &player, std::int32_t position) const {
    if (isPaused_) {
        player.setPosition(position);
    } else {
        orvel::seek(player, position);
    }
}

void seek(WavePlayer &player, std::int32_t position) {
    player.pause();
    player.setPosition(position);
    player.resume();
}

TimeParts remainingTime(const WavePlayer &player) {
    return helper::splitTime(checkedInt32(std::int64_t{player.length()} - player.position()));
}

} // namespace orvel
