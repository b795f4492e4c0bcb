#pragma once

#include <cstdint>
#include <vector>

namespace orvel {

/// The volumes of a source's channels, as the server counts them (65536 is 100 %, along the ear's curve).
struct PulseLevels {
    std::vector<std::uint32_t> volumes;
    std::vector<int> positions; ///< of the channels: left, right and so on, as the server numbers them

    bool operator==(const PulseLevels &) const = default;

    /// The loudest channel, 0 .. 65535; 65535 is 100 %, and all that is more.
    [[nodiscard]] int volume() const;
    /// The same balance with the loudest channel at this volume, 0 .. 65535.
    [[nodiscard]] PulseLevels withVolume(int volume) const;
    /// Whether some channels are left and others right.
    [[nodiscard]] bool canBalance() const;
    /// -100 (left) .. 100 (right).
    [[nodiscard]] int balance() const;
    [[nodiscard]] PulseLevels withBalance(int balance) const;
};

} // namespace orvel
