#include "dsp/compress.h"
#include "sound.h"

#include <gtest/gtest.h>

namespace orvel {

namespace {

double decibels(double amplitude) {
    return 20 * std::log10(amplitude);
}

/// What comes out of a compressor for a function of time, full scale 1.
template <typename Input>
std::vector<float> run(Compressor &compressor, std::size_t count, Input input) {
    std::vector<float> samples(count);
    for (std::size_t i = 0; i < count; ++i) {
        samples[i] = static_cast<float>(input(i));
    }
    for (std::size_t start = 0; start < count; start += Dither::blockSize) {
        compressor.process(std::span(samples).subspan(start, std::min(Dither::blockSize, count - start)));
    }
    return samples;
}

/// The curve as a text-book has it: straight outside the knee, a parabola inside.
double textbook(double level, double threshold, double rate) {
    const double ratio = 1 / (1 - std::min(rate, 99.999) / 100);
    const double knee = std::min(6.0, -2 * threshold);
    if (2 * (level - threshold) < -knee) {
        return level;
    }
    if (2 * (level - threshold) > knee) {
        return threshold + (level - threshold) / ratio;
    }
    return level + (1 / ratio - 1) * std::pow(level - threshold + knee / 2, 2) / (2 * knee);
}

/// Samples until a level has gone a share 1 - 1/e of its way.
std::size_t timeOf(const std::vector<float> &samples, std::size_t start, double input, double from, double to) {
    const double there = from + (to - from) * (1 - std::exp(-1.0));
    for (std::size_t i = start; i < samples.size(); ++i) {
        const double gain = decibels(static_cast<double>(samples[i]) / input);
        if (to < from ? gain <= there : gain >= there) {
            return i - start;
        }
    }
    return 0;
}

} // namespace

TEST(Compress, TheStaticCurveIsWithinATenthOfADecibel) {
    const std::vector<CompressorSettings> settings = {
        {-20, 50, 0}, {-40, 75, 0}, {-10, 100, 0}, {-60, 30, 0}, {-2, 90, 0}};
    for (const CompressorSettings &setting : settings) {
        for (int level = -90; level <= 0; ++level) {
            Compressor compressor(setting, testRate);
            const double amplitude = std::pow(10, level / 20.0);
            const std::vector<float> out = run(compressor, testRate / 4, [&](std::size_t) { return amplitude; });
            EXPECT_NEAR(decibels(static_cast<double>(out.back())), textbook(level, setting.threshold, setting.rate),
                        0.1)
                << level << " dB, threshold " << setting.threshold;
            EXPECT_NEAR(compressor.staticLevel(static_cast<float>(level)),
                        textbook(level, setting.threshold, setting.rate), 0.001);
        }
    }
}

TEST(Compress, AttackAndReleaseAreWithinATenthOfTheirTimes) {
    Compressor compressor({-20, 60, 0}, testRate);
    // One second soft, one loud, two soft.
    const double soft = 0.01;
    const double loud = 0.5;
    const std::vector<float> out =
        run(compressor, std::size_t{4} * testRate, [&](std::size_t i) { return i / testRate == 1 ? loud : soft; });
    const double reduction = textbook(decibels(loud), -20, 60) - decibels(loud);
    const double attack = 1000.0 * static_cast<double>(timeOf(out, testRate, loud, 0, reduction)) / testRate;
    EXPECT_NEAR(attack, Compressor::attackMs, 0.1 * static_cast<double>(Compressor::attackMs));
    const double release =
        1000.0 * static_cast<double>(timeOf(out, std::size_t{2} * testRate, soft, reduction, 0)) / testRate;
    EXPECT_NEAR(release, Compressor::releaseMs, 0.1 * static_cast<double>(Compressor::releaseMs));
}

TEST(Compress, ASineIsMeasuredByItsPeaksOrByItsMeanSquare) {
    for (const float window : {0.0F, 100.0F}) {
        Compressor compressor({-30, 100, window}, testRate);
        const std::vector<float> out = run(compressor, std::size_t{2} * testRate, [](std::size_t i) {
            return 0.5 * std::sin(2 * std::numbers::pi * 200 * static_cast<double>(i) / testRate);
        });
        const float peak = *std::max_element(out.end() - testRate / 10, out.end());
        EXPECT_NEAR(decibels(static_cast<double>(peak)), window > 0 ? -30 + 3.0 : -30, 0.5) << window;
    }
}

TEST(Compress, SteadySoundIsNotDistorted) {
    Dither dither;
    Samples take = tone(200, 20000, std::size_t{2} * testRate);
    compress(take, {-30, 80, 0}, testRate, dither);
    const Samples settled(take.end() - testRate, take.end());
    const double first = amplitudeAt(200, settled);
    EXPECT_LT(decibels(amplitudeAt(600, settled) / first), -50);
}

TEST(Compress, SoundBelowTheKneeStaysAsItIs) {
    Dither dither;
    const Samples take = tone(440, 2000, 20000); // -24 dB
    Samples same = take;
    compress(same, {-20, 100, 0}, testRate, dither);
    EXPECT_EQ(same, take);
}

TEST(Compress, AThresholdOfFullScaleLeavesTheTakeAsItIs) {
    Dither dither;
    const Samples take = square(20000);
    Samples same = take;
    compress(same, {0, 100, 0}, testRate, dither);
    EXPECT_EQ(same, take);
    compress(same, {0, 100, 300}, testRate, dither);
    EXPECT_EQ(same, take);
}

TEST(Compress, NothingBecomesLouder) {
    Dither dither;
    const Samples take = noise(6000, 44100);
    for (const float rate : {1.0F, 50.0F, 100.0F}) {
        Samples softer = take;
        compress(softer, {-40, rate, 0}, testRate, dither);
        for (std::size_t i = 0; i < take.size(); ++i) {
            ASSERT_LE(std::abs(softer[i]), std::abs(take[i]) + 2) << i;
        }
    }
}

} // namespace orvel
