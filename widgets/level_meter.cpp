#include "widgets/level_meter.h"

#include "widgets/accessible.h"
#include "widgets/led_paint.h"

#include <QPainter>
#include <QTimerEvent>

#include <algorithm>
#include <cmath>

namespace orvel {

namespace {

constexpr double fallPerMilli = 20.0 / 1700.0;
constexpr int tickMillis = 20;
constexpr float clipLevel = 32767.0F / 32768.0F;
constexpr double frame = 3;
constexpr double segmentPitch = 5;

double decibels(float peak) {
    if (!(peak > 0)) { // also when it is not a number
        return LevelMeter::floorDb;
    }
    return std::clamp(20 * std::log10(static_cast<double>(peak)), LevelMeter::floorDb, 0.0);
}

double part(double db) {
    return 1 - db / LevelMeter::floorDb;
}

} // namespace

QRectF levelBarRect(const QSizeF &size, Qt::Orientation orientation, const QFontMetricsF &metrics) {
    const double clip = metrics.height() * 0.8;
    QRectF bar(frame, frame, size.width() - 2 * frame, size.height() - 2 * frame);
    if (orientation == Qt::Horizontal) {
        bar.setRight(bar.right() - clip);
    } else {
        bar.setTop(bar.top() + clip);
    }
    return bar;
}

LevelMeter::LevelMeter(Qt::Orientation orientation, QWidget *parent) : QWidget(parent), orientation_(orientation) {
    installAccessibility();
    const bool lying = orientation == Qt::Horizontal;
    setSizePolicy(lying ? QSizePolicy::Expanding : QSizePolicy::Fixed,
                  lying ? QSizePolicy::Fixed : QSizePolicy::Expanding);
}

void LevelMeter::setLevel(float peak) {
    const Picture before = picture();
    const double db = decibels(peak);
    level_ = std::max(level_, db);
    if (db > floorDb && db >= hold_) {
        hold_ = db;
        holdLeft_ = holdMillis;
    }
    if (peak >= clipLevel) {
        clipLeft_ = clipMillis;
    }
    follow(before);
}

void LevelMeter::advance(int millis) {
    const Picture before = picture();
    level_ = std::max(floorDb, level_ - millis * fallPerMilli);
    const int falling = std::max(0, millis - holdLeft_);
    holdLeft_ = std::max(0, holdLeft_ - millis);
    hold_ = std::max(level_, hold_ - falling * fallPerMilli);
    clipLeft_ = std::max(0, clipLeft_ - millis);
    follow(before);
}

void LevelMeter::reset() {
    const Picture before = picture();
    level_ = floorDb;
    hold_ = floorDb;
    holdLeft_ = 0;
    clipLeft_ = 0;
    follow(before);
}

QString LevelMeter::text() const {
    return QStringLiteral("%1 dB").arg(std::lround(level_)) +
           (isClipped() ? QStringLiteral(", overstuurd") : QString());
}

QSize LevelMeter::sizeHint() const {
    const int line = fontMetrics().height();
    const QSize lying(line * 16, line + 4);
    return orientation_ == Qt::Horizontal ? lying : lying.transposed();
}

QSize LevelMeter::minimumSizeHint() const {
    const int line = fontMetrics().height();
    const QSize lying(line * 6, line / 2 + 6);
    return orientation_ == Qt::Horizontal ? lying : lying.transposed();
}

int LevelMeter::segments() const {
    const QRectF bar = levelBarRect(size(), orientation_, fontMetrics());
    const double length = orientation_ == Qt::Horizontal ? bar.width() : bar.height();
    return std::clamp(static_cast<int>(length / segmentPitch), 12, 60);
}

LevelMeter::Picture LevelMeter::picture() const {
    const int count = segments();
    return {static_cast<int>(std::ceil(part(level_) * count)), static_cast<int>(std::ceil(part(hold_) * count)),
            isClipped()};
}

bool LevelMeter::isMoving() const {
    return level_ > floorDb || hold_ > floorDb || clipLeft_ > 0;
}

void LevelMeter::follow(const Picture &before) {
    if (picture() != before) {
        update();
    }
    if (isMoving() && !timer_.isActive()) {
        sinceTick_.start();
        timer_.start(tickMillis, this);
    } else if (!isMoving()) {
        timer_.stop();
    }
}

void LevelMeter::timerEvent(QTimerEvent *event) {
    if (event->timerId() == timer_.timerId()) {
        advance(static_cast<int>(sinceTick_.restart()));
    }
}

void LevelMeter::paintEvent(QPaintEvent * /*event*/) {
    QPainter painter(this);
    led::drawGlass(painter, *this);
    painter.setRenderHint(QPainter::Antialiasing, false);
    const QRectF bar = levelBarRect(size(), orientation_, fontMetrics());
    const bool lying = orientation_ == Qt::Horizontal;
    const int count = segments();
    const Picture now = picture();
    const QColor lit = led::litColour(QColor(led::yellow), isEnabled());
    const QColor unlit = led::unlitColour(lit);
    const double ratio = devicePixelRatioF();
    const double length = lying ? bar.width() : bar.height();
    const auto edge = [&](int index) { return std::round(length * ratio * index / count) / ratio; };
    for (int i = 0; i < count; ++i) {
        const double from = edge(i);
        const double span = edge(i + 1) - from - std::round(ratio) / ratio;
        const QRectF segment = lying ? QRectF(bar.left() + from, bar.top(), span, bar.height())
                                     : QRectF(bar.left(), bar.bottom() - from - span, bar.width(), span);
        painter.fillRect(segment, i < now.lit || i + 1 == now.hold ? lit : unlit);
    }
    const QColor clipColour = led::litColour(QColor(led::red), isEnabled());
    QRectF clip(frame, frame, width() - 2 * frame, height() - 2 * frame);
    if (lying) {
        clip.setLeft(bar.right() + frame);
    } else {
        clip.setBottom(bar.top() - frame);
    }
    painter.fillRect(clip, now.clipped ? clipColour : led::unlitColour(clipColour));
}

} // namespace orvel
