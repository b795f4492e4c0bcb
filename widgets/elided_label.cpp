#include "widgets/elided_label.h"

#include <QPainter>
#include <QStyle>

namespace orvel {

ElidedLabel::ElidedLabel(QWidget *parent) : QLabel(parent) {
    setTextFormat(Qt::PlainText);
    setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Preferred);
}

QSize ElidedLabel::minimumSizeHint() const {
    return {fontMetrics().averageCharWidth() * 4, QLabel::minimumSizeHint().height()};
}

void ElidedLabel::setText(const QString &text) {
    QLabel::setText(text);
    tellWhole();
}

void ElidedLabel::resizeEvent(QResizeEvent *event) {
    QLabel::resizeEvent(event);
    tellWhole();
}

void ElidedLabel::tellWhole() {
    setToolTip(fontMetrics().horizontalAdvance(text()) > contentsRect().width() ? text() : QString());
}

void ElidedLabel::paintEvent(QPaintEvent * /*event*/) {
    QPainter painter(this);
    const QRect place = contentsRect();
    style()->drawItemText(&painter, place, static_cast<int>(alignment()) | Qt::TextSingleLine, palette(), isEnabled(),
                          fontMetrics().elidedText(text(), Qt::ElideRight, place.width()), foregroundRole());
}

} // namespace orvel
