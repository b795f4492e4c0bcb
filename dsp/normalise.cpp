#include "dsp/normalise.h"

#include <algorithm>
#include <cmath>

namespace orvel {

void normalise(std::span<std::int16_t> samples, float percent, Dither &dither) {
    if (samples.empty()) {
        return;
    }
    int lowest = samples.front();
    int highest = samples.front();
    std::int64_t sum = 0;
    for (const std::int16_t sample : samples) {
        lowest = std::min<int>(lowest, sample);
        highest = std::max<int>(highest, sample);
        sum += sample;
    }
    if (lowest == highest) {
        return;
    }
    const double mean = static_cast<double>(sum) / static_cast<double>(samples.size());
    const double peak = std::max(highest - mean, mean - lowest);
    const double target = std::round(static_cast<double>(percent) / 100.0 * 32767.0);
    const auto factor = static_cast<float>(target / peak);
    const auto offset = static_cast<float>(mean);
    dither.rework(samples, [factor, offset](std::span<float> block) {
        for (float &sample : block) {
            sample = (sample - offset) * factor;
        }
    });
}

} // namespace orvel
