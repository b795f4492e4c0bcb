#pragma once

#include <cstdint>
#include <span>

namespace orvel::jet {

/// Encodes or decodes bytes in place with the RC4 stream of a four-byte key (little-endian).
void rc4(std::uint32_t key, std::span<std::uint8_t> bytes);

} // namespace orvel::jet
