#include "dsp/limiter.h"

#include "dsp/gain.h"
#include "dsp/wide_vectors.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <deque>
#include <numbers>
#include <vector>

namespace orvel {

namespace {

namespace limiting {

constexpr std::size_t phases = 8; ///< points looked at from one sample to the next
constexpr std::size_t reach = 16; ///< samples on either side that a point between two is made of
constexpr std::size_t taps = 2 * reach;
constexpr double lookAheadSeconds = 0.005;
constexpr double releaseSeconds = 0.08; ///< time constant
constexpr float fullScale = 32768;
/// What rounding, dither and the movement of the gain add, and what lies between the points.
constexpr float margin = 0.995F;

/// The modified Bessel function I0, by its power series.
double besselI0(double x) {
    double sum = 1;
    double term = 1;
    for (int k = 1; k < 40; ++k) {
        term *= (x / 2 / k) * (x / 2 / k);
        sum += term;
    }
    return sum;
}

using Point = std::array<float, taps>;

/// What makes the points between two samples out of their neighbours.
class Interpolator {
  public:
    Interpolator() {
        for (std::size_t phase = 1; phase < phases; ++phase) {
            makePoint(points_[phase - 1], static_cast<double>(phase) / phases);
        }
    }

    /// The highest absolute value of the points between the samples [reach - 1] and [reach] of around.
    [[nodiscard]] float highest(const float *around) const;

    /// No point is higher than the highest sample that it is made of, times this.
    [[nodiscard]] float bound() const {
        float bound = 1;
        for (const Point &point : points_) {
            float sum = 0;
            for (const float factor : point) {
                sum += std::abs(factor);
            }
            bound = std::max(bound, sum);
        }
        return bound;
    }

  private:
    static void makePoint(Point &point, double at) {
        constexpr double kaiser = 7;
        double sum = 0;
        for (std::size_t i = 0; i < taps; ++i) {
            const double distance = static_cast<double>(i) - static_cast<double>(reach - 1) - at;
            const double edge = distance / static_cast<double>(reach);
            const double angle = std::numbers::pi * distance;
            const double value = std::sin(angle) / angle * besselI0(kaiser * std::sqrt(std::max(0.0, 1 - edge * edge)));
            point[i] = static_cast<float>(value);
            sum += value;
        }
        for (float &factor : point) {
            factor = static_cast<float>(static_cast<double>(factor) / sum);
        }
    }

    std::array<Point, phases - 1> points_{};
};

ORVEL_WIDE_VECTORS float Interpolator::highest(const float *around) const {
    float highest = 0;
    for (const Point &point : points_) {
        // Sums side by side, so that the processor can run them at once.
        std::array<float, 8> sums{};
        for (std::size_t i = 0; i < taps; i += sums.size()) {
            for (std::size_t lane = 0; lane < sums.size(); ++lane) {
                sums[lane] += point[i + lane] * around[i + lane];
            }
        }
        float sum = 0;
        for (const float part : sums) {
            sum += part;
        }
        highest = std::max(highest, std::abs(sum));
    }
    return highest;
}

/// The highest the sound gets around every sample, in the order of the samples.
class TruePeaks {
  public:
    static constexpr std::size_t block = 64; ///< samples that are looked at together

    explicit TruePeaks(std::span<const std::int16_t> samples, float ofInterest)
        : samples_(samples), quiet_(ofInterest / interpolator_.bound()) {}

    /// Around the next sample: from the one before it to the one after it.
    float next() {
        const float before = between_;
        between_ = highestAfter(at_);
        const float here = at_ < samples_.size() ? std::abs(static_cast<float>(samples_[at_])) : 0.0F;
        ++at_;
        return std::max({before, here, between_});
    }

  private:
    /// Between a sample and the next one; 0 where it is of no interest.
    float highestAfter(std::size_t at) {
        if (at % block == 0) {
            load(at);
        }
        return isLoud_ ? interpolator_.highest(window_.data() + at % block + 1) : 0.0F;
    }

    /// The samples of a block with all that its points are made of, as floats.
    void load(std::size_t start) {
        float loudest = 0;
        for (std::size_t i = 0; i < window_.size(); ++i) {
            const std::size_t from = start + i;
            const bool isThere = from >= reach && from - reach < samples_.size();
            window_[i] = isThere ? static_cast<float>(samples_[from - reach]) : 0.0F;
            loudest = std::max(loudest, std::abs(window_[i]));
        }
        isLoud_ = loudest > quiet_;
    }

    std::span<const std::int16_t> samples_;
    Interpolator interpolator_;
    float quiet_;
    std::array<float, block + taps + 1> window_{};
    bool isLoud_ = false;
    float between_ = 0;
    std::size_t at_ = 0;
};

/// The smallest of the latest so many values.
class SlidingMinimum {
  public:
    explicit SlidingMinimum(std::size_t window) : window_(window) {}

    float next(float value) {
        while (!rising_.empty() && rising_.back().value >= value) {
            rising_.pop_back();
        }
        rising_.push_back({at_, value});
        if (rising_.front().at + window_ <= at_) {
            rising_.pop_front();
        }
        ++at_;
        return rising_.front().value;
    }

  private:
    struct Entry {
        std::size_t at;
        float value;
    };
    std::size_t window_;
    std::size_t at_ = 0;
    std::deque<Entry> rising_; ///< those that may be the smallest yet
};

/// The mean of the latest so many values; before there are any they were 1.
class MovingAverage {
  public:
    explicit MovingAverage(std::size_t window)
        : values_(window, 1.0F), sum_(static_cast<double>(window)), part_(1.0 / static_cast<double>(window)) {}

    float next(float value) {
        sum_ += static_cast<double>(value) - static_cast<double>(values_[at_]);
        values_[at_] = value;
        at_ = at_ + 1 == values_.size() ? 0 : at_ + 1;
        return static_cast<float>(sum_ * part_);
    }

  private:
    std::vector<float> values_;
    std::size_t at_ = 0;
    double sum_;
    double part_;
};

/// The limiter's gain: what goes in is what each sample needs, what comes out is for the sample of delay() before.
class SmoothGain {
  public:
    explicit SmoothGain(int sampleRate)
        : half_(std::max(leastHalf, static_cast<std::size_t>(sampleRate * lookAheadSeconds / 2))),
          minimum_(2 * half_ - 1), first_(half_), second_(half_),
          release_(static_cast<float>(-std::expm1(-1 / (sampleRate * releaseSeconds)))) {}

    /// The two averages together are as long as the minimum's window.
    [[nodiscard]] std::size_t delay() const { return 2 * half_ - 2; }

    float next(float needed) {
        const float smallest = minimum_.next(needed);
        released_ = std::min(smallest, released_ + (1 - released_) * release_);
        return std::min(1.0F, second_.next(first_.next(released_)));
    }

  private:
    /// Samples are replaced in place: what TruePeaks looks at lies ahead of them.
    static constexpr std::size_t leastHalf = TruePeaks::block;

    std::size_t half_;
    SlidingMinimum minimum_;
    MovingAverage first_;
    MovingAverage second_;
    float release_;
    float released_ = 1;
};

} // namespace limiting

} // namespace

void limit(std::span<std::int16_t> samples, const LimiterSettings &settings, int sampleRate, Dither &dither) {
    const float factor = decibelsToFactor(settings.gain);
    const float ceiling = limiting::fullScale * limiting::margin * decibelsToFactor(settings.ceiling) / factor;
    if (!std::isfinite(factor) || !std::isfinite(ceiling) || ceiling <= 0 || sampleRate <= 0) {
        return;
    }
    limiting::TruePeaks peaks(samples, ceiling);
    limiting::SmoothGain gain(sampleRate);
    const auto nextGain = [&] {
        const float peak = peaks.next();
        return gain.next(peak > ceiling ? ceiling / peak : 1.0F);
    };
    for (std::size_t i = 0; i < gain.delay(); ++i) {
        nextGain();
    }
    dither.rework(samples, [&](std::span<float> block) {
        for (float &sample : block) {
            sample *= factor * nextGain();
        }
    });
}

} // namespace orvel
