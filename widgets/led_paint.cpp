#include "widgets/led_paint.h"

#include <QPainter>
#include <QWidget>

#include <algorithm>
#include <array>

namespace orvel::led {

namespace {

// All measures in digits of height 1.
constexpr double digitWidth = 0.52;
constexpr double stroke = 0.13;
constexpr double seam = 0.022;
constexpr double digitAdvance = 0.70;
constexpr double pointAdvance = 0.26;
constexpr double slant = 0.09;

using Segments = std::array<QPolygonF, 7>;

// Segments a to g: top, upper right, lower right, bottom, lower left, upper left, middle.
const Segments &segments() {
    constexpr double w = digitWidth;
    constexpr double t = stroke;
    constexpr double s = seam;
    constexpr double m = 0.5;
    static const Segments shapes = {
        QPolygonF({{s, 0}, {w - s, 0}, {w - t - s, t}, {t + s, t}}),
        QPolygonF({{w, s}, {w, m - s}, {w - t, m - t / 2 - s}, {w - t, t + s}}),
        QPolygonF({{w, m + s}, {w, 1 - s}, {w - t, 1 - t - s}, {w - t, m + t / 2 + s}}),
        QPolygonF({{s, 1}, {w - s, 1}, {w - t - s, 1 - t}, {t + s, 1 - t}}),
        QPolygonF({{0, m + s}, {t, m + t / 2 + s}, {t, 1 - t - s}, {0, 1 - s}}),
        QPolygonF({{0, s}, {t, t + s}, {t, m - t / 2 - s}, {0, m - s}}),
        QPolygonF({{2 * s, m},
                   {t + s, m - t / 2},
                   {w - t - s, m - t / 2},
                   {w - 2 * s, m},
                   {w - t - s, m + t / 2},
                   {t + s, m + t / 2}}),
    };
    return shapes;
}

// Bit 0 is segment a.
unsigned segmentsOf(QChar character) {
    static constexpr std::array<unsigned, 10> digits = {0x3F, 0x06, 0x5B, 0x4F, 0x66, 0x6D, 0x7D, 0x07, 0x7F, 0x6F};
    if (character >= u'0' && character <= u'9') {
        return digits.at(static_cast<std::size_t>(character.unicode() - u'0'));
    }
    return character == u'-' ? 0x40 : 0;
}

bool isPoint(QChar character) {
    return character == u'.' || character == u':';
}

double advance(QChar character) {
    return isPoint(character) ? pointAdvance : digitAdvance;
}

double widthBefore(const QString &text, qsizetype end) {
    double width = 0;
    for (qsizetype i = 0; i < end; ++i) {
        width += advance(text.at(i));
    }
    return width;
}

// The last digit needs no gap behind it, but the slant leans out to the right.
double unitWidth(const QString &text) {
    return widthBefore(text, text.size()) - (digitAdvance - digitWidth) + slant;
}

struct Placing {
    double height;
    QPointF topLeft;
};

Placing place(const QString &text, const QRectF &area) {
    const double width = std::max(unitWidth(text), digitWidth);
    const double height = std::max(1.0, std::min(area.height(), area.width() / width));
    return {height, {area.right() - width * height, area.center().y() - height / 2}};
}

void drawPoint(QPainter &painter, QChar character) {
    const QRectF dot(digitAdvance - digitWidth - stroke, 1 - stroke, stroke, stroke);
    const double back = pointAdvance - digitAdvance + digitWidth - stroke;
    if (character == u'.') {
        painter.drawEllipse(dot.translated(back / 2, 0));
        return;
    }
    painter.drawEllipse(dot.translated(back / 2, -0.18));
    painter.drawEllipse(dot.translated(back / 2, -0.82 + stroke + 0.18));
}

void drawDigit(QPainter &painter, unsigned lit, const QColor &litColour, const QColor &unlitColour) {
    unsigned bit = 1;
    for (const QPolygonF &segment : segments()) {
        painter.setBrush((lit & bit) != 0 ? litColour : unlitColour);
        painter.drawPolygon(segment);
        bit <<= 1U;
    }
}

} // namespace

QColor litColour(const QColor &colour, bool enabled) {
    if (enabled) {
        return colour;
    }
    return QColor::fromHsvF(colour.hsvHueF() < 0 ? 0 : colour.hsvHueF(), colour.hsvSaturationF() * 0.3F, 0.5F);
}

QColor unlitColour(const QColor &colour) {
    QColor ghost = colour;
    ghost.setAlphaF(0.085F);
    return ghost;
}

void drawGlass(QPainter &painter, const QWidget &widget) {
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF pane = QRectF(widget.rect()).adjusted(0.5, 0.5, -0.5, -0.5);
    const QPalette &palette = widget.palette();
    const bool focused = widget.hasFocus();
    painter.setPen(QPen(palette.color(focused ? QPalette::Highlight : QPalette::Mid), focused ? 2 : 1));
    painter.setBrush(QColor(glass));
    const double inset = focused ? 0.5 : 0;
    painter.drawRoundedRect(pane.adjusted(inset, inset, -inset, -inset), 4, 4);
}

double textWidth(const QString &text, double height) {
    return unitWidth(text) * height;
}

QRectF characterRect(const QString &text, qsizetype index, const QRectF &area) {
    const Placing placing = place(text, area);
    const double left = widthBefore(text, index) - slant;
    const double width = advance(text.at(index)) + 2 * slant;
    return {placing.topLeft.x() + left * placing.height, placing.topLeft.y(), width * placing.height, placing.height};
}

void drawText(QPainter &painter, const QString &text, const QRectF &area, const QRectF &exposed, const QColor &colour,
              bool enabled) {
    const Placing placing = place(text, area);
    const QColor lit = litColour(colour, enabled);
    const QColor unlit = unlitColour(lit);
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.translate(placing.topLeft);
    painter.scale(placing.height, placing.height);
    painter.shear(-slant, 0);
    painter.translate(slant, 0);
    double x = 0;
    for (qsizetype i = 0; i < text.size(); ++i) {
        const QChar character = text.at(i);
        if (exposed.intersects(characterRect(text, i, area))) {
            painter.save();
            painter.translate(x, 0);
            painter.setBrush(lit);
            if (isPoint(character)) {
                drawPoint(painter, character);
            } else {
                drawDigit(painter, segmentsOf(character), lit, unlit);
            }
            painter.restore();
        }
        x += advance(character);
    }
    painter.restore();
}

} // namespace orvel::led
