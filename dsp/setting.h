#pragma once

#include <algorithm>
#include <cmath>

namespace orvel {

/// A stage's setting within its limits, whatever a settings file holds; what is no number becomes `neutral`.
inline float setting(float value, float least, float most, float neutral) {
    return std::isnan(value) ? neutral : std::clamp(value, least, most);
}

} // namespace orvel
