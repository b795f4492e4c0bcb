#pragma once

#include <QDial>

namespace orvel {

/// A volume knob from 0 to 65535. Dragging up or to the right turns it up from where it is: a click alone never makes
/// the sound jump. Keys and the wheel as in any dial; valueChanged(int) tells every change.
class Knob : public QDial {
    Q_OBJECT

  public:
    static constexpr int maximumValue = 65535;

    explicit Knob(QWidget *parent = nullptr);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

  protected:
    void paintEvent(QPaintEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;

  private:
    QPointF dragStart_;
    int dragValue_ = 0;
};

} // namespace orvel
