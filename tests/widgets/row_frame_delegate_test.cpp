#include "widgets/row_frame_delegate.h"

#include <QHeaderView>
#include <QTableWidget>

#include <gtest/gtest.h>

namespace orvel {

namespace {

class RowFrameDelegateTest : public testing::Test {
  protected:
    RowFrameDelegateTest() : table_(2, 4) {
        table_.setItemDelegate(new RowFrameDelegate(&table_));
        table_.setSelectionBehavior(QAbstractItemView::SelectRows);
        table_.setShowGrid(false);
        for (int row = 0; row < 2; ++row) {
            for (int column = 0; column < 4; ++column) {
                auto *item = new QTableWidgetItem;
                item->setBackground(QColor(200, 100, 0));
                table_.setItem(row, column, item);
            }
        }
        table_.resize(800, 300);
        table_.resizeRowsToContents();
        table_.setColumnHidden(0, true);
        table_.setColumnHidden(3, true);
        table_.setCurrentCell(1, 1, QItemSelectionModel::NoUpdate);
    }

    QImage picture() { return table_.viewport()->grab().toImage(); }
    QRect cell(int row, int column) { return table_.visualRect(table_.model()->index(row, column)); }

    QTableWidget table_;
};

TEST_F(RowFrameDelegateTest, KeepsTheModelsColoursOnASelectedRow) {
    table_.selectRow(0);
    const QImage image = picture();
    EXPECT_EQ(image.pixelColor(cell(0, 1).center()), QColor(200, 100, 0));
    EXPECT_EQ(image.pixelColor(cell(0, 2).center()), QColor(200, 100, 0));
}

TEST_F(RowFrameDelegateTest, FramesTheVisiblePartOfTheSelectedRowOnly) {
    const QImage before = picture();
    table_.selectRow(0);
    const QImage image = picture();
    const QRect first = cell(0, 1);
    const QRect last = cell(0, 2);
    const int middle = first.center().y();
    EXPECT_EQ(image.pixelColor(first.center().x(), first.top()), QColor(Qt::black));
    EXPECT_EQ(image.pixelColor(first.center().x(), first.top() + 2), QColor(Qt::white));
    EXPECT_EQ(image.pixelColor(last.center().x(), last.bottom()), QColor(Qt::black));
    EXPECT_EQ(image.pixelColor(first.left(), middle), QColor(Qt::black));
    EXPECT_EQ(image.pixelColor(last.right(), middle), QColor(Qt::black));
    EXPECT_EQ(image.pixelColor(first.right(), middle), QColor(200, 100, 0));
    const QRect other = cell(1, 1) | cell(1, 2);
    EXPECT_EQ(image.copy(other), before.copy(other));
}

} // namespace

} // namespace orvel
