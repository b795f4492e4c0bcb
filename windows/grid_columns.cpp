#include "windows/grid_columns.h"

#include "playlist/step_fields.h"
#include "windows/on.h"

#include <QHeaderView>
#include <QMenu>
#include <QTableView>

namespace orvel {

namespace {

constexpr std::array wideColumns = {stepColumn("artiest"), stepColumn("Titel")};

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

} // namespace

void fitColumn(QTableView &grid, int column) {
    if (column == ImportedColumn) {
        grid.resizeColumnToContents(column); // a tick, and a sign beside it
        return;
    }
    const QFontMetrics metrics = grid.fontMetrics();
    const int text = metrics.horizontalAdvance(longestText(*grid.model(), column)) + metrics.averageCharWidth() * 3;
    grid.setColumnWidth(column, std::max(text, grid.horizontalHeader()->sectionSizeHint(column)));
}

void hideTechnicalColumns(QTableView &grid) {
    for (int column = 0; column < StepColumnCount; ++column) {
        grid.setColumnHidden(column, stepField(column).isHidden);
    }
}

void fitColumns(QTableView &grid) {
    for (int column = 0; column < StepColumnCount; ++column) {
        if (!grid.isColumnHidden(column)) {
            fitColumn(grid, column);
        }
    }
    shareRest(grid);
}

void shareRest(QTableView &grid) {
    int shown = 0;
    for (const int column : wideColumns) {
        if (!grid.isColumnHidden(column)) {
            fitColumn(grid, column);
            ++shown;
        }
    }
    const int rest = grid.viewport()->width() - grid.horizontalHeader()->length();
    for (const int column : wideColumns) {
        if (rest > 0 && !grid.isColumnHidden(column)) {
            grid.setColumnWidth(column, grid.columnWidth(column) + rest / shown);
        }
    }
}

void fillColumnMenu(QMenu &menu, QTableView &grid) {
    int shown = 0;
    for (int column = 0; column < StepColumnCount; ++column) {
        shown += grid.isColumnHidden(column) ? 0 : 1;
    }
    for (int column = 0; column < StepColumnCount; ++column) {
        if (stepField(column).isHidden) {
            continue;
        }
        const bool isShown = !grid.isColumnHidden(column);
        QAction *action = menu.addAction(QString::fromLatin1(stepField(column).caption));
        action->setCheckable(true);
        action->setChecked(isShown);
        action->setEnabled(!isShown || shown > 1);
        on(action, &QAction::triggered, &grid, [&grid, column, isShown] { grid.setColumnHidden(column, isShown); });
    }
}

} // namespace orvel
