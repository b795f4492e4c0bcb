#include "widgets/level_meter.h"

#include <QPainter>

#include <algorithm>
#include <cmath>

namespace orvel {

namespace {

constexpr int tickCount = 11;
constexpr int enlargedEvery = 5;

QString labelOf(int tick) {
    const int db = static_cast<int>(LevelMeter::floorDb) * (tickCount - 1 - tick) / (tickCount - 1);
    return db == 0 ? QStringLiteral("0") : QStringLiteral("\u2212%1").arg(-db);
}

} // namespace

LevelScale::LevelScale(Qt::Orientation orientation, QWidget *parent) : QWidget(parent), orientation_(orientation) {
    const bool lying = orientation == Qt::Horizontal;
    setSizePolicy(lying ? QSizePolicy::Expanding : QSizePolicy::Fixed,
                  lying ? QSizePolicy::Fixed : QSizePolicy::Expanding);
}

QSize LevelScale::sizeHint() const {
    const QFontMetrics metrics = fontMetrics();
    if (orientation_ == Qt::Horizontal) {
        return {metrics.height() * 16, metrics.height() + metrics.height() / 2};
    }
    return {metrics.horizontalAdvance(labelOf(0)) + metrics.height() * 3 / 4, metrics.height() * 16};
}

QSize LevelScale::minimumSizeHint() const {
    const int line = fontMetrics().height();
    QSize least = sizeHint();
    if (orientation_ == Qt::Horizontal) {
        least.setWidth(line * 6);
    } else {
        least.setHeight(line * 6);
    }
    return least;
}

void LevelScale::paintEvent(QPaintEvent * /*event*/) {
    QPainter painter(this);
    const QFontMetricsF metrics(font());
    const bool lying = orientation_ == Qt::Horizontal;
    const QRectF bar = levelBarRect(size(), orientation_, metrics);
    const double length = lying ? bar.width() : bar.height();
    const double labelRoom = lying ? metrics.horizontalAdvance(labelOf(0)) * 1.3 : metrics.height() * 1.25;
    const bool labelAll = length / (tickCount - 1) > labelRoom;
    painter.setPen(palette().color(isEnabled() ? QPalette::Active : QPalette::Disabled, QPalette::WindowText));
    for (int tick = 0; tick < tickCount; ++tick) {
        const bool enlarged = tick % enlargedEvery == 0;
        const double at = std::round(length * tick / (tickCount - 1));
        const double tickLength = metrics.height() * (enlarged ? 0.4 : 0.22);
        const QString label = labelOf(tick);
        const double labelWidth = metrics.horizontalAdvance(label);
        if (lying) {
            const double x = std::round(bar.left() + at);
            painter.drawLine(QPointF(x, 0), QPointF(x, tickLength));
            if (enlarged || labelAll) {
                const double left = std::clamp(x - labelWidth / 2, 0.0, width() - labelWidth);
                painter.drawText(QPointF(left, metrics.height() * 0.45 + metrics.ascent()), label);
            }
        } else {
            const double y = std::round(bar.bottom() - at);
            painter.drawLine(QPointF(0, y), QPointF(tickLength, y));
            if (enlarged || labelAll) {
                const double baseline =
                    std::clamp(y + metrics.capHeight() / 2, metrics.ascent(), height() - metrics.descent());
                painter.drawText(QPointF(metrics.height() * 0.6, baseline), label);
            }
        }
    }
}

} // namespace orvel
