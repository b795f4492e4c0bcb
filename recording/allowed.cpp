#include "recording/allowed.h"

namespace orvel {

Allowed allowed(SessionState state, const DeskMode &mode, const StepFacts &step, const TakeFacts &take) {
    const bool idle = state == SessionState::Idle;
    const bool takeRuns = state == SessionState::CountingDown || state == SessionState::Recording;
    const bool isFree = idle || takeRuns || state == SessionState::Listening;
    Allowed result;
    result.cmdRec = (idle || takeRuns) && (mode.recorderOnly || step.hasFile);
    result.cmdPlay = state == SessionState::Listening || (idle && take.canListen);
    result.cmdSave = idle && take.canSave;
    result.cmdImport = (idle || takeRuns) && step.hasFile && !mode.recorderOnly;
    result.cmdMultivoice = mode.hasStations;
    result.lists = isFree && !mode.recorderOnly;
    result.dbgLijst = isFree && !mode.recorderOnly;
    result.playlistTools = !mode.recorderOnly;
    return result;
}

} // namespace orvel
