#include "platform/qt/qt_timers.h"

#include <QElapsedTimer>
#include <QTimer>

namespace orvel {

namespace {

class QtTimer : public Timer {
  public:
    QtTimer(int intervalMs, MissedTicks missed, std::function<void()> tick)
        : tick_(std::move(tick)), interval_(intervalMs), missed_(missed) {
        timer_.setTimerType(Qt::PreciseTimer);
        timer_.setInterval(intervalMs);
        QObject::connect(&timer_, &QTimer::timeout, [this] { deliver(); });
    }

    void setEnabled(bool enabled) override {
        if (!enabled) {
            timer_.stop();
            return;
        }
        delivered_ = 0;
        since_.start();
        timer_.start();
    }

    [[nodiscard]] bool isEnabled() const override { return timer_.isActive(); }

  private:
    void deliver() {
        if (missed_ == MissedTicks::Drop) {
            tick_();
            return;
        }
        // How many are due is settled before the first of them: ticks that are slower than their interval must not
        // keep the window from its other events. The tick itself may disable or restart the timer.
        const qint64 due = since_.elapsed() / interval_;
        const qint64 enabling = ++enabling_;
        while (timer_.isActive() && delivered_ < due && enabling == enabling_) {
            ++delivered_;
            tick_();
        }
    }

    QTimer timer_;
    QElapsedTimer since_;
    std::function<void()> tick_;
    qint64 interval_;
    qint64 delivered_ = 0;
    qint64 enabling_ = 0; ///< tells a nested delivery from the one around it
    MissedTicks missed_;
};

} // namespace

std::unique_ptr<Timer> QtTimers::create(int intervalMs, MissedTicks missed, std::function<void()> tick) {
    return std::make_unique<QtTimer>(intervalMs, missed, std::move(tick));
}

} // namespace orvel
