#include "windows/frm_main.h"

#include "platform/audio.h"
#include "platform/file_system.h"
#include "platform/guarded.h"
#include "platform/joystick.h"
#include "platform/prompts.h"
#include "platform/runtime_error.h"
#include "playlist/printing.h"
#include "production/transcode.h"
#include "recording/player_settings.h"
#include "settings/setup_rules.h"
#include "station/ignore_errors.h"
#include "station/work_folders.h"
#include "widgets/alarm_line.h"
#include "widgets/status_line.h"
#include "windows/card_panel.h"
#include "windows/desk_drops.h"
#include "windows/desk_menus.h"
#include "windows/edit_panel.h"
#include "windows/file_panel.h"
#include "windows/frm_adv.h"
#include "windows/frm_convert.h"
#include "windows/frm_delay.h"
#include "windows/frm_export.h"
#include "windows/frm_import.h"
#include "windows/frm_keys.h"
#include "windows/frm_preview.h"
#include "windows/frm_recover.h"
#include "windows/frm_setup.h"
#include "windows/frm_splash.h"
#include "windows/frm_station.h"
#include "windows/frm_unfiled.h"
#include "windows/grid_panel.h"
#include "windows/input_panel.h"
#include "windows/join_panel.h"
#include "windows/on.h"
#include "windows/playback_panel.h"
#include "windows/processor_panel.h"
#include "windows/recorder_panel.h"
#include "windows/save_panel.h"
#include "windows/step_panel.h"
#include "windows/takes_panel.h"

#include <QApplication>
#include <QCloseEvent>
#include <QShortcut>

#include <utility>

namespace orvel {

namespace {

constexpr int joystickMs = 20;
} // namespace

frmMain::frmMain(Platform &platform, const QString &programFolder, QString commandLine)
    : platform_(platform), commandLine_(std::move(commandLine)), workplace_(platform, programFolder, view()),
      Joystick1(platform.joystick), tmrJoystick_(platform.timers.create(joystickMs, MissedTicks::Drop, [this] {
          for (const int button : Joystick1.pressed()) {
              Joystick1_ButtonDown(button);
          }
      })) {
    Form_Initialize();
}

// The panels look at the workplace: they go first.
frmMain::~frmMain() {
    delete takeCentralWidget();
}

void frmMain::Form_Initialize() {
    setObjectName(QStringLiteral("frmMain"));
    setWindowTitle(QStringLiteral("ORVEL"));
    setWindowIcon(QIcon(QStringLiteral(":/icons/orvel.svg")));
    makePanels();
    connectPanels();
    new DeskDrops(workplace_, transferContext(), *panels_.gridPanel, *panels_.filePanel, panels_.gridPanel);
    makeToolbar();
    new DeskMenus(panels_, workplace_.datList, workplace_.step, panels_.gridPanel);
    layOut();
    makeKeys();
    fold(false);
    showDesk();
}

View frmMain::view() {
    View view;
    view.tell = [this](const QString &sentence) { tell(sentence); };
    view.changed = [this] { showDesk(); };
    view.ticked = [this] { showTick(); };
    view.levels = [this](float left, float right) { panels_.meterPanel->setLevels(left, right); };
    view.showRow = [this](int row) { panels_.gridPanel->selectRow(row); };
    view.rowChanged = [this](int row) { panels_.gridPanel->showChanged(row); };
    view.refreshPlaylist = [this] { panels_.gridPanel->refresh(); };
    view.closePlaylist = [this] { panels_.gridPanel->closePlaylist(); };
    view.refreshLists = [this] {
        panels_.filePanel->refreshNew();
        panels_.filePanel->refreshOk();
        workplace_.takes.shelf().clearFinished(workplace_.settings.NewPath);
    };
    view.processor = [this] { return panels_.processorPanel->settings(); };
    view.showStations = [this] { showStations(); };
    view.progress = [this](std::optional<int> percent) { panels_.savePanel->showProgress(percent); };
    view.pictureChanged = [this] {
        panels_.stepPanel->showPicture();
        panels_.stepPanel->showMarks(workplace_.marksInSight());
    };
    view.chosenCard = [this] { return panels_.cardPanel->chosenCard().name; };
    view.watched = [this] { showWatch(); };
    view.showProcess = [this](bool visible) { showProcess(visible); };
    return view;
}

void frmMain::makePanels() {
    Workplace &work = workplace_;
    panels_.stepPanel = new StepPanel(work.picture, this);
    panels_.takesPanel = new TakesPanel(work.session, work.retouching, work.dryListening, this);
    panels_.gridPanel = new GridPanel(work.datList, work.step, work.tracks, this);
    panels_.filePanel =
        new FilePanel(platform_, work.settings, work.step, *panels_.gridPanel, work.recovery, work.view.tell, this);
    panels_.recorderPanel = new RecorderPanel(work.session, this);
    panels_.savePanel = new SavePanel(work.saving, this);
    panels_.editPanel = new EditPanel(work.retouching, this);
    panels_.playbackPanel = new PlaybackPanel(work.listening, work.session, this);
    panels_.joinPanel = new JoinPanel(work.joins, work.talkAlong, this);
    panels_.cardPanel = new CardPanel(platform_, work.delay, work.view.tell, this);
    panels_.meterPanel = new MeterPanel(this);
    panels_.inputPanel = new InputPanel(this);
    panels_.lblGuard = new AlarmLine(this);
    panels_.lblGuard->setObjectName(QStringLiteral("lblGuard"));
    panels_.processorPanel = new ProcessorPanel(this);
}

void frmMain::connectPanels() {
    on(panels_.cardPanel, &CardPanel::advancedWanted, this, &frmMain::showAdvanced);
    on(panels_.cardPanel, &CardPanel::delayWanted, this, &frmMain::showDelay);
    // What was saved is followed by the next link.
    on(panels_.savePanel->cmdSave, &QPushButton::clicked, panels_.recorderPanel->cmdRec,
       [this] { panels_.recorderPanel->cmdRec->setFocus(); });
    on(panels_.savePanel->cmdImport, &QPushButton::clicked, this, &frmMain::showConvert);
    on(panels_.gridPanel, &GridPanel::stepSelected, this, [this] {
        workplace_.session.stepSelected();
        workplace_.talkAlong.stepSelected();
    });
    on(panels_.gridPanel, &GridPanel::previewWanted, this, &frmMain::showPreview);
    on(&panels_.gridPanel->steps(), &StepsModel::unreadable, this,
       [this](const auto &...sentence) { (tell(sentence), ...); });
    const auto listen = [this](auto... milliseconds) { (wavTake_seekWanted(milliseconds), ...); };
    on(panels_.stepPanel->wavTake, &Waveform::seekWanted, this, listen);
    on(panels_.stepPanel->wavTake, &Waveform::scrubbed, this, listen);
    on(panels_.stepPanel->wavTake, &Waveform::cutWanted, this, [this](auto... ends) {
        if constexpr (sizeof...(ends) == 2) {
            wavTake_cutWanted(ends...);
        }
    });
    on(panels_.filePanel, &FilePanel::recoverWanted, this, &frmMain::showRecover);
}

bool frmMain::Form_Load() {
    readCommandLine();
    loadSettings();
    if (!checkSoundCard() || !takeStation()) {
        return false;
    }
    Workplace &work = workplace_;
    work.filing.setFormat(mp3Format(work.settings.BitRate, work.settings.FreeFormat));
    fillCards();
    platform_.sound.audioPlayer().setDevice(work.settings.RecCard);
    work.listening.setOutput(playerSettings(work.settings));
    work.talkAlong.setOutput(playerSettings(work.settings));
    work.joins.setOutput(playerSettings(work.settings));
    work.delay.setOutput(playerSettings(work.settings));
    if (const QString problem = makeWorkFolders(platform_.files, work.places); !problem.isEmpty()) {
        platform_.prompts.message(problem, errorTitle, MessageIcon::Exclamation);
    }
    work.view.refreshLists();
    work.tidyTakes();
    if (!work.catalogues.open()) {
        setup().exec();
    }
    checkVoiceTrackFolder();
    panels_.tabRec->setCurrentIndex(0);
    work.readStations();
    work.session.mode.hasStations = platform_.files.fileExists(work.places.stationList());
    showDesk();
    panels_.cardPanel->watch();
    work.watch.begin();
    restoreDesk();
    tmrJoystick_->setEnabled(true);
    if (splash_) {
        splash_->close();
    }
    return true;
}

void frmMain::loadSettings() {
    isNew_ = !hasSettings(platform_.files, workplace_.places.programFolder());
    LoadSettings(platform_.files, workplace_.places.programFolder(), workplace_.settings, processorSettings_);
    stored_ = workplace_.settings;
    workplace_.drives = loadDrives(platform_.files, workplace_.places.programFolder());
    workplace_.delays.load();
    if (const QString sentence = panels_.processorPanel->show(processorSettings_); !sentence.isEmpty()) {
        tell(sentence);
    }
    panels_.gridPanel->steps().setStyles(applyStepStyles(workplace_.settings));
}

bool frmMain::takeStation() {
    StationLock &lock = workplace_.lock;
    return workplace_.session.mode.RecorderOnly || lock.get() ||
           platform_.prompts.waitUntil(lock.sentence(), QStringLiteral("ORVEL"), [&lock] { return lock.get(); });
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

void frmMain::fillCards() {
    panels_.cardPanel->listCards();
    panels_.cardPanel->selectCard({workplace_.settings.RecCard, workplace_.settings.RecCardName});
    panels_.cardPanel->BuildMixerStrips(panels_.cardPanel->lineCount());
}

void frmMain::checkVoiceTrackFolder() {
    if (workplace_.tracks.isServerThere()) {
        return;
    }
    platform_.prompts.message(
        QStringLiteral("Locatie van voicetracks op de server werd niet gevonden, controleer instellingen !"),
        errorTitle, MessageIcon::Exclamation);
    setup().exec();
}

void frmMain::readCommandLine() {
    workplace_.session.mode.RecorderOnly = commandLine_.toUpper() == QStringLiteral("-RECORDER");
}

void frmMain::tlbMain_ButtonClick(int index) {
    switch (index) {
    case 1:
        Printing(platform_, workplace_.places, workplace_.step, workplace_.datList, workplace_.tracks).Printen();
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
    saveAudio(platform_.files, workplace_.places.programFolder(), panels_.cardPanel->chosenCard(),
              panels_.processorPanel->settings());
}

void frmMain::Form_QueryUnload() {
    // The exit button ends the program, and its end closes the window.
    if (std::exchange(unloaded_, true)) {
        return;
    }
    // Nothing here may keep the program open, and a running take must be closed properly.
    ignoringErrors([&] { StopAudio(); });
    guarded([this] { BewaarAudio(); });
    // How the windows stood is not worth a message.
    ignoringErrors([&] { rememberDesk(); });
}

void frmMain::closeEvent(QCloseEvent *event) {
    guarded([this] { Form_QueryUnload(); });
    event->accept();
    Q_EMIT ended();
}

void frmMain::endSession() {
    Form_QueryUnload();
    Q_EMIT ended();
}

void frmMain::StopAudio() {
    workplace_.listening.stopClock();
    workplace_.session.close();
}

void frmMain::Joystick1_ButtonDown(int button) {
    // A question or a modal window comes first, as it does for the mouse.
    if (QApplication::activeModalWidget() != nullptr) {
        return;
    }
    switch (pressed(button, workplace_.session.allowed())) {
    case DeskKey::Record:
        panels_.recorderPanel->cmdRec_Click();
        break;
    case DeskKey::Play:
        panels_.playbackPanel->cmdPlay_Click();
        break;
    case DeskKey::Save:
        panels_.savePanel->cmdSave_Click();
        break;
    case DeskKey::None:
        break;
    }
}

void frmMain::showDesk() {
    workplace_.retouching.look();
    const Allowed may = workplace_.session.allowed();
    panels_.recorderPanel->cmdRec->setEnabled(may.cmdRec);
    panels_.playbackPanel->cmdPlay->setEnabled(may.cmdPlay);
    panels_.savePanel->cmdSave->setEnabled(may.cmdSave);
    panels_.savePanel->cmdImport->setEnabled(may.cmdImport);
    panels_.savePanel->cmdMultivoice->setEnabled(may.cmdMultivoice);
    panels_.editPanel->cmdFit->setEnabled(may.cmdFit);
    panels_.editPanel->cmdUndo->setEnabled(may.cmdUndo);
    panels_.editPanel->cmdRedo->setEnabled(may.cmdRedo);
    panels_.filePanel->tabFiles->setEnabled(may.lists);
    if (panels_.cmdWerkmap != nullptr) {
        panels_.cmdWerkmap->setEnabled(workplace_.session.isIdle());
    }
    panels_.gridPanel->dbgLijst->setEnabled(may.dbgLijst);
    for (int index = 1; index <= 3; ++index) {
        panels_.tlbMain->actions().at(index - 1)->setEnabled(may.playlistTools);
    }
    panels_.recorderPanel->show();
    panels_.playbackPanel->show();
    panels_.savePanel->show();
    panels_.joinPanel->show(may);
    panels_.cardPanel->showDelay(may.cmdDelay);
    if (delay_) {
        delay_->showProgress();
    }
    panels_.editPanel->show();
    panels_.stepPanel->show(workplace_.step, workplace_.session.fileName(),
                            neighboursOf(workplace_.datList, workplace_.step));
    showTake();
    escape_->setEnabled(workplace_.session.state() == SessionState::CountingDown);
    panels_.lblLoudness->setText(workplace_.takeLoudness());
    if (frmStation *chooser = station_; chooser != nullptr && !workplace_.session.isIdle()) {
        chooser->versions->stop(); // what is heard would be recorded
    }
    showProgress();
    announceRecording();
}

void frmMain::wavTake_seekWanted(double milliseconds) {
    workplace_.listening.listenFrom(static_cast<std::int32_t>(milliseconds));
}

void frmMain::wavTake_cutWanted(double from, double to) {
    workplace_.cutTake(from, to);
}

void frmMain::showTake() {
    workplace_.follow();
    panels_.takesPanel->show();
    panels_.stepPanel->showMarks(workplace_.marksInSight());
    panels_.stepPanel->wavTake->setCuttable(workplace_.session.allowed().cut);
    showTalk();
}

void frmMain::showTalk() {
    const SessionState state = workplace_.session.state();
    const bool records = state == SessionState::Recording;
    panels_.stepPanel->showPhase(
        phaseOf(workplace_.step,
                records ? workplace_.session.ElapsedMs() : static_cast<std::int32_t>(workplace_.picture.lengthMs())));
    panels_.stepPanel->wavTake->setPosition(
        state == SessionState::Listening ? std::optional<double>(workplace_.listening.position()) : std::nullopt);
}

void frmMain::showWatch() {
    panels_.lblGuard->tell(workplace_.watch.guard().sentences());
    panels_.inputPanel->show(workplace_.watch.verdict(), workplace_.watch.guard().hasClipped());
}

void frmMain::showTick() {
    const TakeSession &session = workplace_.session;
    showTalk();
    panels_.recorderPanel->showCount();
    if (session.state() == SessionState::Recording) {
        panels_.stepPanel->showBar(workplace_.step);
        panels_.recorderPanel->showElapsed(session.ElapsedMs());
    } else if (session.state() == SessionState::Listening) {
        panels_.recorderPanel->showElapsed(workplace_.listening.position());
    }
}

void frmMain::tell(const QString &sentence) {
    panels_.lblStatus->tell(sentence);
}

void frmMain::announceRecording() {
    const bool records = workplace_.session.state() == SessionState::Recording;
    if (std::exchange(wasRecording_, records) != records) {
        panels_.lblStatus->announce(records ? tr("De aftelling is voorbij, de opname loopt.")
                                            : tr("De opname is gestopt."));
    }
}

} // namespace orvel
