#include "app/frm_main.h"

#include "platform/audio.h"
#include "platform/file_system.h"
#include "platform/joystick.h"
#include "platform/prompts.h"
#include "platform/runtime_error.h"
#include "playlist/printing.h"
#include "production/transcode.h"
#include "recording/player_settings.h"
#include "shell/ignore_errors.h"
#include "shell/paths.h"

#include <QApplication>
#include <QCloseEvent>
#include <QToolBar>

namespace orvel {

namespace {

constexpr int joystickMs = 20;
const QString errorTitle = QStringLiteral("Foutmelding");

} // namespace

frmMain::frmMain(Platform &platform, QString programFolder, QString commandLine)
    : datList(platform.databases, [this](const QString &path) { keepCopy(path); }),
      recovery(platform.files, programFolder), platform_(platform), programFolder_(std::move(programFolder)),
      commandLine_(std::move(commandLine)), drives_(platform.files, programFolder_), Joystick1(platform.joystick),
      tmrJoystick_(platform.timers.create(joystickMs, MissedTicks::Drop, [this] {
          for (const int button : Joystick1.pressed()) {
              Joystick1_ButtonDown(button);
          }
      })) {
    Form_Initialize();
}

frmMain::~frmMain() = default;

void frmMain::Form_Initialize() {
    setObjectName(QStringLiteral("frmMain"));
    setWindowTitle(QStringLiteral("ORVEL"));
    setWindowIcon(QIcon(QStringLiteral(":/icons/orvel.svg")));
    makePanels();
    makeToolbar();
    layOut();
}

void frmMain::makePanels() {
    stepPanel = new StepPanel(this);
    gridPanel = new GridPanel(datList, step, *stepPanel, this);
    filePanel = new FilePanel(platform_, settings, step, *gridPanel, this);
    completion_ =
        std::make_unique<Completion>(platform_.files, platform_.prompts, settings, datList, *gridPanel, *filePanel);
    const auto tellIt = [this](const QString &sentence) { tell(sentence); };
    recorderPanel = new RecorderPanel({platform_, settings, programFolder_, step, *gridPanel, *stepPanel, recovery,
                                       [this](const QString &take) { chain_->AudioProcessing(take); }, tellIt},
                                      this);
    savePanel = new SavePanel({platform_, settings, programFolder_, step, *gridPanel, *completion_, recovery, tellIt,
                               [this](bool busy) { setBusy(busy); }, [this] { playbackPanel->interrupt(); },
                               [this] { showStations(); }},
                              this);
    playbackPanel = new PlaybackPanel({platform_, settings, programFolder_, step, *gridPanel, *recorderPanel->ledTijd,
                                       [this](bool idle) { enableOthers(idle); }},
                                      this);
    cardPanel = new CardPanel(platform_, tellIt, this);
    meterPanel = new MeterPanel(this);
    processorPanel = new ProcessorPanel(this);
    chain_ = std::make_unique<ProcessingChain>(ProcessingContext{
        platform_, programFolder_, *processorPanel, recovery, [this](bool visible) { showProcess(visible); }, tellIt});
    connect(cardPanel, &CardPanel::advancedWanted, this, &frmMain::showAdvanced);
    // Listening ends first: it enables what the count-down disables.
    connect(recorderPanel, &RecorderPanel::takeReady, playbackPanel, &PlaybackPanel::interrupt);
    connect(recorderPanel, &RecorderPanel::takeReady, playbackPanel->cmdPlay, &QWidget::setEnabled);
    connect(recorderPanel, &RecorderPanel::takeReady, savePanel->cmdSave, &QWidget::setEnabled);
    connect(recorderPanel, &RecorderPanel::levelChanged, meterPanel, &MeterPanel::setLevel);
    connect(playbackPanel, &PlaybackPanel::levelsChanged, meterPanel, &MeterPanel::setLevels);
    connect(savePanel->cmdImport, &QPushButton::clicked, this, &frmMain::showConvert);
    connect(gridPanel, &GridPanel::previewWanted, this, &frmMain::showPreview);
}

bool frmMain::Form_Load() {
    loadSettings();
    if (!checkSoundCard()) {
        return false;
    }
    savePanel->setFormat(mp3Format(settings.BitRate, settings.FreeFormat));
    fillCards();
    platform_.sound.audioPlayer().setDevice(settings.RecCard);
    playbackPanel->setOutput(playerSettings(settings));
    makeFolders();
    filePanel->refreshNew();
    filePanel->refreshOk();
    recorderPanel->CountdownLeft = 4;
    openCatalogues();
    checkVoiceTrackFolder();
    tabRec->setCurrentIndex(0);
    savePanel->cmdMultivoice->setEnabled(
        platform_.files.fileExists(joined(programFolder_, QStringLiteral("\\syncstations.mdb"))));
    readCommandLine();
    cardPanel->watch();
    tmrJoystick_->setEnabled(true);
    if (splash_) {
        splash_->close();
    }
    return true;
}

void frmMain::loadSettings() {
    LoadSettings(platform_.files, programFolder_, settings, processorSettings_);
    drives_ = loadDrives(platform_.files, programFolder_);
    if (const QString sentence = processorPanel->show(processorSettings_); !sentence.isEmpty()) {
        tell(sentence);
    }
    gridPanel->steps().setStyles(applyStepStyles(settings));
}

bool frmMain::checkSoundCard() {
    // What records an output is no input, and a sound server without any card makes itself an output.
    if (platform_.sound.audioRecord().inputCount() >= 1) {
        return true;
    }
    platform_.prompts.message(QStringLiteral("Geen geluidskaart gevonden !"), QStringLiteral("Fatale fout"),
                              MessageIcon::Critical);
    return false;
}

void frmMain::fillCards() const {
    cardPanel->listCards();
    cardPanel->selectCard({settings.RecCard, settings.RecCardName});
    cardPanel->BuildMixerStrips(cardPanel->lineCount());
}

void frmMain::makeFolders() {
    QString problem; // the first one: the others mostly have the same cause
    for (const char *name : {"\\new", "\\ok", "\\temp", "\\temp2"}) {
        const QString folder = joined(programFolder_, QString::fromLatin1(name));
        try {
            platform_.files.makeFolder(folder);
            tryToWrite(folder);
        } catch (const RuntimeError &error) {
            problem = problem.isEmpty() ? tr("%1 (%2)").arg(folder, error.description()) : problem;
        }
    }
    if (!problem.isEmpty()) {
        platform_.prompts.message(
            tr("ORVEL kan niet schrijven in de map %1.\n\nOpnemen en bewaren lukt niet zolang dat zo is.").arg(problem),
            errorTitle, MessageIcon::Exclamation);
    }
}

/// Better told now than when the presenter has spoken.
void frmMain::tryToWrite(const QString &folder) {
    const QString probe = joined(folder, QStringLiteral("\\.orvel-proef"));
    platform_.files.write(probe, {});
    platform_.files.remove(probe);
}

void frmMain::openCatalogues() {
    if (!settings.Network) {
        return;
    }
    const QString tracks = joined(settings.Databasepath, QStringLiteral("\\digital.mdb"));
    if (!platform_.files.fileExists(tracks)) {
        settings.Network = {};
        platform_.prompts.message(
            QStringLiteral("Databasebestanden van de server werden niet gevonden, controleer instellingen !"),
            errorTitle, MessageIcon::Exclamation);
        setup().exec();
        return;
    }
    try {
        reopenCatalogues();
    } catch (const RuntimeError &error) {
        // Recording works without catalogues: the start goes on.
        settings.Network = {};
        platform_.prompts.message(error.report(), errorTitle, MessageIcon::Exclamation);
    }
}

void frmMain::reopenCatalogues() {
    const auto records = [this](const char *file, const QString &query) {
        return platform_.databases.open(joined(settings.Databasepath, QString::fromLatin1(file)))->query(query);
    };
    datTracks = records("\\digital.mdb", QStringLiteral("SELECT * From Audio ORDER BY TrackNr"));
    datJingles = records("\\jingles.mdb", QStringLiteral("SELECT * From jingles ORDER BY TrackNr"));
}

void frmMain::checkVoiceTrackFolder() {
    if (!settings.ServerMode || platform_.files.folderExists(settings.VoicetrackPath)) {
        return;
    }
    platform_.prompts.message(
        QStringLiteral("Locatie van voicetracks op de server werd niet gevonden, controleer instellingen !"),
        errorTitle, MessageIcon::Exclamation);
    setup().exec();
}

void frmMain::readCommandLine() {
    RecorderOnly = commandLine_.toUpper() == QStringLiteral("-RECORDER");
    recorderPanel->RecorderOnly = RecorderOnly;
    savePanel->RecorderOnly = RecorderOnly;
    playbackPanel->RecorderOnly = RecorderOnly;
    if (!RecorderOnly) {
        return;
    }
    filePanel->tabFiles->setEnabled(false);
    for (int index = 1; index <= 3; ++index) {
        tlbMain->actions().at(index - 1)->setEnabled(false);
    }
    gridPanel->dbgLijst->setEnabled(false);
    savePanel->cmdImport->setEnabled(false);
    recorderPanel->cmdRec->setEnabled(true);
}

void frmMain::tlbMain_ButtonClick(int index) {
    switch (index) {
    case 1:
        Printing(platform_, programFolder_, step, datList).Printen(this);
        break;
    case 2:
        showImport();
        break;
    case 3:
        showExport();
        break;
    case 4:
        showSetup();
        break;
    case 5:
        showSplash();
        break;
    case 6:
        Form_QueryUnload();
        Q_EMIT ended();
        break;
    default:
        break;
    }
}

void frmMain::BewaarAudio() {
    saveAudio(platform_.files, programFolder_, cardPanel->chosenCard(), processorPanel->settings());
}

void frmMain::Form_QueryUnload() {
    // Nothing here may keep the program open, and a running take must be closed properly.
    ignoringErrors([&] { StopAudio(); });
    try {
        BewaarAudio();
    } catch (const RuntimeError &error) {
        platform_.prompts.message(error.report(), QStringLiteral("ORVEL"), MessageIcon::Exclamation);
    }
}

void frmMain::closeEvent(QCloseEvent *event) {
    Form_QueryUnload();
    event->accept();
    Q_EMIT ended();
}

void frmMain::StopAudio() const {
    playbackPanel->stopClock();
    recorderPanel->stopRecorder();
}

void frmMain::Joystick1_ButtonDown(int button) const {
    constexpr int recordButton = 1;
    constexpr int playButton = 2;
    constexpr int saveButton = 4;
    // A question or a modal window comes first, as it does for the mouse.
    if (QApplication::activeModalWidget() != nullptr) {
        return;
    }
    if (button == recordButton && recorderPanel->cmdRec->isEnabled()) {
        recorderPanel->cmdRec_Click();
    } else if (button == playButton && playbackPanel->cmdPlay->isEnabled()) {
        playbackPanel->cmdPlay_Click();
    } else if (button == saveButton && savePanel->cmdSave->isEnabled()) {
        savePanel->cmdSave_Click();
    }
}

void frmMain::enableOthers(bool idle) const {
    savePanel->cmdImport->setEnabled(idle);
    recorderPanel->cmdRec->setEnabled(idle);
    savePanel->cmdSave->setEnabled(idle);
}

void frmMain::tell(const QString &sentence) const {
    lblStatus->setText(sentence);
}

void frmMain::keepCopy(const QString &playlist) {
    const QString problem = recovery.keepCopy(playlist);
    if (!problem.isEmpty()) {
        tell(problem);
    }
}

void frmMain::setBusy(bool busy) const {
    recorderPanel->setBusy(busy);
    // Listening enables the record button when it ends.
    playbackPanel->setEnabled(!busy);
    savePanel->cmdImport->setEnabled(!busy && step.StepSelected && !RecorderOnly);
    filePanel->setEnabled(!busy);
    gridPanel->dbgLijst->setEnabled(!busy && !RecorderOnly);
}

} // namespace orvel
