#pragma once

#include "platform/timers.h"

#include <cstdint>
#include <vector>

namespace orvel {

/// A clock moved by hand.
class ManualTimers : public Timers {
  public:
    [[nodiscard]] std::unique_ptr<Timer> create(int intervalMs, MissedTicks missed,
                                                std::function<void()> tick) override;

    /// Lets time pass; due ticks run in the order of their moments.
    void advance(std::int64_t milliseconds);
    /// Time that passes while the window thread is busy: afterwards one tick of dropping timers, every tick of the
    /// others.
    void stall(std::int64_t milliseconds);
    /// Intervals in milliseconds of the timers that are enabled, in the order of their making.
    [[nodiscard]] std::vector<int> enabledIntervals() const;

  private:
    class ManualTimer;

    ManualTimer *nextDue(std::int64_t until) const;

    std::vector<ManualTimer *> timers_;
    std::int64_t now_ = 0;
};

} // namespace orvel
