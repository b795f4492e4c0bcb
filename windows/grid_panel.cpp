#include "windows/grid_panel.h"

#include "platform/runtime_error.h"
#include "playlist/field_values.h"
#include "station/checked.h"
#include "windows/on.h"

#include <QHeaderView>
#include <QVBoxLayout>

namespace orvel {

namespace {

const QColor outroBlue(0x00, 0x00, 0xFF);

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
        }
    }
}

} // namespace

GridPanel::GridPanel(Playlist &playlist, CurrentStep &step, StepPanel &stepPanel, QWidget *parent)
    : QGroupBox(QStringLiteral("Playlist"), parent), dbgLijst(new QTableView(this)), playlist_(playlist), step_(step),
      stepPanel_(stepPanel), model_(playlist) {
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
    fitColumns(*dbgLijst);
    dbgLijst->show();
    selectRow(0);
}

void GridPanel::closePlaylist() {
    model_.rebuild([&] { playlist_.close(); });
    step_.StepSelected = false;
    stepPanel_.showTimes(false);
    stepPanel_.barRec->setValue(0);
    stepPanel_.lblBestand->setText(QStringLiteral("geen bestand"));
    Q_EMIT stepFileChanged(false);
}

void GridPanel::refresh() {
    const int row = currentRow();
    model_.rebuild([&] { playlist_.refresh(); });
    selectRow(row);
}

void GridPanel::selectRow(int row) {
    if (row >= 0 && row < model_.rowCount()) {
        dbgLijst->setCurrentIndex(model_.index(row, StapColumn));
    }
}

void GridPanel::setCurrentImported(bool imported) {
    if (playlist_.isOpen() && currentRow() >= 0) {
        model_.setImported(currentRow(), imported);
    }
}

bool GridPanel::currentImported() const {
    return playlist_.isOpen() && currentRow() >= 0 && playlist_.value(currentRow(), ImportedColumn).toBool();
}

void GridPanel::currentRowChanged() {
    // The file name first: a step outside the time tables must not leave the previous step's name behind.
    dbgLijst_SelChange();
    dbgLijst_RowColChange();
}

void GridPanel::dbgLijst_RowColChange() {
    if (step_.PlaylistTakeRunning || currentRow() < 0) {
        return;
    }
    const int row = currentRow();
    if (toWholeNumber(playlist_.value(row, TypeColumn)) != PresStep) {
        stepPanel_.showTimes(false);
        stepPanel_.barRec->setValue(0);
        return;
    }
    stepPanel_.showTimes(true);
    showTalkOver(toWholeNumber(playlist_.value(row, StapColumn)));
    Q_EMIT playAllowed(playlist_.value(row, ImportedColumn).toBool());
}

void GridPanel::showTalkOver(int stap) {
    const std::int32_t outro = playlist_.outtro(stap - 1);
    const std::int32_t intro = playlist_.intro(stap + 1);
    step_.TalkTotalMs = checkedInt32(std::int64_t{outro} + intro);
    step_.NextIntroMs = intro;
    step_.PrevOutroMs = outro;
    stepPanel_.lblOuttro->setText(QStringLiteral("Outtro : ") + secondsOneDecimal(outro));
    stepPanel_.lblIntro->setText(QStringLiteral("Intro : ") + secondsOneDecimal(intro));
    stepPanel_.barRec->setMaximum(step_.TalkTotalMs);
    stepPanel_.barRec->setValue(step_.TalkTotalMs);
    stepPanel_.barRec->setBarColour(outroBlue);
    stepPanel_.lblInOut->setText(QStringLiteral("Totaal : ") + secondsGeneral(step_.TalkTotalMs) +
                                 QStringLiteral(" sec"));
}

void GridPanel::dbgLijst_SelChange() {
    if (step_.PlaylistTakeRunning || currentRow() < 0) {
        return;
    }
    step_.VoiceTrackName = toText(playlist_.value(currentRow(), AtrackColumn));
    step_.StepSelected = step_.VoiceTrackName != QStringLiteral("NONE");
    if (step_.StepSelected) {
        stepPanel_.lblBestand->setText(step_.VoiceTrackName);
    } else {
        stepPanel_.lblBestand->setText(QStringLiteral("geen bestand"));
        step_.PreviewTrackId = toWholeNumber(playlist_.value(currentRow(), TrackidColumn));
        step_.previewAllowed = true;
    }
    Q_EMIT stepFileChanged(step_.StepSelected);
}

void GridPanel::dbgLijst_DblClick() {
    if (step_.PlaylistTakeRunning || !step_.previewAllowed || currentRow() < 0) {
        return;
    }
    const std::int32_t type = toWholeNumber(playlist_.value(currentRow(), TypeColumn));
    if (type != TrackStep && type != JingleStep) {
        return;
    }
    step_.PreviewKind = checkedInt16(type);
    step_.PreviewTrackId = toWholeNumber(playlist_.value(currentRow(), TrackidColumn));
    Q_EMIT previewWanted();
}

} // namespace orvel
