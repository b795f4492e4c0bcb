#include "windows/frm_preview.h"

#include "platform/audio.h"
#include "platform/file_system.h"
#include "platform/runtime_error.h"
#include "playlist/field_values.h"
#include "playlist/step_types.h"
#include "recording/player_settings.h"
#include "recording/time_parts.h"
#include "station/checked.h"
#include "windows/named.h"
#include "windows/on.h"

#include <utility>

namespace orvel {

namespace {

/// Catalogues leave fields empty.
QString textOrNothing(const QVariant &value) {
    return value.isNull() ? QString() : toText(value);
}

constexpr int firstVolume = 16384;
constexpr int labelCharacters = 24;

void showText(LedLabel &label, const QString &text) {
    label.setText(text);
    label.setAutoScroll(text.size() > labelCharacters);
    label.setToolTip(text);
}

TimeDisplay *panel(QWidget *parent, const char *name, const QString &accessibleName) {
    return named(new TimeDisplay(TimeDisplay::Fields::Seconds, parent), name, accessibleName);
}

} // namespace

frmPreview::frmPreview(PreviewContext context, QWidget *parent)
    : QDialog(parent), ledTitle(named(new LedLabel(this), "ledTitle", tr("Titel"))),
      ledArtist(named(new LedLabel(this), "ledArtist", tr("Artiest of omschrijving"))),
      lcdMin(panel(this, "lcdMin", tr("Resterende minuten"))), lcdSec(panel(this, "lcdSec", tr("Resterende seconden"))),
      lcdMsec(panel(this, "lcdMsec", tr("Resterende milliseconden"))),
      sliPlay(named(new QSlider(Qt::Horizontal, this), "sliPlay", tr("Positie"))),
      volCue(named(new Knob(this), "volCue", tr("Volume van de voorbeluistering"))),
      cmdPlay(named(new QWidget(this), "cmdPlay", tr("Afspelen"))),
      playButton(new QPushButton(QIcon(QStringLiteral(":/icons/play.svg")), tr("Afspelen"), cmdPlay)),
      stopButton(new QPushButton(QIcon(QStringLiteral(":/icons/stop.svg")), tr("Stop"), cmdPlay)),
      MMLevelX1(named(new LevelMeter(this), "MMLevelX1", tr("Niveau links"))),
      MMLevelX2(named(new LevelMeter(this), "MMLevelX2", tr("Niveau rechts"))), lblProblem(new QLabel(this)),
      context_(std::move(context)), CuePlayer(context_.platform.sound.makePlayer()),
      tmrCuePlayer(context_.platform.timers.create(10, MissedTicks::Drop, [this] { tmrCuePlayer_Timer(); })),
      tmrLevels_(context_.platform.timers.create(40, MissedTicks::Drop, [this] {
          const StereoPeaks peaks = CuePlayer->peaks();
          MMLevelX1->setLevel(peaks.left);
          MMLevelX2->setLevel(peaks.right);
      })) {
    setObjectName(QStringLiteral("frmPreview"));
    setWindowTitle(tr("Voorbeluistering"));
    layOut();
    on(playButton, &QPushButton::clicked, this, [this] { cmdPlay_ButtonClick(PlayCode); });
    on(stopButton, &QPushButton::clicked, this, [this] { cmdPlay_ButtonClick(StopCode); });
    on(sliPlay, &QSlider::sliderPressed, this, &frmPreview::sliPlay_MouseDown);
    on(sliPlay, &QSlider::sliderReleased, this, &frmPreview::sliPlay_MouseUp);
    on(sliPlay, &QSlider::actionTriggered, this, [this](int action) {
        // Keys and the wheel; a drag seeks when it ends.
        if (action != QAbstractSlider::SliderMove || !sliPlay->isSliderDown()) {
            SeekTo(sliPlay->sliderPosition());
        }
    });
    on(volCue, &Knob::valueChanged, this, &frmPreview::volCue_Change);
    CuePlayer->setEndHandler([this] { guarded([this] { CuePlayer_End(); }); });
}

void frmPreview::Form_Load() {
    volCue->setValue(firstVolume);
    volCue_Change();
    if (context_.settings.Network) {
        CuePlayer->setOutput(playerSettings(context_.settings));
    }
    LaadSpeler(context_.step.PreviewTrackId);
    tmrLevels_->setEnabled(true);
    playButton->setFocus();
}

RecordSet *frmPreview::catalogue() const {
    switch (context_.step.PreviewKind) {
    case TrackStep:
        return context_.datTracks.get();
    case JingleStep:
        return context_.datJingles.get();
    default:
        return nullptr;
    }
}

void frmPreview::LaadSpeler(std::int32_t Track) {
    if (!context_.settings.Network || catalogue() == nullptr) {
        return;
    }
    try {
        catalogue()->refresh();
    } catch (const RuntimeError &) {
        context_.reopenCatalogues(); // a station replaces its catalogues while the program runs
    }
    RecordSet *records = catalogue();
    SearchCriterion = QStringLiteral("tracknr=") + QString::number(Track);
    if (records->recordCount() == 0 || !records->findFirst(SearchCriterion)) {
        return;
    }
    const bool isMusic = context_.step.PreviewKind == TrackStep;
    loadFile(textOrNothing(records->field(QStringLiteral("path"))));
    showText(*ledTitle, textOrNothing(records->field(QStringLiteral("titel"))));
    showText(*ledArtist,
             textOrNothing(records->field(isMusic ? QStringLiteral("artiest") : QStringLiteral("Omschrijving"))));
    DrawTime();
    sliPlay->setMaximum(CuePlayer->length());
}

void frmPreview::loadFile(const QString &cataloguePath) {
    CuePlayer->stop();
    lblProblem->clear();
    const QString path = context_.drives.resolve(cataloguePath);
    try {
        CuePlayer->setFileName(path);
    } catch (const RuntimeError &error) {
        const bool missing = !context_.platform.files.fileExists(path);
        lblProblem->setText(
            (missing ? tr("Het bestand %1 werd niet gevonden.") : tr("Het bestand %1 is niet leesbaar."))
                .arg(cataloguePath));
        lblProblem->setToolTip(error.report());
        CuePlayer->close();
    }
    playButton->setEnabled(lblProblem->text().isEmpty());
}

void frmPreview::CuePlayer_End() {
    if (CuePlayer->brokeOff()) {
        lblProblem->setText(tr("De weergave werd afgebroken: het bestand of de geluidskaart is niet meer leesbaar."));
    }
}

void frmPreview::DrawTime() {
    const std::int32_t remaining = checkedInt32(std::int64_t{CuePlayer->length()} - CuePlayer->position());
    const TimeParts parts = helper::splitTime(remaining);
    if (Dragging) {
        return;
    }
    sliPlay->setValue(CuePlayer->position());
    // Written only when it changed: this runs a hundred times a second.
    if (parts.minutes != shown_.minutes) {
        lcdMin->setSeconds(parts.minutes);
    }
    if (parts.seconds != shown_.seconds) {
        lcdSec->setSeconds(parts.seconds);
    }
    if (parts.millis != shown_.millis) {
        lcdMsec->setSeconds(parts.millis);
    }
    shown_ = {parts.minutes, parts.seconds, parts.millis};
}

void frmPreview::tmrCuePlayer_Timer() {
    DrawTime();
}

void frmPreview::cmdPlay_ButtonClick(int code) {
    switch (code) {
    case PlayCode:
        lblProblem->clear();
        CuePlayer->stop();
        CuePlayer->start();
        tmrCuePlayer->setEnabled(true);
        break;
    case StopCode:
        CuePlayer->stop();
        break;
    default:
        break;
    }
}

void frmPreview::sliPlay_MouseDown() {
    Dragging = true;
}

void frmPreview::sliPlay_MouseUp() {
    Dragging = false;
    SeekTo(sliPlay->sliderPosition());
}

void frmPreview::SeekTo(std::int32_t Position) {
    CuePlayer->pause();
    CuePlayer->setPosition(Position);
    CuePlayer->resume();
}

void frmPreview::volCue_Change() {
    CuePlayer->setVolume(volCue->value());
}

void frmPreview::done(int result) {
    sliPlay->setSliderDown(false); // nobody tells a hidden slider that the mouse let it go
    CuePlayer->stop();
    tmrCuePlayer->setEnabled(false);
    tmrLevels_->setEnabled(false);
    QDialog::done(result);
}

} // namespace orvel
