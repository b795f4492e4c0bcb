#include "widgets/gauge.h"

#include "widgets/accessible.h"
#include "widgets/led_paint.h"

#include <QPaintEvent>
#include <QPainter>

#include <algorithm>
#include <cmath>

namespace orvel {

namespace {

constexpr double border = 3;

// Full blue on black is too dark to read from a distance: a dark colour is shown lighter, in its own hue.
QColor readable(const QColor &colour) {
    constexpr float lightest = 0.62F;
    const double luminance = 0.2126 * colour.redF() + 0.7152 * colour.greenF() + 0.0722 * colour.blueF();
    if (luminance > 0.15) {
        return colour;
    }
    return QColor::fromHslF(std::max(0.0F, colour.hslHueF()), colour.hslSaturationF() * 0.92F,
                            std::max(colour.lightnessF(), lightest));
}

QColor textOn(const QColor &colour) {
    const double luminance = 0.2126 * colour.redF() + 0.7152 * colour.greenF() + 0.0722 * colour.blueF();
    return luminance > 0.45 ? QColor(Qt::black) : QColor(Qt::white);
}

} // namespace

Gauge::Gauge(QWidget *parent) : QWidget(parent), barColour_(QColor(0x3A, 0x8F, 0xD9)) {
    installAccessibility();
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

QString Gauge::text() const {
    const QString filled = QStringLiteral("%1%").arg(percent());
    return caption_.isEmpty() ? filled : caption_ + QStringLiteral(", ") + filled;
}

void Gauge::setMaximum(int maximum) {
    if (maximum == maximum_) {
        return;
    }
    const int pixels = filledPixels();
    const int before = percent();
    maximum_ = maximum;
    showChange(pixels, before);
}

void Gauge::setValue(int value) {
    if (value == value_) {
        return;
    }
    const int pixels = filledPixels();
    const int before = percent();
    value_ = value;
    showChange(pixels, before);
}

void Gauge::setBarColour(const QColor &colour) {
    if (colour == barColour_) {
        return;
    }
    barColour_ = colour;
    if (filledPixels() > 0) {
        update();
    }
}

void Gauge::setCaption(const QString &caption) {
    if (caption != caption_) {
        caption_ = caption;
        update();
        announceValue(*this);
    }
}

QSize Gauge::sizeHint() const {
    const int line = fontMetrics().height();
    return {line * 20, line * 2};
}

QSize Gauge::minimumSizeHint() const {
    const int line = fontMetrics().height();
    return {std::max(line * 6, fontMetrics().horizontalAdvance(caption_) + line), line + 8};
}

QRectF Gauge::barArea() const {
    return QRectF(rect()).adjusted(border, border, -border, -border);
}

// In pixels of the screen, so that on a dense screen the bar moves as finely as it can.
int Gauge::filledPixels() const {
    if (maximum_ <= 0 || value_ <= 0) {
        return 0;
    }
    const double part = std::min(1.0, static_cast<double>(value_) / maximum_);
    return static_cast<int>(std::lround(part * barArea().width() * devicePixelRatioF()));
}

int Gauge::percent() const {
    if (maximum_ <= 0 || value_ <= 0) {
        return 0;
    }
    return static_cast<int>(std::min<qint64>(100, qint64{value_} * 100 / maximum_));
}

void Gauge::showChange(int pixelsBefore, int percentBefore) {
    const int pixels = filledPixels();
    if (pixels != pixelsBefore) {
        const double ratio = devicePixelRatioF();
        const double left = barArea().left() + std::min(pixels, pixelsBefore) / ratio;
        const double width = std::abs(pixels - pixelsBefore) / ratio;
        update(QRectF(left, 0, width, height()).toAlignedRect());
    }
    if (percent() != percentBefore) {
        announceValue(*this);
    }
}

void Gauge::paintEvent(QPaintEvent *event) {
    QPainter painter(this);
    painter.setClipRect(event->rect());
    led::drawGlass(painter, *this);
    const QRectF area = barArea();
    QRectF filled = area;
    filled.setWidth(filledPixels() / devicePixelRatioF());
    const QColor colour = led::litColour(readable(barColour_), isEnabled());
    QLinearGradient shine(area.topLeft(), area.bottomLeft());
    shine.setColorAt(0, colour.lighter(112));
    shine.setColorAt(1, colour.darker(112));
    painter.setRenderHint(QPainter::Antialiasing, false);
    painter.fillRect(filled, shine);
    drawCaption(painter, area, filled);
}

// The caption is drawn twice, so that it reads on the bar as well as beside it.
void Gauge::drawCaption(QPainter &painter, const QRectF &area, const QRectF &filled) const {
    if (caption_.isEmpty()) {
        return;
    }
    painter.save();
    painter.setPen(textOn(led::litColour(readable(barColour_), isEnabled())));
    painter.setClipRect(filled, Qt::IntersectClip);
    painter.drawText(area, Qt::AlignCenter, caption_);
    painter.restore();
    QRectF rest = area;
    rest.setLeft(filled.right());
    painter.setPen(QColor(0xE6, 0xE9, 0xED));
    painter.setClipRect(rest, Qt::IntersectClip);
    painter.drawText(area, Qt::AlignCenter, caption_);
}

} // namespace orvel
