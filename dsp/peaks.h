#pragma once

#include <cstdint>
#include <span>
#include <vector>

namespace orvel {

/// The lowest and the highest sample of a stretch, -1..1.
struct Extent {
    float low = 0;
    float high = 0;

    bool operator==(const Extent &) const = default;
};

/// The outline of mono samples, for drawing: any stretch of an hour is found as fast as one of a second. What is
/// appended is summed up per `finest` samples and, coarser and coarser, in stretches of sixteen times as many.
class Peaks {
  public:
    static constexpr std::int64_t finest = 64; ///< samples

    void clear();
    void append(std::span<const std::int16_t> samples);
    /// So many samples of which nothing but their highest absolute value, 0..1, is known.
    void append(std::int64_t samples, float peak);

    [[nodiscard]] std::int64_t samples() const { return samples_; }
    /// Of the samples from `from` up to `to`, both brought within what there is. As what is summed up has no parts, up
    /// to an eighth of the stretch (at least `finest` samples) beside either end may count too. Nothing for no stretch.
    [[nodiscard]] Extent between(std::int64_t from, std::int64_t to) const;

  private:
    struct Pair {
        std::int16_t low;
        std::int16_t high;
    };
    using Level = std::vector<Pair>;

    static Pair both(Pair one, Pair other);
    template <std::size_t count>
    static Pair extentOf(std::span<const std::int16_t, count> samples);
    void widen(Pair pair);
    void sumUp(std::size_t first);

    std::vector<Level> levels_;
    std::int64_t samples_ = 0;
};

} // namespace orvel
