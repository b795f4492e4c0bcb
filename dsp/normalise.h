#pragma once

#include "dsp/dither.h"

#include <cstdint>
#include <span>

namespace orvel {

/// Brings the highest peak of signed 16-bit mono samples to a level, in place and to the step:
/// y = x * round(percent / 100 * 32767) / peak. Nothing is filtered, so that low voices keep their shape and digital
/// silence beside the sound stays digital silence; an offset (DC) is sound like any other. A take of one value from
/// beginning to end is silence, and stays as it is.
/// percent: of full scale, 0..100 (what lies outside counts as the limit, what is no number as 100); 0 makes digital
/// silence.
void normalise(std::span<std::int16_t> samples, float percent, Dither &dither);

} // namespace orvel
