#include "widgets/knob.h"

#include <QSignalSpy>
#include <QTest>

#include <gtest/gtest.h>

namespace orvel {

namespace {

TEST(Knob, RunsFromZeroTo65535) {
    Knob knob;
    EXPECT_EQ(knob.minimum(), 0);
    EXPECT_EQ(knob.maximum(), 65535);
    knob.setValue(70000);
    EXPECT_EQ(knob.value(), 65535);
}

TEST(Knob, TurnsByKeys) {
    Knob knob;
    knob.setValue(16384);
    const QSignalSpy changes(&knob, &QDial::valueChanged);
    QTest::keyClick(&knob, Qt::Key_Up);
    EXPECT_GT(knob.value(), 16384);
    QTest::keyClick(&knob, Qt::Key_Home);
    EXPECT_EQ(knob.value(), 0);
    QTest::keyClick(&knob, Qt::Key_End);
    EXPECT_EQ(knob.value(), 65535);
    EXPECT_EQ(changes.count(), 3);
}

// A click at the loud side of a dial used to turn it there at once, which is a shock in the headphones.
TEST(Knob, DoesNotJumpToAClick) {
    Knob knob;
    knob.setValue(16384);
    knob.resize(80, 80);
    QTest::mouseClick(&knob, Qt::LeftButton, {}, {70, 50});
    EXPECT_EQ(knob.value(), 16384);
}

TEST(Knob, TurnsUpWhenItIsDraggedUpAndStopsAtTheEnd) {
    Knob knob;
    knob.setValue(16384);
    knob.resize(80, 80);
    QTest::mousePress(&knob, Qt::LeftButton, {}, {40, 40});
    QTest::mouseMove(&knob, {40, 30});
    const int up = knob.value();
    EXPECT_GT(up, 16384);
    QTest::mouseMove(&knob, {40, 50});
    EXPECT_LT(knob.value(), 16384);
    QTest::mouseMove(&knob, {40, -100000});
    EXPECT_EQ(knob.value(), 65535);
    QTest::mouseRelease(&knob, Qt::LeftButton, {}, {40, 40});
}

} // namespace

} // namespace orvel
