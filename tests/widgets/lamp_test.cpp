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

TEST(Lamp, PaintsOnlyWhenItChanges) {
    Lamp lamp;
    test::PaintCount paints(lamp);
    lamp.setLit(true);
    EXPECT_EQ(paints.take(), 1);
    lamp.setLit(true);
    lamp.setColour(lamp.colour());
    EXPECT_EQ(paints.take(), 0);
    QTest::qWait(700);
    EXPECT_EQ(paints.take(), 0) << "it does not blink";
}

} // namespace

} // namespace orvel
