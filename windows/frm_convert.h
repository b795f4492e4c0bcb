#pragma once

#include "platform/platform.h"
#include "platform/timers.h"
#include "platform/wave_player.h"
#include "playlist/current_step.h"
#include "production/import_desk.h"
#include "production/sound_import.h"
#include "production/sound_lengths.h"
#include "settings/settings.h"
#include "widgets/gauge.h"
#include "windows/folder_browser.h"

#include <QDialog>
#include <QElapsedTimer>
#include <QListWidget>
#include <QPushButton>
#include <QTableWidget>

#include <functional>
#include <memory>
#include <vector>

namespace orvel {

/// Files voice tracks that were recorded elsewhere: one for the selected step, or a whole folder for all presentation
/// steps in order. WAV files become MP3 files, MP3 files are copied as they are.
class frmConvert : public QDialog {
    Q_OBJECT

  public:
    explicit frmConvert(ImportDesk context, QWidget *parent = nullptr);

    FolderBrowser *const browser;
    QPushButton *const cmdBatch;
    QPushButton *const cmdSingle;
    QPushButton *const cmdQuit;
    QPushButton *const cmdPlay;
    Gauge *const progressconvert;
    QLabel *const lblStep;        ///< which step the single import is for
    QTableWidget *const lstPlan;  ///< what the batch would do
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
    /// The folder, the playlist or the selected step is another one.
    void plan();
    [[nodiscard]] QStringList planned() const;
    void showPlan();
    /// Tells the problem, where there is one.
    bool isRefused(const QString &problem);
    /// False when it was stopped, or cannot begin.
    bool import(const std::vector<SoundImport::Job> &jobs);
    bool showProgress(int percent, const QString &what);
    /// The files of a batch are selected one after the other; the last one stays.
    void showFile(std::size_t number);
    void noteFailure(const QString &sentence);
    void player_End();

    ImportDesk context_;
    SoundImport import_;
    // Made once: a new icon is drawn anew, and its pictures stay in a cache.
    QIcon playIcon_{QStringLiteral(":/icons/play.svg")};
    QIcon stopIcon_{QStringLiteral(":/icons/stop.svg")};
    std::unique_ptr<WavePlayer> player_;
    SoundLengths lengths_;
    std::unique_ptr<Timer> tmrLengths_; ///< as long as files are being measured
    bool running_ = false;
    bool isBatch_ = false;
    bool stopWanted_ = false;
    QElapsedTimer sincePump_;
};

} // namespace orvel
