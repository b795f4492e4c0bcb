#include "tests/widgets/paint_count.h"
#include "widgets/gauge.h"

#include <gtest/gtest.h>

namespace orvel {

namespace {

QColor pixel(QWidget &widget, double part) {
    const QImage image = widget.grab().toImage();
    return image.pixelColor(static_cast<int>((image.width() - 1) * part), image.height() / 2);
}

TEST(Gauge, KeepsWhatItIsGiven) {
    Gauge gauge;
    EXPECT_EQ(gauge.minimum(), 0);
    gauge.setMaximum(11912);
    gauge.setValue(20000);
    gauge.setBarColour(QColor(0, 0, 255));
    EXPECT_EQ(gauge.maximum(), 11912);
    EXPECT_EQ(gauge.value(), 20000);
    EXPECT_EQ(gauge.barColour(), QColor(0, 0, 255));
    gauge.setValue(-10);
    EXPECT_EQ(gauge.value(), -10);
}

TEST(Gauge, FillsThePartThatTheValueIsOfTheMaximum) {
    Gauge gauge;
    gauge.resize(400, 40);
    gauge.setMaximum(1000);
    gauge.setBarColour(QColor(255, 255, 0));
    gauge.setValue(500);
    EXPECT_GT(pixel(gauge, 0.45).lightness(), 100);
    EXPECT_LT(pixel(gauge, 0.55).lightness(), 60);
    gauge.setValue(5000);
    EXPECT_GT(pixel(gauge, 0.97).lightness(), 100);
    gauge.setValue(-1);
    EXPECT_LT(pixel(gauge, 0.03).lightness(), 60);
}

TEST(Gauge, IsEmptyWithoutAMaximum) {
    Gauge gauge;
    gauge.resize(400, 40);
    gauge.setMaximum(0);
    gauge.setValue(50);
    EXPECT_LT(pixel(gauge, 0.5).lightness(), 60);
    EXPECT_EQ(gauge.text(), "0%");
}

TEST(Gauge, ShowsTheThreeColoursApart) {
    Gauge gauge;
    gauge.resize(400, 40);
    gauge.setValue(100);
    for (const auto &[colour, hue] :
         {std::pair{QColor(0, 0, 255), 240}, std::pair{QColor(255, 255, 0), 60}, std::pair{QColor(255, 0, 0), 0}}) {
        gauge.setBarColour(colour);
        EXPECT_NEAR(pixel(gauge, 0.5).hue(), hue, 3);
    }
}

// The recording tick sets a value a hundred times a second: a bar of ten minutes changes a pixel about once a second.
TEST(Gauge, PaintsOnlyWhenAPixelChanges) {
    Gauge gauge;
    gauge.resize(606, 40);
    gauge.setMaximum(600000);
    gauge.setValue(600000);
    test::PaintCount paints(gauge);
    int painted = 0;
    for (int value = 600000; value > 590000; value -= 10) {
        gauge.setValue(value);
        painted += paints.take();
    }
    EXPECT_GE(painted, 9);
    EXPECT_LE(painted, 11);
    EXPECT_LE(paints.lastRegion().boundingRect().width(), 3);
    gauge.setBarColour(gauge.barColour());
    gauge.setCaption(gauge.caption());
    EXPECT_EQ(paints.take(), 0);
}

TEST(Gauge, PaintsTheWholeBarInANewColour) {
    Gauge gauge;
    gauge.resize(400, 40);
    gauge.setValue(100);
    test::PaintCount paints(gauge);
    gauge.setBarColour(QColor(255, 0, 0));
    EXPECT_EQ(paints.take(), 1);
    EXPECT_EQ(paints.lastRegion().boundingRect(), gauge.rect());
}

// Partly painted strips must add up to the picture that a whole repaint gives.
TEST(Gauge, LooksTheSameAfterManySmallChangesAsPaintedAtOnce) {
    Gauge gauge;
    gauge.resize(403, 40);
    gauge.setCaption("Comprimeert bestand");
    gauge.setMaximum(1000);
    test::PaintCount paints(gauge);
    for (int value = 0; value <= 700; value += 7) {
        gauge.setValue(value);
        paints.take();
    }
    const QImage stepwise = gauge.window()->grab().toImage();
    Gauge other;
    other.resize(403, 40);
    other.setCaption("Comprimeert bestand");
    other.setMaximum(1000);
    other.setValue(700);
    other.show();
    EXPECT_EQ(stepwise, other.grab().toImage());
}

TEST(Gauge, HasRoomForItsCaption) {
    Gauge gauge;
    const int before = gauge.minimumSizeHint().width();
    gauge.setCaption("Een heel lange tekst over de balk heen");
    EXPECT_GT(gauge.minimumSizeHint().width(), before);
}

} // namespace

} // namespace orvel
