#include "windows/frm_station.h"

#include "platform/prompts.h"
#include "platform/runtime_error.h"
#include "station/places.h"
#include "windows/on.h"

#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QScopeGuard>
#include <QTableView>
#include <QVBoxLayout>

#include <algorithm>

namespace orvel {

namespace {

enum StationColumn { StationNameColumn, CodeColumn, StationColumnCount };

/// A field of a station as the combo's text shows it: a digit may be stored as a number or as text.
QString text(const RecordSet &stations, const char *field) {
    const QVariant value = stations.field(QString::fromLatin1(field));
    return value.isNull() ? QString() : value.toString().trimmed();
}

} // namespace

frmStation::frmStation(Platform &platform, const QString &programFolder, std::function<bool(const QString &code)> save,
                       QWidget *parent)
    : QDialog(parent), cobStation(new QComboBox(this)),
      cmdSave(new QPushButton(QStringLiteral("Presentatie bewaren voor het gekozen station"), this)),
      platform_(platform), save_(std::move(save)) {
    setObjectName(QStringLiteral("frmStation"));
    setWindowTitle(QStringLiteral("Selecteer een station"));
    fillStations(programFolder);
    layOut();
    on(cmdSave, &QPushButton::clicked, this, &frmStation::cmdSave_Click);
}

void frmStation::fillStations(const QString &programFolder) {
    stations_.setColumnCount(StationColumnCount);
    addStation(QStringLiteral("Algemeen"), QStringLiteral("999"));
    try {
        datSync = platform_.databases.open(Places(programFolder).stationList())
                      ->query(QStringLiteral("SELECT * FROM Stations ORDER BY [Stationname]"));
        if (datSync->recordCount() != 0) {
            for (datSync->moveFirst(); !datSync->endOfFile(); datSync->moveNext()) {
                addStation(text(*datSync, "stationname"),
                           text(*datSync, "digit1") + text(*datSync, "digit2") + text(*datSync, "digit3"));
            }
        }
    } catch (const RuntimeError &error) {
        throw FatalError(error);
    }
}

void frmStation::addStation(const QString &name, const QString &code) {
    stations_.appendRow({new QStandardItem(name), new QStandardItem(code)});
}

void frmStation::layOut() {
    const int line = fontMetrics().height();
    auto *question = new QLabel(QStringLiteral("Kies het station waarvoor deze presentatie bedoeld is"), this);
    question->setBuddy(cobStation);
    cobStation->setObjectName(QStringLiteral("cobStation"));
    cobStation->setAccessibleName(question->text());
    cobStation->setPlaceholderText(tr("Geen station gekozen"));
    auto *list = new QTableView(cobStation);
    list->horizontalHeader()->hide();
    list->verticalHeader()->hide();
    list->setShowGrid(false);
    list->setSelectionBehavior(QAbstractItemView::SelectRows);
    cobStation->setModel(&stations_);
    cobStation->setView(list);
    list->verticalHeader()->setDefaultSectionSize(line * 8 / 5);
    list->horizontalHeader()->setSectionResizeMode(StationNameColumn, QHeaderView::Stretch);
    list->horizontalHeader()->setSectionResizeMode(CodeColumn, QHeaderView::ResizeToContents);
    cobStation->setModelColumn(StationNameColumn);
    cobStation->setCurrentIndex(-1);
    cmdSave->setObjectName(QStringLiteral("cmdSave"));
    cmdSave->setProperty("role", QStringLiteral("primary"));
    cmdSave->setDefault(true);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(line, line, line, line);
    layout->setSpacing(line / 2);
    layout->addWidget(question);
    layout->addWidget(cobStation);
    layout->addSpacing(line / 2);
    layout->addWidget(cmdSave);
}

void frmStation::cmdSave_Click() {
    if (cobStation->currentText().isEmpty()) {
        platform_.prompts.message(QStringLiteral("Kies eerst een station !"), QStringLiteral("Ontbrekende gegevens"),
                                  MessageIcon::Exclamation);
        cobStation->setFocus();
        return;
    }
    const QString code = stations_.item(cobStation->currentIndex(), CodeColumn)->text();
    if (code.isEmpty()) {
        // Its version would be filed under the name of the general one.
        platform_.prompts.message(tr("Het station %1 heeft geen code in de stationslijst. Kies een ander station.")
                                      .arg(cobStation->currentText()),
                                  QStringLiteral("Ontbrekende gegevens"), MessageIcon::Exclamation);
        cobStation->setFocus();
        return;
    }
    // The window's events run meanwhile.
    saving_ = true;
    setEnabled(false);
    const auto idle = qScopeGuard([this] {
        saving_ = false;
        setEnabled(true);
    });
    if (save_(code)) {
        saving_ = false;
        close();
    }
}

void frmStation::reject() {
    if (!saving_) {
        QDialog::reject();
    }
}

} // namespace orvel
