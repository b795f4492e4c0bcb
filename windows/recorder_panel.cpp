#include "windows/recorder_panel.h"

#include "recording/take_session.h"
#include "recording/time_parts.h"
#include "widgets/theme.h"
#include "windows/named.h"
#include "windows/on.h"

#include <QGridLayout>
#include <QScopeGuard>

namespace orvel {

namespace {

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

TimeDisplay *display(QWidget *parent, const char *name, TimeDisplay::Fields fields, const QString &accessibleName) {
    auto *made = new TimeDisplay(fields, parent);
    made->setObjectName(QString::fromLatin1(name));
    made->setAccessibleName(accessibleName);
    return made;
}

} // namespace

RecorderPanel::RecorderPanel(TakeSession &session, QWidget *parent)
    : QWidget(parent), cmdRec(namedButton(this, "cmdRec", session.caption(), QStringLiteral("Opname starten/stoppen"))),
      ledCount(display(this, "ledCount", TimeDisplay::Fields::Seconds, tr("Aftelling"))),
      ledTijd(display(this, "ledTijd", TimeDisplay::Fields::HoursMinutesSecondsMillis, tr("Opnametijd"))),
      lblOpname(notice(this, "lblOpname", QStringLiteral("OPNAME LOOPT"))),
      lblProcess(notice(this, "lblProcess", QStringLiteral("SOUNDPROCESSING..."))), session_(session),
      lblCount_(new QLabel(tr("Aftelling"), this)), lblTime_(new QLabel(tr("Opnametijd"), this)),
      notices_({lblOpname, lblProcess}) {
    cmdRec->setProperty("role", QStringLiteral("record"));
    cmdRec->setIcon(startIcon_);
    layOut();
    on(cmdRec, &QPushButton::clicked, this, &RecorderPanel::cmdRec_Click);
}

void RecorderPanel::layOut() {
    cmdRec->ensurePolished();
    cmdRec->setSizePolicy(QSizePolicy::Minimum, QSizePolicy::Expanding);
    for (QLabel *caption : {lblCount_, lblTime_}) {
        caption->setProperty("role", QStringLiteral("muted"));
    }
    auto *grid = new QGridLayout(this);
    grid->setContentsMargins(0, 0, 0, 0);
    setDense(false);
}

void RecorderPanel::setDense(bool dense) {
    const int line = fontMetrics().height();
    auto *grid = static_cast<QGridLayout *>(layout());
    while (QLayoutItem *item = grid->takeAt(0)) {
        delete item; // the widgets stay
    }
    const QSize button = cmdRec->sizeHint();
    cmdRec->setMinimumSize(dense ? button : button.expandedTo({button.width() + line * 2, line * 4}));
    for (TimeDisplay *time : {ledCount, ledTijd}) {
        time->setMinimumHeight(dense ? line * 3 / 2 : line * 3);
    }
    for (QLabel *caption : {lblCount_, lblTime_}) {
        caption->setHidden(dense);
    }
    grid->setHorizontalSpacing(dense ? line / 2 : line);
    const int left = dense ? 0 : 1; // column of the times
    grid->addWidget(cmdRec, dense ? 1 : 0, 0, dense ? 1 : 4, dense ? 2 : 1);
    grid->addWidget(lblCount_, 1, left);
    grid->addWidget(ledCount, 2, left);
    grid->addWidget(lblTime_, 1, left + 1);
    grid->addWidget(ledTijd, 2, left + 1);
    // Above the times and never two at once: beside them they would widen the window beyond small screens.
    for (QLabel *notice : notices_) {
        grid->addWidget(notice, 0, left, 1, 2);
    }
    grid->setRowStretch(0, dense ? 0 : 1);
    grid->setRowStretch(3, dense ? 0 : 1);
}

void RecorderPanel::addNotice(QLabel *label) {
    label->setAlignment(Qt::AlignCenter);
    notices_.push_back(label);
    setDense(false);
}

void RecorderPanel::cmdRec_Click() {
    // While a take is processed the button is disabled, and the focus would go on to whatever stands behind it.
    const bool hadFocus = cmdRec->hasFocus();
    const auto keep = qScopeGuard([this, hadFocus] {
        if (hadFocus) {
            cmdRec->setFocus();
        }
    });
    session_.cmdRec_Click();
}

void RecorderPanel::show() {
    const bool recording = session_.state() == SessionState::Recording;
    if (cmdRec->text() != session_.caption()) {
        setCaption(session_.caption(), recording);
    }
    lblOpname->setVisible(recording);
}

void RecorderPanel::showCount() {
    ledCount->setSeconds(session_.CountdownLeft);
}

void RecorderPanel::setCaption(const QString &caption, bool recording) {
    cmdRec->setText(caption);
    cmdRec->setIcon(recording ? stopIcon_ : startIcon_);
    setRecording(*cmdRec, recording);
}

void RecorderPanel::showElapsed(std::int32_t milliseconds) {
    const auto [ElapsedHours, ElapsedMinutes, ElapsedSeconds, ElapsedMillis] = helper::splitTime(milliseconds);
    ledTijd->setTime(ElapsedHours, ElapsedMinutes, ElapsedSeconds, ElapsedMillis);
}

} // namespace orvel
