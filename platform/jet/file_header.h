#pragma once

#include "platform/jet/page_store.h"

#include <span>

namespace orvel::jet {

/// How many bytes at the start of a file readFormat needs.
constexpr std::size_t headerSize = 0x98;

/// Reads the kind of the file from its first bytes (mdbtools' HACKING document, "Database Definition Page").
/// Throws NotADatabase, or Protected for a file with a password or with an encryption other than the page key.
Format readFormat(std::span<const std::uint8_t> start);

} // namespace orvel::jet
