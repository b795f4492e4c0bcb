#include "platform/qt/qt_timers.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QThread>
#include <QTimer>

#include <algorithm>
#include <gtest/gtest.h>

namespace orvel {

namespace {

void runEvents(int milliseconds) {
    QEventLoop loop;
    QTimer::singleShot(milliseconds, Qt::PreciseTimer, &loop, &QEventLoop::quit);
    loop.exec();
}

/// Lets a timer that has just started be late, then delivers what is due now.
void stall(int milliseconds) {
    QThread::msleep(static_cast<unsigned long>(milliseconds));
    QCoreApplication::processEvents();
}

} // namespace

TEST(QtTimers, AreMadeDisabled) {
    int ticks = 0;
    const auto timer = QtTimers().create(5, MissedTicks::CatchUp, [&] { ++ticks; });
    EXPECT_FALSE(timer->isEnabled());
    runEvents(40);
    EXPECT_EQ(ticks, 0);
    timer->setEnabled(true);
    EXPECT_TRUE(timer->isEnabled());
    timer->setEnabled(false);
    runEvents(40);
    EXPECT_EQ(ticks, 0);
}

TEST(QtTimers, CatchingUpNeverDriftsFromTheClock) {
    int ticks = 0;
    const auto timer = QtTimers().create(10, MissedTicks::CatchUp, [&] { ++ticks; });
    QElapsedTimer clock;
    timer->setEnabled(true);
    clock.start();
    for (const int late : {0, 130, 5, 260}) {
        QTimer::singleShot(20, [late] { QThread::msleep(static_cast<unsigned long>(late)); });
        runEvents(60);
    }
    const qint64 due = clock.elapsed() / 10;
    runEvents(30);
    EXPECT_GE(ticks, due);
    EXPECT_LE(ticks, clock.elapsed() / 10 + 1);
}

TEST(QtTimers, DroppingDeliversOneTickAfterAStall) {
    int ticks = 0;
    const auto timer = QtTimers().create(50, MissedTicks::Drop, [&] { ++ticks; });
    timer->setEnabled(true);
    stall(420);
    EXPECT_EQ(ticks, 1);
}

TEST(QtTimers, CatchingUpDeliversEveryTickAfterAStall) {
    int ticks = 0;
    const auto timer = QtTimers().create(10, MissedTicks::CatchUp, [&] { ++ticks; });
    timer->setEnabled(true);
    stall(300);
    EXPECT_GE(ticks, 30);
}

TEST(QtTimers, TicksThatAreTooSlowDoNotLockTheWindow) {
    const auto timer = QtTimers().create(10, MissedTicks::CatchUp, [] { QThread::msleep(15); });
    QTimer window;
    QElapsedTimer sinceWindow;
    qint64 longestWait = 0;
    QObject::connect(&window, &QTimer::timeout, [&] {
        longestWait = std::max(longestWait, sinceWindow.elapsed());
        sinceWindow.start();
    });
    timer->setEnabled(true);
    window.start(0);
    sinceWindow.start();
    runEvents(1200);
    EXPECT_LT(longestWait, 400) << "grows without end when every due tick is waited for";
}

TEST(QtTimers, ATickMayStopTheOthersThatAreDue) {
    int ticks = 0;
    std::unique_ptr<Timer> timer;
    timer = QtTimers().create(10, MissedTicks::CatchUp, [&] {
        if (++ticks == 3) {
            timer->setEnabled(false);
        }
    });
    timer->setEnabled(true);
    stall(200);
    runEvents(50);
    EXPECT_EQ(ticks, 3);
}

TEST(QtTimers, ATimerEnabledAnewByItsTickStartsAnew) {
    // It went on delivering ticks that were due before.
    int ticks = 0;
    std::unique_ptr<Timer> timer;
    timer = QtTimers().create(20, MissedTicks::CatchUp, [&] {
        if (++ticks == 1) {
            timer->setEnabled(true);
        }
    });
    timer->setEnabled(true);
    stall(400);
    EXPECT_LE(ticks, 2);
}

TEST(QtTimers, ABoxShownByATickDoesNotCountTicksTwice) {
    int ticks = 0;
    const auto timer = QtTimers().create(10, MissedTicks::CatchUp, [&] {
        if (++ticks == 5) {
            runEvents(100);
        }
    });
    QElapsedTimer clock;
    timer->setEnabled(true);
    clock.start();
    stall(200);
    const qint64 due = clock.elapsed() / 10;
    runEvents(30);
    EXPECT_GE(ticks, due);
    EXPECT_LE(ticks, clock.elapsed() / 10 + 1);
}

TEST(QtTimers, DestroyingATimerStopsIt) {
    int ticks = 0;
    auto timer = QtTimers().create(5, MissedTicks::CatchUp, [&] { ++ticks; });
    timer->setEnabled(true);
    timer.reset();
    runEvents(40);
    EXPECT_EQ(ticks, 0);
}

} // namespace orvel
