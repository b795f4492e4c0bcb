#include "windows/save_panel.h"

#include "production/saving.h"
#include "windows/named.h"
#include "windows/on.h"

#include <QCoreApplication>
#include <QGuiApplication>
#include <QHBoxLayout>

namespace orvel {

SavePanel::SavePanel(Saving &saving, QWidget *parent)
    : QWidget(parent), cmdSave(namedButton(this, "cmdSave", QStringLiteral("Bewaar opname"),
                                           tr("Bewaar de opname als voicetrack"), ":/icons/save.svg")),
      cmdImport(namedButton(this, "cmdImport", tr("Importeer"),
                            tr("Gebruik een bestaand geluidsbestand voor deze stap"), ":/icons/sound_import.svg")),
      cmdMultivoice(namedButton(this, "cmdMultivoice", QStringLiteral("Multi - voice"),
                                tr("Spreek deze stap voor elk station apart in"), ":/icons/multivoice.svg")),
      ledMulti(new Lamp(this)), barProgress(new Gauge(this)), saving_(saving) {
    ledMulti->setObjectName(QStringLiteral("ledMulti"));
    ledMulti->setColour(QColor(0xFF, 0xD0, 0x20));
    barProgress->setObjectName(QStringLiteral("barProgress"));
    barProgress->setAccessibleName(QStringLiteral("Comprimeert bestand"));
    barProgress->setCaption(QStringLiteral("Comprimeert bestand"));
    barProgress->setMinimumWidth(fontMetrics().horizontalAdvance(barProgress->caption()) * 3 / 2);
    barProgress->hide();
    auto *layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(cmdSave);
    layout->addWidget(cmdImport);
    layout->addWidget(cmdMultivoice);
    layout->addWidget(ledMulti);
    layout->addStretch();
    on(cmdSave, &QPushButton::clicked, this, &SavePanel::cmdSave_Click);
    on(cmdMultivoice, &QPushButton::clicked, this, &SavePanel::cmdMultivoice_Click);
}

void SavePanel::cmdSave_Click() {
    saving_.cmdSave_Click();
}

void SavePanel::cmdMultivoice_Click() {
    saving_.cmdMultivoice_Click();
}

void SavePanel::show() {
    ledMulti->setLit(saving_.isMultivoice());
    ledMulti->setAccessibleName(saving_.isMultivoice() ? tr("Multivoice staat aan") : tr("Multivoice staat uit"));
}

void SavePanel::showProgress(std::optional<int> percent) {
    constexpr int pumpIntervalMs = 16;
    barProgress->setValue(percent.value_or(0));
    if (barProgress->isHidden() == percent.has_value()) {
        barProgress->setVisible(percent.has_value());
        percent ? QGuiApplication::setOverrideCursor(Qt::WaitCursor) : QGuiApplication::restoreOverrideCursor();
        sincePump_.start();
    } else if (sincePump_.elapsed() >= pumpIntervalMs) {
        QCoreApplication::processEvents();
        sincePump_.restart();
    }
}

} // namespace orvel
