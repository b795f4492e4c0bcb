#pragma once

#include <QPoint>

class QMenu;
class QTableView;

namespace orvel {

/// Those that only the program needs are never shown.
void hideTechnicalColumns(QTableView &grid);

/// As wide as its texts.
void fitColumn(QTableView &grid, int column);

/// Every column as wide as its texts; performer and title take the room that is left.
void fitColumns(QTableView &grid);

/// Gives the room that the columns leave to performer and title, half each; takes back what was given before.
void shareRest(QTableView &grid);

/// Fills a menu that shows and hides columns; the last one that is left stays.
void fillColumnMenu(QMenu &menu, QTableView &grid);

} // namespace orvel
