#include "windows/step_panel.h"

#include "playlist/current_step.h"

#include <QHBoxLayout>
#include <QVBoxLayout>

namespace orvel {

namespace {

QLabel *label(QWidget *parent, const char *name, const QString &description, const char *role) {
    auto *made = new QLabel(parent);
    made->setObjectName(QString::fromLatin1(name));
    // What is read out is the text itself.
    made->setAccessibleDescription(description);
    made->setProperty("role", QString::fromLatin1(role));
    return made;
}

QColor colourOf(TalkBar::Colour colour) {
    switch (colour) {
    case TalkBar::Colour::Blue:
        return {0x00, 0x00, 0xFF};
    case TalkBar::Colour::Yellow:
        return {0xFF, 0xFF, 0x00};
    case TalkBar::Colour::Red:
        return {0xFF, 0x00, 0x00};
    }
    return {};
}

} // namespace

StepPanel::StepPanel(QWidget *parent)
    : QWidget(parent), lblBestand(label(this, "lblBestand", tr("Bestand van de stap"), "title")),
      lblOuttro(label(this, "lblOuttro", tr("Outtro van het vorige item"), "value")),
      lblIntro(label(this, "lblIntro", tr("Intro van het volgende item"), "value")),
      lblInOut(label(this, "lblInOut", tr("Totale praattijd"), "value")), barRec(new Gauge(this)) {
    barRec->setObjectName(QStringLiteral("barRec"));
    barRec->setAccessibleName(tr("Praattijd"));
    barRec->setMinimumHeight(fontMetrics().height() * 2);
    lblBestand->setText(QStringLiteral("geen bestand"));

    auto *line = new QHBoxLayout;
    line->setSpacing(fontMetrics().height() * 2);
    line->addWidget(lblBestand);
    line->addStretch();
    for (QLabel *time : {lblOuttro, lblIntro, lblInOut}) {
        line->addWidget(time);
        QSizePolicy keepsItsPlace = time->sizePolicy();
        keepsItsPlace.setRetainSizeWhenHidden(true);
        time->setSizePolicy(keepsItsPlace);
    }
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addLayout(line);
    layout->addWidget(barRec);
    show(CurrentStep(), lblBestand->text());
}

void StepPanel::show(const CurrentStep &step, const QString &fileName) {
    lblBestand->setText(fileName);
    lblOuttro->setText(step.times.lblOuttro);
    lblIntro->setText(step.times.lblIntro);
    lblInOut->setText(step.times.lblInOut);
    for (QLabel *label : {lblOuttro, lblIntro, lblInOut}) {
        label->setVisible(step.times.visible);
    }
    showBar(step);
}

void StepPanel::showBar(const CurrentStep &step) {
    barRec->setMaximum(step.barRec.maximum);
    barRec->setValue(step.barRec.value);
    barRec->setBarColour(colourOf(step.barRec.colour));
}

} // namespace orvel
