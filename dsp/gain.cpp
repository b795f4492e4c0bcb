#include "dsp/gain.h"

#include "dsp/setting.h"

#include <cmath>

namespace orvel {

float decibelsToFactor(float decibels) {
    return std::pow(10.0F, decibels / 20.0F);
}

void amplify(std::span<std::int16_t> samples, float factor, Dither &dither) {
    // A step of 1 is full scale long before; what is infinite would make a sample of 0 no number.
    constexpr float mostThatMatters = 65536;
    const float used = setting(factor, 0, mostThatMatters, 1);
    dither.rework(samples, [used](std::span<float> block) {
        for (float &sample : block) {
            sample *= used;
        }
    });
}

} // namespace orvel
