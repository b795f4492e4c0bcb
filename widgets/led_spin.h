#pragma once

#include <QElapsedTimer>
#include <QString>
#include <QWidget>

namespace orvel {

/// A whole number in LED digits with up and down buttons.
/// Keys: arrows step, Page Up and Page Down step ten times, Home and End go to the limits, digits and '-' type a value.
/// The wheel steps while the box has the focus, so that scrolling past it changes nothing.
class LedSpin : public QWidget {
    Q_OBJECT
    Q_PROPERTY(int value READ value WRITE setValue NOTIFY valueChanged)
    Q_PROPERTY(int minimum READ minimum)
    Q_PROPERTY(int maximum READ maximum)
    Q_PROPERTY(int step READ step)
    Q_PROPERTY(QString valueText READ text)

  public:
    explicit LedSpin(QWidget *parent = nullptr);

    void setRange(int minimum, int maximum);
    void setStep(int step);
    /// How many digits there is room for (a minus sign takes one); a longer number is drawn smaller, never cut off.
    void setDigits(int digits);
    /// A unit behind the digits, for instance "dB".
    void setUnit(const QString &unit);

    int minimum() const { return minimum_; }
    int maximum() const { return maximum_; }
    int step() const { return step_; }
    int digits() const { return digits_; }
    QString unit() const { return unit_; }
    int value() const { return value_; }
    /// The value with its unit, as a screen reader tells it.
    QString text() const;

    /// Shows `value` as it is, also outside the range.
    void setValue(int value);
    /// Moves by `count` steps (negative: down) and stops at the limits.
    void stepBy(int count);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

  Q_SIGNALS:
    void valueChanged(int value);

  protected:
    void paintEvent(QPaintEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;
    void focusInEvent(QFocusEvent *event) override;
    void focusOutEvent(QFocusEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void changeEvent(QEvent *event) override;

  private:
    QSize sizeForHeight(double digitHeight) const;
    double unitWidth() const;
    int buttonWidth() const;
    bool type(const QString &key);
    void applyTyped();
    void endTyping() { typed_.clear(); }

    QWidget *up_;
    QWidget *down_;
    QString unit_;
    QString typed_;
    QElapsedTimer sinceKey_;
    int wheelRest_ = 0;
    int minimum_ = 0;
    int maximum_ = 100;
    int step_ = 1;
    int digits_ = 3;
    int value_ = 0;
};

} // namespace orvel
