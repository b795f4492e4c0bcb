#pragma once

#include <QColor>
#include <QString>
#include <QWidget>

#include <functional>
#include <optional>
#include <vector>

namespace orvel {

/// The outline of a sound on a time axis, with what its stretches mean behind it. It can be clicked to say where to
/// listen, zoomed with the wheel (a double click shows all of it again), and cut at both ends with handles. Times are
/// milliseconds from the sound's beginning.
class Waveform : public QWidget {
    Q_OBJECT
    Q_PROPERTY(int value READ value)
    Q_PROPERTY(int minimum READ minimum)
    Q_PROPERTY(int maximum READ maximum)
    Q_PROPERTY(QString valueText READ text)

  public:
    /// The lowest and highest sample of a stretch, -1..1.
    struct Column {
        float low = 0;
        float high = 0;
    };
    using Source = std::function<Column(double from, double to)>;

    /// From the end of the zone before, or the beginning, to its own end.
    struct Zone {
        double end = 0;
        QColor colour;
        QString word;

        bool operator==(const Zone &) const = default;
    };

    /// A part of the sound.
    struct Stretch {
        double begin = 0;
        double end = 0;

        bool operator==(const Stretch &) const = default;
    };

    explicit Waveform(QWidget *parent = nullptr);

    /// Asked while painting; must not throw.
    void setSource(Source source);
    /// The source gives something else now.
    void refresh();
    /// In order of time; the last one goes on to the end of the axis.
    void setZones(std::vector<Zone> zones);
    /// Where somebody speaks, under a bracket, and where it was too loud, a triangle on a line; both in order of time.
    void setMarks(std::vector<Stretch> speech, std::vector<double> clips);
    /// What is shown at least. A longer sound widens it by steps, so that a growing one does not shrink all the time.
    void setAxis(double milliseconds);
    void setLength(double milliseconds);
    /// What is heard now; none draws no line.
    void setPosition(std::optional<double> milliseconds);
    /// Whether both ends have a handle to cut.
    void setCuttable(bool cuttable);

    [[nodiscard]] double length() const { return length_; }
    /// Of the part of the axis that is shown.
    [[nodiscard]] double shownFrom() const { return from_; }
    [[nodiscard]] double shownSpan() const { return span_; }

    [[nodiscard]] int value() const { return static_cast<int>(position_.value_or(0)); }
    [[nodiscard]] int minimum() const { return 0; }
    [[nodiscard]] int maximum() const { return static_cast<int>(length_); }
    /// Where in the sound, as a screen reader tells it.
    [[nodiscard]] QString text() const;

    [[nodiscard]] QSize sizeHint() const override;
    [[nodiscard]] QSize minimumSizeHint() const override;

  Q_SIGNALS:
    /// Listen from here.
    void seekWanted(double milliseconds);
    /// A handle is dragged over this moment.
    void scrubbed(double milliseconds);
    /// Only what lies between is to stay.
    void cutWanted(double from, double to);

  protected:
    void paintEvent(QPaintEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void mouseDoubleClickEvent(QMouseEvent *event) override;
    void wheelEvent(QWheelEvent *event) override;
    void keyPressEvent(QKeyEvent *event) override;

  private:
    enum class Handle { None, Begin, End };

    [[nodiscard]] QRectF area() const;
    [[nodiscard]] double whole() const;
    [[nodiscard]] double timeAt(double x) const;
    [[nodiscard]] double placeOf(double milliseconds) const;
    [[nodiscard]] Handle handleAt(double x) const;
    void showAll();
    void show(double from, double span);
    void drop();
    void cut(double from, double to);
    void paintZones(QPainter &painter) const;
    void paintWords(QPainter &painter) const;
    void paintSound(QPainter &painter, const QRect &exposed) const;
    void paintSeconds(QPainter &painter) const;
    void paintSpeech(QPainter &painter) const;
    void paintClips(QPainter &painter) const;
    void updateFrom(double milliseconds);
    void paintHandles(QPainter &painter) const;
    void paintPosition(QPainter &painter) const;
    [[nodiscard]] const Zone *zoneAt(double milliseconds) const;

    Source source_;
    std::vector<Zone> zones_;
    std::vector<Stretch> speech_;
    std::vector<double> clips_;
    double axis_ = 0;
    double length_ = 0;
    double from_ = 0;
    double span_ = 10'000;
    std::optional<double> position_;
    bool isCuttable_ = false;
    Handle dragged_ = Handle::None;
    double cutFrom_ = 0;
    double cutTo_ = 0;
};

} // namespace orvel
