#pragma once

#include "platform/platform.h"
#include "platform/timers.h"
#include "widgets/status_line.h"
#include "windows/desk_key.h"
#include "windows/transfer.h"
#include "windows/workplace.h"

#include <QLabel>
#include <QMainWindow>
#include <QPointer>
#include <QSplitter>
#include <QTabWidget>
#include <QToolBar>
#include <QToolButton>

#include <functional>
#include <memory>
#include <vector>

class QShortcut;

namespace orvel {

class CardPanel;
class EditPanel;
class FilePanel;
class GridPanel;
class AlarmLine;
class InputPanel;
class JoinPanel;
class Joystick;
class MeterPanel;
class PlaybackPanel;
class ProcessorPanel;
class RecorderPanel;
class SavePanel;
class StepPanel;
class TakesPanel;
class frmAdv;
class frmConvert;
class frmDelay;
class frmExport;
class frmImport;
class frmKeys;
class frmManual;
class frmPreview;
class frmRecover;
class frmSetup;
class frmSplash;
class frmStation;
class frmUnfiled;
struct KeptFile;

/// What stands on the main window.
struct Panels {
    ProcessorPanel *processorPanel = nullptr;
    StepPanel *stepPanel = nullptr;
    TakesPanel *takesPanel = nullptr;
    GridPanel *gridPanel = nullptr;
    FilePanel *filePanel = nullptr;
    RecorderPanel *recorderPanel = nullptr;
    PlaybackPanel *playbackPanel = nullptr;
    JoinPanel *joinPanel = nullptr;
    SavePanel *savePanel = nullptr;
    EditPanel *editPanel = nullptr;
    CardPanel *cardPanel = nullptr;
    MeterPanel *meterPanel = nullptr;
    InputPanel *inputPanel = nullptr;
    AlarmLine *lblGuard = nullptr;
    QLabel *lblLoudness = nullptr; ///< of the selected step's take
    QSplitter *lists = nullptr;    ///< playlists and grid
    QTabWidget *tabRec = nullptr;
    QToolButton *cmdFold = nullptr; ///< folds tabRec down to its tabs
    QToolBar *tlbMain = nullptr;
    StatusLine *lblStatus = nullptr;
    QToolButton *cmdWerkmap = nullptr; ///< names the home and opens another; only where letSwitch() was called
};

/// The main window: assembles the panels, opens the other windows, starts and ends the program. What is enabled, and
/// every caption, follows from the rooms.
class frmMain : public QMainWindow {
    Q_OBJECT

  public:
    /// programFolder: where settings, playlists and work files hang. commandLine: all arguments as one text.
    frmMain(Platform &platform, const QString &programFolder, QString commandLine);
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
    /// Stops the clock of the playback and closes a running take.
    void StopAudio();
    /// A button of a joystick, numbered from 1.
    void Joystick1_ButtonDown(int button);
    void setSplash(frmSplash *splash) { splash_ = splash; }
    /// Offers to go on in another home: choose asks which and gives its folder, or an empty text for none. Then the
    /// program is over here, and otherHome() tells where it goes on.
    void letSwitch(std::function<QString()> choose);
    [[nodiscard]] const QString &otherHome() const { return otherHome_; }
    void cmdWerkmap_Click();
    /// Offers what the last run left behind, where it left anything; for a window that is loaded and shown.
    void showUnfiled();
    /// At a station that was never set up: the setup dialog, with what is missing marked.
    void showFirstSetup();
    /// The program is asked to end by the desktop or the system: a running take is closed.
    void endSession();

    [[nodiscard]] Workplace &workplace() { return workplace_; }
    [[nodiscard]] const Panels &panels() const { return panels_; }

  Q_SIGNALS:
    /// The program is over.
    void ended();

  protected:
    void closeEvent(QCloseEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

  private:
    void Form_Initialize();
    [[nodiscard]] View view();
    void makePanels();
    void connectPanels();
    void makeToolbar();
    void makeKeys();
    void addKey(const DeskKeyStroke &stroke);
    void showKeys();
    /// About the part of the window that has the focus.
    void showManual();
    void showManualAbout(QWidget &control);
    void showNextOpenSlot();
    /// The panel with card, mixer and processor: only its tabs, or all of it.
    void fold(bool folded);
    /// As the presenter left it.
    void restoreDesk();
    void rememberDesk();
    /// What the presenter can do as long as no playlist is open.
    [[nodiscard]] QString nextStep() const;
    /// Which playlist is open and how far it is.
    void showProgress();
    void layOut();
    /// For small windows and large letters, or as ever.
    void arrange(bool dense);
    void showLists();
    [[nodiscard]] int captionsWidth() const;
    QWidget *recordingStrip();

    void loadSettings();
    /// False when another ORVEL works in this folder and the presenter does not wait for it.
    bool takeStation();
    bool checkSoundCard();
    void fillCards();
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
    void showPreview();
    void showAdvanced();
    void showDelay();
    void showConvert();
    void showRecover();
    /// A kept file is in its place again: the lists show it, and a take can be listened to and saved.
    void recovered(const KeptFile &kept, bool replaced);
    void refreshLists(const QStringList &replaced);
    void showProcess(bool visible);
    /// Everything that follows from the session: what is enabled, captions, labels.
    void showDesk();
    void wavTake_seekWanted(double milliseconds);
    void wavTake_cutWanted(double from, double to);
    /// The take's outline, and how it fits.
    void showTake();
    void showTalk();
    void showTick();
    /// What the watch has noticed.
    void showWatch();
    void tell(const QString &sentence);
    /// Announces that a recording begins or ends.
    void announceRecording();

    Platform &platform_;
    QString commandLine_;
    Panels panels_;
    Workplace workplace_;
    frmSplash *splash_ = nullptr;
    bool unloaded_ = false;
    std::function<QString()> chooseHome_;
    QString otherHome_;
    Joystick &Joystick1;
    std::unique_ptr<Timer> tmrJoystick_;
    std::unique_ptr<frmSplash> about_;
    std::unique_ptr<frmAdv> adv_;
    std::unique_ptr<frmConvert> convert_;
    std::unique_ptr<frmDelay> delay_;
    std::unique_ptr<frmPreview> preview_;
    std::unique_ptr<frmRecover> recover_;
    std::unique_ptr<frmImport> import_;
    std::unique_ptr<frmKeys> keySheet_;
    QPointer<frmManual> manual_; ///< beside the window that it was asked from
    std::vector<DeskKeyStroke> keys_;
    QShortcut *escape_ = nullptr; ///< only while a count-down runs
    bool isFolded_ = false;
    bool isDense_ = false;
    bool isNew_ = false;        ///< the station was never set up
    bool wasRecording_ = false; ///< as it was announced
    std::unique_ptr<frmExport> export_;
    std::unique_ptr<frmSetup> setup_;
    std::unique_ptr<frmUnfiled> unfiled_;
    QPointer<frmStation> station_; ///< made anew for every version of a multivoice take
    ProcessorSettings processorSettings_ = processorKeys();
    Settings stored_; ///< as the settings file had them at the start
};

} // namespace orvel
