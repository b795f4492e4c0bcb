#include "recording/allowed.h"

namespace orvel {

Allowed allowed(SessionState state, const DeskMode &mode, const StepFacts &step, const TakeFacts &take) {
    const bool idle = state == SessionState::Idle;
    const bool takeRuns = state == SessionState::CountingDown || state == SessionState::Recording;
    const bool isFree = idle || takeRuns || state == SessionState::Listening || state == SessionState::Joining;
    Allowed result;
    result.cmdRec = (idle || takeRuns) && (mode.RecorderOnly || step.hasFile);
    result.cmdPlay = state == SessionState::Listening || (idle && take.canListen);
    result.cmdSave = idle && take.canSave;
    result.cmdImport = (idle || takeRuns) && step.hasFile && !mode.RecorderOnly;
    result.cmdMultivoice = mode.hasStations;
    result.cmdFit = result.cmdSave && take.edits.canFit;
    result.cmdUndo = result.cmdSave && take.edits.canUndo;
    result.cmdRedo = result.cmdSave && take.edits.canRedo;
    result.cmdOpnieuw = result.cmdSave && take.edits.canRework;
    result.cmdDroog = state == SessionState::Listening && take.canSave && take.edits.canRework;
    result.lists = isFree && !mode.RecorderOnly;
    result.dbgLijst = isFree && !mode.RecorderOnly;
    result.cut = (idle || state == SessionState::Listening) && take.canSave;
    result.takes = idle && step.hasFile && !mode.RecorderOnly;
    result.playlistTools = !mode.RecorderOnly;
    const bool joins = state == SessionState::Joining;
    const bool mayJoin = idle && !mode.RecorderOnly;
    result.cmdDelay = mayJoin;
    result.cmdInVerband = joins || (mayJoin && step.hasFile && take.canListen);
    result.cmdHeleUur = joins || (mayJoin && step.hasPlaylist);
    return result;
}

DeskKey pressed(int button, const Allowed &may) {
    switch (button) {
    case 1:
        return may.cmdRec ? DeskKey::Record : DeskKey::None;
    case 2:
        return may.cmdPlay ? DeskKey::Play : DeskKey::None;
    case 4:
        return may.cmdSave ? DeskKey::Save : DeskKey::None;
    default:
        return DeskKey::None;
    }
}

} // namespace orvel
