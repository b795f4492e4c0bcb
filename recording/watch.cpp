#include "recording/watch.h"

#include "platform/audio.h"
#include "platform/platform.h"
#include "recording/take_session.h"
#include "settings/settings.h"
#include "station/ignore_errors.h"
#include "station/places.h"

namespace orvel {

namespace {

constexpr int watchLookMs = InputLevel::lookMs;
constexpr int surveyMs = 1000;
/// Looks without a sample after which there is no level any more: servers bring samples every few hundredths.
constexpr int mostUnheard = 1000 / watchLookMs;
// In surveys.
constexpr int diskInterval = 10;
constexpr int serverInterval = 60;
constexpr int serverPatience = 5;

bool isSessions(SessionState state) {
    return state == SessionState::CountingDown || state == SessionState::Recording || state == SessionState::Processing;
}

std::int64_t millisecondsOf(std::int64_t frame) {
    return frame < 0 ? -1 : frame * 10 / 441;
}

} // namespace

Watch::Watch(WatchContext context)
    : context_(std::move(context)),
      tmrLook_(context_.platform.timers.create(watchLookMs, MissedTicks::Drop, [this] { tmrLook_Timer(); })),
      tmrSurvey_(context_.platform.timers.create(surveyMs, MissedTicks::Drop, [this] { tmrSurvey_Timer(); })) {}

void Watch::begin() {
    hasBegun_ = true;
    tmrSurvey_->setEnabled(true);
    sessionChanged();
    tmrSurvey_Timer();
}

bool Watch::wantsInput() const {
    return context_.session.isIdle() && context_.session.allowed().cmdRec;
}

void Watch::sessionChanged() {
    if (!hasBegun_) {
        return;
    }
    const SessionState state = context_.session.state();
    isFirst_ = isFirst_ || (state == SessionState::CountingDown && !tmrLook_->isEnabled());
    isOpen_ = isOpen_ && !isSessions(state);
    if (wantsInput() && !isOpen_) {
        openCard();
    } else if (!wantsInput() && isOpen_) {
        letCardGo();
    }
    const bool looks = isOpen_ || state == SessionState::CountingDown;
    if (looks != tmrLook_->isEnabled()) {
        tmrLook_->setEnabled(looks);
    }
    if (!looks) {
        // What a take was warned of ends with it.
        guard_.look({.now = now_, .state = state});
    }
    tellChanges();
}

void Watch::openCard() {
    context_.platform.sound.recorder().prepare();
    isOpen_ = true;
    isFirst_ = true;
    level_.reset();
}

void Watch::letCardGo() {
    ignoringErrors([&] { context_.platform.sound.recorder().stop(); });
    isOpen_ = false;
    level_.reset();
    context_.levels(0.0F, 0.0F);
}

void Watch::tmrLook_Timer() {
    const RecorderStatus status = context_.platform.sound.recorder().status();
    if (status.isHeard) {
        context_.levels(status.peak, status.peak);
    }
    look(status);
}

void Watch::recorded(const RecorderStatus &status) {
    if (hasBegun_) {
        look(status);
    }
}

void Watch::look(const RecorderStatus &status) {
    now_ += watchLookMs;
    unheard_ = status.isHeard ? 0 : unheard_ + 1;
    if (status.isHeard) {
        level_.heard(status.peak);
    } else if (unheard_ == mostUnheard) {
        level_.reset();
        context_.levels(0.0F, 0.0F);
    }
    const TakeSession &session = context_.session;
    guard_.look({now_, session.state(), isFirst_, session.CountdownLeft, status.isHeard ? status.peak : 0.0F,
                 millisecondsOf(status.clippedAt)});
    isFirst_ = false;
    tellChanges();
}

void Watch::tmrSurvey_Timer() {
    if (isOpen_) {
        // Another one may have been chosen, or the one that was pulled out is there again.
        context_.platform.sound.recorder().prepare();
    }
    lookAtCard();
    if (surveys_ % diskInterval == 0) {
        lookAtDisk();
    }
    lookAtServer();
    ++surveys_;
    tellChanges();
}

void Watch::lookAtCard() {
    const AudioRecord &audioRecord = context_.platform.sound.audioRecord();
    const QString used = audioRecord.deviceName(audioRecord.currentDevice());
    guard_.card(context_.chosenCard(), used);
    if (used != used_) {
        used_ = used;
        isFirst_ = true;
        level_.reset();
    }
}

void Watch::lookAtDisk() {
    ignoringErrors([&] { guard_.disk(context_.platform.files.freeBytes(context_.places.tempFolder())); });
}

void Watch::lookAtServer() {
    const QString folder = context_.settings.ServerMode ? context_.settings.VoicetrackPath : QString();
    if (folder.isEmpty()) {
        guard_.server(ServerState::NotUsed, {});
        return;
    }
    const bool isAnswered = !answer_ || answer_->load() != Writable::Unknown;
    const bool isDue = !answer_ || server_ != folder || surveys_ - askedAt_ >= serverInterval;
    // A server is left alone while there is nothing that could be saved on it, and while it owes an answer.
    if (isAnswered && isDue && wantsInput()) {
        server_ = folder;
        askedAt_ = surveys_;
        answer_ = context_.platform.files.askWritable(folder);
    }
    const Writable writable = answer_ ? answer_->load() : Writable::Unknown;
    if (writable != Writable::Unknown) {
        guard_.server(writable == Writable::Yes ? ServerState::Writable : ServerState::NotWritable, folder);
    } else if (answer_ && surveys_ - askedAt_ >= serverPatience) {
        guard_.server(ServerState::Silent, folder);
    }
}

void Watch::tellChanges() {
    std::vector<Warning> warnings = guard_.warnings();
    if (verdict() == toldVerdict_ && warnings == toldWarnings_ && guard_.hasClipped() == toldClipped_) {
        return;
    }
    toldVerdict_ = verdict();
    toldWarnings_ = std::move(warnings);
    toldClipped_ = guard_.hasClipped();
    context_.changed();
}

} // namespace orvel
