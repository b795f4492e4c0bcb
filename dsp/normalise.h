#pragma once

#include "dsp/dither.h"

#include <cstdint>
#include <span>

namespace orvel {

/// Brings the highest peak of signed 16-bit mono samples to a level, in place. A constant offset (DC) is taken out
/// first, so that it is neither amplified nor counted as sound: y = (x - mean) * round(percent / 100 * 32767) / peak,
/// with the peak of x - mean. Silence, also with an offset, stays as it is.
/// percent: of full scale, 0..100; 0 makes silence.
void normalise(std::span<std::int16_t> samples, float percent, Dither &dither);

} // namespace orvel
