#include "widgets/knob.h"

#include "widgets/accessible.h"

#include <QMouseEvent>
#include <QPainter>
#include <QtMath>

#include <algorithm>
#include <cmath>

namespace orvel {

namespace {

// The pointer runs clockwise from half past seven to half past four.
constexpr double startDegrees = 225;
constexpr double spanDegrees = 270;

} // namespace

Knob::Knob(QWidget *parent) : QDial(parent) {
    installAccessibility();
    setProperty("percent", true);
    setRange(0, maximumValue);
    setSingleStep(maximumValue / 100);
    setPageStep(maximumValue / 10);
    setFocusPolicy(Qt::StrongFocus);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

QSize Knob::sizeHint() const {
    const int side = fontMetrics().height() * 4;
    return {side, side};
}

QSize Knob::minimumSizeHint() const {
    const int side = fontMetrics().height() * 5 / 2;
    return {side, side};
}

void Knob::paintEvent(QPaintEvent * /*event*/) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const double side = std::min(width(), height());
    const double track = std::max(2.0, side * 0.07);
    const QPointF centre = QRectF(rect()).center();
    const QRectF ring(centre.x() - side / 2 + track, centre.y() - side / 2 + track, side - 2 * track, side - 2 * track);
    const double range = std::max(1, maximum() - minimum());
    const double part = (value() - minimum()) / range;
    const QColor accent = palette().color(isEnabled() ? QPalette::Highlight : QPalette::Mid);

    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(palette().color(QPalette::Mid), track, Qt::SolidLine, Qt::RoundCap));
    painter.drawArc(ring, qRound(startDegrees * 16), qRound(-spanDegrees * 16));
    if (part > 0) {
        painter.setPen(QPen(accent, track, Qt::SolidLine, Qt::RoundCap));
        painter.drawArc(ring, qRound(startDegrees * 16), qRound(-spanDegrees * part * 16));
    }

    const double radius = ring.width() / 2 - track * 1.4;
    QLinearGradient body(centre - QPointF(0, radius), centre + QPointF(0, radius));
    body.setColorAt(0, palette().color(QPalette::Button).lighter(118));
    body.setColorAt(1, palette().color(QPalette::Button).darker(112));
    painter.setPen(
        QPen(hasFocus() ? palette().color(QPalette::Highlight) : palette().color(QPalette::Mid), hasFocus() ? 2 : 1));
    painter.setBrush(body);
    painter.drawEllipse(centre, radius, radius);

    const double angle = qDegreesToRadians(startDegrees - spanDegrees * part);
    const QPointF direction(std::cos(angle), -std::sin(angle));
    painter.setPen(QPen(palette().color(QPalette::ButtonText), track * 0.8, Qt::SolidLine, Qt::RoundCap));
    painter.drawLine(centre + direction * radius * 0.45, centre + direction * radius * 0.82);
}

void Knob::mousePressEvent(QMouseEvent *event) {
    if (event->button() != Qt::LeftButton) {
        event->ignore();
        return;
    }
    dragStart_ = event->position();
    dragValue_ = value();
    setSliderDown(true);
}

void Knob::mouseMoveEvent(QMouseEvent *event) {
    if (!isSliderDown()) {
        return;
    }
    const QPointF moved = event->position() - dragStart_;
    const double wholeTurn = fontMetrics().height() * 12.0;
    const double part = (moved.x() - moved.y()) / wholeTurn;
    const double target = dragValue_ + part * (static_cast<double>(maximum()) - minimum());
    setValue(static_cast<int>(std::clamp<double>(target, minimum(), maximum())));
}

void Knob::mouseReleaseEvent(QMouseEvent *event) {
    if (event->button() == Qt::LeftButton) {
        setSliderDown(false);
    }
}

} // namespace orvel
