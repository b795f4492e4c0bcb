#pragma once

#include <algorithm>
#include <cmath>

namespace orvel {

/// What a player's volume, 0 .. 65535, makes of samples. A sound is heard as loud as its pressure to the power 0.6
/// (Stevens' law, ISO 532: the sone), so that the reverse makes half the knob half as loud.
inline float gainOfVolume(int volume) {
    constexpr double full = 65535;
    return static_cast<float>(std::pow(std::clamp<double>(volume, 0, full) / full, 1 / 0.6));
}

} // namespace orvel
