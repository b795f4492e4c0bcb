#include "platform/qt/qt_timers.h"

#include "platform/guarded.h"

#include <QElapsedTimer>
#include <QTimer>

#include <algorithm>

namespace orvel {

namespace {

/// The longest that ticks which were missed may keep the window from its other events.
constexpr qint64 longestRunMs = 50;

class QtTimer : public Timer {
  public:
    QtTimer(int intervalMs, MissedTicks missed, std::function<void()> tick)
        : tick_(std::move(tick)), interval_(std::max(intervalMs, 1)), missed_(missed) {
        timer_.setTimerType(Qt::PreciseTimer);
        timer_.setInterval(static_cast<int>(interval_));
        QObject::connect(&timer_, &QTimer::timeout, [this] { deliver(); });
    }

    void setEnabled(bool enabled) override {
        ++run_;
        if (!enabled) {
            timer_.stop();
            return;
        }
        delivered_ = 0;
        sinceEnabled_.start();
        timer_.start();
    }

    [[nodiscard]] bool isEnabled() const override { return timer_.isActive(); }

  private:
    void deliver() {
        if (missed_ == MissedTicks::Drop) {
            guarded(tick_);
            return;
        }
        // A tick may disable the timer or enable it anew, or show a box, whose event loop delivers the rest: each of
        // them is a new run. What is left after a long run is delivered at the next timeout.
        const qint64 run = ++run_;
        const qint64 due = sinceEnabled_.elapsed() / interval_;
        QElapsedTimer sinceRun;
        sinceRun.start();
        while (run == run_ && delivered_ < due && sinceRun.elapsed() < longestRunMs) {
            ++delivered_;
            guarded(tick_);
        }
    }

    QTimer timer_;
    QElapsedTimer sinceEnabled_;
    std::function<void()> tick_;
    qint64 interval_;
    qint64 delivered_ = 0;
    qint64 run_ = 0;
    MissedTicks missed_;
};

} // namespace

std::unique_ptr<Timer> QtTimers::create(int intervalMs, MissedTicks missed, std::function<void()> tick) {
    return std::make_unique<QtTimer>(intervalMs, missed, std::move(tick));
}

} // namespace orvel
