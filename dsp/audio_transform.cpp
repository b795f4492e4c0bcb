#include "dsp/audio_transform.h"

#include "dsp/compress.h"
#include "dsp/gain.h"
#include "dsp/normalise.h"
#include "dsp/trim.h"

namespace orvel {

float AudioTransform::decibelsToFactor(float decibels) {
    return orvel::decibelsToFactor(decibels);
}

void AudioTransform::amplify(std::vector<std::int16_t> &samples, float factor) {
    if (works()) {
        orvel::amplify(samples, factor, dither_);
    }
}

void AudioTransform::normalise(std::vector<std::int16_t> &samples, float percent) {
    if (works()) {
        orvel::normalise(samples, percent, dither_);
    }
}

void AudioTransform::compress(std::vector<std::int16_t> &samples, float threshold, float rate, float rmsTime) {
    if (works()) {
        orvel::compress(samples, {threshold, rate, rmsTime}, sampleRate_, dither_);
    }
}

void AudioTransform::reverb(std::vector<std::int16_t> &samples, const ReverbSettings &settings) {
    if (works()) {
        orvel::reverb(samples, settings, sampleRate_, dither_);
    }
}

void AudioTransform::limit(std::vector<std::int16_t> &samples, const LimiterSettings &settings) {
    if (works()) {
        orvel::limit(samples, settings, sampleRate_, dither_);
    }
}

void AudioTransform::trimStart(std::vector<std::int16_t> &samples, float threshold, std::int32_t &k) {
    if (works()) {
        orvel::trimStart(samples, threshold, sampleRate_, dither_, k);
    }
}

void AudioTransform::trimEnd(std::vector<std::int16_t> &samples, float threshold, std::int32_t &k) {
    if (works()) {
        orvel::trimEnd(samples, threshold, sampleRate_, dither_, k);
    }
}

} // namespace orvel
