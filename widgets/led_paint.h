#pragma once

#include <QColor>
#include <QRectF>
#include <QString>

class QPainter;
class QWidget;

/// What the LED widgets have in common: the colours of the glass and the seven-segment digits.
/// Everything is in device-independent pixels and derived from a digit height, so it scales without bitmaps.
namespace orvel::led {

inline constexpr QRgb amber = 0xffffb52e;
inline constexpr QRgb yellow = 0xffffdd33;
inline constexpr QRgb red = 0xffff4a3d;
inline constexpr QRgb glass = 0xff101214;

/// The dark pane behind LED parts, with the frame that a focused or a plain pane has.
void drawGlass(QPainter &painter, const QWidget &widget);

/// The colour of a part that is lit, or of one that shows through the glass unlit; paler on a disabled widget.
QColor litColour(const QColor &colour, bool enabled);
QColor unlitColour(const QColor &colour);

/// Width of `text` in digits of `height`. Digits, '-' and blanks are one cell wide; '.' and ':' are narrow.
double textWidth(const QString &text, double height);

/// Where the character at `index` stands when `text` fills `area` as drawText() draws it.
QRectF characterRect(const QString &text, qsizetype index, const QRectF &area);

/// Draws `text` as seven-segment digits as large as `area` allows, right-aligned, centred vertically.
/// Characters that do not touch `exposed` are skipped. Other characters than 0-9 - . : are blank cells.
void drawText(QPainter &painter, const QString &text, const QRectF &area, const QRectF &exposed, const QColor &colour,
              bool enabled);

} // namespace orvel::led
