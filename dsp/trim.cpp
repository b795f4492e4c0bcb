#include "dsp/trim.h"

#include "dsp/denormals.h"
#include "dsp/high_pass.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <optional>
#include <span>

namespace orvel {

namespace {

constexpr std::ptrdiff_t blocksPerMs = 11;
constexpr std::ptrdiff_t windowBlocks = 10 * blocksPerMs;
/// Of a window: what is loud in it comes later, or the windows before would be loud as well.
constexpr std::ptrdiff_t beforeCut = 5 * blocksPerMs / 2;
constexpr std::ptrdiff_t fadeBlocks = 2 * blocksPerMs;
constexpr std::ptrdiff_t noiseBlocks = 150 * blocksPerMs;
constexpr std::ptrdiff_t clickBlocks = 10 * blocksPerMs;
constexpr std::ptrdiff_t clickReach = 300 * blocksPerMs;
constexpr std::ptrdiff_t settlingBlocks = 100 * blocksPerMs;

constexpr double rumbleEnds = 10;   ///< Hz, which leaves the lowest voices as they are
constexpr double accuracy = 0.985;  ///< of a power, for where the windows begin
constexpr double clickPower = 0.01; ///< of what is around a click at most, beside the click
constexpr double beginning = 0.25;  ///< of a window's sound may come before it is said to begin
constexpr float quietestThreshold = -90;

std::ptrdiff_t blockLength(int sampleRate) {
    return std::max<std::ptrdiff_t>(sampleRate / (1000 * blocksPerMs), 1);
}

/// The powers of a take, from one of its sides on; only as far as somebody asks.
template <typename Iterator>
class Powers {
  public:
    /// Samples left over behind the last whole block belong to none.
    Powers(Iterator samples, std::ptrdiff_t sampleCount, int sampleRate)
        : samples_(samples), length_(blockLength(sampleRate)), count_(sampleCount / length_),
          highPass_(rumbleEnds, sampleRate) {
        settle();
    }

    /// Windows that there are: one at every block, as long as it fits in.
    [[nodiscard]] std::ptrdiff_t windows() const { return std::max<std::ptrdiff_t>(count_ - windowBlocks + 1, 0); }
    /// Sum of squares of the window that begins with a block: of everything, less the most that was rumble in a quiet
    /// window before, but of what passes the filter at least. Without rumble a sound's own bass counts.
    double window(std::ptrdiff_t block) {
        const auto [filtered, all] = sumOf(block, windowBlocks);
        return std::max(std::min(filtered, all), all - 2 * rumble_);
    }
    double block(std::ptrdiff_t block) { return sumOf(block, 1).filtered; }
    /// What the filter takes off this window is rumble.
    void isQuiet(std::ptrdiff_t block) {
        const auto [filtered, all] = sumOf(block, windowBlocks);
        rumble_ = std::max(rumble_, all - filtered);
    }
    /// Of a window at a level in dB.
    [[nodiscard]] double windowAt(double decibels) const {
        constexpr double fullPower = 32768.0 * 32768.0;
        return fullPower * std::pow(10.0, decibels / 10) * static_cast<double>(windowBlocks * length_);
    }

  private:
    struct Sums {
        double filtered = 0;
        double all = 0;
    };

    /// The filter begins as if the take had gone on before, in the mirror: an offset is no sound.
    void settle() {
        const std::ptrdiff_t reach = std::min(settlingBlocks, count_) * length_;
        for (std::ptrdiff_t i = 0; i < reach; ++i) {
            offset_ += static_cast<double>(samples_[i]) / static_cast<double>(reach);
        }
        for (std::ptrdiff_t i = reach - 1; i > 0; --i) {
            highPass_.next(static_cast<double>(samples_[i]) - offset_);
        }
        for (std::ptrdiff_t w = 0; w < std::min(settlingBlocks, windows()); ++w) {
            isQuiet(w);
        }
    }
    Sums sumOf(std::ptrdiff_t first, std::ptrdiff_t count) {
        extend(first + count);
        const Sums &before = sums_[static_cast<std::size_t>(first)];
        const Sums &end = sums_[static_cast<std::size_t>(first + count)];
        return {end.filtered - before.filtered, end.all - before.all};
    }
    void extend(std::ptrdiff_t blocks) {
        while (std::ssize(sums_) <= blocks) {
            const std::ptrdiff_t start = (std::ssize(sums_) - 1) * length_;
            Sums sums = sums_.back();
            for (std::ptrdiff_t i = start; i < start + length_; ++i) {
                const double x = static_cast<double>(samples_[i]) - offset_;
                const double y = highPass_.next(x);
                sums.filtered += y * y;
                sums.all += x * x;
            }
            sums_.push_back(sums);
        }
    }

    Iterator samples_;
    std::ptrdiff_t length_;
    std::ptrdiff_t count_;
    HighPass highPass_;
    double offset_ = 0;
    double rumble_ = 0;
    std::vector<Sums> sums_{Sums{}}; ///< of all blocks before
};

/// Where in a window that is loud enough its sound begins.
template <typename Iterator>
std::ptrdiff_t onset(Powers<Iterator> &powers, std::ptrdiff_t window, double open) {
    double sum = 0;
    std::ptrdiff_t block = window;
    for (; block < window + windowBlocks - 1; ++block) {
        sum += powers.block(block);
        if (sum > beginning * open) {
            break;
        }
    }
    return block;
}

/// Whether what begins in a block, with nothing above the threshold before, is over at once, in all but silence.
template <typename Iterator>
bool isClick(Powers<Iterator> &powers, std::ptrdiff_t start, double open) {
    const std::ptrdiff_t lastBefore = start - 1 - windowBlocks;
    const std::ptrdiff_t firstAfter = start + 1 + clickBlocks;
    double click = 0;
    for (std::ptrdiff_t w = std::max<std::ptrdiff_t>(lastBefore + 1, 0); w < std::min(firstAfter, powers.windows());
         ++w) {
        click = std::max(click, powers.window(w));
    }
    const double quiet = std::min(clickPower * click, open);
    for (std::ptrdiff_t w = std::max<std::ptrdiff_t>(start - clickReach, 0); w <= lastBefore; ++w) {
        if (powers.window(w) > quiet) {
            return false;
        }
    }
    for (std::ptrdiff_t w = firstAfter; w < std::min(start + clickReach, powers.windows()); ++w) {
        if (powers.window(w) > quiet) {
            return false;
        }
    }
    return true;
}

/// The noise under a take: the windows of the quietest stretch before the first sound.
class Noise {
  public:
    void add(double window) {
        sum_ += window;
        squares_ += window * window;
        if (++count_ < noiseBlocks) {
            return;
        }
        const double mean = sum_ / noiseBlocks;
        if (!power_ || mean < *power_) {
            power_ = mean;
            unrest_ = std::sqrt(std::max(squares_ / noiseBlocks - mean * mean, 0.0)) / (mean + 1);
        }
        sum_ = 0;
        squares_ = 0;
        count_ = 0;
    }
    /// What is left in the take of a sound of so much power: the noise adds its own (if there is little of it, that is
    /// sure), but some of both amplitudes is the same with opposite signs. The more the noise's windows differ, the
    /// narrower it is, and the more it can resemble the sound: a seventh for white noise, almost
    /// half for pink (what that is too much keeps a syllable just below the threshold; what is too little cuts a word).
    /// As long as nothing is known, there is noise at -10 dB.
    [[nodiscard]] double leftOf(double sound) const {
        const double little = 0.1 * sound;
        const double noise = power_.value_or(little);
        const double likeness = std::clamp(1.7 * unrest_, 0.14, 0.46);
        const double added = noise <= little ? noise : 0;
        return std::max(accuracy * sound + added - 2 * likeness * std::sqrt(sound * noise), 0.0);
    }

  private:
    std::optional<double> power_;
    double unrest_ = 1; ///< standard deviation of the windows, of their mean
    double sum_ = 0;
    double squares_ = 0;
    std::ptrdiff_t count_ = 0;
};

/// Blocks to remove from the side where the samples begin.
template <typename Iterator>
std::ptrdiff_t surplus(Powers<Iterator> powers, float threshold) {
    const double wanted = powers.windowAt(static_cast<double>(std::max(threshold, quietestThreshold)));
    Noise noise;
    for (std::ptrdiff_t window = 0; window < powers.windows(); ++window) {
        const double open = noise.leftOf(wanted);
        const double power = powers.window(window);
        if (power <= open) {
            noise.add(power);
            powers.isQuiet(window);
            continue;
        }
        const std::ptrdiff_t start = onset(powers, window, open);
        if (!isClick(powers, start, open)) {
            // What begins with the take has nothing before it.
            return window > 0 ? window + beforeCut : 0;
        }
        window = start + clickBlocks;
    }
    return 0;
}

/// From silence to the full sound, in a raised cosine.
template <typename Iterator>
void fadeIn(Iterator samples, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i, ++samples) {
        const double progress = (static_cast<double>(i) + 0.5) / static_cast<double>(count);
        *samples *= static_cast<float>(0.5 - 0.5 * std::cos(std::numbers::pi * progress));
    }
}

std::size_t fadeLength(const std::vector<std::int16_t> &samples, int sampleRate) {
    return std::min(samples.size(), static_cast<std::size_t>(fadeBlocks * blockLength(sampleRate)));
}

/// Also where the threshold is no number.
bool leavesEverything(float threshold, int sampleRate) {
    return !(threshold < 0) || sampleRate <= 0;
}

} // namespace

void trimStart(std::vector<std::int16_t> &samples, float threshold, int sampleRate, Dither &dither, std::int32_t &k) {
    if (leavesEverything(threshold, sampleRate)) {
        return;
    }
    const NoDenormals noDenormals;
    const std::ptrdiff_t removed =
        surplus(Powers(samples.begin(), std::ssize(samples), sampleRate), threshold) * blockLength(sampleRate);
    if (removed > 0) {
        samples.erase(samples.begin(), samples.begin() + removed);
        const std::span<std::int16_t> faded = std::span(samples).first(fadeLength(samples, sampleRate));
        std::vector<float> values(faded.begin(), faded.end());
        fadeIn(values.begin(), values.size());
        dither.quantise(values, faded);
        k += static_cast<std::int32_t>(removed);
    }
}

void trimEnd(std::vector<std::int16_t> &samples, float threshold, int sampleRate, Dither &dither, std::int32_t &k) {
    if (leavesEverything(threshold, sampleRate)) {
        return;
    }
    const NoDenormals noDenormals;
    const std::ptrdiff_t removed =
        surplus(Powers(samples.rbegin(), std::ssize(samples), sampleRate), threshold) * blockLength(sampleRate);
    if (removed > 0) {
        samples.resize(samples.size() - static_cast<std::size_t>(removed));
        const std::span<std::int16_t> faded = std::span(samples).last(fadeLength(samples, sampleRate));
        std::vector<float> values(faded.begin(), faded.end());
        fadeIn(values.rbegin(), values.size());
        dither.quantise(values, faded);
        k += static_cast<std::int32_t>(removed);
    }
}

} // namespace orvel
