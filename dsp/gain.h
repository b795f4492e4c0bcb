#pragma once

#include "dsp/dither.h"

#include <cstdint>
#include <span>

namespace orvel {

/// 10^(decibels / 20): the factor by which amplitudes change.
float decibelsToFactor(float decibels);

/// Multiplies signed 16-bit mono samples by a factor (0 or more), in place. What goes past full scale is cut off there;
/// a factor of 1 changes nothing, nor does one that is no number.
void amplify(std::span<std::int16_t> samples, float factor, Dither &dither);

} // namespace orvel
