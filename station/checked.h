#pragma once

#include <cstdint>

namespace orvel {

/// A number in a 16-bit field. Throws Overflow.
std::int16_t checkedInt16(std::int64_t number);
/// A number in a 32-bit field. Throws Overflow.
std::int32_t checkedInt32(std::int64_t number);

} // namespace orvel
