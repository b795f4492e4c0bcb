#pragma once

#include "platform/database.h"
#include "platform/platform.h"
#include "playlist/current_step.h"
#include "production/processing_chain.h"
#include "settings/settings.h"
#include "station/recovery.h"
#include "windows/card_panel.h"
#include "windows/completion.h"
#include "windows/file_panel.h"
#include "windows/frm_adv.h"
#include "windows/frm_convert.h"
#include "windows/frm_export.h"
#include "windows/frm_import.h"
#include "windows/frm_preview.h"
#include "windows/frm_recover.h"
#include "windows/frm_setup.h"
#include "windows/frm_splash.h"
#include "windows/frm_station.h"
#include "windows/grid_panel.h"
#include "windows/playback_panel.h"
#include "windows/processor_panel.h"
#include "windows/recorder_panel.h"
#include "windows/save_panel.h"
#include "windows/workplace.h"

#include <QMainWindow>
#include <QPointer>
#include <QTabWidget>

namespace orvel {

/// What stands on the main window.
struct Panels {
    StepPanel *stepPanel = nullptr;
    GridPanel *gridPanel = nullptr;
    FilePanel *filePanel = nullptr;
    RecorderPanel *recorderPanel = nullptr;
    PlaybackPanel *playbackPanel = nullptr;
    SavePanel *savePanel = nullptr;
    CardPanel *cardPanel = nullptr;
    MeterPanel *meterPanel = nullptr;
    ProcessorPanel *processorPanel = nullptr;
    QTabWidget *tabRec = nullptr;
    QToolBar *tlbMain = nullptr;
    QLabel *lblStatus = nullptr;
};

/// The main window: owns the shared state, assembles the rooms' panels, starts and ends the program.
class frmMain : public QMainWindow {
    Q_OBJECT

  public:
    /// programFolder: where settings, playlists and work files hang. commandLine: all arguments as one text.
    frmMain(Platform &platform, QString programFolder, QString commandLine);
    frmMain(const frmMain &) = delete;
    frmMain &operator=(const frmMain &) = delete;
    frmMain(frmMain &&) = delete;
    frmMain &operator=(frmMain &&) = delete;
    ~frmMain() override;

    /// Loads settings, sound devices, catalogues and folders, in that order. False when the program must end at once.
    bool Form_Load();
    void tlbMain_ButtonClick(int index);
    /// Writes the recording card and the processor panel to the settings file.
    void BewaarAudio();
    /// Stops the clock of the playback and the recorder.
    void StopAudio() const;
    /// A button of a joystick, numbered from 1.
    void Joystick1_ButtonDown(int button) const;
    void setSplash(frmSplash *splash) { splash_ = splash; }

    [[nodiscard]] Workplace &workplace() { return workplace_; }
    [[nodiscard]] const Panels &panels() const { return panels_; }

  Q_SIGNALS:
    /// The program is over.
    void ended();

  protected:
    void closeEvent(QCloseEvent *event) override;

  private:
    void Form_Initialize();
    void makePanels();
    void makeToolbar();
    void layOut();
    QWidget *recordingStrip();

    void loadSettings();
    bool checkSoundCard();
    void fillCards() const;
    void makeFolders();
    void tryToWrite(const QString &folder);
    void openCatalogues();
    void checkVoiceTrackFolder();
    void readCommandLine();
    void Form_QueryUnload();
    void showSplash();
    void showStations();
    void showImport();
    void showExport();
    void showSetup();
    /// The setup dialog, with its controls filled.
    frmSetup &setup();
    [[nodiscard]] TransferContext transferContext();
    /// The open playlist may have been replaced by an import.
    void reopenPlaylist();
    /// Throws what openedCatalogue() throws; the kind's catalogue is null then.
    void openCatalogue(int kind);
    void showPreview();
    void showAdvanced();
    void showConvert();
    void showRecover();
    /// A kept file is in its place again: the lists show it, and a take can be listened to and saved.
    void recovered(const KeptFile &kept, bool replaced);
    void offerTake(const QString &take);
    void refreshLists(const QStringList &replaced);
    void showProcess(bool visible) const;
    void enableOthers(bool idle) const;
    void tell(const QString &sentence) const;
    /// Of a playlist that is about to be changed for the first time.
    void keepCopy(const QString &playlist);
    void setBusy(bool busy) const;

    Platform &platform_;
    QString programFolder_;
    QString commandLine_;
    Workplace workplace_;
    Panels panels_;
    frmSplash *splash_ = nullptr;
    Joystick &Joystick1;
    std::unique_ptr<Timer> tmrJoystick_;
    std::unique_ptr<frmSplash> about_;
    std::unique_ptr<ProcessingChain> chain_;
    std::unique_ptr<frmAdv> adv_;
    std::unique_ptr<frmConvert> convert_;
    std::unique_ptr<frmPreview> preview_;
    std::unique_ptr<frmRecover> recover_;
    std::unique_ptr<frmImport> import_;
    std::unique_ptr<frmExport> export_;
    std::unique_ptr<frmSetup> setup_;
    QPointer<frmStation> station_; ///< made anew for every version of a multivoice take
    std::unique_ptr<Completion> completion_;
    ProcessorSettings processorSettings_;
    Settings stored_; ///< as the settings file had them at the start
};

} // namespace orvel
