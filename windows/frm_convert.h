#pragma once

#include "platform/platform.h"
#include "platform/wave_player.h"
#include "playlist/current_step.h"
#include "production/sound_import.h"
#include "settings/settings.h"
#include "widgets/gauge.h"
#include "windows/folder_browser.h"

#include <QDialog>
#include <QElapsedTimer>
#include <QListWidget>
#include <QPushButton>

#include <functional>
#include <memory>
#include <vector>

namespace orvel {

class Completion;
class Places;
class TakeSession;

/// What importing sound files needs of the rest of the program; all of it outlives the window.
struct ConvertContext {
    Platform &platform;
    const Settings &settings;
    const Places &places;
    CurrentStep &step;
    const Playlist &datList;
    TakeSession &session;
    StepMarks &marks;
    Filing &filing;
    Completion &completion;
    /// Selects a row of the grid.
    std::function<void(int row)> showRow;
    /// One sentence for the status line.
    std::function<void(const QString &sentence)> tell;
};

/// Files voice tracks that were recorded elsewhere: one for the selected step, or a whole folder for all presentation
/// steps in order. WAV files become MP3 files, MP3 files are copied as they are.
class frmConvert : public QDialog {
    Q_OBJECT

  public:
    explicit frmConvert(ConvertContext context, QWidget *parent = nullptr);

    FolderBrowser *const browser;
    QPushButton *const cmdBatch;
    QPushButton *const cmdSingle;
    QPushButton *const cmdQuit;
    QPushButton *const cmdPlay;
    Gauge *const progressconvert;
    QListWidget *const lstFailed; ///< files that could not be converted, and their steps

    /// Called each time before the window opens.
    void Form_Load();
    void cmdSingle_Click();
    void cmdBatch_Click();
    void cmdPlay_Click();
    void cmdQuit_Click() { reject(); }
    /// While an import runs it is stopped first: what was imported stays, the window stays open.
    void reject() override;

  private:
    void layOut();
    void showState();
    /// Tells the problem, where there is one.
    bool isRefused(const QString &problem);
    /// False when it was stopped, or cannot begin.
    bool import(const std::vector<SoundImport::Job> &jobs);
    bool showProgress(int percent, const QString &what);
    /// The files of a batch are selected one after the other; the last one stays.
    void showFile(std::size_t number);
    void noteFailure(const QString &sentence);
    void player_End();

    ConvertContext context_;
    SoundImport import_;
    // Made once: a new icon is drawn anew, and its pictures stay in a cache.
    QIcon playIcon_{QStringLiteral(":/icons/play.svg")};
    QIcon stopIcon_{QStringLiteral(":/icons/stop.svg")};
    std::unique_ptr<WavePlayer> player_;
    bool running_ = false;
    bool isBatch_ = false;
    bool stopWanted_ = false;
    QElapsedTimer sincePump_;
};

} // namespace orvel
