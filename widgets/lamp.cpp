#include "widgets/lamp.h"

#include "widgets/accessible.h"
#include "widgets/led_paint.h"

#include <QPainter>

namespace orvel {

Lamp::Lamp(QWidget *parent) : QWidget(parent), colour_(QColor(led::red)) {
    installAccessibility();
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

QString Lamp::text() const {
    return lit_ ? QStringLiteral("aan") : QStringLiteral("uit");
}

void Lamp::setLit(bool lit) {
    if (lit == lit_) {
        return;
    }
    lit_ = lit;
    update();
    announceState(*this);
}

void Lamp::setColour(const QColor &colour) {
    if (colour != colour_) {
        colour_ = colour;
        update();
    }
}

QSize Lamp::sizeHint() const {
    const int side = fontMetrics().height() * 3 / 2;
    return {side, side};
}

void Lamp::paintEvent(QPaintEvent * /*event*/) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const double side = std::min(width(), height());
    const QPointF centre = QRectF(rect()).center();
    const double radius = side * 0.36;
    const bool bright = lit_ && isEnabled();
    if (bright) {
        QRadialGradient glow(centre, side / 2);
        QColor halo = colour_;
        halo.setAlphaF(0.55F);
        glow.setColorAt(0.5, halo);
        halo.setAlphaF(0);
        glow.setColorAt(1, halo);
        painter.setPen(Qt::NoPen);
        painter.setBrush(glow);
        painter.drawEllipse(centre, side / 2, side / 2);
    }
    QRadialGradient dome(centre - QPointF(radius * 0.35, radius * 0.4), radius * 1.5);
    if (bright) {
        dome.setColorAt(0, colour_.lighter(165));
        dome.setColorAt(0.45, colour_);
        dome.setColorAt(1, colour_.darker(140));
    } else {
        const QColor dark = led::litColour(colour_, isEnabled()).darker(isEnabled() ? 320 : 220);
        dome.setColorAt(0, dark.lighter(190));
        dome.setColorAt(1, dark);
    }
    painter.setPen(QPen(palette().color(QPalette::Mid), std::max(1.0, side * 0.06)));
    painter.setBrush(dome);
    painter.drawEllipse(centre, radius, radius);
}

} // namespace orvel
