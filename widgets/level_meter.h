#pragma once

#include <QBasicTimer>
#include <QElapsedTimer>
#include <QString>
#include <QWidget>

namespace orvel {

/// A peak level meter from -60 to 0 dBFS with a peak-hold mark and a clip lamp, yellow on black.
/// It rises at once and falls by 20 dB in 1.7 s (the return time of IEC 60268-10, type I), so it never stays on an old
/// level when no new one comes. Its timer runs only while something moves.
class LevelMeter : public QWidget {
    Q_OBJECT
    Q_PROPERTY(double value READ levelDb)
    Q_PROPERTY(double minimum READ minimumDb)
    Q_PROPERTY(double maximum READ maximumDb)
    Q_PROPERTY(QString valueText READ text)

  public:
    static constexpr double floorDb = -60.0;
    static constexpr int holdMillis = 1500;
    static constexpr int clipMillis = 2000;

    explicit LevelMeter(QWidget *parent = nullptr) : LevelMeter(Qt::Horizontal, parent) {}
    explicit LevelMeter(Qt::Orientation orientation, QWidget *parent = nullptr);

    /// The highest sample since the last call, 0 to 1 (1 is full scale). From the highest 16-bit sample on the clip
    /// lamp is lit for two seconds.
    void setLevel(float peak);
    /// Lets `millis` pass. The meter's own timer calls this while something moves.
    void advance(int millis);
    /// Dark at once: no level, no peak mark, no clip lamp.
    void reset();

    /// The level shown, in dBFS, -60 to 0.
    double levelDb() const { return level_; }
    /// The peak-hold mark, in dBFS, -60 to 0.
    double holdDb() const { return hold_; }
    bool isClipped() const { return clipLeft_ > 0; }
    double minimumDb() const { return floorDb; }
    double maximumDb() const { return 0; }
    Qt::Orientation orientation() const { return orientation_; }
    QString text() const;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

  protected:
    void paintEvent(QPaintEvent *event) override;
    void timerEvent(QTimerEvent *event) override;

  private:
    struct Picture {
        int lit = 0;
        int hold = 0;
        bool clipped = false;
        bool operator==(const Picture &) const = default;
    };

    int segments() const;
    Picture picture() const;
    bool isMoving() const;
    void follow(const Picture &before);

    Qt::Orientation orientation_;
    QBasicTimer timer_;
    QElapsedTimer sinceTick_;
    double level_ = floorDb;
    double hold_ = floorDb;
    int holdLeft_ = 0;
    int clipLeft_ = 0;
};

/// The scale of a LevelMeter of the same length and orientation: eleven ticks, one every 6 dB, every fifth enlarged.
class LevelScale : public QWidget {
    Q_OBJECT

  public:
    explicit LevelScale(QWidget *parent = nullptr) : LevelScale(Qt::Horizontal, parent) {}
    explicit LevelScale(Qt::Orientation orientation, QWidget *parent = nullptr);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

  protected:
    void paintEvent(QPaintEvent *event) override;

  private:
    Qt::Orientation orientation_;
};

/// Where the bar of a meter of this `size` runs, in its own coordinates; the clip lamp stands at the loud end.
QRectF levelBarRect(const QSizeF &size, Qt::Orientation orientation, const QFontMetricsF &metrics);

} // namespace orvel
