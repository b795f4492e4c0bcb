#include "dsp/reverb.h"

#include "dsp/denormals.h"
#include "dsp/gain.h"
#include "dsp/room.h"
#include "dsp/setting.h"

#include <algorithm>
#include <bit>
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

/// Blocks that go past full scale, as they were computed.
class LoudBlocks {
  public:
    void look(std::span<const float> block, std::size_t start) {
        // Positive numbers and their bits have the same order, and whole numbers become vector code.
        std::int32_t highest = 0;
        for (const float sample : block) {
            highest = std::max(highest, std::bit_cast<std::int32_t>(std::abs(sample)));
        }
        const auto peak = std::bit_cast<float>(highest);
        if (peak > fullScale) {
            peak_ = std::max(peak_, peak);
            blocks_.emplace_back(start, std::vector<float>(block.begin(), block.end()));
        }
    }

    /// Makes the take so much softer that nothing of it goes past full scale, if anything does.
    void fit(std::span<std::int16_t> samples, Dither &dither) {
        if (blocks_.empty()) {
            return;
        }
        const float factor = (fullScale - 1) / peak_; // one step for the dither
        amplify(samples, factor, dither);
        for (auto &[start, values] : blocks_) {
            for (float &value : values) {
                value *= factor;
            }
            dither.quantise(values, samples.subspan(start, values.size()));
        }
    }

  private:
    static constexpr float fullScale = 32767;

    std::vector<std::pair<std::size_t, std::vector<float>>> blocks_;
    float peak_ = 0;
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
    LoudBlocks loud;
    std::size_t position = 0;
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
        loud.look(block, position);
        position += block.size();
    });
    loud.fit(samples, dither);
}

} // namespace orvel
