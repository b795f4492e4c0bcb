#include "windows/edit_panel.h"

#include "production/retouching.h"
#include "windows/named.h"
#include "windows/on.h"

#include <QHBoxLayout>

namespace orvel {

namespace {

/// A picture that everybody knows instead of a caption, which would widen the window beyond small screens.
QPushButton *arrow(QWidget *parent, const char *name, const QString &what, const QString &toolTip, const char *icon) {
    return named(namedButton(parent, name, {}, toolTip, icon), name, what);
}

} // namespace

EditPanel::EditPanel(Retouching &retouching, QWidget *parent)
    : QWidget(parent),
      cmdFit(namedButton(this, "cmdFit", tr("Past op de intro"), tr("Kort de opname in tot ze vóór de zang eindigt"))),
      cmdUndo(arrow(this, "cmdUndo", tr("Ongedaan maken"), tr("Maak de laatste bewerking van de opname ongedaan"),
                    ":/icons/undo.svg")),
      cmdRedo(arrow(this, "cmdRedo", tr("Opnieuw"), tr("Doe de bewerking van de opname opnieuw"), ":/icons/redo.svg")),
      lblSpraak(new QLabel(this)), retouching_(retouching) {
    lblSpraak->setObjectName(QStringLiteral("lblSpraak"));
    lblSpraak->setAccessibleDescription(tr("Waar er in de opname gesproken wordt"));
    // It has its two lines from the beginning, so that nothing moves when it says something.
    lblSpraak->setMinimumHeight(2 * lblSpraak->fontMetrics().lineSpacing());
    auto *layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(cmdFit);
    layout->addStretch();
    on(cmdFit, &QPushButton::clicked, this, &EditPanel::cmdFit_Click);
    on(cmdUndo, &QPushButton::clicked, this, &EditPanel::cmdUndo_Click);
    on(cmdRedo, &QPushButton::clicked, this, &EditPanel::cmdRedo_Click);
}

void EditPanel::show() {
    const QString sentence = retouching_.sentence();
    lblSpraak->setAccessibleName(sentence);
    lblSpraak->setText(QString(sentence).replace(QStringLiteral(", "), QStringLiteral(",\n")));
}

void EditPanel::cmdFit_Click() {
    retouching_.cmdFit_Click();
}

void EditPanel::cmdUndo_Click() {
    retouching_.cmdUndo_Click();
}

void EditPanel::cmdRedo_Click() {
    retouching_.cmdRedo_Click();
}

} // namespace orvel
