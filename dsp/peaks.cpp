#include "dsp/peaks.h"

#include <algorithm>
#include <cmath>

namespace orvel {

namespace {

constexpr std::size_t levelFactor = 16;
constexpr std::size_t levelCount = 5; // the coarsest tells of a minute and a half at once
constexpr std::int64_t partsOfStretch = 8;
constexpr float outlineScale = 32768.0F;

} // namespace

/// Two plain results in one loop become vector code; minmax_element does not.
template <std::size_t count>
Peaks::Pair Peaks::extentOf(std::span<const std::int16_t, count> samples) {
    std::int16_t low = samples.front();
    std::int16_t high = samples.front();
    for (const std::int16_t sample : samples) {
        low = std::min(low, sample);
        high = std::max(high, sample);
    }
    return {low, high};
}

void Peaks::clear() {
    levels_.clear();
    samples_ = 0;
}

void Peaks::append(std::span<const std::int16_t> samples) {
    const auto first = static_cast<std::size_t>(samples_ / finest);
    while (!samples.empty()) {
        const auto room = static_cast<std::size_t>(finest - samples_ % finest);
        const auto part = samples.first(std::min(room, samples.size()));
        // A block whose length is known becomes vector code without any rest.
        widen(part.size() == finest ? extentOf(part.first<finest>()) : extentOf(part));
        samples_ += static_cast<std::int64_t>(part.size());
        samples = samples.subspan(part.size());
    }
    sumUp(first);
}

void Peaks::append(std::int64_t samples, float peak) {
    const auto high = static_cast<std::int16_t>(std::lround(std::clamp(peak, 0.0F, 1.0F) * 32767.0F));
    const Pair pair{static_cast<std::int16_t>(-high), high};
    const auto first = static_cast<std::size_t>(samples_ / finest);
    for (const std::int64_t end = samples_ + samples; samples_ < end;) {
        widen(pair);
        samples_ += std::min(end - samples_, finest - samples_ % finest);
    }
    sumUp(first);
}

Peaks::Pair Peaks::both(Pair one, Pair other) {
    return {std::min(one.low, other.low), std::max(one.high, other.high)};
}

/// What stands at the next sample.
void Peaks::widen(Pair pair) {
    levels_.resize(levelCount);
    Level &level = levels_.front();
    if (static_cast<std::size_t>(samples_ / finest) == level.size()) {
        level.push_back(pair);
    } else {
        level.back() = both(level.back(), pair);
    }
}

/// Brings the coarser levels up to date, of which the finest has changed from here on.
void Peaks::sumUp(std::size_t first) {
    for (std::size_t number = 1; number < levels_.size(); ++number) {
        const Level &finer = levels_[number - 1];
        Level &level = levels_[number];
        first /= levelFactor;
        level.resize((finer.size() + levelFactor - 1) / levelFactor);
        for (std::size_t i = first; i < level.size(); ++i) {
            Pair sum = finer[i * levelFactor];
            for (std::size_t j = i * levelFactor + 1; j < std::min((i + 1) * levelFactor, finer.size()); ++j) {
                sum = both(sum, finer[j]);
            }
            level[i] = sum;
        }
    }
}

Extent Peaks::between(std::int64_t from, std::int64_t to) const {
    from = std::max<std::int64_t>(from, 0);
    to = std::min(to, samples_);
    if (from >= to) {
        return {};
    }
    std::int64_t block = finest;
    std::size_t level = 0;
    while (level + 1 < levelCount && block * std::int64_t{levelFactor} <= (to - from) / partsOfStretch) {
        block *= std::int64_t{levelFactor};
        ++level;
    }
    const Level &pairs = levels_.at(level);
    Pair widest = pairs.at(static_cast<std::size_t>(from / block));
    const auto end = static_cast<std::size_t>((to + block - 1) / block);
    for (auto index = static_cast<std::size_t>(from / block); index < end; ++index) {
        widest = both(widest, pairs.at(index));
    }
    return {static_cast<float>(widest.low) / outlineScale, static_cast<float>(widest.high) / outlineScale};
}

} // namespace orvel
