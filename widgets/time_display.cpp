#include "widgets/time_display.h"

#include "widgets/accessible.h"
#include "widgets/led_paint.h"

#include <QPaintEvent>
#include <QPainter>

namespace orvel {

namespace {

constexpr double timeHeightInLines = 1.9;
constexpr double timePaddingInLines = 0.4;

} // namespace

TimeDisplay::TimeDisplay(Fields fields, QWidget *parent) : QWidget(parent), fields_(fields) {
    installAccessibility();
    setSizePolicy(QSizePolicy::Minimum, QSizePolicy::Fixed);
}

TimeDisplay::TimeDisplay(QWidget *parent) : TimeDisplay(Fields::HoursMinutesSecondsMillis, parent) {}

void TimeDisplay::setTime(int hours, int minutes, int seconds, int millis) {
    const QString before = text();
    const int secondsBefore = seconds_;
    hours_ = hours;
    minutes_ = minutes;
    seconds_ = seconds;
    millis_ = millis;
    showChange(before, secondsBefore);
}

void TimeDisplay::setSeconds(int seconds) {
    setTime(hours_, minutes_, seconds, millis_);
}

QString TimeDisplay::text() const {
    if (fields_ == Fields::Seconds) {
        return QStringLiteral("%1").arg(seconds_, 2);
    }
    return QStringLiteral("%1:%2:%3.%4")
        .arg(hours_)
        .arg(minutes_, 2, 10, QChar(u'0'))
        .arg(seconds_, 2, 10, QChar(u'0'))
        .arg(millis_ / 10, 2, 10, QChar(u'0'));
}

QSize TimeDisplay::sizeHint() const {
    return sizeForHeight(fontMetrics().height() * timeHeightInLines);
}

QSize TimeDisplay::minimumSizeHint() const {
    return sizeForHeight(fontMetrics().height());
}

void TimeDisplay::paintEvent(QPaintEvent *event) {
    QPainter painter(this);
    led::drawGlass(painter, *this);
    led::drawText(painter, text(), digitArea(), event->rect(), QColor(led::amber), isEnabled());
}

QRectF TimeDisplay::digitArea() const {
    const double padding = fontMetrics().height() * timePaddingInLines;
    return QRectF(rect()).adjusted(padding, padding, -padding, -padding);
}

QSize TimeDisplay::sizeForHeight(double digitHeight) const {
    const QString widest = fields_ == Fields::Seconds ? QStringLiteral("88") : QStringLiteral("8:88:88.88");
    const double padding = fontMetrics().height() * timePaddingInLines;
    return QSizeF(led::textWidth(widest, digitHeight) + 2 * padding, digitHeight + 2 * padding).toSize() + QSize(1, 1);
}

// Hundredths change a hundred times a second: only the characters that differ are painted again.
void TimeDisplay::showChange(const QString &before, int secondsBefore) {
    const QString now = text();
    if (now == before) {
        return;
    }
    qsizetype first = 0;
    while (now.size() == before.size() && now.at(first) == before.at(first)) {
        ++first;
    }
    const QRectF changed = led::characterRect(now, first, digitArea());
    update(now.size() == before.size() ? QRectF(rect()).adjusted(changed.left(), 0, 0, 0).toAlignedRect() : rect());
    if (seconds_ != secondsBefore) {
        announceValue(*this);
    }
}

} // namespace orvel
