#pragma once

#include <QColor>
#include <QString>
#include <QWidget>

namespace orvel {

/// A wide bar from 0 to a maximum. setValue() may be called a hundred times a second: it repaints only the strip of
/// pixels that changes, and nothing when no pixel does.
class Gauge : public QWidget {
    Q_OBJECT
    Q_PROPERTY(int value READ value WRITE setValue)
    Q_PROPERTY(int minimum READ minimum)
    Q_PROPERTY(int maximum READ maximum WRITE setMaximum)
    Q_PROPERTY(QString valueText READ text)

  public:
    explicit Gauge(QWidget *parent = nullptr);

    int minimum() const { return 0; }
    int maximum() const { return maximum_; }
    int value() const { return value_; }
    QColor barColour() const { return barColour_; }
    QString caption() const { return caption_; }
    /// The caption and the filled part in percent, as a screen reader tells it.
    QString text() const;

    /// The value is kept as it is, also when it is outside the new range: the bar is then empty or full.
    void setMaximum(int maximum);
    void setValue(int value);
    void setBarColour(const QColor &colour);
    /// A text over the bar; it may be empty.
    void setCaption(const QString &caption);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

  protected:
    void paintEvent(QPaintEvent *event) override;

  private:
    QRectF barArea() const;
    int filledPixels() const;
    int percent() const;
    void showChange(int pixelsBefore, int percentBefore);
    void drawCaption(QPainter &painter, const QRectF &area, const QRectF &filled) const;

    QColor barColour_;
    QString caption_;
    int maximum_ = 100;
    int value_ = 0;
};

} // namespace orvel
