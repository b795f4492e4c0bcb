#include "windows/takes_panel.h"

#include "recording/take_session.h"
#include "recording/talk_words.h"
#include "windows/on.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QToolButton>

namespace orvel {

TakesPanel::TakesPanel(TakeSession &session, QWidget *parent)
    : QWidget(parent), cmdNextTake(new QToolButton(this)), session_(session), list_(new QHBoxLayout) {
    cmdNextTake->setObjectName(QStringLiteral("cmdNextTake"));
    cmdNextTake->setText(tr("Volgende take"));
    cmdNextTake->setToolTip(tr("Een andere take van deze stap beluisteren en bewaren"));
    auto *layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addLayout(list_);
    layout->addWidget(cmdNextTake);
    layout->addStretch();
    on(cmdNextTake, &QToolButton::clicked, this, &TakesPanel::cmdNextTake_Click);
    hide();
}

void TakesPanel::show() {
    std::vector<ShelvedTake> takes = session_.takes();
    if (takes != shown_) {
        shown_ = std::move(takes);
        rebuild();
    }
    setVisible(shown_.size() > 1);
    setEnabled(session_.allowed().takes);
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

} // namespace orvel
