#pragma once

#include <algorithm>
#include <array>
#include <chrono>
#include <cmath>
#include <cstdint>

namespace orvel {

/// Which frame of a stream at 44100 Hz belongs to which moment, from many estimates of which one is off by milliseconds
/// now and then: the median of the latest decides. Allocates nothing.
class CaptureClock {
  public:
    using Clock = std::chrono::steady_clock;

    /// One estimate: the frame belongs to the moment.
    void note(std::int64_t frame, Clock::time_point moment) {
        const double seconds = std::chrono::duration<double>(moment.time_since_epoch()).count();
        starts_[count_ % starts_.size()] = seconds - static_cast<double>(frame) / rate;
        ++count_;
    }
    /// There were enough estimates to trust them.
    [[nodiscard]] bool isKnown() const { return count_ >= fewest; }
    /// Only where the clock is known.
    [[nodiscard]] Clock::time_point momentOf(std::int64_t frame) const {
        const std::chrono::duration<double> seconds(start() + static_cast<double>(frame) / rate);
        return Clock::time_point(std::chrono::duration_cast<Clock::duration>(seconds));
    }
    /// Only where the clock is known; below 0 for a moment before the stream's begin.
    [[nodiscard]] std::int64_t frameAt(Clock::time_point moment) const {
        const double seconds = std::chrono::duration<double>(moment.time_since_epoch()).count();
        return std::llrint((seconds - start()) * rate);
    }

  private:
    static constexpr double rate = 44100;
    static constexpr std::size_t fewest = 10;

    /// When frame 0 was, seconds.
    [[nodiscard]] double start() const {
        std::array<double, 32> sorted = starts_;
        const std::size_t known = std::min(count_, sorted.size());
        const auto middle = static_cast<std::ptrdiff_t>(known / 2);
        std::nth_element(sorted.begin(), sorted.begin() + middle, sorted.begin() + static_cast<std::ptrdiff_t>(known));
        return sorted.at(known / 2);
    }

    std::array<double, 32> starts_{};
    std::size_t count_ = 0;
};

} // namespace orvel
