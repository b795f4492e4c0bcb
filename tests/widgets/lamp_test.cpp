#include "tests/widgets/paint_count.h"
#include "widgets/lamp.h"

#include <gtest/gtest.h>

namespace orvel {

namespace {

int brightness(QWidget &widget) {
    const QImage image = widget.grab().toImage();
    return image.pixelColor(image.rect().center()).value();
}

TEST(Lamp, IsDarkUntilItIsLit) {
    Lamp lamp;
    lamp.setColour(Qt::yellow);
    EXPECT_FALSE(lamp.isLit());
    const int dark = brightness(lamp);
    lamp.setLit(true);
    EXPECT_TRUE(lamp.isLit());
    EXPECT_GT(brightness(lamp), dark + 80);
    lamp.setLit(false);
    EXPECT_EQ(brightness(lamp), dark);
}

TEST(Lamp, DoesNotBlinkUnlessTold) {
    Lamp lamp;
    lamp.setLit(true);
    test::PaintCount paints(lamp);
    QTest::qWait(700);
    EXPECT_EQ(paints.take(), 0);
}

TEST(Lamp, BlinksWhileLitAndStaysLitMeanwhile) {
    Lamp lamp;
    lamp.setBlinking(true);
    lamp.setLit(true);
    const int bright = brightness(lamp);
    lamp.show();
    EXPECT_TRUE(QTest::qWaitFor([&] { return brightness(lamp) < bright - 80; }, 3000));
    EXPECT_TRUE(lamp.isLit());
    EXPECT_TRUE(QTest::qWaitFor([&] { return brightness(lamp) == bright; }, 3000));
    lamp.setLit(false);
    test::PaintCount paints(lamp);
    QTest::qWait(700);
    EXPECT_EQ(paints.take(), 0);
}

} // namespace

} // namespace orvel
