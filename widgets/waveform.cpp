#include "widgets/waveform.h"

#include "widgets/accessible.h"
#include "widgets/led_paint.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPaintEvent>
#include <QPainter>
#include <QWheelEvent>

#include <algorithm>
#include <array>
#include <cmath>

namespace orvel {

namespace {

constexpr double glassFrame = 3;
constexpr double leastSpan = 50; // milliseconds
constexpr double emptyAxis = 10'000;
constexpr double widening = 1.25; // of the axis, and of one notch of the wheel
constexpr double reach = 6;       // of a handle, in pixels
constexpr double keyStep = 100;   // milliseconds
constexpr double markFrame = 1;   // of glass around a mark, so that it stands out of whatever is behind it
constexpr double bracket = 2;     // thickness
constexpr double hook = 6;        // height of a bracket's ends
constexpr double aboveSeconds = 8;
constexpr double clipHalf = 5; // half of its width
constexpr QRgb plainSound = 0xffb9c4d0;
constexpr QRgb spoken = 0xff5ee0c8;
constexpr QRgb brightText = 0xffe6e9ed;

QColor tint(const QColor &colour) {
    return QColor::fromRgbF(colour.redF() * 0.28F, colour.greenF() * 0.28F, colour.blueF() * 0.28F);
}

} // namespace

Waveform::Waveform(QWidget *parent) : QWidget(parent) {
    installAccessibility();
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
    setFocusPolicy(Qt::StrongFocus);
    setMouseTracking(true);
}

void Waveform::setSource(Source source) {
    source_ = std::move(source);
    update();
}

void Waveform::refresh() {
    update();
}

void Waveform::setZones(std::vector<Zone> zones) {
    if (zones != zones_) {
        zones_ = std::move(zones);
        update();
    }
}

void Waveform::setMarks(std::vector<Stretch> speech, std::vector<double> clips) {
    // While it is recorded only the last stretch grows: the rest stays painted.
    const auto [was, is] = std::ranges::mismatch(speech_, speech);
    if (was != speech_.end() || is != speech.end()) {
        const bool grows = was != speech_.end() && is != speech.end() && was->begin == is->begin;
        const double begin =
            std::min(was != speech_.end() ? was->begin : whole(), is != speech.end() ? is->begin : whole());
        updateFrom(grows ? std::min(was->end, is->end) : begin);
    }
    const auto [before, now] = std::ranges::mismatch(clips_, clips);
    if (before != clips_.end() || now != clips.end()) {
        updateFrom(std::min(before != clips_.end() ? *before : whole(), now != clips.end() ? *now : whole()));
    }
    speech_ = std::move(speech);
    clips_ = std::move(clips);
}

void Waveform::updateFrom(double milliseconds) {
    const double from = placeOf(milliseconds) - clipHalf - 2 * markFrame - bracket;
    update(QRectF(QPointF(from, 0), QPointF(width(), height())).toAlignedRect());
}

void Waveform::setAxis(double milliseconds) {
    if (milliseconds != axis_) {
        axis_ = milliseconds;
        showAll();
    }
}

void Waveform::setLength(double milliseconds) {
    if (milliseconds == length_) {
        return;
    }
    const double before = whole();
    const double from = placeOf(std::min(length_, milliseconds));
    const double to = placeOf(std::max(length_, milliseconds));
    length_ = milliseconds;
    drop();
    if (whole() != before) {
        showAll();
    }
    update(QRectF(from - 2, 0, to - from + 4, height()).toAlignedRect());
    announceValue(*this);
}

void Waveform::setPosition(std::optional<double> milliseconds) {
    if (milliseconds == position_) {
        return;
    }
    const auto strip = [this] {
        if (position_) {
            update(QRectF(placeOf(*position_) - 3, 0, 6, height()).toAlignedRect());
        }
    };
    strip();
    position_ = milliseconds;
    strip();
}

void Waveform::setCuttable(bool cuttable) {
    if (cuttable != isCuttable_) {
        isCuttable_ = cuttable;
        drop();
        update();
    }
}

QString Waveform::text() const {
    const auto seconds = [](double milliseconds) {
        return QString::number(milliseconds / 1000, 'f', 1).replace(u'.', u',');
    };
    return tr("%1 van %2 s").arg(seconds(position_.value_or(0)), seconds(length_));
}

QSize Waveform::sizeHint() const {
    const int line = fontMetrics().height();
    return {line * 20, line * 4};
}

QSize Waveform::minimumSizeHint() const {
    const int line = fontMetrics().height();
    return {line * 6, line};
}

QRectF Waveform::area() const {
    return QRectF(rect()).adjusted(glassFrame, glassFrame, -glassFrame, -glassFrame);
}

double Waveform::whole() const {
    double whole = axis_ > 0 ? axis_ : emptyAxis;
    while (whole < length_) {
        whole *= widening;
    }
    return whole;
}

double Waveform::timeAt(double x) const {
    return from_ + (x - area().left()) * span_ / std::max(1.0, area().width());
}

double Waveform::placeOf(double milliseconds) const {
    return area().left() + (milliseconds - from_) * area().width() / span_;
}

void Waveform::showAll() {
    from_ = 0;
    span_ = whole();
    update();
}

void Waveform::show(double from, double span) {
    span_ = std::clamp(span, leastSpan, whole());
    from_ = std::clamp(from, 0.0, whole() - span_);
    update();
}

/// The handles are at the sound's ends.
void Waveform::drop() {
    dragged_ = Handle::None;
    cutFrom_ = 0;
    cutTo_ = length_;
}

Waveform::Handle Waveform::handleAt(double x) const {
    if (!isCuttable_ || length_ <= 0) {
        return Handle::None;
    }
    const double toBegin = std::abs(x - placeOf(cutFrom_));
    const double toEnd = std::abs(x - placeOf(cutTo_));
    if (std::min(toBegin, toEnd) > reach) {
        return Handle::None;
    }
    return toBegin < toEnd ? Handle::Begin : Handle::End;
}

void Waveform::mousePressEvent(QMouseEvent *event) {
    if (event->button() != Qt::LeftButton || length_ <= 0) {
        return;
    }
    dragged_ = handleAt(event->position().x());
    if (dragged_ == Handle::None) {
        Q_EMIT seekWanted(std::clamp(timeAt(event->position().x()), 0.0, length_));
    }
}

void Waveform::mouseMoveEvent(QMouseEvent *event) {
    if (dragged_ == Handle::None) {
        setCursor(handleAt(event->position().x()) == Handle::None ? Qt::ArrowCursor : Qt::SizeHorCursor);
        return;
    }
    const double at = timeAt(event->position().x());
    if (dragged_ == Handle::Begin) {
        cutFrom_ = std::clamp(at, 0.0, std::max(0.0, cutTo_ - leastSpan));
    } else {
        cutTo_ = std::clamp(at, std::min(length_, cutFrom_ + leastSpan), length_);
    }
    update();
    Q_EMIT scrubbed(dragged_ == Handle::Begin ? cutFrom_ : cutTo_);
}

void Waveform::mouseReleaseEvent(QMouseEvent *event) {
    if (event->button() != Qt::LeftButton || dragged_ == Handle::None) {
        return;
    }
    const double from = cutFrom_;
    const double to = cutTo_;
    drop();
    update();
    cut(from, to);
}

void Waveform::mouseDoubleClickEvent(QMouseEvent *event) {
    if (event->button() == Qt::LeftButton) {
        showAll();
    }
}

void Waveform::cut(double from, double to) {
    if (to > from && (from > 0 || to < length_)) {
        Q_EMIT cutWanted(from, to);
    }
}

void Waveform::wheelEvent(QWheelEvent *event) {
    const QPoint turned = event->angleDelta();
    if (turned.x() != 0 || event->modifiers().testFlag(Qt::ShiftModifier)) {
        const int along = turned.x() != 0 ? turned.x() : turned.y();
        show(from_ - along / 120.0 * span_ / 8, span_);
    } else if (turned.y() != 0) {
        // What lies under the pointer stays there.
        const double at = timeAt(event->position().x());
        const double span = std::clamp(span_ * std::pow(widening, -turned.y() / 120.0), leastSpan, whole());
        show(at - (at - from_) * span / span_, span);
    }
    event->accept();
}

void Waveform::keyPressEvent(QKeyEvent *event) {
    const double at = position_.value_or(0);
    switch (event->key()) {
    case Qt::Key_Left:
    case Qt::Key_Right:
        if (length_ > 0) {
            Q_EMIT seekWanted(std::clamp(at + (event->key() == Qt::Key_Left ? -keyStep : keyStep), 0.0, length_));
        }
        break;
    case Qt::Key_Plus:
    case Qt::Key_Minus: {
        const double span = span_ * (event->key() == Qt::Key_Plus ? 1 / widening : widening);
        show(at - span / 2, span);
        break;
    }
    case Qt::Key_BracketLeft:
    case Qt::Key_BracketRight:
        if (isCuttable_ && position_) {
            cut(event->key() == Qt::Key_BracketLeft ? at : 0, event->key() == Qt::Key_BracketLeft ? length_ : at);
        }
        break;
    default:
        QWidget::keyPressEvent(event);
    }
}

const Waveform::Zone *Waveform::zoneAt(double milliseconds) const {
    for (const Zone &zone : zones_) {
        if (milliseconds < zone.end || &zone == &zones_.back()) {
            return &zone;
        }
    }
    return nullptr;
}

void Waveform::paintEvent(QPaintEvent *event) {
    QPainter painter(this);
    painter.setClipRect(event->rect());
    led::drawGlass(painter, *this);
    painter.setClipRect(area(), Qt::IntersectClip);
    paintZones(painter);
    paintSeconds(painter);
    paintSound(painter, event->rect());
    paintSpeech(painter);
    paintWords(painter);
    paintClips(painter);
    paintHandles(painter);
    paintPosition(painter);
}

void Waveform::paintZones(QPainter &painter) const {
    double begin = 0;
    for (const Zone &zone : zones_) {
        const double end = &zone == &zones_.back() ? std::max(whole(), zone.end) : zone.end;
        const QRectF place(QPointF(placeOf(begin), area().top()), QPointF(placeOf(end), area().bottom()));
        painter.fillRect(place, tint(led::litColour(zone.colour, isEnabled())));
        begin = end;
    }
}

/// Over the sound, on a ground of their own.
void Waveform::paintWords(QPainter &painter) const {
    double begin = 0;
    for (const Zone &zone : zones_) {
        const QRectF place(QPointF(placeOf(begin) + 4, area().top() + 1), QPointF(placeOf(zone.end), area().bottom()));
        const QRectF word(place.topLeft(), QSizeF(fontMetrics().size(0, zone.word)));
        if (&zone == &zones_.back() ? placeOf(whole()) > word.right() : word.width() <= place.width()) {
            painter.fillRect(word, tint(led::litColour(zone.colour, isEnabled())));
            painter.setPen(QColor(brightText));
            painter.drawText(word, Qt::AlignCenter, zone.word);
        }
        begin = zone.end;
    }
}

void Waveform::paintSeconds(QPainter &painter) const {
    const double perSecond = placeOf(1000) - placeOf(0);
    if (perSecond < 6) {
        return;
    }
    painter.setPen(QColor(brightText));
    for (double second = std::ceil(from_ / 1000); second * 1000 <= from_ + span_; ++second) {
        const double x = placeOf(second * 1000);
        const double tall = std::fmod(second, 5) == 0 ? 6 : 3;
        painter.drawLine(QPointF(x, area().bottom() - tall), QPointF(x, area().bottom()));
    }
}

void Waveform::paintSound(QPainter &painter, const QRect &exposed) const {
    if (!source_ || length_ <= 0) {
        return;
    }
    const QRectF place = area();
    const double wide = 1 / devicePixelRatioF();
    const double middle = place.center().y();
    const double half = place.height() / 2 - 1;
    const double first = std::max(place.left(), static_cast<double>(exposed.left()));
    const double last = std::min({place.right(), static_cast<double>(exposed.right() + 1), placeOf(length_)});
    for (double x = std::floor(first / wide) * wide; x < last; x += wide) {
        const Column column = source_(timeAt(x), timeAt(x + wide));
        const Zone *zone = zoneAt(timeAt(x));
        const double top = middle - half * static_cast<double>(column.high);
        const double bottom = middle - half * static_cast<double>(column.low);
        painter.fillRect(QRectF(x, top, wide, std::max(wide, bottom - top)),
                         led::litColour(zone != nullptr ? zone->colour : QColor(plainSound), isEnabled()));
    }
}

/// An open bracket above the seconds, as wide as the stretch.
void Waveform::paintSpeech(QPainter &painter) const {
    const double bottom = area().bottom() - aboveSeconds;
    for (const Stretch &stretch : speech_) {
        const double left = placeOf(stretch.begin);
        const double right = std::max(placeOf(stretch.end), left + 2 * bracket);
        const std::array parts = {QRectF(left, bottom - bracket, right - left, bracket),
                                  QRectF(left, bottom - hook, bracket, hook),
                                  QRectF(right - bracket, bottom - hook, bracket, hook)};
        for (const QRectF &part : parts) {
            painter.fillRect(part.adjusted(-markFrame, -markFrame, markFrame, markFrame), QColor(led::glass));
        }
        for (const QRectF &part : parts) {
            painter.fillRect(part, QColor(spoken));
        }
    }
}

/// A triangle that points down at the moment, and a line through the sound.
void Waveform::paintClips(QPainter &painter) const {
    painter.setPen(QPen(QColor(led::glass), markFrame));
    painter.setBrush(QColor(led::red));
    for (const double at : clips_) {
        const double x = std::round(placeOf(at));
        painter.fillRect(QRectF(x - 1 - markFrame, area().top(), 2 + 2 * markFrame, area().height() - aboveSeconds),
                         QColor(led::glass));
        painter.fillRect(QRectF(x - 1, area().top(), 2, area().height() - aboveSeconds), QColor(led::red));
        painter.drawPolygon(QPolygonF({QPointF(x - clipHalf, area().top()), QPointF(x + clipHalf, area().top()),
                                       QPointF(x, area().top() + 2 * clipHalf)}));
    }
}

void Waveform::paintHandles(QPainter &painter) const {
    if (!isCuttable_ || length_ <= 0) {
        return;
    }
    const QColor gone(0, 0, 0, 170);
    painter.fillRect(QRectF(QPointF(placeOf(0), area().top()), QPointF(placeOf(cutFrom_), area().bottom())), gone);
    painter.fillRect(QRectF(QPointF(placeOf(cutTo_), area().top()), QPointF(placeOf(length_), area().bottom())), gone);
    for (const double at : {cutFrom_, cutTo_}) {
        const double x = std::clamp(placeOf(at), area().left() + 1, area().right() - 1);
        painter.fillRect(QRectF(x - 1, area().top(), 2, area().height()), QColor(brightText));
        painter.fillRect(QRectF(x - 3, area().center().y() - 6, 6, 12), QColor(brightText));
    }
}

void Waveform::paintPosition(QPainter &painter) const {
    if (position_) {
        painter.fillRect(QRectF(placeOf(*position_) - 1, area().top(), 2, area().height()), QColor(Qt::white));
    }
}

} // namespace orvel
