#include "recording/listening.h"

#include "platform/audio.h"
#include "platform/file_system.h"
#include "platform/guarded.h"
#include "platform/platform.h"
#include "playlist/playlist.h"
#include "recording/take_file.h"
#include "recording/take_session.h"
#include "station/places.h"

namespace orvel {

Listening::Listening(ListeningContext context)
    : context_(std::move(context)), player_(context_.platform.sound.makePlayer()),
      tmrPlay(context_.platform.timers.create(10, MissedTicks::Drop, [this] { tmrPlay_Timer(); })),
      tmrLevels_(context_.platform.timers.create(40, MissedTicks::Drop, [this] {
          const StereoPeaks peaks = player_->peaks();
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
        player_->setPosition(milliseconds);
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
