#pragma once

#include <atomic>
#include <functional>
#include <memory>
#include <vector>

namespace orvel {

class Timer;
class Timers;

/// Runs work on a thread of its own and returns when that is done; meanwhile the window's events run, without the
/// presenter's clicks, which come after it. Throws what the work throws.
void whileWindowLives(const std::function<void()> &work);

/// Work that nobody waits for: on a thread of its own, one at a time.
class Aside {
  public:
    /// Set when nobody wants the result any more.
    using Stopped = std::atomic<bool>;

    explicit Aside(Timers &timers);
    /// Waits for what runs, which looks at its `Stopped` often enough.
    ~Aside();
    Aside(const Aside &) = delete;
    Aside &operator=(const Aside &) = delete;
    Aside(Aside &&) = delete;
    Aside &operator=(Aside &&) = delete;

    /// Takes the place of what runs, and begins when that has ended. work: owns all that it touches, and does not
    /// throw. done: called on the window's thread when it is over, if nothing took its place.
    void begin(std::function<void(const Stopped &stopped)> work, std::function<void()> done);
    /// What runs is not wanted any more.
    void drop();
    /// The same, and waits until it has ended.
    void end();
    [[nodiscard]] bool isBusy() const { return done_ != nullptr; }

  private:
    struct Job;

    void look();

    std::unique_ptr<Timer> tmrLook_;
    std::vector<std::shared_ptr<Job>> jobs_; ///< the last one is the one that is wanted, if any is
    std::function<void()> done_;             ///< of that one; none when none is
};

} // namespace orvel
