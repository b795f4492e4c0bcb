#pragma once

#include <cstdint>

namespace orvel {

/// A number of milliseconds split for a display.
struct TimeParts {
    std::int16_t hours = 0;
    std::int16_t minutes = 0;
    std::int16_t seconds = 0;
    std::int16_t millis = 0;
};

namespace helper {

/// Throws Overflow when the hours need more than 16 bits.
TimeParts splitTime(std::int32_t milliseconds);

} // namespace helper

} // namespace orvel
