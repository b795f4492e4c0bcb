#include "widgets/led_spin.h"

#include "widgets/accessible.h"
#include "widgets/led_paint.h"

#include <QAbstractButton>
#include <QEvent>
#include <QKeyEvent>
#include <QPainter>
#include <QWheelEvent>

#include <algorithm>
#include <limits>

namespace orvel {

namespace {

constexpr double digitHeightInLines = 1.25;
constexpr double paddingInLines = 0.3;
constexpr int pageSteps = 10;
constexpr int wheelNotch = 120;
constexpr int typingPauseMillis = 2000;
constexpr qsizetype longestEntry = 9;

// An up or down button; it never takes the focus from the box that it belongs to.
class StepButton : public QAbstractButton {
  public:
    StepButton(bool up, QWidget *parent) : QAbstractButton(parent), up_(up) {
        setFocusPolicy(Qt::NoFocus);
        setAutoRepeat(true);
        setAutoRepeatInterval(60);
        setAttribute(Qt::WA_Hover);
    }

  protected:
    void paintEvent(QPaintEvent * /*event*/) override {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        const QPalette colours = palette();
        QColor face = colours.color(QPalette::Button);
        if (isDown()) {
            face = face.darker(125);
        } else if (underMouse() && isEnabled()) {
            face = face.lighter(115);
        }
        painter.setPen(colours.color(QPalette::Mid));
        painter.setBrush(face);
        painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), 3, 3);

        const QPointF centre = QRectF(rect()).center();
        const double size = std::min(width(), height()) * 0.24;
        const double tip = up_ ? -size * 0.75 : size * 0.75;
        painter.setPen(Qt::NoPen);
        painter.setBrush(colours.color(isEnabled() ? QPalette::Active : QPalette::Disabled, QPalette::ButtonText));
        painter.drawPolygon(QPolygonF(
            {centre + QPointF(0, tip), centre + QPointF(size * 1.2, -tip), centre + QPointF(-size * 1.2, -tip)}));
    }

  private:
    bool up_;
};

} // namespace

LedSpin::LedSpin(QWidget *parent)
    : QWidget(parent), up_(new StepButton(true, this)), down_(new StepButton(false, this)) {
    installAccessibility();
    setFocusPolicy(Qt::StrongFocus);
    setSizePolicy(QSizePolicy::Minimum, QSizePolicy::Fixed);
    up_->setObjectName("up");
    up_->setAccessibleName("Hoger");
    down_->setObjectName("down");
    down_->setAccessibleName("Lager");
    connect(static_cast<StepButton *>(up_), &QAbstractButton::clicked, this, [this] { stepBy(1); });
    connect(static_cast<StepButton *>(down_), &QAbstractButton::clicked, this, [this] { stepBy(-1); });
}

void LedSpin::setRange(int minimum, int maximum) {
    minimum_ = minimum;
    maximum_ = std::max(minimum, maximum);
}

void LedSpin::setStep(int step) {
    step_ = std::max(1, step);
}

void LedSpin::setDigits(int digits) {
    digits_ = std::max(1, digits);
    updateGeometry();
    update();
}

void LedSpin::setUnit(const QString &unit) {
    unit_ = unit;
    updateGeometry();
    update();
}

QString LedSpin::text() const {
    const QString number = QString::number(value_);
    return unit_.isEmpty() ? number : number + QChar(u' ') + unit_;
}

void LedSpin::setValue(int value) {
    if (value == value_) {
        return;
    }
    value_ = value;
    update();
    announceValue(*this);
    Q_EMIT valueChanged(value_);
}

void LedSpin::stepBy(int count) {
    endTyping();
    const qint64 target = qint64{value_} + qint64{step_} * count;
    setValue(static_cast<int>(std::clamp<qint64>(target, minimum_, maximum_)));
}

QSize LedSpin::sizeHint() const {
    return sizeForHeight(fontMetrics().height() * digitHeightInLines);
}

QSize LedSpin::minimumSizeHint() const {
    return sizeForHeight(fontMetrics().height() * 0.9);
}

QSize LedSpin::sizeForHeight(double digitHeight) const {
    const double padding = fontMetrics().height() * paddingInLines;
    const double digits = led::textWidth(QString(digits_, QChar(u'8')), digitHeight);
    const double height = digitHeight + 2 * padding;
    return QSizeF(digits + unitWidth() + 2 * padding + buttonWidth(), height).toSize() + QSize(1, 1);
}

double LedSpin::unitWidth() const {
    return unit_.isEmpty() ? 0 : fontMetrics().horizontalAdvance(unit_) + fontMetrics().height() * 0.4;
}

int LedSpin::buttonWidth() const {
    return fontMetrics().height() * 5 / 4;
}

void LedSpin::resizeEvent(QResizeEvent * /*event*/) {
    const int half = (height() - 4) / 2;
    const int left = width() - buttonWidth() - 2;
    up_->setGeometry(left, 2, buttonWidth(), half);
    down_->setGeometry(left, height() - 2 - half, buttonWidth(), half);
}

void LedSpin::changeEvent(QEvent *event) {
    QWidget::changeEvent(event);
    if (event->type() == QEvent::FontChange) {
        resizeEvent(nullptr);
    }
}

void LedSpin::paintEvent(QPaintEvent * /*event*/) {
    QPainter painter(this);
    led::drawGlass(painter, *this);
    const double padding = fontMetrics().height() * paddingInLines;
    QRectF area = QRectF(rect()).adjusted(padding, padding, -padding - buttonWidth(), -padding);
    if (!unit_.isEmpty()) {
        painter.setPen(led::litColour(QColor(led::amber), isEnabled()));
        painter.drawText(area, Qt::AlignRight | Qt::AlignVCenter, unit_);
        area.setRight(area.right() - unitWidth());
    }
    const QString shown = QString::number(value_).rightJustified(digits_, QChar(u' '));
    led::drawText(painter, shown, area, area, QColor(led::amber), isEnabled());
}

void LedSpin::keyPressEvent(QKeyEvent *event) {
    switch (event->key()) {
    case Qt::Key_Up:
        stepBy(1);
        return;
    case Qt::Key_Down:
        stepBy(-1);
        return;
    case Qt::Key_PageUp:
        stepBy(pageSteps);
        return;
    case Qt::Key_PageDown:
        stepBy(-pageSteps);
        return;
    case Qt::Key_Home:
        endTyping();
        setValue(minimum_);
        return;
    case Qt::Key_End:
        endTyping();
        setValue(maximum_);
        return;
    case Qt::Key_Backspace:
        if (typed_.isEmpty()) {
            typed_ = QString::number(value_);
        }
        typed_.chop(1);
        applyTyped();
        return;
    default:
        break;
    }
    if (!type(event->text())) {
        event->ignore();
    }
}

bool LedSpin::type(const QString &key) {
    if (key.size() != 1 || !(key.at(0) == u'-' || (key.at(0) >= u'0' && key.at(0) <= u'9'))) {
        endTyping();
        return false;
    }
    const bool paused = sinceKey_.isValid() && sinceKey_.elapsed() > typingPauseMillis;
    if (paused || key.at(0) == u'-' || typed_.size() >= longestEntry) {
        endTyping();
    }
    typed_ += key;
    applyTyped();
    return true;
}

// Every key counts at once, so that value() is what the digits show. A box that only holds negative numbers needs no
// minus sign.
void LedSpin::applyTyped() {
    sinceKey_.start();
    bool isNumber = false;
    int number = typed_.toInt(&isNumber);
    if (!isNumber) {
        number = 0;
    }
    if (maximum_ <= 0 && number > 0) {
        number = -number;
    }
    setValue(std::clamp(number, minimum_, maximum_));
}

// A touch pad sends small parts of a notch; they are saved up.
void LedSpin::wheelEvent(QWheelEvent *event) {
    if (!hasFocus()) {
        event->ignore();
        return;
    }
    wheelRest_ += event->angleDelta().y();
    const int notches = wheelRest_ / wheelNotch;
    wheelRest_ -= notches * wheelNotch;
    if (notches != 0) {
        stepBy(notches);
    }
    event->accept();
}

void LedSpin::focusInEvent(QFocusEvent * /*event*/) {
    endTyping();
    update();
}

void LedSpin::focusOutEvent(QFocusEvent * /*event*/) {
    endTyping();
    update();
}

void LedSpin::mousePressEvent(QMouseEvent *event) {
    endTyping();
    QWidget::mousePressEvent(event);
}

} // namespace orvel
