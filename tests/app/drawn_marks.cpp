#include "drawn_marks.h"

#include <QPaintEngine>
#include <QPainter>

#include <cmath>

namespace orvel {

namespace {

/// Draws nothing, and notes what it is told to draw.
class NotingEngine : public QPaintEngine {
  public:
    explicit NotingEngine(std::vector<DrawnMark> &marks) : QPaintEngine(AllFeatures), marks_(marks) {}

    bool begin(QPaintDevice * /*device*/) override { return true; }
    bool end() override { return true; }
    void updateState(const QPaintEngineState & /*state*/) override {}
    Type type() const override { return User; }
    void drawPath(const QPainterPath & /*path*/) override {}
    void drawPolygon(const QPointF * /*points*/, int /*count*/, PolygonDrawMode /*mode*/) override {}

    void drawTextItem(const QPointF &at, const QTextItem &item) override {
        const QRectF place(at.x(), at.y() - item.ascent(), item.width(), item.ascent() + item.descent());
        QColor colour = painter()->pen().color();
        colour.setAlphaF(colour.alphaF() * static_cast<float>(painter()->opacity()));
        note({item.text(), {}, {}, colour}, place);
    }
    void drawPixmap(const QRectF &place, const QPixmap &picture, const QRectF & /*part*/) override {
        note({{}, picture.toImage(), {}, {}}, place);
    }
    void drawImage(const QRectF &place, const QImage &picture, const QRectF & /*part*/,
                   Qt::ImageConversionFlags /*flags*/) override {
        note({{}, picture, {}, {}}, place);
    }

  private:
    void note(DrawnMark mark, const QRectF &place) {
        mark.place = painter()->deviceTransform().mapRect(place).toAlignedRect();
        if (!mark.icon.isNull()) {
            mark.icon = mark.icon.scaled(mark.place.size()).convertToFormat(QImage::Format_ARGB32);
            mark.icon.setDevicePixelRatio(1);
        }
        const bool isSomething = !mark.text.trimmed().isEmpty() || !mark.icon.isNull();
        if (isSomething && !mark.place.isEmpty()) {
            marks_.push_back(std::move(mark));
        }
    }

    std::vector<DrawnMark> &marks_;
};

class NotingDevice : public QPaintDevice {
  public:
    NotingDevice(QSize size, std::vector<DrawnMark> &marks) : size_(size), engine_(marks) {}
    QPaintEngine *paintEngine() const override { return &engine_; }

  protected:
    int metric(PaintDeviceMetric metric) const override {
        constexpr int dotsPerInch = 96;
        switch (metric) {
        case PdmWidth:
            return size_.width();
        case PdmHeight:
            return size_.height();
        case PdmDpiX:
        case PdmDpiY:
        case PdmPhysicalDpiX:
        case PdmPhysicalDpiY:
            return dotsPerInch;
        case PdmDepth:
            return 32;
        case PdmDevicePixelRatio:
            return 1;
        case PdmDevicePixelRatioScaled:
            return static_cast<int>(devicePixelRatioFScale());
        default:
            return 0;
        }
    }

  private:
    QSize size_;
    mutable NotingEngine engine_;
};

double brightnessOf(const QColor &colour) {
    const auto linear = [](double part) {
        return part <= 0.03928 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF()) + 0.0722 * linear(colour.blueF());
}

} // namespace

std::vector<DrawnMark> marksOf(QWidget &shown) {
    std::vector<DrawnMark> marks;
    NotingDevice device(shown.size(), marks);
    shown.render(&device);
    return marks;
}

double contrastOf(const QColor &first, const QColor &second) {
    const double a = brightnessOf(first);
    const double b = brightnessOf(second);
    return (std::max(a, b) + 0.05) / (std::min(a, b) + 0.05);
}

} // namespace orvel
