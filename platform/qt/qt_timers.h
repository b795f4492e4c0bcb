#pragma once

#include "platform/timers.h"

namespace orvel {

/// Timers of Qt's event loop.
class QtTimers : public Timers {
  public:
    [[nodiscard]] std::unique_ptr<Timer> create(int intervalMs, MissedTicks missed,
                                                std::function<void()> tick) override;
};

} // namespace orvel
