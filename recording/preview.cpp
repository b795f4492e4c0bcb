#include "recording/preview.h"

#include "platform/file_system.h"
#include "platform/runtime_error.h"
#include "playlist/field_values.h"
#include "playlist/step_types.h"
#include "recording/catalogues.h"
#include "station/checked.h"

#include <QObject>

namespace orvel {

namespace {

/// Catalogues leave fields empty.
QString textOrNothing(const QVariant &value) {
    return value.isNull() ? QString() : toText(value);
}

} // namespace

RecordSet &Preview::freshRecords(int kind) const {
    if (RecordSet *open = sources_.catalogues.of(kind)) {
        try {
            open->refresh();
            return *open;
        } catch (const RuntimeError &) { // NOLINT(bugprone-empty-catch)
            // A station replaces its catalogues while the program runs.
        }
    }
    sources_.catalogues.reopen(kind);
    return *sources_.catalogues.of(kind);
}

std::optional<Previewed> Preview::load(int kind, std::int32_t track, WavePlayer &player) {
    if (!sources_.settings.Network || (kind != TrackStep && kind != JingleStep)) {
        return {};
    }
    Previewed shown;
    RecordSet *records = nullptr;
    try {
        records = &freshRecords(kind);
    } catch (const RuntimeError &error) {
        stop(player);
        player.close(); // what is shown is not the track before
        shown.problem =
            QObject::tr("%1 kon niet worden geopend: %2.").arg(Catalogues::fileName(kind), error.description());
        shown.details = error.report();
        return shown;
    }
    SearchCriterion = QStringLiteral("tracknr=") + QString::number(track);
    if (records->recordCount() == 0 || !records->findFirst(SearchCriterion)) {
        return {};
    }
    loadFile(textOrNothing(records->field(QStringLiteral("path"))), player, shown);
    shown.title = textOrNothing(records->field(QStringLiteral("titel")));
    shown.description =
        textOrNothing(records->field(kind == TrackStep ? QStringLiteral("artiest") : QStringLiteral("Omschrijving")));
    return shown;
}

void Preview::loadFile(const QString &cataloguePath, WavePlayer &player, Previewed &shown) {
    stop(player);
    const QString path = sources_.drives.resolve(cataloguePath);
    try {
        player.setFileName(path);
    } catch (const RuntimeError &error) {
        const bool missing = !sources_.files.fileExists(path);
        shown.problem = (missing ? QObject::tr("Het bestand %1 werd niet gevonden.")
                                 : QObject::tr("Het bestand %1 is niet leesbaar."))
                            .arg(cataloguePath);
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
