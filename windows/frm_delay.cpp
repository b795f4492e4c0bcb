#include "windows/frm_delay.h"

#include "platform/guarded.h"
#include "recording/delay_measurement.h"
#include "widgets/accessible.h"
#include "windows/named.h"
#include "windows/on.h"

#include <QHBoxLayout>
#include <QVBoxLayout>

namespace orvel {

frmDelay::frmDelay(DelayMeasurement &delay, QWidget *parent)
    : QDialog(parent), lblCard(new QLabel(this)), lblDelay(new QLabel(this)),
      prgDelay(named(new QProgressBar(this), "prgDelay", tr("Gedane metingen"))),
      cmdMeasure(namedButton(this, "cmdMeasure", tr("Meten"), tr("Meet de vertraging; dat duurt een halve minuut"))),
      cmdQuit(namedButton(this, "cmdQuit", tr("Sluiten"), tr("Verlaat dit scherm"), ":/icons/exit.svg")),
      delay_(delay) {
    setObjectName(QStringLiteral("frmDelay"));
    setWindowTitle(tr("Vertraging meten"));
    lblCard->setObjectName(QStringLiteral("lblCard"));
    lblDelay->setObjectName(QStringLiteral("lblDelay"));
    layOut();
    on(cmdMeasure, &QPushButton::clicked, this, &frmDelay::cmdMeasure_Click);
    on(cmdQuit, &QPushButton::clicked, this, &QDialog::accept);
}

void frmDelay::layOut() {
    const int letter = fontMetrics().averageCharWidth();
    const int line = fontMetrics().height();
    auto *how = new QLabel(
        tr("Bij het meeluisteren moet de opname precies liggen op wat U hoort. Verbind de uitgang met de "
           "ingang van de opnamekaart, of houd de microfoon tegen de koptelefoon. Er klinkt enkele keren een "
           "kort signaal: zet de koptelefoon niet op."),
        this);
    how->setWordWrap(true);
    lblCard->setProperty("role", QStringLiteral("value"));
    lblDelay->setWordWrap(true);
    // The window keeps its size whatever there is to say.
    lblDelay->setMinimumHeight(4 * fontMetrics().lineSpacing());
    lblDelay->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    prgDelay->setRange(0, DelayMeasurement::times);
    prgDelay->setTextVisible(false);
    cmdMeasure->setDefault(true);
    auto *buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(cmdMeasure);
    buttons->addWidget(cmdQuit);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(line, line, line, line);
    layout->setSpacing(line / 2);
    layout->addWidget(how);
    layout->addWidget(lblCard);
    layout->addWidget(prgDelay);
    layout->addWidget(lblDelay, 1);
    layout->addLayout(buttons);
    setMinimumWidth(64 * letter);
}

void frmDelay::Form_Load() {
    delay_.forgetSentence();
    showProgress();
}

void frmDelay::showProgress() {
    const bool runs = delay_.isRunning();
    const QString card = delay_.card();
    lblCard->setText(card.isEmpty() ? tr("Geen opnamekaart") : card + QStringLiteral(": ") + delay_.caption());
    prgDelay->setValue(runs ? delay_.found() : 0);
    if (lblDelay->text() != delay_.sentence()) {
        lblDelay->setText(delay_.sentence());
        announceAlert(*lblDelay);
    }
    cmdMeasure->setText(runs ? tr("Stop") : tr("Meten"));
}

void frmDelay::cmdMeasure_Click() {
    if (delay_.isRunning()) {
        delay_.cancel();
    } else {
        delay_.start();
    }
}

void frmDelay::done(int result) {
    guarded([this] { delay_.cancel(); });
    QDialog::done(result);
}

} // namespace orvel
