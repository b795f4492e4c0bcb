#include "windows/frm_main.h"

#include "platform/audio.h"
#include "platform/file_system.h"
#include "platform/joystick.h"
#include "platform/prompts.h"
#include "platform/runtime_error.h"
#include "playlist/printing.h"
#include "playlist/step_types.h"
#include "production/transcode.h"
#include "recording/player_settings.h"
#include "station/ignore_errors.h"
#include "station/paths.h"
#include "windows/on.h"

#include <QApplication>
#include <QCloseEvent>
#include <QToolBar>

namespace orvel {

namespace {

constexpr int joystickMs = 20;
const QString errorTitle = QStringLiteral("Foutmelding");

} // namespace

frmMain::frmMain(Platform &platform, QString programFolder, QString commandLine)
    : platform_(platform), programFolder_(std::move(programFolder)), commandLine_(std::move(commandLine)),
      workplace_(platform, programFolder_, [this](const QString &path) { keepCopy(path); }),
      Joystick1(platform.joystick), tmrJoystick_(platform.timers.create(joystickMs, MissedTicks::Drop, [this] {
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
    panels_.stepPanel = new StepPanel(this);
    panels_.gridPanel = new GridPanel(workplace_.datList, workplace_.step, *panels_.stepPanel, this);
    const auto tellIt = [this](const QString &sentence) { tell(sentence); };
    panels_.filePanel = new FilePanel(platform_, workplace_.settings, workplace_.step, *panels_.gridPanel,
                                      workplace_.recovery, tellIt, this);
    completion_ = std::make_unique<Completion>(platform_.files, platform_.prompts, workplace_.settings,
                                               workplace_.datList, *panels_.gridPanel, *panels_.filePanel);
    panels_.recorderPanel = new RecorderPanel({platform_, workplace_.settings, programFolder_, workplace_.step,
                                               *panels_.gridPanel, *panels_.stepPanel, workplace_.recovery,
                                               [this](const QString &take) { chain_->AudioProcessing(take); }, tellIt},
                                              this);
    panels_.savePanel =
        new SavePanel({platform_, workplace_.settings, programFolder_, workplace_.step, *panels_.gridPanel,
                       *completion_, workplace_.recovery, tellIt, [this](bool busy) { setBusy(busy); },
                       [this] { panels_.playbackPanel->interrupt(); }, [this] { showStations(); }},
                      this);
    panels_.playbackPanel =
        new PlaybackPanel({platform_, workplace_.settings, programFolder_, workplace_.step, *panels_.gridPanel,
                           *panels_.recorderPanel->ledTijd, [this](bool idle) { enableOthers(idle); }},
                          this);
    panels_.cardPanel = new CardPanel(platform_, tellIt, this);
    panels_.meterPanel = new MeterPanel(this);
    panels_.processorPanel = new ProcessorPanel(this);
    chain_ = std::make_unique<ProcessingChain>(
        ProcessingContext{platform_, programFolder_, *panels_.processorPanel, workplace_.recovery,
                          [this](bool visible) { showProcess(visible); }, tellIt});
    on(panels_.cardPanel, &CardPanel::advancedWanted, this, &frmMain::showAdvanced);
    // Listening ends first: it enables what the count-down disables.
    on(panels_.recorderPanel, &RecorderPanel::takeReady, panels_.playbackPanel, &PlaybackPanel::interrupt);
    on(panels_.recorderPanel, &RecorderPanel::takeReady, panels_.playbackPanel->cmdPlay, &QWidget::setEnabled);
    on(panels_.recorderPanel, &RecorderPanel::takeReady, panels_.savePanel->cmdSave, &QWidget::setEnabled);
    on(panels_.recorderPanel, &RecorderPanel::levelChanged, panels_.meterPanel, &MeterPanel::setLevel);
    on(panels_.playbackPanel, &PlaybackPanel::levelsChanged, panels_.meterPanel, &MeterPanel::setLevels);
    on(panels_.savePanel->cmdImport, &QPushButton::clicked, this, &frmMain::showConvert);
    on(panels_.gridPanel, &GridPanel::previewWanted, this, &frmMain::showPreview);
    on(panels_.filePanel, &FilePanel::recoverWanted, this, &frmMain::showRecover);
}

bool frmMain::Form_Load() {
    loadSettings();
    if (!checkSoundCard()) {
        return false;
    }
    panels_.savePanel->setFormat(mp3Format(workplace_.settings.BitRate, workplace_.settings.FreeFormat));
    fillCards();
    platform_.sound.audioPlayer().setDevice(workplace_.settings.RecCard);
    panels_.playbackPanel->setOutput(playerSettings(workplace_.settings));
    makeFolders();
    panels_.filePanel->refreshNew();
    panels_.filePanel->refreshOk();
    panels_.recorderPanel->CountdownLeft = 4;
    openCatalogues();
    checkVoiceTrackFolder();
    panels_.tabRec->setCurrentIndex(0);
    panels_.savePanel->cmdMultivoice->setEnabled(
        platform_.files.fileExists(joined(programFolder_, QStringLiteral("\\syncstations.mdb"))));
    readCommandLine();
    panels_.cardPanel->watch();
    tmrJoystick_->setEnabled(true);
    if (splash_) {
        splash_->close();
    }
    return true;
}

void frmMain::loadSettings() {
    LoadSettings(platform_.files, programFolder_, workplace_.settings, processorSettings_);
    stored_ = workplace_.settings;
    workplace_.drives = loadDrives(platform_.files, programFolder_);
    if (const QString sentence = panels_.processorPanel->show(processorSettings_); !sentence.isEmpty()) {
        tell(sentence);
    }
    panels_.gridPanel->steps().setStyles(applyStepStyles(workplace_.settings));
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
    panels_.cardPanel->listCards();
    panels_.cardPanel->selectCard({workplace_.settings.RecCard, workplace_.settings.RecCardName});
    panels_.cardPanel->BuildMixerStrips(panels_.cardPanel->lineCount());
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
    if (!workplace_.settings.Network) {
        return;
    }
    const QString tracks = joined(workplace_.settings.Databasepath, QStringLiteral("\\digital.mdb"));
    if (!platform_.files.fileExists(tracks)) {
        workplace_.settings.Network = {};
        platform_.prompts.message(
            QStringLiteral("Databasebestanden van de server werden niet gevonden, controleer instellingen !"),
            errorTitle, MessageIcon::Exclamation);
        setup().exec();
        return;
    }
    for (const int kind : {TrackStep, JingleStep}) {
        try {
            openCatalogue(kind);
        } catch (const RuntimeError &error) {
            // Recording works without catalogues, and what is in the other one can be previewed: the start goes on.
            platform_.prompts.message(error.report(), errorTitle, MessageIcon::Exclamation);
        }
    }
}

void frmMain::openCatalogue(int kind) {
    std::unique_ptr<RecordSet> &records = kind == TrackStep ? workplace_.datTracks : workplace_.datJingles;
    records.reset();
    records = openedCatalogue(platform_.databases, workplace_.settings.Databasepath, kind);
}

void frmMain::checkVoiceTrackFolder() {
    if (!workplace_.settings.ServerMode || platform_.files.folderExists(workplace_.settings.VoicetrackPath)) {
        return;
    }
    platform_.prompts.message(
        QStringLiteral("Locatie van voicetracks op de server werd niet gevonden, controleer instellingen !"),
        errorTitle, MessageIcon::Exclamation);
    setup().exec();
}

void frmMain::readCommandLine() {
    workplace_.RecorderOnly = commandLine_.toUpper() == QStringLiteral("-RECORDER");
    panels_.recorderPanel->RecorderOnly = workplace_.RecorderOnly;
    panels_.savePanel->RecorderOnly = workplace_.RecorderOnly;
    panels_.playbackPanel->RecorderOnly = workplace_.RecorderOnly;
    if (!workplace_.RecorderOnly) {
        return;
    }
    panels_.filePanel->tabFiles->setEnabled(false);
    for (int index = 1; index <= 3; ++index) {
        panels_.tlbMain->actions().at(index - 1)->setEnabled(false);
    }
    panels_.gridPanel->dbgLijst->setEnabled(false);
    panels_.savePanel->cmdImport->setEnabled(false);
    panels_.recorderPanel->cmdRec->setEnabled(true);
}

void frmMain::tlbMain_ButtonClick(int index) {
    switch (index) {
    case 1:
        Printing(platform_, programFolder_, workplace_.step, workplace_.datList).Printen();
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
    saveAudio(platform_.files, programFolder_, panels_.cardPanel->chosenCard(), panels_.processorPanel->settings());
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
    panels_.playbackPanel->stopClock();
    panels_.recorderPanel->stopRecorder();
}

void frmMain::Joystick1_ButtonDown(int button) const {
    constexpr int recordButton = 1;
    constexpr int playButton = 2;
    constexpr int saveButton = 4;
    // A question or a modal window comes first, as it does for the mouse.
    if (QApplication::activeModalWidget() != nullptr) {
        return;
    }
    if (button == recordButton && panels_.recorderPanel->cmdRec->isEnabled()) {
        panels_.recorderPanel->cmdRec_Click();
    } else if (button == playButton && panels_.playbackPanel->cmdPlay->isEnabled()) {
        panels_.playbackPanel->cmdPlay_Click();
    } else if (button == saveButton && panels_.savePanel->cmdSave->isEnabled()) {
        panels_.savePanel->cmdSave_Click();
    }
}

void frmMain::enableOthers(bool idle) const {
    panels_.savePanel->cmdImport->setEnabled(idle);
    panels_.recorderPanel->cmdRec->setEnabled(idle);
    panels_.savePanel->cmdSave->setEnabled(idle);
}

void frmMain::tell(const QString &sentence) const {
    panels_.lblStatus->setText(sentence);
}

void frmMain::keepCopy(const QString &playlist) {
    const QString problem = workplace_.recovery.keepCopy(playlist);
    if (!problem.isEmpty()) {
        tell(problem);
    }
}

void frmMain::setBusy(bool busy) const {
    panels_.recorderPanel->setBusy(busy);
    // Listening enables the record button when it ends.
    panels_.playbackPanel->setEnabled(!busy);
    panels_.savePanel->cmdImport->setEnabled(!busy && workplace_.step.StepSelected && !workplace_.RecorderOnly);
    panels_.filePanel->setEnabled(!busy);
    panels_.gridPanel->dbgLijst->setEnabled(!busy && !workplace_.RecorderOnly);
}

} // namespace orvel
