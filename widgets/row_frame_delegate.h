#pragma once

#include <QStyledItemDelegate>

namespace orvel {

/// Paints cells in the model's own colours (Qt::BackgroundRole, Qt::ForegroundRole) also while they are selected, and
/// shows the selected row by a thick frame around it instead of by a colour of its own.
class RowFrameDelegate : public QStyledItemDelegate {
    Q_OBJECT

  public:
    using QStyledItemDelegate::QStyledItemDelegate;

    void paint(QPainter *painter, const QStyleOptionViewItem &option, const QModelIndex &index) const override;
    QSize sizeHint(const QStyleOptionViewItem &option, const QModelIndex &index) const override;
};

} // namespace orvel
