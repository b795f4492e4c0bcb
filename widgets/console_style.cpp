#include "widgets/console_style.h"

#include "widgets/theme.h"

#include <QPainter>
#include <QPixmap>
#include <QStyleOption>

#include <algorithm>

namespace orvel {

namespace {

bool has(const QStyleOption &option, QStyle::StateFlag flag) {
    return option.state.testFlag(flag);
}

QColor outline(const QStyleOption &option) {
    const bool focused = has(option, QStyle::State_HasFocus) && has(option, QStyle::State_Enabled);
    return option.palette.color(focused ? QPalette::Highlight : QPalette::Mid);
}

void drawFrame(const QStyleOption &option, QPainter &painter, const QRectF &box, double radius, const QColor &fill) {
    const bool focused = has(option, QStyle::State_HasFocus);
    const double width = focused ? 2 : 1;
    painter.setPen(QPen(outline(option), width));
    painter.setBrush(fill);
    painter.drawRoundedRect(box.adjusted(width / 2, width / 2, -width / 2, -width / 2), radius, radius);
}

QRectF indicatorBox(const QRect &rect) {
    const double side = std::min(rect.width(), rect.height());
    return {rect.center().x() + 0.5 - side / 2, rect.center().y() + 0.5 - side / 2, side, side};
}

void drawMark(const QStyleOption &option, QPainter &painter, const QRectF &box) {
    const QColor colour =
        option.palette.color(has(option, QStyle::State_Enabled) ? QPalette::HighlightedText : QPalette::WindowText);
    painter.setPen(QPen(colour, box.width() * 0.14, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    const auto at = [&box](double x, double y) { return box.topLeft() + QPointF(box.width() * x, box.height() * y); };
    if (has(option, QStyle::State_NoChange)) {
        painter.drawLine(at(0.28, 0.5), at(0.72, 0.5));
        return;
    }
    painter.setBrush(Qt::NoBrush);
    painter.drawPolyline(QPolygonF({at(0.24, 0.52), at(0.43, 0.71), at(0.77, 0.31)}));
}

void drawCheckBox(const QStyleOption &option, QPainter &painter) {
    const QRectF box = indicatorBox(option.rect);
    const bool marked = has(option, QStyle::State_On) || has(option, QStyle::State_NoChange);
    const bool enabled = has(option, QStyle::State_Enabled);
    const QColor fill = option.palette.color(!marked || !enabled ? QPalette::Base : QPalette::Highlight);
    drawFrame(option, painter, box, box.width() * 0.18, fill);
    if (marked) {
        drawMark(option, painter, box);
    }
}

void drawRadioButton(const QStyleOption &option, QPainter &painter) {
    const QRectF box = indicatorBox(option.rect);
    drawFrame(option, painter, box, box.width() / 2, option.palette.color(QPalette::Base));
    if (has(option, QStyle::State_On)) {
        const bool enabled = has(option, QStyle::State_Enabled);
        painter.setPen(Qt::NoPen);
        painter.setBrush(option.palette.color(enabled ? QPalette::Highlight : QPalette::WindowText));
        painter.drawEllipse(box.center(), box.width() * 0.26, box.width() * 0.26);
    }
}

void drawArrowDown(const QStyleOption &option, QPainter &painter, const QRectF &place) {
    const double size = option.fontMetrics.height() * 0.22;
    const QPointF centre = place.center();
    painter.setPen(QPen(option.palette.color(QPalette::ButtonText), std::max(1.4, size * 0.4), Qt::SolidLine,
                        Qt::RoundCap, Qt::RoundJoin));
    painter.setBrush(Qt::NoBrush);
    painter.drawPolyline(QPolygonF(
        {centre + QPointF(-size, -size / 2), centre + QPointF(0, size / 2), centre + QPointF(size, -size / 2)}));
}

void drawComboBox(const QStyle &style, const QStyleOptionComboBox &option, QPainter &painter, const QWidget *widget) {
    QColor fill = option.palette.color(option.editable ? QPalette::Base : QPalette::Button);
    if (has(option, QStyle::State_MouseOver) && has(option, QStyle::State_Enabled)) {
        fill = fill.lighter(112);
    }
    drawFrame(option, painter, option.rect, 4, fill);
    drawArrowDown(option, painter,
                  style.subControlRect(QStyle::CC_ComboBox, &option, QStyle::SC_ComboBoxArrow, widget));
}

// The groove is filled from the left, or from the bottom: also on a mixer strip whose slider counts downwards.
void drawSlider(const QStyle &style, const QStyleOptionSlider &option, QPainter &painter, const QWidget *widget) {
    const bool lying = option.orientation == Qt::Horizontal;
    const bool enabled = has(option, QStyle::State_Enabled);
    const QRectF room = style.subControlRect(QStyle::CC_Slider, &option, QStyle::SC_SliderGroove, widget);
    const QRectF handle = style.subControlRect(QStyle::CC_Slider, &option, QStyle::SC_SliderHandle, widget);
    const double thick = std::max(4.0, option.fontMetrics.height() * 0.28);
    QRectF groove = lying ? QRectF(room.left(), room.center().y() - thick / 2, room.width(), thick)
                          : QRectF(room.center().x() - thick / 2, room.top(), thick, room.height());
    painter.setPen(QPen(option.palette.color(QPalette::Mid), 1));
    painter.setBrush(option.palette.color(QPalette::Base));
    painter.drawRoundedRect(groove, thick / 2, thick / 2);
    if (enabled) {
        QRectF filled = groove;
        if (lying) {
            filled.setRight(handle.center().x());
        } else {
            filled.setTop(handle.center().y());
        }
        painter.setPen(Qt::NoPen);
        painter.setBrush(option.palette.color(QPalette::Highlight));
        painter.drawRoundedRect(filled, thick / 2, thick / 2);
    }
    QColor face = option.palette.color(QPalette::Button);
    face = enabled ? face.lighter(has(option, QStyle::State_MouseOver) ? 145 : 125) : face;
    QRectF cap = handle.adjusted(1, 1, -1, -1);
    drawFrame(option, painter, cap, 4, face);
    painter.setPen(QPen(option.palette.color(QPalette::ButtonText), 1.4));
    const QPointF centre = cap.center();
    if (lying) {
        painter.drawLine(QPointF(centre.x(), cap.top() + 4), QPointF(centre.x(), cap.bottom() - 4));
    } else {
        painter.drawLine(QPointF(cap.left() + 4, centre.y()), QPointF(cap.right() - 4, centre.y()));
    }
}

// The sign of a message box: a white letter on a coloured disc, or on a triangle for a warning.
QIcon messageSign(QChar letter, const QColor &colour, bool triangle) {
    constexpr int side = 256; // larger than any screen asks for
    QPixmap picture(side, side);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(colour, side * 0.08, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.setBrush(colour);
    QRectF place(0, 0, side, side);
    if (triangle) {
        painter.drawPolygon(
            QPolygonF({{side * 0.5, side * 0.1}, {side * 0.94, side * 0.88}, {side * 0.06, side * 0.88}}));
        place.translate(0, side * 0.1);
    } else {
        painter.drawEllipse(place.adjusted(16, 16, -16, -16));
    }
    QFont font;
    font.setBold(true);
    font.setPixelSize(side * (triangle ? 9 : 10) / 16);
    painter.setFont(font);
    painter.setPen(Qt::white);
    painter.drawText(place, Qt::AlignCenter, letter);
    painter.end();
    return {picture};
}

} // namespace

ConsoleStyle::ConsoleStyle() : QProxyStyle("Fusion") {}

void ConsoleStyle::drawPrimitive(PrimitiveElement element, const QStyleOption *option, QPainter *painter,
                                 const QWidget *widget) const {
    painter->save();
    painter->setRenderHint(QPainter::Antialiasing);
    switch (element) {
    case PE_IndicatorCheckBox:
    case PE_IndicatorItemViewItemCheck:
        drawCheckBox(*option, *painter);
        break;
    case PE_IndicatorRadioButton:
        drawRadioButton(*option, *painter);
        break;
    default:
        painter->setRenderHint(QPainter::Antialiasing, false);
        QProxyStyle::drawPrimitive(element, option, painter, widget);
    }
    painter->restore();
}

void ConsoleStyle::drawComplexControl(ComplexControl control, const QStyleOptionComplex *option, QPainter *painter,
                                      const QWidget *widget) const {
    const auto *combo = qstyleoption_cast<const QStyleOptionComboBox *>(option);
    const auto *slider = qstyleoption_cast<const QStyleOptionSlider *>(option);
    painter->save();
    if (control == CC_ComboBox && combo != nullptr) {
        painter->setRenderHint(QPainter::Antialiasing);
        drawComboBox(*proxy(), *combo, *painter, widget);
    } else if (control == CC_Slider && slider != nullptr) {
        painter->setRenderHint(QPainter::Antialiasing);
        drawSlider(*proxy(), *slider, *painter, widget);
    } else {
        QProxyStyle::drawComplexControl(control, option, painter, widget);
    }
    painter->restore();
}

QRect ConsoleStyle::subControlRect(ComplexControl control, const QStyleOptionComplex *option, SubControl part,
                                   const QWidget *widget) const {
    QRect rect = QProxyStyle::subControlRect(control, option, part, widget);
    if (control == CC_ComboBox && part == SC_ComboBoxEditField) {
        rect.adjust(option->fontMetrics.height() / 4, 0, 0, 0);
    }
    return rect;
}

// A little more air than Fusion gives: a combo box is as high as the fields and buttons beside it, and lists and tables
// can be read line by line.
QSize ConsoleStyle::sizeFromContents(ContentsType type, const QStyleOption *option, const QSize &contents,
                                     const QWidget *widget) const {
    const QSize size = QProxyStyle::sizeFromContents(type, option, contents, widget);
    const int line = option != nullptr ? option->fontMetrics.height() : 0;
    switch (type) {
    case CT_ComboBox:
        return size.expandedTo({0, line * 5 / 3}) + QSize(line / 2, 0);
    case CT_ItemViewItem:
        return size.expandedTo({0, line * 4 / 3});
    default:
        return size;
    }
}

QIcon ConsoleStyle::standardIcon(StandardPixmap which, const QStyleOption *option, const QWidget *widget) const {
    switch (which) {
    case SP_MessageBoxInformation:
        return messageSign(u'i', QColor(0x2B, 0x7F, 0xB8), false);
    case SP_MessageBoxQuestion:
        return messageSign(u'?', QColor(0x2B, 0x7F, 0xB8), false);
    case SP_MessageBoxWarning:
        return messageSign(u'!', QColor(0xB3, 0x6B, 0x00), true);
    case SP_MessageBoxCritical:
        return messageSign(u'\u00D7', QColor(0xD6, 0x2F, 0x2F), false);
    default:
        return QProxyStyle::standardIcon(which, option, widget);
    }
}

// What cannot be operated now keeps its shape: Fusion would let it fade into the window.
QPixmap ConsoleStyle::generatedIconPixmap(QIcon::Mode mode, const QPixmap &pixmap, const QStyleOption *option) const {
    if (mode != QIcon::Disabled) {
        return QProxyStyle::generatedIconPixmap(mode, pixmap, option);
    }
    QPixmap quiet(pixmap);
    QPainter painter(&quiet);
    painter.setCompositionMode(QPainter::CompositionMode_SourceAtop);
    painter.fillRect(quiet.rect(), themeColour(ThemeRole::DisabledText));
    return quiet;
}

int ConsoleStyle::pixelMetric(PixelMetric metric, const QStyleOption *option, const QWidget *widget) const {
    const int line = option != nullptr ? option->fontMetrics.height() : QFontMetrics(QFont()).height();
    switch (metric) {
    case PM_IndicatorWidth:
    case PM_IndicatorHeight:
    case PM_ExclusiveIndicatorWidth:
    case PM_ExclusiveIndicatorHeight:
        return std::max(13, line);
    case PM_FocusFrameHMargin: // beside the text of a list's or table's cell
        return line / 3;
    case PM_SliderThickness:
    case PM_SliderControlThickness:
        return std::max(16, line * 8 / 5);
    case PM_SliderLength:
        return std::max(11, line);
    case PM_MessageBoxIconSize:
        return std::max(40, line * 3);
    case PM_ToolBarIconSize:
        return std::max(28, line * 2);
    case PM_ButtonIconSize:
    case PM_SmallIconSize:
        return std::max(18, line * 4 / 3);
    default:
        return QProxyStyle::pixelMetric(metric, option, widget);
    }
}

int ConsoleStyle::styleHint(StyleHint hint, const QStyleOption *option, const QWidget *widget,
                            QStyleHintReturn *result) const {
    switch (hint) {
    case SH_Slider_AbsoluteSetButtons: // a click into the groove is meant for that place
        return static_cast<int>(Qt::LeftButton);
    case SH_DialogButtonBox_ButtonsHaveIcons:
        return 0;
    default:
        return QProxyStyle::styleHint(hint, option, widget, result);
    }
}

} // namespace orvel
