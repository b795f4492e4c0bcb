#include "playlist/current_step.h"

#include "playlist/field_values.h"
#include "playlist/playlist.h"
#include "playlist/step_types.h"
#include "station/checked.h"

namespace orvel {

namespace {

const QString none = QStringLiteral("NONE");

void forgetFile(CurrentStep &step) {
    step.VoiceTrackName = none;
    step.StepSelected = false;
    step.row = -1;
    step.stap = 0;
}

} // namespace

QString shownFileName(const CurrentStep &step) {
    return step.StepSelected ? step.VoiceTrackName : QStringLiteral("geen bestand");
}

void showTimes(const Playlist &playlist, int row, CurrentStep &step) {
    if (step.PlaylistTakeRunning || row < 0) {
        return;
    }
    step.times.visible = false;
    step.barRec.value = 0;
    if (toWholeNumber(playlist.value(row, TypeColumn)) != PresStep) {
        return;
    }
    const std::int32_t stap = toWholeNumber(playlist.value(row, StapColumn));
    const std::int32_t outro = playlist.outtro(stap - 1);
    const std::int32_t intro = playlist.intro(stap + 1);
    step.TalkTotalMs = checkedInt32(std::int64_t{outro} + intro);
    step.NextIntroMs = intro;
    step.PrevOutroMs = outro;
    step.times = {true, QStringLiteral("Outtro : ") + secondsOneDecimal(outro),
                  QStringLiteral("Intro : ") + secondsOneDecimal(intro),
                  QStringLiteral("Totaal : ") + secondsGeneral(step.TalkTotalMs) + QStringLiteral(" sec")};
    step.barRec = {step.TalkTotalMs, step.TalkTotalMs, TalkBar::Colour::Blue};
    step.isImported = playlist.value(row, ImportedColumn).toBool();
}

void selectStepFile(const Playlist &playlist, int row, CurrentStep &step) {
    if (step.PlaylistTakeRunning || row < 0) {
        return;
    }
    // First: whatever cannot be converted, the step before leaves nothing behind.
    forgetFile(step);
    step.VoiceTrackName = toText(playlist.value(row, AtrackColumn));
    step.row = row;
    step.StepSelected = step.VoiceTrackName != none;
    if (!step.StepSelected) {
        step.previewAllowed = true;
        step.PreviewTrackId = toWholeNumber(playlist.value(row, TrackidColumn));
    } else {
        step.stap = toWholeNumber(playlist.value(row, StapColumn));
    }
}

bool canPreview(const Playlist &playlist, int row, const CurrentStep &step) {
    if (step.PlaylistTakeRunning || !step.previewAllowed || row < 0) {
        return false;
    }
    const std::int32_t type = toWholeNumber(playlist.value(row, TypeColumn));
    return type == TrackStep || type == JingleStep;
}

bool choosePreview(const Playlist &playlist, int row, CurrentStep &step) {
    if (!canPreview(playlist, row, step)) {
        return false;
    }
    step.PreviewKind = checkedInt16(toWholeNumber(playlist.value(row, TypeColumn)));
    step.PreviewTrackId = toWholeNumber(playlist.value(row, TrackidColumn));
    return true;
}

void deselect(CurrentStep &step) {
    forgetFile(step);
    step.times = {};
    step.barRec.value = 0;
}

} // namespace orvel
