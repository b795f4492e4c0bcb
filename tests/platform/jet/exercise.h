#pragma once

#include <cstdint>
#include <span>

namespace orvel::test {

/// Does with these bytes, taken for a database, whatever the program may do: lists tables, queries them, reads values,
/// finds, sorts, changes. Errors of the kinds that callers expect are fine; anything else that is thrown comes through.
/// Reads at most some thousands of values. Gives the number of values read.
int exerciseDatabase(std::span<const std::uint8_t> bytes);

/// Takes the bytes for a statement and for a criterion.
void exerciseStatement(std::span<const std::uint8_t> bytes);

} // namespace orvel::test
