#pragma once

#include "dsp/dither.h"

#include <cstdint>
#include <span>

namespace orvel {

/// What limit() does.
struct LimiterSettings {
    float gain = 0;     ///< dB, before the limiter
    float ceiling = -1; ///< dBTP: dB below full scale of the sound between the samples
};

/// Amplifies signed 16-bit mono samples in place and turns down what would pass the ceiling, so softly that it cannot
/// be heard: the gain begins to fall 5 ms ahead of a peak, reaches what the peak needs when it is there, and comes back
/// within a quarter of a second. Where nothing passes the ceiling the sound is the amplified one, no more and no less.
///
/// The true peak is estimated as ITU-R BS.1770-4, Annex 2, says: by oversampling; here eight times, with a sinc under a
/// Kaiser window (J. F. Kaiser, "Nonrecursive Digital Filter Design Using the I0-sinh Window Function", 1974) of 32
/// samples. The gain is the smallest that the samples of the look-ahead need, let go exponentially and then averaged
/// over the look-ahead, which can never be more than any of them needs.
///
/// Settings that are no number change nothing.
void limit(std::span<std::int16_t> samples, const LimiterSettings &settings, int sampleRate, Dither &dither);

} // namespace orvel
