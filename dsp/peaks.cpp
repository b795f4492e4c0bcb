#include "dsp/peaks.h"

#include <algorithm>
#include <cmath>

namespace orvel {

namespace {

constexpr std::int64_t levelFactor = 16;
constexpr std::size_t levelCount = 5; // the coarsest tells of a minute and a half at once
constexpr std::int64_t partsOfStretch = 8;
constexpr float outlineScale = 32768.0F;

} // namespace

void Peaks::clear() {
    levels_.clear();
    samples_ = 0;
}

void Peaks::append(std::span<const std::int16_t> samples) {
    while (!samples.empty()) {
        const auto room = static_cast<std::size_t>(finest - samples_ % finest);
        const auto part = samples.first(std::min(room, samples.size()));
        // Two plain loops become vector code; minmax_element does not.
        std::int16_t low = part.front();
        std::int16_t high = part.front();
        for (const std::int16_t sample : part) {
            low = std::min(low, sample);
            high = std::max(high, sample);
        }
        widen(samples_, {low, high});
        samples_ += static_cast<std::int64_t>(part.size());
        samples = samples.subspan(part.size());
    }
}

void Peaks::append(std::int64_t samples, float peak) {
    const auto high = static_cast<std::int16_t>(std::lround(std::clamp(peak, 0.0F, 1.0F) * 32767.0F));
    const Pair pair{static_cast<std::int16_t>(-high), high};
    for (const std::int64_t end = samples_ + samples; samples_ < end;) {
        widen(samples_, pair);
        samples_ += std::min(end - samples_, finest - samples_ % finest);
    }
}

void Peaks::widen(std::int64_t sample, Pair pair) {
    levels_.resize(levelCount);
    std::int64_t block = finest;
    for (Level &level : levels_) {
        const auto index = static_cast<std::size_t>(sample / block);
        if (index == level.size()) {
            level.push_back(pair);
        } else {
            Pair &known = level.at(index);
            known = {std::min(known.low, pair.low), std::max(known.high, pair.high)};
        }
        block *= levelFactor;
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
    while (level + 1 < levelCount && block * levelFactor <= (to - from) / partsOfStretch) {
        block *= levelFactor;
        ++level;
    }
    const Level &pairs = levels_.at(level);
    Pair widest = pairs.at(static_cast<std::size_t>(from / block));
    const auto end = static_cast<std::size_t>((to + block - 1) / block);
    for (auto index = static_cast<std::size_t>(from / block); index < end; ++index) {
        widest = {std::min(widest.low, pairs.at(index).low), std::max(widest.high, pairs.at(index).high)};
    }
    return {static_cast<float>(widest.low) / outlineScale, static_cast<float>(widest.high) / outlineScale};
}

} // namespace orvel
