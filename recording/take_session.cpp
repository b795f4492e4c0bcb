#include "recording/take_session.h"

#include "platform/audio.h"
#include "platform/platform.h"
#include "platform/prompts.h"
#include "platform/runtime_error.h"
#include "playlist/playlist.h"
#include "recording/take_store.h"
#include "settings/settings.h"
#include "station/checked.h"
#include "station/ignore_errors.h"
#include "station/places.h"

#include <algorithm>
#include <exception>

namespace orvel {

namespace {

/// Why a recording cannot go on; empty when it can.
QString whatEnded(const RecorderStatus &status) {
    if (status.deviceLost) {
        return TakeSession::tr("De geluidskaart is verdwenen tijdens de opname.");
    }
    if (status.diskFull) {
        return TakeSession::tr("De schijf is vol: de opname kon niet verder worden weggeschreven.");
    }
    return status.diskFailed
               ? TakeSession::tr("De schijf gaf een fout: de opname kon niet verder worden weggeschreven.")
               : QString();
}

} // namespace

TakeSession::TakeSession(SessionContext context)
    : context_(std::move(context)), AudioPlayer1(context_.platform.sound.audioPlayer()),
      tmrCountDown(context_.platform.timers.create(1000, MissedTicks::Drop, [this] { tmrCountDown_Timer(); })),
      tmrRec(context_.platform.timers.create(10, MissedTicks::CatchUp, [this] { tmrRec_Timer(); })),
      tmrWatch_(context_.platform.timers.create(40, MissedTicks::Drop, [this] { watchRecorder(); })) {}

Allowed TakeSession::allowed() const {
    TakeFacts facts = facts_;
    if (facts.canSave) {
        facts.edits = context_.edits(context_.step.VoiceTrackName);
    }
    return orvel::allowed(state_, mode, {context_.step.StepSelected, context_.playlist.isOpen()}, facts);
}

QString TakeSession::caption() const {
    return state_ == SessionState::Recording ? QStringLiteral("STOP OPNAME") : QStringLiteral("START OPNAME");
}

QString TakeSession::fileName() const {
    const bool isNamed = mode.RecorderOnly && !context_.step.VoiceTrackName.isEmpty();
    return isNamed ? context_.step.VoiceTrackName : shownFileName(context_.step);
}

Take TakeSession::currentTake() const {
    const CurrentStep &step = context_.step;
    if (mode.RecorderOnly) {
        return {Take::Kind::Recorder, {{}, 0, step.VoiceTrackName}, {}};
    }
    return {Take::Kind::Playlist, {context_.playlist.fileName(), step.stap, step.VoiceTrackName}, {}};
}

/// The one place where the state changes; the timers run by it.
void TakeSession::enter(SessionState state) {
    const auto isTake = [](SessionState one) {
        return one == SessionState::CountingDown || one == SessionState::Recording;
    };
    if (isTake(state_) && !isTake(state)) {
        context_.takeOver();
    }
    state_ = state;
    const bool records = state == SessionState::Recording;
    tmrCountDown->setEnabled(state == SessionState::CountingDown);
    tmrRec->setEnabled(records);
    tmrWatch_->setEnabled(records);
    const bool takeRuns = records || state == SessionState::CountingDown || state == SessionState::Processing;
    context_.step.PlaylistTakeRunning = takeRuns && !mode.RecorderOnly;
    if (state == SessionState::Processing || state == SessionState::Idle) {
        context_.levels(0.0F, 0.0F);
    }
    context_.changed();
}

QString TakeSession::importProblem() const {
    // The names and marks of the steps belong to a take until it is stopped.
    return isIdle() ? QString() : tr("Er loopt een opname. Importeer als die gestopt is.");
}

void TakeSession::cmdRec_Click() {
    if (state_ == SessionState::Recording) {
        stop();
        return;
    }
    if (state_ != SessionState::Idle && state_ != SessionState::CountingDown) {
        return;
    }
    if (chooseTake()) {
        beginCountDown();
    }
}

bool TakeSession::chooseTake() {
    return mode.RecorderOnly ? chooseName() : chooseStep();
}

bool TakeSession::chooseName() {
    // The count-down waits for the answer: nothing records behind a question.
    const bool counted = countsDown();
    tmrCountDown->setEnabled(false);
    const QString name =
        context_.platform.prompts
            .input(QStringLiteral("Geef een naam voor dit bestand (ZONDER EXTENSIE)"), QStringLiteral("Bestandsnaam"))
            .trimmed();
    tmrCountDown->setEnabled(counted);
    if (name.isEmpty() || !reserve(name)) {
        return false;
    }
    if (counted && name != take_.name()) {
        context_.takes.release(take_.name());
    }
    context_.step.VoiceTrackName = name;
    take_ = currentTake();
    return true;
}

bool TakeSession::chooseStep() {
    if (!context_.step.StepSelected) {
        return false;
    }
    if (state_ == SessionState::CountingDown) {
        // The count-down belongs to its step, wherever the grid was moved.
        context_.showRow(context_.step.row);
        return true;
    }
    const Take take = currentTake();
    static_cast<void>(context_.places.take(take.name()));
    if (!reserve(take.name())) {
        return false;
    }
    markBefore_ = context_.marks.isMarked(take.step);
    context_.marks.mark(take.step, false);
    take_ = take;
    showTimes(context_.playlist, context_.step.row, context_.step);
    return true;
}

bool TakeSession::reserve(const QString &name) {
    if (context_.takes.reserve(name)) {
        return true;
    }
    context_.platform.prompts.message(
        tr("Een ander ORVEL-venster gebruikt de naam %1. Bewaar die opname eerst, of kies een andere naam.").arg(name),
        errorTitle, MessageIcon::Exclamation);
    return false;
}

void TakeSession::beginCountDown() {
    CountdownLeft = checkedInt16(context_.settings.Countdown + 1);
    BarExhausted = false;
    context_.platform.sound.recorder().prepare();
    const auto takeBegins = std::chrono::steady_clock::now() + std::chrono::seconds(CountdownLeft);
    enter(SessionState::CountingDown);
    if (context_.settings.Mute) {
        AudioPlayer1.setOutputMute(true);
    }
    context_.countDownBegan(takeBegins);
}

void TakeSession::tmrCountDown_Timer() {
    CountdownLeft = checkedInt16(CountdownLeft - 1);
    context_.ticked();
    if (CountdownLeft != 0) {
        return;
    }
    try {
        StartRecorder();
    } catch (const RuntimeError &) {
        failedToStart();
        throw;
    }
}

void TakeSession::StartRecorder() {
    context_.takes.begin(take_);
    WaveRecorder &wavRec = context_.platform.sound.recorder();
    wavRec.setFileName(context_.places.take(take_.name()));
    const auto begin = context_.takeBeginsAt();
    if (begin) {
        wavRec.startAt(*begin);
    } else {
        wavRec.start();
    }
    toldOverruns_ = 0;
    StartOpname();
    if (begin) {
        catchUp(*begin);
    }
}

/// What was heard while the recorder started belongs to the take: time and bar show it.
void TakeSession::catchUp(std::chrono::steady_clock::time_point begin) {
    using namespace std::chrono_literals;
    for (auto late = std::chrono::steady_clock::now() - begin; late >= 10ms && ElapsedMs_ < 1000; late -= 10ms) {
        tmrRec_Timer();
    }
}

void TakeSession::StartOpname() {
    ElapsedMs_ = 0;
    enter(SessionState::Recording);
}

void TakeSession::close() {
    const bool recorded = state_ == SessionState::Recording;
    context_.platform.sound.recorder().stop();
    if (recorded) {
        context_.takes.keep(take_);
    }
    enter(SessionState::Idle);
}

void TakeSession::tmrRec_Timer() {
    ElapsedMs_ = checkedInt32(std::int64_t{ElapsedMs_} + 10);
    moveBar();
    context_.ticked();
}

void TakeSession::moveBar() {
    TalkBar &barRec = context_.step.barRec;
    if (!BarExhausted && barRec.value >= 1) {
        barRec.value = checkedInt32(std::int64_t{barRec.value} - 10);
        const bool overOutro = barRec.value > barRec.maximum - context_.step.PrevOutroMs;
        barRec.colour = overOutro ? TalkBar::Colour::Blue : TalkBar::Colour::Yellow;
        return;
    }
    barRec = {100, 100, TalkBar::Colour::Red};
    BarExhausted = true;
}

void TakeSession::stop() {
    enter(SessionState::Processing);
    WaveRecorder &wavRec = context_.platform.sound.recorder();
    // A take whose end is damaged is still a take: the desk goes back to idle before the report.
    std::exception_ptr failure;
    try {
        wavRec.stop();
        if (context_.takes.isKept(take_)) {
            context_.takes.recorded(take_);
        }
        if (context_.takes.isKept(take_) && context_.settings.UseProcessor) {
            context_.AudioProcessing(context_.places.take(take_.name()));
        }
    } catch (...) {
        failure = std::current_exception();
    }
    const bool recorded = context_.takes.isKept(take_);
    if (recorded) {
        context_.takes.keep(take_);
        facts_ = {true, true, {}};
        context_.recorded(take_.name());
    } else {
        context_.takes.abandon(take_);
        lookAtTake();
        context_.tell(tr("Er is niets opgenomen."));
    }
    backToIdle();
    if (failure) {
        std::rethrow_exception(failure);
    }
}

std::vector<ShelvedTake> TakeSession::takes() const {
    return context_.step.StepSelected && !mode.RecorderOnly ? context_.takes.shelf().takes(currentTake())
                                                            : std::vector<ShelvedTake>();
}

void TakeSession::choose(int number) {
    const Take take = currentTake();
    if (!allowed().takes || !reserve(take.name())) {
        return;
    }
    context_.takes.choose(take, number);
    context_.recorded(take.name());
    lookAtTake();
    context_.changed();
}

void TakeSession::chooseNext() {
    const std::vector<ShelvedTake> all = takes();
    const auto current = std::find_if(all.begin(), all.end(), [](const ShelvedTake &take) { return take.isCurrent; });
    if (all.size() > 1) {
        choose(current == all.end() || current + 1 == all.end() ? all.front().number : (current + 1)->number);
    }
}

void TakeSession::cancelCountDown() {
    if (state_ != SessionState::CountingDown) {
        return;
    }
    context_.platform.sound.recorder().stop();
    context_.takes.release(take_.name());
    CountdownLeft = 0;
    giveStepBack();
    context_.ticked();
    context_.tell(tr("De aftelling is afgebroken."));
}

void TakeSession::failedToStart() {
    context_.takes.abandon(take_);
    giveStepBack();
}

void TakeSession::giveStepBack() {
    if (!mode.RecorderOnly && markBefore_) {
        // The step is as it was before: its voice track is still there.
        ignoringErrors([&] { context_.marks.mark(take_.step, true); });
        context_.step.isImported = true;
    }
    lookAtTake();
    backToIdle();
}

void TakeSession::backToIdle() {
    PlayFlag = false;
    if (!mode.RecorderOnly) {
        // Still while the handlers sleep: the labels and the bar stay as the take left them.
        context_.showRow(context_.step.row);
    }
    enter(SessionState::Idle);
    if (context_.settings.Mute) {
        AudioPlayer1.setOutputMute(false);
    }
}

void TakeSession::stepSelected() {
    if (context_.step.PlaylistTakeRunning) {
        return;
    }
    lookAtTake();
    context_.changed();
}

void TakeSession::lookAtTake() {
    const CurrentStep &step = context_.step;
    const bool hasName = step.StepSelected || mode.RecorderOnly;
    facts_.canSave = hasName && !step.VoiceTrackName.isEmpty() && context_.takes.isKept(currentTake());
    // A row that is no presentation step leaves listening as it was.
    facts_.canListen = facts_.canSave || (step.times.visible ? step.isImported : facts_.canListen);
}

void TakeSession::listeningEnded() {
    facts_.canSave = true;
    enter(SessionState::Idle);
}

void TakeSession::editingEnded() {
    lookAtTake();
    enter(SessionState::Idle);
}

void TakeSession::filingEnded(SaveOffer offer) {
    lookAtTake();
    if (offer != SaveOffer::ByTake) {
        facts_.canSave = offer == SaveOffer::Stays;
    }
    enter(SessionState::Idle);
}

void TakeSession::watchRecorder() {
    const RecorderStatus status = context_.platform.sound.recorder().status();
    context_.levels(status.peak, status.peak);
    context_.heard(status);
    if (status.overruns > toldOverruns_) {
        toldOverruns_ = status.overruns;
        context_.tell(tr("Let op: er zit een gat in deze opname; beluister ze of neem opnieuw op."));
    }
    const QString what = whatEnded(status);
    if (what.isEmpty()) {
        return;
    }
    // What the stop would report is what is told here, except what ends the program.
    std::exception_ptr fatal;
    try {
        stop();
    } catch (const FatalError &) {
        fatal = std::current_exception();
    } catch (const RuntimeError &) { // NOLINT(bugprone-empty-catch): told below
    }
    context_.platform.prompts.message(
        context_.takes.isKept(take_) ? what + u'\n' + tr("Wat al was opgenomen, is bewaard.") : what, errorTitle,
        MessageIcon::Exclamation);
    if (fatal) {
        std::rethrow_exception(fatal);
    }
}

} // namespace orvel
