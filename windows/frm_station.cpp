#include "windows/frm_station.h"

#include "platform/prompts.h"
#include "platform/runtime_error.h"
#include "station/places.h"
#include "station/station_list.h"
#include "windows/on.h"

#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QScopeGuard>
#include <QTableView>
#include <QVBoxLayout>

namespace orvel {

namespace {

enum StationColumn { StationNameColumn, CodeColumn, StationColumnCount };

} // namespace

frmStation::frmStation(Platform &platform, const QString &programFolder, std::function<bool(const QString &code)> save,
                       std::function<std::vector<StationVersion>()> look, const PlayerSettings &output, QWidget *parent)
    : QDialog(parent), cobStation(new QComboBox(this)),
      cmdSave(new QPushButton(QStringLiteral("Presentatie bewaren voor het gekozen station"), this)),
      versions(new StationVersions(platform, output, this)), platform_(platform), look_(std::move(look)),
      save_(std::move(save)) {
    setObjectName(QStringLiteral("frmStation"));
    setWindowTitle(QStringLiteral("Selecteer een station"));
    fillStations(programFolder);
    layOut();
    on(versions, &StationVersions::chosen, this, [this](auto... code) { (chooseCode(code), ...); });
    showVersions();
    on(cmdSave, &QPushButton::clicked, this, &frmStation::cmdSave_Click);
}

void frmStation::fillStations(const QString &programFolder) {
    stations_.setColumnCount(StationColumnCount);
    try {
        for (const NetworkStation &station : stationList(platform_.databases, Places(programFolder))) {
            stations_.appendRow({new QStandardItem(station.name), new QStandardItem(station.code)});
        }
    } catch (const RuntimeError &error) {
        throw FatalError(error);
    }
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
    layout->addWidget(versions, 1);
    layout->addSpacing(line / 2);
    layout->addWidget(cmdSave);
}

void frmStation::showVersions() {
    versions->show(look_ ? look_() : std::vector<StationVersion>());
}

void frmStation::chooseCode(const QString &code) {
    for (int row = 0; row < stations_.rowCount(); ++row) {
        if (stations_.item(row, CodeColumn)->text() == code) {
            cobStation->setCurrentIndex(row);
        }
    }
}

void frmStation::cmdSave_Click() {
    versions->stop();
    const QStandardItem *code = stations_.item(cobStation->currentIndex(), CodeColumn);
    const NetworkStation station{cobStation->currentText(), code == nullptr ? QString() : code->text()};
    if (const QString problem = stationProblem(station); !problem.isEmpty()) {
        platform_.prompts.message(problem, QStringLiteral("Ontbrekende gegevens"), MessageIcon::Exclamation);
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
    if (save_(station.code)) {
        saving_ = false;
        close();
    }
}

void frmStation::reject() {
    if (!saving_) {
        versions->stop();
        QDialog::reject();
    }
}

} // namespace orvel
