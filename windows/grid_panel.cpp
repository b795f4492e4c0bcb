#include "windows/grid_panel.h"

#include "platform/runtime_error.h"
#include "windows/on.h"

#include <QHeaderView>
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
    grid.verticalHeader()->hide();
    // Tight rows: a presenter wants to see the whole half hour.
    grid.verticalHeader()->setDefaultSectionSize(grid.fontMetrics().height() * 8 / 5);
    grid.setShowGrid(false);
    grid.setTabKeyNavigation(false);
    grid.setHorizontalScrollMode(QAbstractItemView::ScrollPerPixel);
    grid.setMinimumHeight(grid.fontMetrics().height() * 6);
}

/// The text with the most characters is nearly always the widest one: measuring only that one opens a long playlist
/// five times faster than measuring every cell.
QString longestText(const QAbstractItemModel &model, int column) {
    QString longest;
    for (int row = 0; row < model.rowCount(); ++row) {
        QString text = model.index(row, column).data().toString();
        if (text.size() > longest.size()) {
            longest = std::move(text);
        }
    }
    return longest;
}

void fitColumns(QTableView &grid) {
    const QFontMetrics metrics = grid.fontMetrics();
    const int padding = metrics.averageCharWidth() * 3;
    QHeaderView &header = *grid.horizontalHeader();
    for (int column = 0; column < grid.model()->columnCount(); ++column) {
        if (!grid.isColumnHidden(column)) {
            const int text = metrics.horizontalAdvance(longestText(*grid.model(), column)) + padding;
            grid.setColumnWidth(column, std::max(text, header.sectionSizeHint(column)));
            if (column == ImportedColumn) {
                grid.resizeColumnToContents(column); // a tick, and a sign beside it
            }
        }
    }
}

} // namespace

GridPanel::GridPanel(Playlist &playlist, CurrentStep &step, const VoiceTracks &tracks, QWidget *parent)
    : QGroupBox(QStringLiteral("Playlist"), parent), dbgLijst(new QTableView(this)), playlist_(playlist), step_(step),
      tracks_(tracks), model_(playlist) {
    setUp(*dbgLijst);
    mixTypes_.setRows(mixTypeRows());
    dbgLijst->setModel(&model_);
    dbgLijst->setItemDelegate(&mixTypes_);
    for (int column = 0; column < StepColumnCount; ++column) {
        dbgLijst->setColumnHidden(column, stepField(column).isHidden);
    }
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(dbgLijst);
    QSizePolicy keepsItsPlace = dbgLijst->sizePolicy();
    keepsItsPlace.setRetainSizeWhenHidden(true);
    dbgLijst->setSizePolicy(keepsItsPlace);
    dbgLijst->hide();
    on(dbgLijst->selectionModel(), &QItemSelectionModel::currentRowChanged, this, &GridPanel::currentRowChanged);
    on(dbgLijst, &QTableView::doubleClicked, this, &GridPanel::dbgLijst_DblClick);
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
    fitColumns(*dbgLijst);
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
    model_.setMissing(tracks_.missing(playlist_), tracks_.folder());
}

void GridPanel::selectRow(int row) {
    if (row >= 0 && row < model_.rowCount()) {
        dbgLijst->setCurrentIndex(model_.index(row, StapColumn));
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
