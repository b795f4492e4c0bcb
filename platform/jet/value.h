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

/// A value of a type that is not read (binary data, identifiers, calculated columns): there is one, which null would
/// deny.
struct Unreadable {
    bool operator==(const Unreadable &) const = default;
};

/// A field's value; std::monostate is null. Money, single and decimals with a fraction are doubles; big integers and
/// other decimals are 64-bit integers.
using Value = std::variant<std::monostate, bool, std::int32_t, std::int64_t, double, Date, std::u16string, Unreadable>;

/// Money is stored as a whole number: so many to a whole unit.
inline constexpr double moneyScale = 10000.0;

/// Reads a column's value from a row; a yes/no value is never null. Throws Error (Damaged).
Value readValue(PageStore &store, const Column &column, const Row &row);

} // namespace orvel::jet
