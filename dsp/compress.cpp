#include "dsp/compress.h"

#include "dsp/denormals.h"
#include "dsp/setting.h"
#include "dsp/wide_vectors.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <numbers>

namespace orvel {

namespace {

constexpr float fullScale = 32768.0F;
constexpr float lowestThreshold = -96;
constexpr float longestRmsTime = 1000;

/// Decibels of a power; off by less than 0.0001 dB. power = m * 2^e with m in sqrt(1/2)..sqrt(2), where the series
/// ln m = 2 artanh((m - 1) / (m + 1)) is short.
inline float powerToDecibels(float power) {
    constexpr std::int32_t rootHalf = 0x3F3504F3;
    constexpr float decibelsPerNeper = 10.0F / std::numbers::ln10_v<float>;
    constexpr float decibelsPerOctave = decibelsPerNeper * std::numbers::ln2_v<float>;
    const auto bits = std::bit_cast<std::int32_t>(power);
    const std::int32_t exponent = (bits - rootHalf) >> 23;
    const auto m = std::bit_cast<float>(bits - exponent * (1 << 23));
    const float s = (m - 1.0F) / (m + 1.0F);
    const float s2 = s * s;
    const float ln = 2.0F * s * (1.0F + s2 * (1.0F / 3 + s2 * (1.0F / 5 + s2 * (1.0F / 7))));
    return decibelsPerNeper * ln + decibelsPerOctave * static_cast<float>(exponent);
}

/// The amplitude factor of so many decibels less (0..200): e^x for x within half an octave by its series, whole octaves
/// by the exponent. Exactly 1 for 0; otherwise off by less than 0.0001 dB.
inline float factorOfReduction(float decibels) {
    constexpr float ln2 = std::numbers::ln2_v<float>;
    constexpr float octavesPerDecibel = std::numbers::ln10_v<float> / 20.0F / ln2;
    const float octaves = decibels * octavesPerDecibel;
    // Rounded so, as it is never negative, the loop over all samples becomes vector code.
    const auto whole = static_cast<std::int32_t>(octaves + 0.5F); // NOLINT(bugprone-incorrect-roundings)
    const float x = (static_cast<float>(whole) - octaves) * ln2;
    const float e = 1 + x * (1 + x * (1.0F / 2 + x * (1.0F / 6 + x * (1.0F / 24 + x * (1.0F / 120)))));
    return e * std::bit_cast<float>((127 - whole) * (1 << 23));
}

/// How much of a one-pole filter's state is left after a sample.
float pole(float milliseconds, int sampleRate) {
    return std::exp(-1000.0F / (milliseconds * static_cast<float>(sampleRate)));
}

/// Equation 4 as the decibels taken away.
inline float reductionAt(float level, float threshold, float knee, float slope) {
    const float above = level - threshold + knee / 2;
    const float bent = std::clamp(above, 0.0F, knee);
    return slope * (bent * bent / (2 * knee) + std::max(above - knee, 0.0F));
}

} // namespace

Compressor::Compressor(const CompressorSettings &settings, int sampleRate)
    : threshold_(setting(settings.threshold, lowestThreshold, 0, 0)),
      slope_(setting(settings.rate, 0, 100, 0) / 100.0F), knee_(std::clamp(-2.0F * threshold_, 0.001F, kneeDecibels)),
      attack_(pole(attackMs, sampleRate)), release_(pole(releaseMs, sampleRate)),
      detector_(settings.rmsTime > 0 ? 1.0F - pole(std::min(settings.rmsTime, longestRmsTime), sampleRate) : 1.0F) {
    if (threshold_ >= 0) {
        slope_ = 0;
    }
}

float Compressor::staticLevel(float level) const {
    return level - reductionAt(level, threshold_, knee_, slope_);
}

void Compressor::meanSquares(std::span<float> squares) {
    for (float &square : squares) {
        meanSquare_ += detector_ * (square - meanSquare_);
        square = meanSquare_;
    }
}

void Compressor::smooth(std::span<float> reductions) {
    // Equation 17. Locals, because the compiler must think that a store changes a member.
    float held = held_;
    float reduction = reduction_;
    for (float &wanted : reductions) {
        held = std::max(wanted, release_ * held + (1 - release_) * wanted);
        reduction = attack_ * reduction + (1 - attack_) * held;
        wanted = reduction;
    }
    held_ = held;
    reduction_ = reduction;
}

ORVEL_WIDE_VECTORS void Compressor::process(std::span<float> samples) {
    constexpr float silence = 1e-12F;
    std::array<float, Dither::blockSize> buffer{};
    const std::span<float> work = std::span(buffer).first(samples.size());
    for (std::size_t i = 0; i < samples.size(); ++i) {
        work[i] = samples[i] * samples[i];
    }
    if (detector_ < 1) {
        meanSquares(work);
    }
    const float threshold = threshold_;
    const float knee = knee_;
    const float slope = slope_;
    for (float &value : work) {
        value = reductionAt(powerToDecibels(value + silence), threshold, knee, slope);
    }
    smooth(work);
    for (std::size_t i = 0; i < samples.size(); ++i) {
        samples[i] *= factorOfReduction(work[i]);
    }
}

void compress(std::span<std::int16_t> samples, const CompressorSettings &settings, int sampleRate, Dither &dither) {
    if (sampleRate <= 0) {
        return;
    }
    const NoDenormals noDenormals;
    Compressor compressor(settings, sampleRate);
    dither.rework(samples, [&compressor](std::span<float> block) {
        for (float &sample : block) {
            sample *= 1.0F / fullScale;
        }
        compressor.process(block);
        for (float &sample : block) {
            sample *= fullScale;
        }
    });
}

} // namespace orvel
