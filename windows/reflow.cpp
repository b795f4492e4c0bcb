#include "windows/reflow.h"

#include "platform/guarded.h"

namespace orvel {

Reflow::Reflow(QWidget *parent) : QWidget(parent), layout_(new QBoxLayout(QBoxLayout::LeftToRight, this)) {
    layout_->setContentsMargins(0, 0, 0, 0);
    // The layout would keep the widget as wide as it is laid out at the moment.
    layout_->setSizeConstraint(QLayout::SetNoConstraint);
}

void Reflow::add(QWidget *widget) {
    if (layout_->count() > 0) {
        layout_->setStretch(layout_->count() - 1, 0);
    }
    layout_->addWidget(widget, 1);
}

QSize Reflow::beside() const {
    QSize size(std::max(layout_->count() - 1, 0) * layout_->spacing(), 0);
    for (int i = 0; i < layout_->count(); ++i) {
        const QSize hint = layout_->itemAt(i)->minimumSize();
        size = {size.width() + hint.width(), std::max(size.height(), hint.height())};
    }
    return size;
}

QSize Reflow::above() const {
    QSize size(0, std::max(layout_->count() - 1, 0) * layout_->spacing());
    for (int i = 0; i < layout_->count(); ++i) {
        const QSize hint = layout_->itemAt(i)->minimumSize();
        size = {std::max(size.width(), hint.width()), size.height() + hint.height()};
    }
    return size;
}

QSize Reflow::minimumSizeHint() const {
    const bool isBeside = layout_->direction() == QBoxLayout::LeftToRight;
    return {above().width(), isBeside ? beside().height() : above().height()};
}

void Reflow::resizeEvent(QResizeEvent *event) {
    QWidget::resizeEvent(event);
    const bool fits = width() >= beside().width();
    layout_->setDirection(fits ? QBoxLayout::LeftToRight : QBoxLayout::TopToBottom);
    updateGeometry();
}

} // namespace orvel
