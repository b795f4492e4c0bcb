#include "station/checked.h"

#include "platform/runtime_error.h"

#include <limits>

namespace orvel {

namespace {

template <class Field>
Field checked(std::int64_t number) {
    if (number < std::numeric_limits<Field>::min() || number > std::numeric_limits<Field>::max()) {
        throw RuntimeError(ErrorNumber::Overflow);
    }
    return static_cast<Field>(number);
}

} // namespace

std::int16_t checkedInt16(std::int64_t number) {
    return checked<std::int16_t>(number);
}

std::int32_t checkedInt32(std::int64_t number) {
    return checked<std::int32_t>(number);
}

} // namespace orvel
