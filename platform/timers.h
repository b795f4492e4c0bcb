#pragma once

#include <functional>
#include <memory>

namespace orvel {

/// A repeating timer of the window thread, made disabled. Destroying it stops it; its own tick must not destroy it.
class Timer {
  public:
    virtual ~Timer() = default;

    /// Enabling an enabled timer starts its interval anew.
    virtual void setEnabled(bool enabled) = 0;
    [[nodiscard]] virtual bool isEnabled() const = 0;
};

/// What a timer does about ticks that were due while the window thread was busy.
enum class MissedTicks {
    Drop,   ///< one tick, then the normal rhythm (count-down, screen updates)
    CatchUp ///< every tick that was due is delivered, so that counted time never drifts from the clock; between long
            ///< runs of them the window gets its other events
};

/// Makes timers.
class Timers {
  public:
    virtual ~Timers() = default;

    [[nodiscard]] virtual std::unique_ptr<Timer> create(int intervalMs, MissedTicks missed,
                                                        std::function<void()> tick) = 0;
};

} // namespace orvel
