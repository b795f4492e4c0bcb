#pragma once

#include "platform/jet/value.h"

namespace orvel::jet {

/// Reads a decimal: a byte that is not 0 for a negative one, and 128 bits in four little-endian words, the highest word
/// first; scale is the number of digits behind the point. An integer if it is whole and fits 64 bits, else the nearest
/// double. Throws Error (Damaged).
Value readDecimal(const ByteView &bytes, std::uint8_t scale);

} // namespace orvel::jet
