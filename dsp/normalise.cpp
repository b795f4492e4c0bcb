#include "dsp/normalise.h"

#include "dsp/setting.h"

#include <algorithm>
#include <cmath>

namespace orvel {

void normalise(std::span<std::int16_t> samples, float percent, Dither &dither) {
    constexpr float most = 32767;
    const auto target = static_cast<int>(std::lround(setting(percent, 0, 100, 100) / 100 * most));
    if (target == 0 || samples.empty()) {
        std::fill(samples.begin(), samples.end(), std::int16_t{0});
        return;
    }
    int lowest = samples.front();
    int highest = samples.front();
    for (const std::int16_t sample : samples) {
        lowest = std::min<int>(lowest, sample);
        highest = std::max<int>(highest, sample);
    }
    if (lowest == highest) {
        return;
    }
    const int peak = std::max(highest, -lowest);
    const int loudest = highest == peak ? highest : lowest;
    const auto place = std::find(samples.begin(), samples.end(), loudest);
    const float factor = static_cast<float>(target) / static_cast<float>(peak);
    dither.rework(samples, [factor](std::span<float> block) {
        for (float &sample : block) {
            sample *= factor;
        }
    });
    // The dither may have moved the peak by a step, or made another one.
    for (std::int16_t &sample : samples) {
        sample = static_cast<std::int16_t>(std::clamp<int>(sample, -target, target));
    }
    *place = static_cast<std::int16_t>(loudest > 0 ? target : -target);
}

} // namespace orvel
