#pragma once

#include <QColor>

#include <cstdint>

namespace orvel {

/// A colour as the settings file keeps it: red in the low byte, blue in the high one.
inline QColor fromStoredColour(std::int32_t stored) {
    const auto bits = static_cast<std::uint32_t>(stored);
    return {static_cast<int>(bits & 0xFFU), static_cast<int>((bits >> 8U) & 0xFFU),
            static_cast<int>((bits >> 16U) & 0xFFU)};
}

} // namespace orvel
