#pragma once

#include <QWidget>

namespace orvel {

/// An up and a down button with a value that is shown elsewhere. The arrow keys step, too.
class SpinButton : public QWidget {
    Q_OBJECT
    Q_PROPERTY(int value READ value WRITE setValue NOTIFY valueChanged)
    Q_PROPERTY(int minimum READ minimum)
    Q_PROPERTY(int maximum READ maximum)

  public:
    explicit SpinButton(QWidget *parent = nullptr);

    void setRange(int minimum, int maximum);
    [[nodiscard]] int minimum() const { return minimum_; }
    [[nodiscard]] int maximum() const { return maximum_; }
    [[nodiscard]] int value() const { return value_; }
    /// Keeps the value as it is, also outside the range.
    void setValue(int value);
    /// Moves by so many and stops at the limits.
    void stepBy(int count);

  Q_SIGNALS:
    void valueChanged(int value);

  protected:
    void keyPressEvent(QKeyEvent *event) override;

  private:
    int minimum_ = 0;
    int maximum_ = 100;
    int value_ = 0;
};

} // namespace orvel
