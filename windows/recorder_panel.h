#pragma once

#include "platform/platform.h"
#include "platform/timers.h"
#include "playlist/current_step.h"
#include "settings/settings.h"
#include "station/recovery.h"
#include "widgets/time_display.h"
#include "windows/grid_panel.h"

#include <QLabel>
#include <QPushButton>

#include <functional>

namespace orvel {

class AudioPlayer;

/// What the recording session needs of the rest of the program; all of it outlives the panel.
struct RecorderContext {
    Platform &platform;
    const Settings &settings;
    const QString &programFolder;
    CurrentStep &step;
    GridPanel &grid;
    StepPanel &stepPanel;
    Recovery &recovery;
    /// Runs on a finished take's file.
    std::function<void(const QString &wavPath)> AudioProcessing;
    /// One sentence for the status line.
    std::function<void(const QString &sentence)> tell;
};

/// The record button and all that hangs on it: name prompt, count-down, the running take, its times, stopping.
class RecorderPanel : public QWidget {
    Q_OBJECT

  public:
    explicit RecorderPanel(RecorderContext context, QWidget *parent = nullptr);

    QPushButton *const cmdRec;
    TimeDisplay *const ledCount;
    TimeDisplay *const ledTijd;
    QLabel *const lblOpname;
    QLabel *const lblProcess;

    bool RecorderOnly = false;
    /// Seconds left of the count-down.
    std::int16_t CountdownLeft = 4;

    void cmdRec_Click();
    void tmrCountDown_Timer();
    void tmrRec_Timer();
    /// Opens the take file and starts the recorder.
    void StartRecorder();
    void StartOpname();
    /// Stops the recorder, for the end of the program.
    void stopRecorder();

    /// A take may not be started while the one before is being encoded.
    void setBusy(bool busy);
    [[nodiscard]] bool isCountingDown() const { return tmrCountDown->isEnabled(); }
    /// The take's file in "\temp\". Throws BadFileName for a name that would leave the folder.
    [[nodiscard]] QString takePath() const;

  Q_SIGNALS:
    /// Saving and listening are possible or not.
    void takeReady(bool ready);
    /// Highest sample since the last look, 0..1.
    void levelChanged(float peak);

  private:
    [[nodiscard]] bool chooseTake();
    void beginCountDown();
    void showElapsed();
    void moveBar();
    void stop();
    void backToIdle();
    void watchRecorder();
    void setCaption(bool recording);
    void layOut();

    RecorderContext context_;
    // Made once: a new icon is drawn anew, and its pictures stay in a cache.
    QIcon startIcon_{QStringLiteral(":/icons/record.svg")};
    QIcon stopIcon_{QStringLiteral(":/icons/record_stop.svg")};
    AudioPlayer &AudioPlayer1;
    std::unique_ptr<Timer> tmrCountDown;
    std::unique_ptr<Timer> tmrRec;
    std::unique_ptr<Timer> tmrWatch_;
    bool BarExhausted = false;
    std::int32_t ElapsedMs = 0;
    bool PlayFlag = false;
    int toldOverruns_ = 0;
    QString take_;     ///< the file of the take that was started last
    int takeRow_ = -1; ///< and the row of its step
};

} // namespace orvel
