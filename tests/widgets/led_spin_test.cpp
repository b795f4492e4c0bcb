#include "widgets/led_spin.h"

#include <QAbstractButton>
#include <QApplication>
#include <QSignalSpy>
#include <QTest>
#include <QWheelEvent>

#include <gtest/gtest.h>
#include <limits>

namespace orvel {

namespace {

class LedSpinTest : public testing::Test {
  protected:
    LedSpinTest() {
        spin_.setRange(0, 1000);
        spin_.setStep(10);
        spin_.setDigits(4);
        spin_.show();
        spin_.activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&spin_));
        spin_.setFocus();
    }

    void press(Qt::Key key) { QTest::keyClick(&spin_, key); }
    void type(const char *keys) { QTest::keyClicks(&spin_, keys); }
    void click(const char *button) { QTest::mouseClick(spin_.findChild<QAbstractButton *>(button), Qt::LeftButton); }
    void turnWheel(int delta) {
        const QPointF at(5, 5);
        QWheelEvent event(at, spin_.mapToGlobal(at), {}, {0, delta}, Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase,
                          false);
        QApplication::sendEvent(&spin_, &event);
    }

    LedSpin spin_;
};

TEST_F(LedSpinTest, ButtonsStepByTheIncrementAndStopAtTheLimits) {
    spin_.setValue(985);
    click("up");
    EXPECT_EQ(spin_.value(), 995);
    click("up");
    EXPECT_EQ(spin_.value(), 1000);
    click("up");
    EXPECT_EQ(spin_.value(), 1000);
    spin_.setValue(5);
    click("down");
    EXPECT_EQ(spin_.value(), 0);
    click("down");
    EXPECT_EQ(spin_.value(), 0);
}

TEST_F(LedSpinTest, ShowsALoadedValueOutsideTheRangeAsItIs) {
    spin_.setValue(5000);
    EXPECT_EQ(spin_.value(), 5000);
    spin_.setRange(0, 100);
    EXPECT_EQ(spin_.value(), 5000);
    click("up");
    EXPECT_EQ(spin_.value(), 100);
    spin_.setValue(-7);
    EXPECT_EQ(spin_.value(), -7);
    click("down");
    EXPECT_EQ(spin_.value(), 0);
}

TEST_F(LedSpinTest, StepsAtTheEndsOfTheNumberRange) {
    spin_.setRange(std::numeric_limits<int>::min(), std::numeric_limits<int>::max());
    spin_.setValue(std::numeric_limits<int>::max());
    spin_.stepBy(1);
    EXPECT_EQ(spin_.value(), std::numeric_limits<int>::max());
    spin_.setValue(std::numeric_limits<int>::min());
    spin_.stepBy(-1);
    EXPECT_EQ(spin_.value(), std::numeric_limits<int>::min());
}

TEST_F(LedSpinTest, FollowsTheKeyboard) {
    press(Qt::Key_Up);
    EXPECT_EQ(spin_.value(), 10);
    press(Qt::Key_PageUp);
    EXPECT_EQ(spin_.value(), 110);
    press(Qt::Key_PageDown);
    press(Qt::Key_Down);
    EXPECT_EQ(spin_.value(), 0);
    press(Qt::Key_End);
    EXPECT_EQ(spin_.value(), 1000);
    press(Qt::Key_Home);
    EXPECT_EQ(spin_.value(), 0);
}

TEST_F(LedSpinTest, TakesTypedDigitsWithinTheLimits) {
    type("425");
    EXPECT_EQ(spin_.value(), 425);
    press(Qt::Key_Backspace);
    EXPECT_EQ(spin_.value(), 42);
    press(Qt::Key_Return);
    type("7");
    EXPECT_EQ(spin_.value(), 7);
    type("000");
    EXPECT_EQ(spin_.value(), 1000);
    type("00000000000000000000");
    EXPECT_LE(spin_.value(), 1000);
}

TEST_F(LedSpinTest, TypesNegativeNumbers) {
    spin_.setRange(-15, 15);
    type("-12");
    EXPECT_EQ(spin_.value(), -12);
    type("-99");
    EXPECT_EQ(spin_.value(), -15);
    spin_.setRange(-90, 0);
    press(Qt::Key_Return);
    type("48");
    EXPECT_EQ(spin_.value(), -48);
}

TEST_F(LedSpinTest, LeavesOtherKeysToTheWindow) {
    QKeyEvent enter(QEvent::KeyPress, Qt::Key_Return, Qt::NoModifier, "\r");
    QApplication::sendEvent(&spin_, &enter);
    EXPECT_FALSE(enter.isAccepted());
    QKeyEvent letter(QEvent::KeyPress, Qt::Key_A, Qt::NoModifier, "a");
    QApplication::sendEvent(&spin_, &letter);
    EXPECT_FALSE(letter.isAccepted());
    EXPECT_EQ(spin_.value(), 0);
}

TEST_F(LedSpinTest, TurnsWithTheWheelOnlyWhileItHasTheFocus) {
    turnWheel(120);
    EXPECT_EQ(spin_.value(), 10);
    turnWheel(60);
    EXPECT_EQ(spin_.value(), 10);
    turnWheel(60);
    EXPECT_EQ(spin_.value(), 20);
    turnWheel(-240);
    EXPECT_EQ(spin_.value(), 0);
    spin_.clearFocus();
    turnWheel(120);
    EXPECT_EQ(spin_.value(), 0);
}

TEST_F(LedSpinTest, TellsEveryChangeOnce) {
    const QSignalSpy changes(&spin_, &LedSpin::valueChanged);
    spin_.setValue(0);
    EXPECT_EQ(changes.count(), 0);
    spin_.setValue(30);
    click("up");
    ASSERT_EQ(changes.count(), 2);
    EXPECT_EQ(changes.at(1).at(0).toInt(), 40);
    spin_.setValue(1000);
    click("up");
    EXPECT_EQ(changes.count(), 3);
}

TEST_F(LedSpinTest, DoesNothingWhileDisabled) {
    spin_.setEnabled(false);
    click("up");
    press(Qt::Key_Up);
    EXPECT_EQ(spin_.value(), 0);
}

TEST_F(LedSpinTest, KeepsTheButtonsInsideAtEveryFontSize) {
    for (const double points : {8.0, 14.0, 24.0}) {
        QFont font = spin_.font();
        font.setPointSizeF(points);
        spin_.setFont(font);
        spin_.resize(spin_.sizeHint());
        for (const char *name : {"up", "down"}) {
            const QRect button = spin_.findChild<QAbstractButton *>(name)->geometry();
            EXPECT_TRUE(spin_.rect().contains(button)) << points << name;
            EXPECT_GE(button.height(), points);
        }
    }
}

} // namespace

} // namespace orvel
