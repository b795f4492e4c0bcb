#include "widgets/led_label.h"

#include "widgets/accessible.h"
#include "widgets/dot_matrix.h"
#include "widgets/led_paint.h"

#include <QPainter>
#include <QTimerEvent>

#include <algorithm>
#include <cmath>

namespace orvel {

namespace {

constexpr double dotsPerLine = 5.2; // a line of normal text is as high as this many dots
constexpr int paddingDots = 1;
constexpr int gapCharacters = 4;

} // namespace

LedLabel::LedLabel(QWidget *parent) : QWidget(parent), colour_(QColor(led::amber)) {
    installAccessibility();
    setSizePolicy(QSizePolicy::Minimum, QSizePolicy::Fixed);
}

void LedLabel::setText(const QString &text) {
    if (text == text_) {
        return;
    }
    text_ = text;
    columns_ = dotColumns(text);
    offset_ = 0;
    update();
    announceValue(*this);
}

void LedLabel::setAutoScroll(bool on) {
    if (on == autoScroll_) {
        return;
    }
    autoScroll_ = on;
    offset_ = 0;
    followScrolling();
    update();
}

void LedLabel::setScrollSpeed(int millisPerCharacter) {
    scrollSpeed_ = std::max(1, millisPerCharacter);
    timer_.stop();
    followScrolling();
}

void LedLabel::setCharacters(int characters) {
    characters_ = std::max(1, characters);
    updateGeometry();
    update();
}

void LedLabel::setColour(const QColor &colour) {
    colour_ = colour;
    update();
}

QSize LedLabel::sizeHint() const {
    const double pitch = dotPitch();
    const int wide = characters_ * dotColumnsPerCharacter - 1 + 2 * paddingDots;
    const int high = dotRows + 2 * paddingDots;
    return {static_cast<int>(std::ceil(wide * pitch)), static_cast<int>(std::ceil(high * pitch))};
}

QSize LedLabel::minimumSizeHint() const {
    const QSize wished = sizeHint();
    return {std::min(wished.width(), wished.height() * 5), wished.height()};
}

// A whole number of the screen's pixels, so that every dot looks the same.
double LedLabel::dotPitch() const {
    const double ratio = devicePixelRatioF();
    return std::max(1.0, std::round(fontMetrics().height() / dotsPerLine * ratio)) / ratio;
}

int LedLabel::visibleColumns() const {
    const int fitting = static_cast<int>(width() / dotPitch()) - 2 * paddingDots + 1;
    return std::clamp(fitting / dotColumnsPerCharacter, 1, characters_) * dotColumnsPerCharacter;
}

void LedLabel::followScrolling() {
    if (autoScroll_ && isVisible()) {
        if (!timer_.isActive()) {
            timer_.start(std::max(1, scrollSpeed_ / dotColumnsPerCharacter), this);
        }
    } else {
        timer_.stop();
    }
}

void LedLabel::timerEvent(QTimerEvent *event) {
    if (event->timerId() != timer_.timerId() || columns_.empty()) {
        return;
    }
    const int turn = static_cast<int>(columns_.size()) + gapCharacters * dotColumnsPerCharacter;
    offset_ = (offset_ + 1) % turn;
    update();
}

void LedLabel::showEvent(QShowEvent * /*event*/) {
    followScrolling();
}

void LedLabel::hideEvent(QHideEvent * /*event*/) {
    timer_.stop();
}

void LedLabel::paintEvent(QPaintEvent * /*event*/) {
    QPainter painter(this);
    led::drawGlass(painter, *this);
    const double ratio = devicePixelRatioF();
    const double pitch = dotPitch();
    const double dot = std::max(1.0, std::round(pitch * ratio * 0.78)) / ratio;
    const int shown = visibleColumns();
    const double left = std::round((width() - (shown - 1) * pitch) / 2 * ratio) / ratio;
    const double top = std::round((height() - dotRows * pitch) / 2 * ratio) / ratio;
    const QColor lit = led::litColour(colour_, isEnabled());
    const QColor unlit = led::unlitColour(lit);
    const int size = static_cast<int>(columns_.size());
    const int turn = autoScroll_ ? size + gapCharacters * dotColumnsPerCharacter : size;
    painter.setRenderHint(QPainter::Antialiasing, pitch * ratio >= 4);
    painter.setPen(Qt::NoPen);
    for (int column = 0; column < shown - 1; ++column) {
        int source = column + offset_;
        if (autoScroll_ && turn > 0) {
            source %= turn;
        }
        const quint16 dots = source < size ? columns_[static_cast<std::size_t>(source)] : quint16{0};
        for (int row = 0; row < dotRows; ++row) {
            const bool on = (dots >> static_cast<unsigned>(row) & 1U) != 0;
            const QRectF place(left + column * pitch, top + row * pitch, dot, dot);
            if (pitch * ratio >= 4) {
                painter.setBrush(on ? lit : unlit);
                painter.drawEllipse(place);
            } else {
                painter.fillRect(place, on ? lit : unlit);
            }
        }
    }
}

} // namespace orvel
