#include "tests/widgets/paint_count.h"
#include "widgets/time_display.h"

#include <QFont>

#include <gtest/gtest.h>

namespace orvel {

namespace {

TEST(TimeDisplay, ShowsHoursMinutesSecondsAndHundredths) {
    TimeDisplay display;
    display.setTime(0, 0, 4, 350);
    EXPECT_EQ(display.text(), "0:00:04.35");
    display.setTime(12, 59, 58, 999);
    EXPECT_EQ(display.text(), "12:59:58.99");
}

TEST(TimeDisplay, KeepsTheMillisecondsThatItDoesNotShow) {
    TimeDisplay display;
    display.setTime(1, 2, 3, 457);
    EXPECT_EQ(display.hours(), 1);
    EXPECT_EQ(display.minutes(), 2);
    EXPECT_EQ(display.seconds(), 3);
    EXPECT_EQ(display.millis(), 457);
}

TEST(TimeDisplay, ShowsSecondsWithBlankLeadingZeros) {
    TimeDisplay display(TimeDisplay::Fields::Seconds);
    display.setSeconds(3);
    EXPECT_EQ(display.text(), " 3");
    display.setSeconds(0);
    EXPECT_EQ(display.text(), " 0");
    display.setSeconds(120);
    EXPECT_EQ(display.text(), "120");
    display.setSeconds(-5);
    EXPECT_EQ(display.text(), "-5");
}

TEST(TimeDisplay, PaintsOnlyWhenADigitChangesAndOnlyFromThere) {
    TimeDisplay display;
    test::PaintCount paints(display);
    display.setTime(0, 0, 4, 350);
    EXPECT_EQ(paints.take(), 1);
    display.setTime(0, 0, 4, 355);
    EXPECT_EQ(paints.take(), 0);
    display.setTime(0, 0, 4, 360);
    EXPECT_EQ(paints.take(), 1);
    EXPECT_GT(paints.lastRegion().boundingRect().left(), display.width() / 2);
}

TEST(TimeDisplay, GrowsWithTheFont) {
    TimeDisplay display;
    const QSize before = display.sizeHint();
    QFont font = display.font();
    font.setPointSizeF(font.pointSizeF() * 2);
    display.setFont(font);
    EXPECT_GT(display.sizeHint().width(), before.width() * 3 / 2);
    EXPECT_GT(display.sizeHint().height(), before.height() * 3 / 2);
}

} // namespace

} // namespace orvel
