#include "platform/tempo.h"

#include "platform/samples.h"

#include <SoundTouch.h>
#include <algorithm>
#include <cmath>
#include <stdexcept>

namespace orvel {

namespace {

constexpr std::size_t blockLength = 4096;

void put(soundtouch::SoundTouch &stretcher, std::span<const std::int16_t> samples) {
    std::vector<float> block;
    while (!samples.empty()) {
        const std::size_t count = std::min(samples.size(), blockLength);
        block.resize(count);
        std::transform(samples.begin(), samples.begin() + static_cast<std::ptrdiff_t>(count), block.begin(),
                       [](std::int16_t sample) { return static_cast<float>(sample) / 32768.0F; });
        stretcher.putSamples(block.data(), static_cast<unsigned>(count));
        samples = samples.subspan(count);
    }
}

std::vector<std::int16_t> received(soundtouch::SoundTouch &stretcher) {
    std::vector<std::int16_t> samples;
    std::vector<float> block(blockLength);
    for (unsigned count = stretcher.receiveSamples(block.data(), blockLength); count > 0;
         count = stretcher.receiveSamples(block.data(), blockLength)) {
        std::transform(block.begin(), block.begin() + count, std::back_inserter(samples), toInt16);
    }
    return samples;
}

} // namespace

std::vector<std::int16_t> atTempo(std::span<const std::int16_t> samples, int sampleRate, double factor) {
    if (!(factor >= 0.5 && factor <= 2)) {
        throw std::invalid_argument("tempo");
    }
    if (samples.empty() || factor == 1) {
        return {samples.begin(), samples.end()};
    }
    soundtouch::SoundTouch stretcher;
    stretcher.setSampleRate(static_cast<unsigned>(sampleRate));
    stretcher.setChannels(1);
    stretcher.setTempo(factor);
    // For speech, as its authors advise: short pieces, so that no syllable is said twice or left out.
    stretcher.setSetting(SETTING_SEQUENCE_MS, 40);
    stretcher.setSetting(SETTING_SEEKWINDOW_MS, 15);
    stretcher.setSetting(SETTING_OVERLAP_MS, 8);
    put(stretcher, samples);
    stretcher.flush();
    std::vector<std::int16_t> faster = received(stretcher);
    faster.resize(static_cast<std::size_t>(std::lrint(static_cast<double>(samples.size()) / factor)));
    return faster;
}

} // namespace orvel
