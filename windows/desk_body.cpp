#include "windows/desk_body.h"

#include "platform/guarded.h"

#include <QCoreApplication>
#include <QEvent>
#include <QLayout>
#include <QScopedValueRollback>

#include <utility>

namespace orvel {

DeskBody::DeskBody(std::function<void(bool dense)> arrange, QWidget *parent)
    : QWidget(parent), arrange_(std::move(arrange)) {}

bool DeskBody::event(QEvent *event) {
    const bool done = QWidget::event(event);
    if (event->type() == QEvent::LayoutRequest) {
        guarded([this] { choose(); });
    }
    return done;
}

void DeskBody::resizeEvent(QResizeEvent *event) {
    QWidget::resizeEvent(event);
    guarded([this] { choose(); });
}

QSize DeskBody::least() const {
    return layout()->totalMinimumSize();
}

void DeskBody::choose() {
    if (layout() == nullptr || isArranging_ || !isVisible()) {
        return;
    }
    const QSize before = least();
    const QSize roomy = isDense_ ? before + gain_ : before;
    const bool dense = width() < roomy.width() || height() < roomy.height();
    if (dense == isDense_) {
        return;
    }
    const QScopedValueRollback arranging(isArranging_, true);
    isDense_ = dense;
    arrange_(dense);
    // What is hidden tells the layouts above it one after the other, by events.
    QCoreApplication::sendPostedEvents(nullptr, QEvent::LayoutRequest);
    gain_ = dense ? before - least() : QSize(0, 0);
}

} // namespace orvel
