#pragma once

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
    /// "aan" or "uit", as a screen reader tells it.
    QString text() const;

    void setLit(bool lit);
    void setColour(const QColor &colour);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

  protected:
    void paintEvent(QPaintEvent *event) override;

  private:
    QColor colour_;
    bool lit_ = false;
};

} // namespace orvel
