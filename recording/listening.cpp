#include "recording/listening.h"

#include "platform/audio.h"
#include "platform/file_system.h"
#include "platform/guarded.h"
#include "platform/platform.h"
#include "platform/runtime_error.h"
#include "playlist/playlist.h"
#include "recording/take_file.h"
#include "recording/take_session.h"
#include "station/places.h"

#include <cstdlib>
#include <utility>

namespace orvel {

namespace {

constexpr int fullVolume = 65535;
/// Between the two, of what is heard when one takes the other's place.
constexpr std::int32_t together = 20;
/// What a player needs to begin, until it was seen.
constexpr std::int32_t firstLead = 60;
constexpr int mostTries = 3;

} // namespace

Listening::Listening(ListeningContext context)
    : context_(std::move(context)), player_(context_.platform.sound.makePlayer()),
      tmrPlay(context_.platform.timers.create(10, MissedTicks::Drop, [this] { tmrPlay_Timer(); })),
      tmrLevels_(context_.platform.timers.create(40, MissedTicks::Drop, [this] {
          const StereoPeaks peaks = heard().peaks();
          context_.levels(peaks.left, peaks.right);
      })) {
    player_->setEndHandler([this] { guarded([this] { interrupt(); }); });
}

QString Listening::caption() const {
    return context_.session.state() == SessionState::Listening ? QStringLiteral("Stop Weergave")
                                                               : QStringLiteral("Beluister Opname");
}

void Listening::cmdPlay_Click() {
    if (!context_.step.StepSelected && !context_.session.mode.RecorderOnly) {
        return;
    }
    if (player_->state() == WavePlayer::playing) {
        backToIdle();
        return;
    }
    const QString path = takeToPlay();
    if (!context_.platform.files.fileExists(path)) {
        return;
    }
    player_->setFileName(path);
    player_->setVolume(fullVolume);
    player_->start();
    tmrPlay->setEnabled(true);
    tmrLevels_->setEnabled(true);
    context_.session.listeningBegan();
}

void Listening::listenFrom(std::int32_t milliseconds) {
    if (context_.session.state() == SessionState::Idle && context_.session.allowed().cmdPlay) {
        cmdPlay_Click();
    }
    if (context_.session.state() == SessionState::Listening) {
        if (hasOther_ && other_->state() == WavePlayer::playing) {
            other_->setPosition(milliseconds);
            tries_ = 0;
        }
        player_->setPosition(milliseconds);
    }
}

void Listening::setOther(const QString &path) {
    if (other_ == nullptr) {
        other_ = context_.platform.sound.makePlayer();
        other_->setOutput(output_);
    }
    other_->setFileName(path);
    other_->setVolume(0);
    hasOther_ = true;
}

void Listening::hearOther(bool other) {
    if (!hasOther_ || context_.session.state() != SessionState::Listening) {
        return;
    }
    wantsOther_ = other;
    lead_ = firstLead;
    tries_ = 0;
    settle();
}

/// The one that is to be heard is brought to where the other one will be by then, and their volumes change places when
/// it is there: nothing is silent meanwhile.
void Listening::settle() {
    if (wantsOther_ == hearsOther_) {
        return;
    }
    WavePlayer &now = heard();
    WavePlayer &next = wantsOther_ ? *other_ : *player_;
    const std::int32_t late = now.position() - next.position();
    if (next.state() != WavePlayer::playing) {
        next.setVolume(0);
        aim(next, now.position());
        begin(next);
    } else if (next.position() <= aimedAt_ && tries_ > 0) {
        return; // it is not heard yet
    } else if (std::abs(late) > together && tries_ < mostTries) {
        lead_ += tries_ > 0 ? late : 0;
        aim(next, now.position());
    } else {
        next.setVolume(fullVolume);
        now.setVolume(0);
        hearsOther_ = wantsOther_;
    }
}

void Listening::begin(WavePlayer &next) {
    try {
        next.start();
    } catch (const RuntimeError &) {
        closeOther(); // once is enough
        throw;
    }
}

void Listening::aim(WavePlayer &next, std::int32_t at) {
    ++tries_;
    aimedAt_ = at + lead_;
    next.setPosition(aimedAt_);
}

void Listening::tmrPlay_Timer() {
    settle();
    if (hearsOther_ && other_->brokeOff()) {
        closeOther(); // the take goes on
    }
    context_.ticked();
}

void Listening::closeOther() {
    hearsOther_ = false;
    wantsOther_ = false;
    if (std::exchange(hasOther_, false)) {
        other_->stop();
        other_->close();
        player_->setVolume(fullVolume);
    }
}

QString Listening::file() const {
    const bool hasTake = context_.step.StepSelected || context_.session.mode.RecorderOnly;
    return hasTake && context_.session.facts().canListen ? takeToPlay() : QString();
}

QString Listening::takeToPlay() const {
    const CurrentStep &step = context_.step;
    // A take that was put in the place of the filed one is what will be filed next.
    if (context_.session.facts().canSave) {
        return context_.places.take(step.VoiceTrackName);
    }
    return audibleTake(context_.playlist, step.row, step.VoiceTrackName, context_.places, context_.settings);
}

void Listening::backToIdle() {
    closeOther();
    player_->stop();
    player_->close();
    stopClock();
    tmrLevels_->setEnabled(false);
    context_.session.listeningEnded();
}

void Listening::interrupt() {
    if (context_.session.state() == SessionState::Listening) {
        backToIdle();
    }
}

} // namespace orvel
