#include "production/comparison.h"

#include "dsp/alignment.h"
#include "dsp/audio_transform.h"
#include "production/loudness_stage.h"

namespace orvel {

std::vector<std::int16_t> comparable(std::span<const std::int16_t> take, std::span<const std::int16_t> original,
                                     int sampleRate, LoudnessMeter &meter) {
    constexpr double ceiling = -1; // dBTP
    SpeechSearch inTake(sampleRate);
    inTake.add(take);
    SpeechSearch inOriginal(sampleRate);
    inOriginal.add(original);
    std::vector<std::int16_t> laid = layBeside(placeInOriginal(inTake, inOriginal), original, sampleRate);
    if (const std::optional<Loudness> loudness = meter.measure(take, sampleRate)) {
        AudioTransform transform;
        transform.setSampleRate(sampleRate);
        transform.setEnabled(true);
        bringToLoudness(transform, laid, sampleRate, loudness->lufs, ceiling, meter);
    }
    return laid;
}

} // namespace orvel
