#include "platform/fake/manual_timers.h"

#include "platform/guarded.h"

#include <algorithm>

namespace orvel {

class ManualTimers::ManualTimer : public Timer {
  public:
    ManualTimer(ManualTimers &clock, int intervalMs, MissedTicks missed, std::function<void()> tick)
        : clock_(clock), tick_(std::move(tick)), interval_(std::max(intervalMs, 1)), missed_(missed) {
        clock_.timers_.push_back(this);
    }
    ManualTimer(const ManualTimer &) = delete;
    ManualTimer &operator=(const ManualTimer &) = delete;
    ManualTimer(ManualTimer &&) = delete;
    ManualTimer &operator=(ManualTimer &&) = delete;
    ~ManualTimer() override { std::erase(clock_.timers_, this); }

    void setEnabled(bool enabled) override {
        enabled_ = enabled;
        due_ = clock_.now_ + interval_;
    }
    [[nodiscard]] bool isEnabled() const override { return enabled_; }
    [[nodiscard]] std::int64_t due() const { return due_; }
    [[nodiscard]] int interval() const { return interval_; }

    void run() {
        due_ += interval_;
        guarded(tick_);
    }

    /// The ticks that a stall swallowed.
    void skipTo(std::int64_t now) {
        while (missed_ == MissedTicks::Drop && enabled_ && due_ + interval_ <= now) {
            due_ += interval_;
        }
    }

  private:
    ManualTimers &clock_;
    std::function<void()> tick_;
    int interval_;
    std::int64_t due_ = 0;
    MissedTicks missed_;
    bool enabled_ = false;
};

std::unique_ptr<Timer> ManualTimers::create(int intervalMs, MissedTicks missed, std::function<void()> tick) {
    return std::make_unique<ManualTimer>(*this, intervalMs, missed, std::move(tick));
}

ManualTimers::ManualTimer *ManualTimers::nextDue(std::int64_t until) const {
    ManualTimer *next = nullptr;
    for (ManualTimer *timer : timers_) {
        if (timer->isEnabled() && timer->due() <= until && (next == nullptr || timer->due() < next->due())) {
            next = timer;
        }
    }
    return next;
}

void ManualTimers::advance(std::int64_t milliseconds) {
    const std::int64_t until = now_ + milliseconds;
    while (ManualTimer *timer = nextDue(until)) {
        now_ = std::max(now_, timer->due());
        timer->run();
    }
    now_ = until;
}

std::vector<int> ManualTimers::enabledIntervals() const {
    std::vector<int> intervals;
    for (const ManualTimer *timer : timers_) {
        if (timer->isEnabled()) {
            intervals.push_back(timer->interval());
        }
    }
    return intervals;
}

void ManualTimers::stall(std::int64_t milliseconds) {
    for (ManualTimer *timer : timers_) {
        timer->skipTo(now_ + milliseconds);
    }
    advance(milliseconds);
}

} // namespace orvel
