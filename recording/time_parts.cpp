#include "recording/time_parts.h"

#include "station/checked.h"

namespace orvel {

TimeParts helper::splitTime(std::int32_t milliseconds) {
    constexpr std::int32_t second = 1000;
    constexpr std::int32_t minute = 60 * second;
    constexpr std::int32_t hour = 60 * minute;
    return {checkedInt16(milliseconds / hour), checkedInt16(milliseconds % hour / minute),
            checkedInt16(milliseconds % minute / second), checkedInt16(milliseconds % second)};
}

} // namespace orvel
