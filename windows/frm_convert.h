#pragma once

#include "platform/audio_file.h"
#include "platform/platform.h"
#include "platform/wave_player.h"
#include "playlist/current_step.h"
#include "settings/settings.h"
#include "widgets/gauge.h"
#include "windows/completion.h"
#include "windows/folder_browser.h"
#include "windows/grid_panel.h"

#include <QDialog>
#include <QElapsedTimer>
#include <QListWidget>
#include <QPushButton>

#include <functional>
#include <memory>
#include <vector>

namespace orvel {

/// What importing sound files needs of the rest of the program; all of it outlives the window.
struct ConvertContext {
    Platform &platform;
    const Settings &settings;
    const QString &programFolder;
    CurrentStep &step;
    Playlist &datList;
    GridPanel &grid;
    Completion &completion;
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
    /// One file on its way to a step's voice track.
    struct Import {
        QString file; ///< name in the chosen folder
        QString name; ///< of the voice track
        int row = 0;
    };

    void layOut();
    void showState();
    [[nodiscard]] QString sourcePath(const QString &file) const;
    [[nodiscard]] QString targetPath(const QString &name) const;
    [[nodiscard]] std::vector<Import> batch() const;
    /// Converts, then files and marks in order; false when the presenter stopped it.
    bool import(const std::vector<Import> &imports);
    bool ConvertFiles(const std::vector<Import> &imports, std::vector<bool> &converted);
    /// Files a voice track and marks its step; false when the presenter stopped it.
    bool fileOne(const Import &import, bool converted);
    /// With progress, as a file on a slow stick may be large; false when the presenter stopped it.
    bool copyMp3(const Import &import);
    void noteFailure(const Import &import);
    [[nodiscard]] QString partPath(const Import &import) const;
    void player_End();

    ConvertContext context_;
    // Made once: a new icon is drawn anew, and its pictures stay in a cache.
    QIcon playIcon_{QStringLiteral(":/icons/play.svg")};
    QIcon stopIcon_{QStringLiteral(":/icons/stop.svg")};
    std::unique_ptr<WavePlayer> player_;
    Mp3Format format_;
    bool running_ = false;
    bool stopWanted_ = false;
    QElapsedTimer sincePump_;
};

} // namespace orvel
