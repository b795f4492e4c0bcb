#include "windows/takes_panel.h"

#include "production/dry_listening.h"
#include "production/retouching.h"
#include "recording/take_session.h"
#include "recording/talk_words.h"
#include "windows/named.h"
#include "windows/on.h"
#include "windows/reflow.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QToolButton>

namespace orvel {

namespace {

QHBoxLayout *rowIn(QWidget *widget) {
    auto *row = new QHBoxLayout(widget);
    row->setContentsMargins(0, 0, 0, 0);
    return row;
}

} // namespace

TakesPanel::TakesPanel(TakeSession &session, Retouching &retouching, DryListening &dry, QWidget *parent)
    : QWidget(parent), cmdNextTake(new QToolButton(this)),
      cmdDroog(namedButton(this, "cmdDroog", {}, tr("Hoor bij het beluisteren de opname zonder bewerking, even luid"))),
      cmdOpnieuw(namedButton(this, "cmdOpnieuw", tr("Opnieuw bewerken"),
                             tr("Bewerk de droge opname opnieuw, zoals de processor nu staat"))),
      session_(session), retouching_(retouching), dry_(dry), choice_(new QWidget(this)), list_(new QHBoxLayout) {
    cmdNextTake->setObjectName(QStringLiteral("cmdNextTake"));
    cmdNextTake->setText(tr("Volgende take"));
    cmdNextTake->setToolTip(tr("Een andere take van deze stap beluisteren en bewaren"));
    cmdDroog->setCheckable(true);
    cmdDroog->setAccessibleName(tr("Droog"));
    auto *choice = rowIn(choice_);
    choice->addLayout(list_);
    choice->addWidget(cmdNextTake);
    auto *original = new QWidget(this);
    auto *buttons = rowIn(original);
    buttons->addWidget(cmdDroog);
    buttons->addWidget(cmdOpnieuw);
    buttons->addStretch();
    auto *row = new Reflow(this);
    row->add(choice_);
    row->add(original);
    auto *layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(row);
    on(cmdNextTake, &QToolButton::clicked, this, &TakesPanel::cmdNextTake_Click);
    on(cmdDroog, &QPushButton::clicked, this, &TakesPanel::cmdDroog_Click);
    on(cmdOpnieuw, &QPushButton::clicked, this, &TakesPanel::cmdOpnieuw_Click);
    showDry();
    hide();
}

void TakesPanel::show() {
    std::vector<ShelvedTake> takes = session_.takes();
    if (takes != shown_) {
        shown_ = std::move(takes);
        rebuild();
    }
    const Allowed may = session_.allowed();
    choice_->setVisible(shown_.size() > 1);
    choice_->setEnabled(may.takes);
    setVisible(shown_.size() > 1 || (!shown_.empty() && session_.facts().canSave));
    cmdOpnieuw->setEnabled(may.cmdOpnieuw);
    cmdDroog->setEnabled(may.cmdDroog);
    showDry();
}

/// Not by its shade alone.
void TakesPanel::showDry() {
    cmdDroog->setChecked(dry_.isOn());
    cmdDroog->setText(dry_.isOn() ? tr("● Droog") : tr("○ Droog"));
    cmdDroog->setAccessibleDescription(dry_.isOn() ? tr("De droge opname is te horen")
                                                   : tr("De bewerkte opname is te horen"));
}

void TakesPanel::rebuild() {
    while (QLayoutItem *item = list_->takeAt(0)) {
        item->widget()->deleteLater(); // it may be the one that was clicked
        delete item;
    }
    for (const ShelvedTake &take : shown_) {
        list_->addWidget(buttonOf(take));
    }
}

QToolButton *TakesPanel::buttonOf(const ShelvedTake &take) {
    auto *button = new QToolButton(this);
    button->setCheckable(true);
    button->setChecked(take.isCurrent);
    const QString filed = take.isFiled ? tr(" ✓ bewaard") : QString();
    // Not by its shade alone.
    const QString current = take.isCurrent ? QStringLiteral("● ") : QString();
    button->setText(tr("%1Take %2 · %3 s%4").arg(current).arg(take.number).arg(inSeconds(take.lengthMs), filed));
    button->setToolTip(tr("Opgenomen om %1").arg(take.begun));
    button->setAccessibleDescription(take.isCurrent ? tr("Deze take wordt beluisterd en bewaard") : QString());
    on(button, &QToolButton::clicked, this, [this, number = take.number] { session_.choose(number); });
    return button;
}

void TakesPanel::cmdNextTake_Click() {
    session_.chooseNext();
}

void TakesPanel::cmdDroog_Click() {
    dry_.cmdDroog_Click();
    showDry(); // a click checks it, whatever came of that
}

void TakesPanel::cmdOpnieuw_Click() {
    retouching_.cmdOpnieuw_Click();
}

} // namespace orvel
