#pragma once

#include "platform/jet/row.h"

#include <cstdint>
#include <string>
#include <variant>

namespace orvel::jet {

/// A date and time as stored: days since 30 December 1899; the fraction is the time of day, also before that date.
struct Date {
    double days = 0;
    bool operator==(const Date &) const = default;
};

/// A field's value; std::monostate is null. Money and single are doubles.
using Value = std::variant<std::monostate, bool, std::int32_t, double, Date, std::u16string>;

/// Reads a column's value from a row; a yes/no value is never null. Throws Error (Damaged).
Value readValue(PageStore &store, const Column &column, const Row &row);

} // namespace orvel::jet
