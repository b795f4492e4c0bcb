#pragma once

#include "platform/loudness.h"

#include <cstdint>
#include <span>
#include <vector>

namespace orvel {

/// A take's original as it can be compared with the take: its words stand where the take's do (see placeInOriginal()),
/// and it is as loud, within 0.1 LU where a limiter at -1 dBTP and 30 dB of gain can bring it there. Signed 16-bit
/// mono, as long as the take.
[[nodiscard]] std::vector<std::int16_t> comparable(std::span<const std::int16_t> take,
                                                   std::span<const std::int16_t> original, int sampleRate,
                                                   LoudnessMeter &meter);

} // namespace orvel
