#include "dsp/trim.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <optional>
#include <span>

namespace orvel {

namespace {

// In blocks of 1 ms.
constexpr std::ptrdiff_t speechWindow = 40;
constexpr int speechBlocks = 20;
constexpr std::ptrdiff_t longestGap = 100;
constexpr std::ptrdiff_t longestSlope = 50;
constexpr std::ptrdiff_t slopeGap = 5;
constexpr std::size_t meanReach = 25;
constexpr std::ptrdiff_t margin = 1;
constexpr std::size_t fadeMs = 5;
constexpr float hysteresis = 3;

std::size_t blockLength(int sampleRate) {
    return static_cast<std::size_t>(std::max(sampleRate / 1000, 1));
}

/// Sums over the samples of blocks, and over those of all blocks before.
struct Sums {
    std::vector<std::int64_t> squares;
    std::vector<std::int64_t> before{0};
};

/// Of whole blocks; samples left over at the end belong to no block.
Sums sumsOf(std::span<const std::int16_t> samples, std::size_t length) {
    const std::size_t count = samples.size() / length;
    Sums sums;
    sums.squares.reserve(count);
    sums.before.reserve(count + 1);
    for (std::size_t b = 0; b < count; ++b) {
        std::int32_t sum = 0;
        std::int64_t squares = 0;
        for (const std::int16_t sample : samples.subspan(b * length, length)) {
            sum += sample;
            squares += std::int64_t{sample} * sample;
        }
        sums.squares.push_back(squares);
        sums.before.push_back(sums.before.back() + sum);
    }
    return sums;
}

/// Mean squares of the blocks around the mean of their neighbourhood: before, after or on both sides, whatever gives
/// least. Beside loud speech, the mean of the quiet side is the offset.
std::vector<float> powersOf(const Sums &sums, std::size_t length) {
    const std::size_t count = sums.squares.size();
    const auto samples = static_cast<double>(length);
    std::vector<float> powers(count);
    for (std::size_t b = 0; b < count; ++b) {
        const auto square = static_cast<double>(sums.squares[b]);
        const auto sum = static_cast<double>(sums.before[b + 1] - sums.before[b]);
        const auto around = [&](std::size_t first, std::size_t end) {
            const double mean = static_cast<double>(sums.before[end] - sums.before[first]) /
                                (samples * static_cast<double>(end - first));
            return square - mean * (2 * sum - mean * samples);
        };
        const std::size_t first = b - std::min(b, meanReach);
        const std::size_t end = std::min(b + 1 + meanReach, count);
        const double least = std::min({around(first, b + 1), around(b, end), around(first, end)});
        powers[b] = static_cast<float>(std::max(least, 0.0) / samples);
    }
    return powers;
}

float powerAt(float decibels) {
    constexpr double fullScale = 32768.0 * 32768.0;
    return static_cast<float>(fullScale * std::pow(10.0, static_cast<double>(decibels) / 10.0));
}

/// The first block of the first window that is loud for half of its time.
template <typename Iterator>
std::optional<std::ptrdiff_t> findSpeech(Iterator powers, std::ptrdiff_t count, float open) {
    int loud = 0;
    for (std::ptrdiff_t b = 0; b < count; ++b) {
        loud += powers[b] > open ? 1 : 0;
        if (b >= speechWindow) {
            loud -= powers[b - speechWindow] > open ? 1 : 0;
        }
        if (loud >= speechBlocks) {
            const std::ptrdiff_t start = std::max<std::ptrdiff_t>(b - speechWindow + 1, 0);
            return std::find_if(powers + start, powers + b, [open](float power) { return power > open; }) - powers;
        }
    }
    return std::nullopt;
}

/// The earliest block from which a level is reached again and again, never more than `gap` blocks apart, up to `start`.
template <typename Iterator>
std::ptrdiff_t reachBack(Iterator powers, std::ptrdiff_t start, std::ptrdiff_t gap, float level,
                         std::ptrdiff_t earliest = 0) {
    for (std::ptrdiff_t b = start - 1; b >= earliest && start - b <= gap; --b) {
        if (powers[b] > level) {
            start = b;
        }
    }
    return start;
}

/// Blocks to remove from the side where the iterator begins.
template <typename Iterator>
std::ptrdiff_t surplus(Iterator powers, std::ptrdiff_t count, float threshold) {
    const float open = powerAt(threshold);
    const std::optional<std::ptrdiff_t> speech = findSpeech(powers, count, open);
    if (!speech) {
        return 0;
    }
    const std::ptrdiff_t loud = reachBack(powers, *speech, longestGap, open);
    const std::ptrdiff_t earliest = std::max<std::ptrdiff_t>(loud - longestSlope, 0);
    const std::ptrdiff_t start = reachBack(powers, loud, slopeGap, powerAt(threshold - hysteresis), earliest);
    return std::max<std::ptrdiff_t>(start - margin, 0);
}

/// From silence to the full sound, in a raised cosine.
template <typename Iterator>
void fadeIn(Iterator samples, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i, ++samples) {
        const double progress = (static_cast<double>(i) + 0.5) / static_cast<double>(count);
        *samples *= static_cast<float>(0.5 - 0.5 * std::cos(M_PI * progress));
    }
}

std::span<std::int16_t> edge(std::span<std::int16_t> samples, std::size_t count, bool atEnd) {
    return atEnd ? samples.last(count) : samples.first(count);
}

void fade(std::span<std::int16_t> samples, bool atEnd, std::size_t length, Dither &dither) {
    const std::size_t count = std::min(samples.size(), fadeMs * length);
    const std::span<std::int16_t> faded = edge(samples, count, atEnd);
    std::vector<float> values(faded.begin(), faded.end());
    if (atEnd) {
        fadeIn(values.rbegin(), count);
    } else {
        fadeIn(values.begin(), count);
    }
    dither.quantise(values, faded);
}

} // namespace

void trimStart(std::vector<std::int16_t> &samples, float threshold, int sampleRate, Dither &dither, std::int32_t &k) {
    if (threshold >= 0 || sampleRate <= 0) {
        return;
    }
    const std::size_t length = blockLength(sampleRate);
    const std::vector<float> powers = powersOf(sumsOf(samples, length), length);
    const auto removed = surplus(powers.begin(), std::ssize(powers), threshold) * static_cast<std::ptrdiff_t>(length);
    if (removed > 0) {
        samples.erase(samples.begin(), samples.begin() + removed);
        fade(samples, false, length, dither);
        k += static_cast<std::int32_t>(removed);
    }
}

void trimEnd(std::vector<std::int16_t> &samples, float threshold, int sampleRate, Dither &dither, std::int32_t &k) {
    if (threshold >= 0 || sampleRate <= 0) {
        return;
    }
    const std::size_t length = blockLength(sampleRate);
    const std::vector<float> powers = powersOf(sumsOf(samples, length), length);
    const std::ptrdiff_t blocks = surplus(powers.rbegin(), std::ssize(powers), threshold);
    if (blocks > 0) {
        const auto removed = static_cast<std::size_t>(blocks) * length + samples.size() % length;
        samples.resize(samples.size() - removed);
        fade(samples, true, length, dither);
        k += static_cast<std::int32_t>(removed);
    }
}

} // namespace orvel
