#include "windows/frm_preview.h"

#include "platform/audio.h"
#include "recording/player_settings.h"
#include "windows/named.h"
#include "windows/on.h"

#include <utility>

namespace orvel {

namespace {

void showText(LedLabel &label, const QString &text) {
    label.setText(text);
    label.setAutoScroll(scrolls(text));
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
      pauseButton(namedButton(cmdPlay, "pauseButton", tr("&Pauze"), tr("Wacht even, of ga verder waar het wachtte"))),
      MMLevelX1(named(new LevelMeter(this), "MMLevelX1", tr("Niveau links"))),
      MMLevelX2(named(new LevelMeter(this), "MMLevelX2", tr("Niveau rechts"))), lblProblem(new QLabel(this)),
      context_(context), preview_(context_.sources), CuePlayer(context_.platform.sound.makePlayer()),
      tmrCuePlayer(context_.platform.timers.create(10, MissedTicks::Drop, [this] { tmrCuePlayer_Timer(); })),
      tmrLevels_(context_.platform.timers.create(40, MissedTicks::Drop, [this] {
          const StereoPeaks peaks = CuePlayer->peaks();
          MMLevelX1->setLevel(peaks.left);
          MMLevelX2->setLevel(peaks.right);
      })) {
    setObjectName(QStringLiteral("frmPreview"));
    setWindowTitle(tr("Voorbeluistering"));
    volCue->setValue(context_.volume);
    layOut();
    on(playButton, &QPushButton::clicked, this, [this] { cmdPlay_ButtonClick(PlayCode); });
    on(stopButton, &QPushButton::clicked, this, [this] { cmdPlay_ButtonClick(StopCode); });
    on(pauseButton, &QPushButton::clicked, this, &frmPreview::pauseButton_Click);
    on(sliPlay, &QSlider::sliderPressed, this, &frmPreview::sliPlay_MouseDown);
    on(sliPlay, &QSlider::sliderReleased, this, &frmPreview::sliPlay_MouseUp);
    on(sliPlay, &QSlider::actionTriggered, this, [this](auto... action) { (sliPlay_Action(action), ...); });
    on(volCue, &Knob::valueChanged, this, &frmPreview::volCue_Change);
    CuePlayer->setEndHandler([this] { guarded([this] { CuePlayer_End(); }); });
}

void frmPreview::sliPlay_Action(int action) {
    // Keys and the wheel; a drag seeks when it ends.
    if (action != QAbstractSlider::SliderMove || !sliPlay->isSliderDown()) {
        SeekTo(sliPlay->sliderPosition());
    }
}

void frmPreview::Form_Load() {
    volCue_Change();
    if (context_.sources.settings.Network) {
        CuePlayer->setOutput(playerSettings(context_.sources.settings));
    }
    LaadSpeler(context_.step.PreviewTrackId);
    tmrLevels_->setEnabled(true);
    playButton->setFocus();
}

void frmPreview::LaadSpeler(std::int32_t Track) {
    const auto shown = preview_.load(context_.step.PreviewKind, Track, *CuePlayer);
    if (!shown) {
        return;
    }
    lblProblem->setText(shown->problem);
    lblProblem->setToolTip(shown->details);
    playButton->setEnabled(shown->problem.isEmpty());
    showText(*ledTitle, shown->title);
    showText(*ledArtist, shown->description);
    showPause();
    DrawTime();
    sliPlay->setMaximum(CuePlayer->length());
}

void frmPreview::CuePlayer_End() {
    if (CuePlayer->brokeOff()) {
        lblProblem->setText(tr("De weergave werd afgebroken: het bestand of de geluidskaart is niet meer leesbaar."));
    }
    showPause();
}

void frmPreview::DrawTime() {
    const TimeParts parts = remainingTime(*CuePlayer);
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
        preview_.play(*CuePlayer);
        tmrCuePlayer->setEnabled(true);
        break;
    case StopCode:
        preview_.stop(*CuePlayer);
        break;
    default:
        break;
    }
    showPause();
}

void frmPreview::pauseButton_Click() {
    preview_.pauseOrGoOn(*CuePlayer);
    showPause();
}

void frmPreview::showPause() {
    pauseButton->setEnabled(preview_.canPause(*CuePlayer));
    pauseButton->setText(preview_.isPaused() ? tr("&Verder") : tr("&Pauze"));
}

void frmPreview::sliPlay_MouseDown() {
    Dragging = true;
}

void frmPreview::sliPlay_MouseUp() {
    Dragging = false;
    SeekTo(sliPlay->sliderPosition());
}

void frmPreview::SeekTo(std::int32_t Position) {
    preview_.seek(*CuePlayer, Position);
}

void frmPreview::volCue_Change() {
    CuePlayer->setVolume(volCue->value());
}

void frmPreview::done(int result) {
    sliPlay->setSliderDown(false); // nobody tells a hidden slider that the mouse let it go
    preview_.stop(*CuePlayer);
    tmrCuePlayer->setEnabled(false);
    tmrLevels_->setEnabled(false);
    QDialog::done(result);
}

} // namespace orvel
