#pragma once

#include <QHeaderView>
#include <QStyledItemDelegate>
#include <QTableWidget>

namespace orvel {

/// A row is chosen, not a cell: none of them is painted apart.
class WholeRows : public QStyledItemDelegate {
  public:
    using QStyledItemDelegate::QStyledItemDelegate;

  protected:
    void initStyleOption(QStyleOptionViewItem *option, const QModelIndex &index) const override {
        QStyledItemDelegate::initStyleOption(option, index);
        option->state.setFlag(QStyle::State_HasFocus, false);
    }
};

/// A list of which one whole row is chosen, with a calm header.
inline void showWholeRows(QTableWidget &list) {
    list.horizontalHeader()->setDefaultAlignment(Qt::AlignLeft | Qt::AlignVCenter);
    list.horizontalHeader()->setHighlightSections(false);
    list.horizontalHeader()->setSectionResizeMode(QHeaderView::ResizeToContents);
    list.verticalHeader()->hide();
    list.verticalHeader()->setDefaultSectionSize(list.fontMetrics().height() * 8 / 5);
    list.setSelectionBehavior(QAbstractItemView::SelectRows);
    list.setSelectionMode(QAbstractItemView::SingleSelection);
    list.setEditTriggers(QAbstractItemView::NoEditTriggers);
    list.setShowGrid(false);
    list.setTabKeyNavigation(false);
    list.setWordWrap(false);
    list.setItemDelegate(new WholeRows(&list));
}

} // namespace orvel
