#include "widgets/row_frame_delegate.h"

#include <QHeaderView>
#include <QPainter>
#include <QTableView>

namespace orvel {

namespace {

// The columns that stand at the ends of a row, as the user has arranged them.
std::pair<int, int> endColumns(const QTableView &table) {
    const QHeaderView &header = *table.horizontalHeader();
    int first = -1;
    int last = -1;
    for (int visual = 0; visual < header.count(); ++visual) {
        const int column = header.logicalIndex(visual);
        if (!header.isSectionHidden(column)) {
            first = first < 0 ? column : first;
            last = column;
        }
    }
    return {first, last};
}

// White inside black shows on every colour that a station can choose.
void drawRowFrame(QPainter &painter, const QRect &cell, bool first, bool last) {
    const int lines = 2;
    const auto bars = [&](int inset, int width, const QColor &colour) {
        const int left = first ? inset : 0;
        const int right = last ? inset : 0;
        const QRect box = cell.adjusted(left, inset, -right, -inset);
        painter.fillRect(QRect(box.left(), box.top(), box.width(), width), colour);
        painter.fillRect(QRect(box.left(), box.bottom() - width + 1, box.width(), width), colour);
        if (first) {
            painter.fillRect(QRect(box.left(), box.top(), width, box.height()), colour);
        }
        if (last) {
            painter.fillRect(QRect(box.right() - width + 1, box.top(), width, box.height()), colour);
        }
    };
    bars(0, lines, Qt::black);
    bars(lines, lines, Qt::white);
}

} // namespace

void RowFrameDelegate::paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const {
    QStyleOptionViewItem plain = option;
    plain.state &= ~QStyle::State_Selected;
    QStyledItemDelegate::paint(painter, plain, index);
    const auto *table = qobject_cast<const QTableView *>(option.widget);
    if (option.state.testFlag(QStyle::State_Selected) && table != nullptr) {
        const auto [first, last] = endColumns(*table);
        painter->save();
        drawRowFrame(*painter, option.rect, index.column() == first, index.column() == last);
        painter->restore();
    }
}

// Room for the frame above and below the text.
QSize RowFrameDelegate::sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const {
    const int edge = 4;
    return QStyledItemDelegate::sizeHint(option, index) + QSize(edge, 2 * edge);
}

} // namespace orvel
