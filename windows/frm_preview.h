#pragma once

#include "platform/platform.h"
#include "platform/timers.h"
#include "playlist/current_step.h"
#include "recording/preview.h"
#include "widgets/knob.h"
#include "widgets/led_label.h"
#include "widgets/level_meter.h"
#include "widgets/time_display.h"

#include <QDialog>
#include <QLabel>
#include <QPushButton>
#include <QSlider>

#include <functional>
#include <memory>

namespace orvel {

/// What the preview window needs of the rest of the program; all of it outlives the window.
struct PreviewContext {
    Platform &platform;
    const CurrentStep &step;
    PreviewSources sources;
    int volume = 16384; ///< at the first opening; after that the one that was used last
};

/// The cue player: a music track or jingle of the catalogues, to listen to before talking over it.
class frmPreview : public QDialog {
    Q_OBJECT

  public:
    /// What the play button's event tells.
    enum ButtonCode { PlayCode = 1, StopCode = 5 };

    explicit frmPreview(PreviewContext context, QWidget *parent = nullptr);

    LedLabel *const ledTitle;
    LedLabel *const ledArtist;
    TimeDisplay *const lcdMin;
    TimeDisplay *const lcdSec;
    TimeDisplay *const lcdMsec;
    QSlider *const sliPlay;
    Knob *const volCue;
    QWidget *const cmdPlay; ///< holds the two buttons
    QPushButton *const playButton;
    QPushButton *const stopButton;
    QPushButton *const pauseButton; ///< holds what plays, and lets it go on
    LevelMeter *const MMLevelX1;
    LevelMeter *const MMLevelX2;
    QLabel *const lblProblem; ///< what is wrong with the track's file

    /// Loads the step that was asked for; called each time before the window opens.
    void Form_Load();
    /// Loads the track with this catalogue number; an unknown one leaves everything as it was.
    void LaadSpeler(std::int32_t Track);
    void DrawTime();
    void SeekTo(std::int32_t Position);

    void cmdPlay_ButtonClick(int code);
    void pauseButton_Click();
    void tmrCuePlayer_Timer();
    void CuePlayer_End();
    void sliPlay_MouseDown();
    void sliPlay_MouseUp();
    /// A step by a key or the wheel (QAbstractSlider::SliderAction).
    void sliPlay_Action(int action);
    void volCue_Change();

    void done(int result) override;

  private:
    struct Shown {
        std::int16_t minutes = -1;
        std::int16_t seconds = -1;
        std::int16_t millis = -1;
    };

    void layOut();
    QWidget *timePanels();
    void showPause();

    PreviewContext context_;
    Preview preview_;
    std::unique_ptr<WavePlayer> CuePlayer;
    std::unique_ptr<Timer> tmrCuePlayer;
    std::unique_ptr<Timer> tmrLevels_;
    bool Dragging = false;
    Shown shown_;
};

} // namespace orvel
