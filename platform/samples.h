#pragma once

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <span>

namespace orvel {

/// A sample whose full scale is 1, rounded to 16 bits; beyond full scale it is limited, and what is no number (damage)
/// is silence.
inline std::int16_t toInt16(float sample) noexcept {
    // The comparison of a NaN with itself fails.
    const float scaled = sample == sample ? sample * 32768.0F : 0.0F; // NOLINT(misc-redundant-expression)
    return static_cast<std::int16_t>(std::lrint(std::clamp(scaled, -32768.0F, 32767.0F)));
}

/// The highest absolute value of samples, 0..32768.
inline int highestOf(std::span<const std::int16_t> samples) noexcept {
    int highest = 0;
    for (const std::int16_t sample : samples) {
        const int size = sample < 0 ? -int{sample} : int{sample};
        highest = std::max(highest, size);
    }
    return highest;
}

/// One channel out of interleaved ones: one as it is, of two and more the mean of the first two, so that a voice on
/// both keeps its level and every sample. interleaved holds mono.size() * channels samples.
inline void mixToMono(std::span<const float> interleaved, std::size_t channels, std::span<std::int16_t> mono) noexcept {
    const float *frame = interleaved.data();
    for (std::int16_t &sample : mono) {
        // Of 16-bit samples the sum is exact in a float.
        sample = toInt16(channels == 1 ? frame[0] : (frame[0] + frame[1]) / 2);
        frame += channels;
    }
}

} // namespace orvel
