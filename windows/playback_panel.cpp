#include "windows/playback_panel.h"

#include "platform/audio.h"
#include "platform/file_system.h"
#include "platform/runtime_error.h"
#include "recording/time_parts.h"
#include "station/paths.h"
#include "windows/on.h"

#include <QHBoxLayout>

namespace orvel {

namespace {

const QString listenCaption = QStringLiteral("Beluister Opname");
const QString stopCaption = QStringLiteral("Stop Weergave");

} // namespace

PlaybackPanel::PlaybackPanel(PlaybackContext context, QWidget *parent)
    : QWidget(parent), cmdPlay(new QPushButton(listenCaption, this)), context_(std::move(context)),
      player_(context_.platform.sound.makePlayer()),
      tmrPlay(context_.platform.timers.create(10, MissedTicks::Drop, [this] { tmrPlay_Timer(); })),
      tmrLevels_(context_.platform.timers.create(40, MissedTicks::Drop, [this] {
          const StereoPeaks peaks = player_->peaks();
          Q_EMIT levelsChanged(peaks.left, peaks.right);
      })) {
    cmdPlay->setObjectName(QStringLiteral("cmdPlay"));
    cmdPlay->setIcon(listenIcon_);
    cmdPlay->setToolTip(QStringLiteral("Beluister opname"));
    cmdPlay->setEnabled(false);
    auto *layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(cmdPlay);
    player_->setEndHandler([this] { guarded([this] { interrupt(); }); });
    on(cmdPlay, &QPushButton::clicked, this, &PlaybackPanel::cmdPlay_Click);
    on(&context_.grid, &GridPanel::playAllowed, cmdPlay, &QWidget::setEnabled);
}

void PlaybackPanel::cmdPlay_Click() {
    if (!context_.step.StepSelected && !RecorderOnly) {
        return;
    }
    if (player_->state() == WavePlayer::playing) {
        backToIdle();
        return;
    }
    const QString path = takeToPlay();
    if (context_.platform.files.fileExists(path)) {
        play(path);
    }
}

QString PlaybackPanel::takeToPlay() const {
    const QString &name = context_.step.VoiceTrackName;
    if (!context_.grid.currentImported()) {
        return takeFile(context_.programFolder, QStringLiteral("\\temp\\"), name, QStringLiteral(".wav"));
    }
    if (context_.settings.ServerMode) {
        return takeFile(context_.settings.VoicetrackPath, QStringLiteral("\\"), name, QStringLiteral(".mp3"));
    }
    return takeFile(context_.programFolder, QStringLiteral("\\ok\\"), name, QStringLiteral(".mp3"));
}

void PlaybackPanel::play(const QString &path) {
    player_->setFileName(path);
    player_->start();
    tmrPlay->setEnabled(true);
    tmrLevels_->setEnabled(true);
    context_.enableOthers(false);
    cmdPlay->setText(stopCaption);
    cmdPlay->setIcon(stopIcon_);
}

void PlaybackPanel::tmrPlay_Timer() {
    const TimeParts time = helper::splitTime(player_->position());
    context_.ledTijd.setTime(time.hours, time.minutes, time.seconds, time.millis);
}

void PlaybackPanel::backToIdle() {
    player_->stop();
    player_->close();
    stopClock();
    tmrLevels_->setEnabled(false);
    Q_EMIT levelsChanged(0.0F, 0.0F);
    context_.enableOthers(true);
    cmdPlay->setText(listenCaption);
    cmdPlay->setIcon(listenIcon_);
}

void PlaybackPanel::interrupt() {
    if (cmdPlay->text() == stopCaption) {
        backToIdle();
    }
}

} // namespace orvel
