#pragma once

#include "platform/platform.h"
#include "platform/timers.h"
#include "platform/wave_player.h"
#include "playlist/current_step.h"
#include "settings/settings.h"
#include "widgets/time_display.h"
#include "windows/grid_panel.h"

#include <QPushButton>

#include <functional>
#include <memory>

namespace orvel {

/// What listening to a take needs of the rest of the program; all of it outlives the panel.
struct PlaybackContext {
    Platform &platform;
    const Settings &settings;
    const QString &programFolder;
    const CurrentStep &step;
    GridPanel &grid;
    /// Shows the position.
    TimeDisplay &ledTijd;
    /// True while nothing plays: importing, recording and saving are possible.
    std::function<void(bool idle)> enableOthers;
};

/// The button that plays the selected step's take: the recorded file, or the filed voice track of a step that is done.
class PlaybackPanel : public QWidget {
    Q_OBJECT

  public:
    explicit PlaybackPanel(PlaybackContext context, QWidget *parent = nullptr);

    QPushButton *const cmdPlay;

    bool RecorderOnly = false;

    /// The card, the buffers and the callback mode of the settings.
    void setOutput(const PlayerSettings &output) { player_->setOutput(output); }
    void cmdPlay_Click();
    void tmrPlay_Timer();
    /// Ends listening, when something else begins that needs the take.
    void interrupt();
    /// The clock that shows the position stands still.
    void stopClock() { tmrPlay->setEnabled(false); }

  Q_SIGNALS:
    /// Highest samples since the last look, 0..1.
    void levelsChanged(float left, float right);

  private:
    [[nodiscard]] QString takeToPlay() const;
    void play(const QString &path);
    void backToIdle();

    PlaybackContext context_;
    // Made once: a new icon is drawn anew, and its pictures stay in a cache.
    QIcon listenIcon_{QStringLiteral(":/icons/listen.svg")};
    QIcon stopIcon_{QStringLiteral(":/icons/stop.svg")};
    std::unique_ptr<WavePlayer> player_;
    std::unique_ptr<Timer> tmrPlay;
    std::unique_ptr<Timer> tmrLevels_;
};

} // namespace orvel
