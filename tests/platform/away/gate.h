#pragma once

#include <chrono>
#include <condition_variable>
#include <mutex>

namespace orvel::test {

/// What a server does that hangs: whoever passes waits until it is opened. Opened at its end, whatever happens.
class Gate {
  public:
    void close() {
        const std::lock_guard lock(mutex_);
        isOpen_ = false;
    }
    void open() {
        {
            const std::lock_guard lock(mutex_);
            isOpen_ = true;
        }
        opened_.notify_all();
    }
    /// Half a minute at most: a test that forgets it must not hang.
    void pass() {
        std::unique_lock lock(mutex_);
        ++passing_;
        opened_.wait_for(lock, std::chrono::seconds(30), [this] { return isOpen_; });
        --passing_;
    }
    [[nodiscard]] int passing() {
        const std::lock_guard lock(mutex_);
        return passing_;
    }

  private:
    std::mutex mutex_;
    std::condition_variable opened_;
    bool isOpen_ = true;
    int passing_ = 0;
};

} // namespace orvel::test
