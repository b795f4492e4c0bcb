#include "dsp/gain.h"

#include <cmath>

namespace orvel {

float decibelsToFactor(float decibels) {
    return std::pow(10.0F, decibels / 20.0F);
}

void amplify(std::span<std::int16_t> samples, float factor, Dither &dither) {
    dither.rework(samples, [factor](std::span<float> block) {
        for (float &sample : block) {
            sample *= factor;
        }
    });
}

} // namespace orvel
