#include "windows/recorder_panel.h"

#include "platform/audio.h"
#include "platform/file_system.h"
#include "platform/prompts.h"
#include "platform/runtime_error.h"
#include "recording/time_parts.h"
#include "station/checked.h"
#include "station/ignore_errors.h"
#include "station/paths.h"
#include "widgets/theme.h"
#include "windows/on.h"

#include <QGridLayout>

#include <exception>

namespace orvel {

namespace {

const QString startCaption = QStringLiteral("START OPNAME");
const QString stopCaption = QStringLiteral("STOP OPNAME");
const QColor blue(0x00, 0x00, 0xFF);
const QColor yellow(0xFF, 0xFF, 0x00);
const QColor red(0xFF, 0x00, 0x00);

QPushButton *button(QWidget *parent, const char *name, const QString &caption, const QString &toolTip) {
    auto *made = new QPushButton(caption, parent);
    made->setObjectName(QString::fromLatin1(name));
    made->setToolTip(toolTip);
    return made;
}

QLabel *notice(QWidget *parent, const char *name, const QString &text) {
    auto *label = new QLabel(text, parent);
    label->setObjectName(QString::fromLatin1(name));
    label->setProperty("role", QStringLiteral("attention"));
    label->setAlignment(Qt::AlignCenter);
    QSizePolicy keepsItsPlace = label->sizePolicy();
    keepsItsPlace.setRetainSizeWhenHidden(true);
    label->setSizePolicy(keepsItsPlace);
    label->hide();
    return label;
}

/// Why a recording cannot go on; empty when it can.
QString whatEnded(const RecorderStatus &status) {
    if (status.deviceLost) {
        return RecorderPanel::tr("De geluidskaart is verdwenen tijdens de opname.");
    }
    if (status.diskFull) {
        return RecorderPanel::tr("De schijf is vol: de opname kon niet verder worden weggeschreven.");
    }
    return status.diskFailed
               ? RecorderPanel::tr("De schijf gaf een fout: de opname kon niet verder worden weggeschreven.")
               : QString();
}

TimeDisplay *display(QWidget *parent, const char *name, TimeDisplay::Fields fields, const QString &accessibleName) {
    auto *made = new TimeDisplay(fields, parent);
    made->setObjectName(QString::fromLatin1(name));
    made->setAccessibleName(accessibleName);
    return made;
}

} // namespace

RecorderPanel::RecorderPanel(RecorderContext context, QWidget *parent)
    : QWidget(parent), cmdRec(button(this, "cmdRec", startCaption, QStringLiteral("Opname starten/stoppen"))),
      ledCount(display(this, "ledCount", TimeDisplay::Fields::Seconds, tr("Aftelling"))),
      ledTijd(display(this, "ledTijd", TimeDisplay::Fields::HoursMinutesSecondsMillis, tr("Opnametijd"))),
      lblOpname(notice(this, "lblOpname", QStringLiteral("OPNAME LOOPT"))),
      lblProcess(notice(this, "lblProcess", QStringLiteral("SOUNDPROCESSING..."))), context_(std::move(context)),
      AudioPlayer1(context_.platform.sound.audioPlayer()),
      tmrCountDown(context_.platform.timers.create(1000, MissedTicks::Drop, [this] { tmrCountDown_Timer(); })),
      tmrRec(context_.platform.timers.create(10, MissedTicks::CatchUp, [this] { tmrRec_Timer(); })),
      tmrWatch_(context_.platform.timers.create(40, MissedTicks::Drop, [this] { watchRecorder(); })) {
    cmdRec->setProperty("role", QStringLiteral("record"));
    cmdRec->setIcon(startIcon_);
    cmdRec->setEnabled(false);
    layOut();
    on(cmdRec, &QPushButton::clicked, this, &RecorderPanel::cmdRec_Click);
    on(&context_.grid, &GridPanel::stepFileChanged, cmdRec, &QWidget::setEnabled);
}

void RecorderPanel::layOut() {
    const int line = fontMetrics().height();
    cmdRec->ensurePolished();
    cmdRec->setMinimumSize(cmdRec->sizeHint().width() + line * 2, line * 4);
    cmdRec->setSizePolicy(QSizePolicy::Minimum, QSizePolicy::Expanding);
    ledCount->setMinimumHeight(line * 3);
    ledTijd->setMinimumHeight(line * 3);
    auto *countCaption = new QLabel(tr("Aftelling"), this);
    auto *timeCaption = new QLabel(tr("Opnametijd"), this);
    for (QLabel *caption : {countCaption, timeCaption}) {
        caption->setProperty("role", QStringLiteral("muted"));
    }
    auto *grid = new QGridLayout(this);
    grid->setContentsMargins(0, 0, 0, 0);
    grid->setHorizontalSpacing(line);
    grid->addWidget(cmdRec, 0, 0, 4, 1);
    grid->addWidget(countCaption, 1, 1);
    grid->addWidget(ledCount, 2, 1);
    grid->addWidget(timeCaption, 1, 2);
    grid->addWidget(ledTijd, 2, 2);
    // Above the times and never both at once: beside them they would widen the window beyond small screens.
    for (QLabel *notice : {lblOpname, lblProcess}) {
        grid->addWidget(notice, 0, 1, 1, 2);
    }
    grid->setRowStretch(0, 1);
    grid->setRowStretch(3, 1);
}

QString RecorderPanel::takePath() const {
    return takeFile(context_.programFolder, QStringLiteral("\\temp\\"), context_.step.VoiceTrackName,
                    QStringLiteral(".wav"));
}

void RecorderPanel::cmdRec_Click() {
    if (cmdRec->text() != startCaption) {
        stop();
        return;
    }
    if (chooseTake()) {
        beginCountDown();
    }
}

bool RecorderPanel::chooseTake() {
    if (RecorderOnly) {
        // The count-down waits for the answer: nothing records behind a question.
        const bool countsDown = isCountingDown();
        tmrCountDown->setEnabled(false);
        const QString name = context_.platform.prompts
                                 .input(QStringLiteral("Geef een naam voor dit bestand (ZONDER EXTENSIE)"),
                                        QStringLiteral("Bestandsnaam"))
                                 .trimmed();
        tmrCountDown->setEnabled(countsDown);
        if (name.isEmpty()) {
            return false;
        }
        static_cast<void>(takeFile(context_.programFolder, QStringLiteral("\\temp\\"), name, QStringLiteral(".wav")));
        context_.step.VoiceTrackName = name;
        context_.stepPanel.lblBestand->setText(name);
        return true;
    }
    if (!context_.step.StepSelected) {
        return false;
    }
    if (isCountingDown()) {
        context_.grid.selectRow(takeRow_); // the count-down belongs to its step, wherever the grid was moved
    }
    static_cast<void>(takePath());
    takeRow_ = context_.grid.currentRow();
    context_.grid.setCurrentImported(false);
    context_.grid.dbgLijst_RowColChange();
    return true;
}

void RecorderPanel::beginCountDown() {
    CountdownLeft = checkedInt16(context_.settings.Countdown + 1);
    BarExhausted = false;
    context_.platform.sound.recorder().prepare();
    tmrCountDown->setEnabled(true);
    Q_EMIT takeReady(false);
    if (context_.settings.Mute) {
        AudioPlayer1.setOutputMute(true);
    }
    if (!RecorderOnly) {
        context_.step.PlaylistTakeRunning = true;
    }
}

void RecorderPanel::tmrCountDown_Timer() {
    CountdownLeft = checkedInt16(CountdownLeft - 1);
    ledCount->setSeconds(CountdownLeft);
    if (CountdownLeft != 0) {
        return;
    }
    lblOpname->show();
    tmrCountDown->setEnabled(false);
    tmrRec->setEnabled(true);
    try {
        StartRecorder();
    } catch (const RuntimeError &) {
        // Nothing records: the window must not look as if it did, and the next click must start anew.
        backToIdle();
        throw;
    }
}

void RecorderPanel::StartRecorder() {
    take_ = takePath();
    FileSystem &files = context_.platform.files;
    const QString kept = files.fileExists(take_) ? context_.recovery.keep(take_) : QString();
    WaveRecorder &wavRec = context_.platform.sound.recorder();
    try {
        wavRec.setFileName(take_);
        wavRec.start();
    } catch (const RuntimeError &) {
        // The take before is not replaced by nothing.
        if (!kept.isEmpty() && !files.fileExists(take_)) {
            ignoringErrors([&] { files.move(kept, take_); });
        }
        throw;
    }
    setCaption(true);
    ElapsedMs = 0;
    toldOverruns_ = 0;
    tmrWatch_->setEnabled(true);
}

void RecorderPanel::StartOpname() {
    setCaption(true);
    ElapsedMs = 0;
    tmrRec->setEnabled(true);
}

void RecorderPanel::stopRecorder() {
    context_.platform.sound.recorder().stop();
}

void RecorderPanel::setCaption(bool recording) {
    cmdRec->setText(recording ? stopCaption : startCaption);
    cmdRec->setIcon(recording ? stopIcon_ : startIcon_);
    setRecording(*cmdRec, recording);
}

void RecorderPanel::tmrRec_Timer() {
    ElapsedMs = checkedInt32(std::int64_t{ElapsedMs} + 10);
    showElapsed();
    moveBar();
}

void RecorderPanel::showElapsed() {
    const auto [ElapsedHours, ElapsedMinutes, ElapsedSeconds, ElapsedMillis] = helper::splitTime(ElapsedMs);
    ledTijd->setTime(ElapsedHours, ElapsedMinutes, ElapsedSeconds, ElapsedMillis);
}

void RecorderPanel::moveBar() {
    Gauge &barRec = *context_.stepPanel.barRec;
    if (!BarExhausted && barRec.value() >= 1) {
        barRec.setValue(barRec.value() - 10);
        const bool overOutro = barRec.value() > barRec.maximum() - context_.step.PrevOutroMs;
        barRec.setBarColour(overOutro ? blue : yellow);
        return;
    }
    barRec.setMaximum(100);
    barRec.setValue(100);
    barRec.setBarColour(red);
    BarExhausted = true;
}

void RecorderPanel::stop() {
    lblOpname->hide();
    // A take whose end is damaged is still a take: the window goes back to idle before the report.
    std::exception_ptr failure;
    try {
        context_.platform.sound.recorder().stop();
        if (context_.settings.UseProcessor) {
            context_.AudioProcessing(take_);
        }
    } catch (...) {
        failure = std::current_exception();
    }
    backToIdle();
    if (failure) {
        std::rethrow_exception(failure);
    }
}

void RecorderPanel::backToIdle() {
    lblOpname->hide();
    tmrRec->setEnabled(false);
    tmrCountDown->setEnabled(false);
    tmrWatch_->setEnabled(false);
    setCaption(false);
    Q_EMIT levelChanged(0.0F);
    Q_EMIT takeReady(true);
    PlayFlag = false;
    if (!RecorderOnly) {
        context_.step.PlaylistTakeRunning = false;
        // Saving acts on the current row: it must be the take's, wherever the grid was moved meanwhile.
        context_.grid.selectRow(takeRow_);
    }
    if (context_.settings.Mute) {
        AudioPlayer1.setOutputMute(false);
    }
}

void RecorderPanel::watchRecorder() {
    const RecorderStatus status = context_.platform.sound.recorder().status();
    Q_EMIT levelChanged(status.peak);
    if (status.overruns > toldOverruns_) {
        toldOverruns_ = status.overruns;
        context_.tell(tr("Let op: er zit een gat in deze opname; beluister ze of neem opnieuw op."));
    }
    const QString what = whatEnded(status);
    if (what.isEmpty()) {
        return;
    }
    // What the stop would report is what is told here, except what ends the program.
    std::exception_ptr fatal;
    try {
        stop();
    } catch (const FatalError &) {
        fatal = std::current_exception();
    } catch (const RuntimeError &) { // NOLINT(bugprone-empty-catch): told below
    }
    context_.platform.prompts.message(what + u'\n' + tr("Wat al was opgenomen, is bewaard."),
                                      QStringLiteral("Foutmelding"), MessageIcon::Exclamation);
    if (fatal) {
        std::rethrow_exception(fatal);
    }
}

void RecorderPanel::setBusy(bool busy) {
    cmdRec->setEnabled(!busy && (RecorderOnly || context_.step.StepSelected));
}

} // namespace orvel
