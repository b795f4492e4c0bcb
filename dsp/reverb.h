#pragma once

#include "dsp/dither.h"

#include <cstdint>
#include <vector>

namespace orvel {

/// What lies outside the limits counts as the limit; what is no number as the lowest one.
struct ReverbSettings {
    float delay = 0; ///< from the sound to its first reflection, ms, 0..1000
    float depth = 1; ///< share of reverberation in the sound, percent, 1..100 (nothing else)
    float decay = 1; ///< reverberation time, percent of reverbSeconds, 1..100
    float rate = 1;  ///< speed at which the room moves, percent of reverbHertz, 1..100
};

/// What a decay of 100 % stands for: the time in which reverberation at 1 kHz falls by 60 dB.
inline constexpr float reverbSeconds = 3;
/// What a rate of 100 % stands for: how often a second the delay lines grow and shrink.
inline constexpr float reverbHertz = 1;

/// A room around signed 16-bit mono samples; lengthens them by delay and reverberation time, so that the sound has
/// fallen by 60 dB where the take ends.
///
/// y = (1 - d) / n * x + d / n * room(x), d = depth / 100, n = sqrt((1 - d)^2 + d^2): as the room lets through as much
/// energy as comes in, the take keeps its loudness at every depth. See Room for the room itself. Where peaks of both
/// meet past full scale, the whole take becomes just so much softer that nothing is cut off. An empty take stays empty.
void reverb(std::vector<std::int16_t> &samples, const ReverbSettings &settings, int sampleRate, Dither &dither);

} // namespace orvel
