#pragma once

#include <QBasicTimer>
#include <QColor>
#include <QString>
#include <QWidget>

namespace orvel {

/// A round indicator lamp.
class Lamp : public QWidget {
    Q_OBJECT
    Q_PROPERTY(bool lit READ isLit WRITE setLit)
    Q_PROPERTY(QString valueText READ text)

  public:
    explicit Lamp(QWidget *parent = nullptr);

    bool isLit() const { return lit_; }
    QColor colour() const { return colour_; }
    bool isBlinking() const { return blinking_; }
    /// "aan" or "uit", as a screen reader tells it.
    QString text() const;

    void setLit(bool lit);
    void setColour(const QColor &colour);
    /// A blinking lamp goes on and off every half second while it is lit; isLit() stays true in between.
    void setBlinking(bool blinking);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

  protected:
    void paintEvent(QPaintEvent *event) override;
    void timerEvent(QTimerEvent *event) override;

  private:
    void followBlinking();

    QColor colour_;
    QBasicTimer blinkTimer_;
    bool lit_ = false;
    bool blinking_ = false;
    bool darkPhase_ = false;
};

} // namespace orvel
