#include "windows/grid_panel.h"

#include "platform/runtime_error.h"
#include "widgets/theme.h"
#include "windows/grid_columns.h"
#include "windows/on.h"

#include <QGuiApplication>
#include <QHeaderView>
#include <QMenu>
#include <QScopeGuard>
#include <QVBoxLayout>

namespace orvel {

namespace {

void setUp(QTableView &grid) {
    grid.setObjectName(QStringLiteral("dbgLijst"));
    grid.setAccessibleName(QObject::tr("Stappen van de playlist"));
    grid.setSelectionBehavior(QAbstractItemView::SelectRows);
    grid.setSelectionMode(QAbstractItemView::SingleSelection);
    grid.setEditTriggers(QAbstractItemView::SelectedClicked | QAbstractItemView::EditKeyPressed |
                         QAbstractItemView::DoubleClicked);
    grid.verticalHeader()->setSectionResizeMode(QHeaderView::Fixed);
    grid.verticalHeader()->setHighlightSections(false);
    grid.setShowGrid(false);
    grid.setTabKeyNavigation(false);
    grid.setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
}

} // namespace

GridPanel::GridPanel(Playlist &playlist, CurrentStep &step, const VoiceTracks &tracks, QWidget *parent)
    : QGroupBox(QStringLiteral("Playlist"), parent), dbgLijst(new QTableView(this)), lblEmpty(new QLabel(this)),
      playlist_(playlist), step_(step), tracks_(tracks), model_(playlist) {
    setAccessibleName(title());
    setUp(*dbgLijst);
    mixTypes_.setRows(mixTypeRows());
    dbgLijst->setModel(&model_);
    dbgLijst->setItemDelegate(&mixTypes_);
    hideTechnicalColumns(*dbgLijst);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(dbgLijst);
    QSizePolicy keepsItsPlace = dbgLijst->sizePolicy();
    keepsItsPlace.setRetainSizeWhenHidden(true);
    dbgLijst->setSizePolicy(keepsItsPlace);
    dbgLijst->hide();
    dbgLijst->installEventFilter(this);
    lblEmpty->setObjectName(QStringLiteral("lblEmpty"));
    lblEmpty->setProperty("role", QStringLiteral("muted"));
    lblEmpty->setAlignment(Qt::AlignCenter);
    lblEmpty->setWordWrap(true);
    setDense(false);
    watchColumns();
    on(dbgLijst->selectionModel(), &QItemSelectionModel::currentRowChanged, this, &GridPanel::currentRowChanged);
    on(dbgLijst, &QTableView::doubleClicked, this, &GridPanel::dbgLijst_DblClick);
}

void GridPanel::watchColumns() {
    QHeaderView &header = *dbgLijst->horizontalHeader();
    header.setSectionsMovable(true);
    header.setContextMenuPolicy(Qt::CustomContextMenu);
    on(&header, &QHeaderView::customContextMenuRequested, this, [this](auto... place) { (chooseColumns(place), ...); });
    on(&header, &QHeaderView::sectionMoved, this, [this] { areColumnsSet_ = true; });
    on(&header, &QHeaderView::sectionResized, this,
       [this] { areColumnsSet_ = areColumnsSet_ || QGuiApplication::mouseButtons() != Qt::NoButton; });
}

void GridPanel::chooseColumns(const QPoint &place) {
    QMenu menu;
    fillColumnMenu(menu, *dbgLijst);
    if (menu.exec(dbgLijst->horizontalHeader()->mapToGlobal(place)) != nullptr) {
        areColumnsSet_ = true;
    }
}

QByteArray GridPanel::columns() const {
    return areColumnsSet_ ? dbgLijst->horizontalHeader()->saveState() : QByteArray();
}

void GridPanel::restoreColumns(const QByteArray &columns) {
    areColumnsSet_ = !columns.isEmpty() && dbgLijst->horizontalHeader()->restoreState(columns);
    if (areColumnsSet_) {
        // A file from another version may know other columns.
        for (int column = 0; column < StepColumnCount; ++column) {
            dbgLijst->setColumnHidden(column, dbgLijst->isColumnHidden(column) || stepField(column).isHidden);
        }
    }
}

bool GridPanel::eventFilter(QObject *watched, QEvent *event) {
    if (watched == dbgLijst && (event->type() == QEvent::Show || event->type() == QEvent::Hide)) {
        lblEmpty->setVisible(event->type() == QEvent::Hide);
    }
    return QGroupBox::eventFilter(watched, event);
}

void GridPanel::resizeEvent(QResizeEvent *event) {
    QGroupBox::resizeEvent(event);
    lblEmpty->setGeometry(dbgLijst->geometry()); // in its place
    guarded([this] {
        if (!areColumnsSet_ && playlist_.isOpen()) {
            shareRest(*dbgLijst);
        }
        showNeighbours();
    });
}

void GridPanel::openPlaylist(const QString &newPath, const QString &name) {
    closePlaylist();
    try {
        model_.rebuild([&] { playlist_.open(newPath, name); });
    } catch (const RuntimeError &) {
        dbgLijst->hide();
        throw;
    }
    showMissing();
    if (!areColumnsSet_) {
        fitColumns(*dbgLijst);
    }
    dbgLijst->show();
    selectRow(0);
}

void GridPanel::closePlaylist() {
    model_.rebuild([&] { playlist_.close(); });
    deselect(step_);
    Q_EMIT stepSelected();
}

void GridPanel::refresh() {
    const int row = currentRow();
    model_.rebuild([&] { playlist_.refresh(); });
    showMissing();
    selectRow(row);
}

void GridPanel::setDense(bool dense) {
    setStyleProperty(*this, "dense", dense ? QStringLiteral("true") : QString());
    setTitle(dense ? QString() : accessibleName()); // only now the box asks the style for its margins
    const int line = dbgLijst->fontMetrics().height();
    // Tight rows: a presenter wants to see the whole half hour.
    const int row = dense ? line * 5 / 4 : line * 8 / 5;
    dbgLijst->verticalHeader()->setDefaultSectionSize(row);
    // The slot between its neighbours, below the header and above a scroll bar.
    dbgLijst->setMinimumHeight(dbgLijst->horizontalHeader()->sizeHint().height() + row * 3 +
                               style()->pixelMetric(QStyle::PM_ScrollBarExtent) + dbgLijst->frameWidth() * 2);
    showNeighbours();
}

void GridPanel::showChanged(int row) {
    // Another program may have added steps or taken some away.
    if (row < 0 || dbgLijst->verticalHeader()->count() != model_.rowCount()) {
        refresh();
        return;
    }
    model_.showChanged(row);
    showMissing();
}

void GridPanel::showMissing() {
    const TrackLook seen = tracks_.look(playlist_);
    model_.setMissing(seen.missing, tracks_.folder());
    model_.setStations(seen.stations);
    if (!areColumnsSet_ && playlist_.isOpen()) {
        fitColumn(*dbgLijst, ImportedColumn);
        shareRest(*dbgLijst);
    }
}

void GridPanel::selectRow(int row) {
    if (row >= 0 && row < model_.rowCount()) {
        dbgLijst->setCurrentIndex(model_.index(row, StapColumn));
        showNeighbours();
    }
}

void GridPanel::showNeighbours() {
    const int row = currentRow();
    for (const int neighbour : {row + 1, row - 1, row}) {
        if (neighbour >= 0 && neighbour < model_.rowCount()) {
            dbgLijst->scrollTo(model_.index(neighbour, StapColumn));
        }
    }
}

void GridPanel::currentRowChanged() {
    // Two handlers: what one of them cannot do must not keep the other from its work.
    guarded([this] { dbgLijst_SelChange(); });
    guarded([this] { dbgLijst_RowColChange(); });
}

void GridPanel::dbgLijst_RowColChange() {
    const auto told = qScopeGuard([this] { Q_EMIT stepSelected(); });
    showTimes(playlist_, currentRow(), step_);
}

void GridPanel::dbgLijst_SelChange() {
    selectStepFile(playlist_, currentRow(), step_);
}

void GridPanel::dbgLijst_DblClick() {
    if (choosePreview(playlist_, currentRow(), step_)) {
        Q_EMIT previewWanted();
    }
}

} // namespace orvel
