#include "dsp/reverb.h"

#include "dsp/denormals.h"
#include "dsp/room.h"
#include "dsp/setting.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace orvel {

namespace {

constexpr float longestDelay = 1000; ///< ms

static_assert(Dither::blockSize % roomBlock == 0);

/// Gives back what it got so many samples before.
class Delay {
  public:
    explicit Delay(std::size_t samples) : memory_(samples) {}

    float next(float sample) {
        if (memory_.empty()) {
            return sample;
        }
        const float old = std::exchange(memory_[position_], sample);
        position_ = position_ + 1 < memory_.size() ? position_ + 1 : 0;
        return old;
    }

  private:
    std::vector<float> memory_;
    std::size_t position_ = 0;
};

std::size_t samplesIn(float seconds, int sampleRate) {
    return static_cast<std::size_t>(std::lround(static_cast<double>(seconds) * sampleRate));
}

} // namespace

void reverb(std::vector<std::int16_t> &samples, const ReverbSettings &settings, int sampleRate, Dither &dither) {
    if (samples.empty() || sampleRate <= 0) {
        return;
    }
    const NoDenormals noDenormals;
    const float depth = setting(settings.depth, 1, 100, 1) / 100.0F;
    const float seconds = setting(settings.decay, 1, 100, 1) / 100.0F * reverbSeconds;
    const float norm = std::sqrt((1 - depth) * (1 - depth) + depth * depth);
    const float dry = (1 - depth) / norm;
    const float wet = depth / norm;
    Room room(seconds, setting(settings.rate, 1, 100, 1) / 100.0F * reverbHertz, sampleRate);
    const std::size_t late = samplesIn(setting(settings.delay, 0, longestDelay, 0) / 1000.0F, sampleRate);
    Delay before(late);
    samples.resize(samples.size() + late + samplesIn(seconds, sampleRate));
    dither.rework(samples, [&](std::span<float> block) {
        for (std::size_t start = 0; start < block.size(); start += roomBlock) {
            const std::span<float> part = block.subspan(start, std::min(roomBlock, block.size() - start));
            RoomBlock sound{};
            std::transform(part.begin(), part.end(), sound.begin(), [&](float sample) { return before.next(sample); });
            room.process(sound);
            for (std::size_t n = 0; n < part.size(); ++n) {
                part[n] = dry * part[n] + wet * sound[n];
            }
        }
    });
}

} // namespace orvel
