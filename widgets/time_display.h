#pragma once

#include <QWidget>

namespace orvel {

/// An LED time display: either a number of seconds or hours, minutes, seconds and milliseconds.
/// The fields are shown as they are given; nothing is carried from one to the next.
class TimeDisplay : public QWidget {
    Q_OBJECT
    Q_PROPERTY(QString valueText READ text)
    Q_PROPERTY(double value READ inSeconds)
    Q_PROPERTY(double minimum READ minimum)
    Q_PROPERTY(double maximum READ maximum)

  public:
    enum class Fields { Seconds, HoursMinutesSecondsMillis };

    explicit TimeDisplay(Fields fields, QWidget *parent = nullptr);
    explicit TimeDisplay(QWidget *parent = nullptr);

    /// Hours, minutes, seconds and milliseconds (0 to 999; the display shows them in hundredths).
    void setTime(int hours, int minutes, int seconds, int millis);
    void setSeconds(int seconds);

    int hours() const { return hours_; }
    int minutes() const { return minutes_; }
    int seconds() const { return seconds_; }
    int millis() const { return millis_; }

    /// All fields together, as a screen reader asks for them.
    double inSeconds() const { return hours_ * 3600.0 + minutes_ * 60.0 + seconds_ + millis_ / 1000.0; }
    double minimum() const { return 0; }
    double maximum() const { return 100 * 3600.0; }

    /// What the digits read, for instance "0:00:04.35", or " 3" when only seconds are shown.
    QString text() const;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

  protected:
    void paintEvent(QPaintEvent *event) override;

  private:
    QRectF digitArea() const;
    QSize sizeForHeight(double digitHeight) const;
    void showChange(const QString &before, int secondsBefore);

    Fields fields_;
    int hours_ = 0;
    int minutes_ = 0;
    int seconds_ = 0;
    int millis_ = 0;
};

} // namespace orvel
