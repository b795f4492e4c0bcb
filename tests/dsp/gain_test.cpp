#include "dsp/gain.h"
#include "sound.h"

#include <gtest/gtest.h>

namespace orvel {

TEST(Gain, DecibelsAreTwentyLogarithms) {
    EXPECT_FLOAT_EQ(decibelsToFactor(0), 1.0F);
    EXPECT_FLOAT_EQ(decibelsToFactor(20), 10.0F);
    EXPECT_NEAR(decibelsToFactor(6), 1.99526F, 1e-5F);
    EXPECT_NEAR(decibelsToFactor(-15), 0.177828F, 1e-6F);
}

TEST(Gain, EverySampleIsWithinOneStepAtEverySetting) {
    Dither dither;
    const Samples take = tone(440, 5000, 20000);
    for (int decibels = -15; decibels <= 15; ++decibels) {
        const double factor = std::pow(10.0, decibels / 20.0);
        Samples louder = take;
        amplify(louder, decibelsToFactor(static_cast<float>(decibels)), dither);
        for (std::size_t i = 0; i < take.size(); ++i) {
            ASSERT_LE(std::abs(louder[i] - std::lrint(factor * take[i])), 1) << decibels << " dB, sample " << i;
        }
        EXPECT_NEAR(amplitudeAt(440, louder), factor * amplitudeAt(440, take), 0.05) << decibels << " dB";
    }
}

TEST(Gain, NothingWrapsAround) {
    Dither dither;
    const Samples take = tone(440, 32767, 20000);
    Samples louder = take;
    amplify(louder, decibelsToFactor(15), dither);
    EXPECT_EQ(peakOf(louder), 32768);
    for (std::size_t i = 0; i < take.size(); ++i) {
        // The other side of zero is out of reach of the dither.
        ASSERT_TRUE(take[i] > 0 ? louder[i] >= -1 : louder[i] <= 1) << i;
    }
}

TEST(Gain, ZeroDecibelsChangeNothing) {
    Dither dither;
    const Samples take = noise(3000, 10000);
    Samples same = take;
    amplify(same, decibelsToFactor(0), dither);
    EXPECT_EQ(same, take);
}

TEST(Gain, DigitalSilenceStaysSilentBesideSound) {
    Dither dither;
    Samples take(Dither::blockSize * 4);
    const Samples sound = tone(440, 3000, Dither::blockSize * 4);
    take.insert(take.end(), sound.begin(), sound.end());
    amplify(take, 1.5F, dither);
    EXPECT_EQ(Samples(take.begin(), take.begin() + Dither::blockSize * 4), Samples(Dither::blockSize * 4));
}

TEST(Gain, AnEmptyTakeStaysEmpty) {
    Dither dither;
    Samples take;
    amplify(take, 2, dither);
    EXPECT_TRUE(take.empty());
}

TEST(DitherNoise, IsTriangularAndRepeatable) {
    const std::vector<float> quarter(400000, 100.25F);
    Samples first(quarter.size());
    Samples second(quarter.size());
    Dither(7).quantise(quarter, first);
    Dither(7).quantise(quarter, second);
    EXPECT_EQ(first, second);
    Dither(8).quantise(quarter, second);
    EXPECT_NE(first, second);
    double mean = 0;
    double square = 0;
    for (const std::int16_t sample : first) {
        const double error = sample - 100.25;
        mean += error / static_cast<double>(first.size());
        square += error * error / static_cast<double>(first.size());
    }
    // TPDF: no bias whatever the value, and a variance of a quarter (1/6 of the noise, 1/12 of the rounding).
    EXPECT_NEAR(mean, 0, 0.005);
    EXPECT_NEAR(square, 0.25, 0.005);
}

TEST(DitherNoise, ASoundBelowOneStepSurvives) {
    std::vector<float> faint(200000);
    for (std::size_t i = 0; i < faint.size(); ++i) {
        faint[i] = 0.3F * static_cast<float>(std::sin(2 * std::numbers::pi * 1000 * static_cast<double>(i) / testRate));
    }
    Samples samples(faint.size(), 1);
    Dither().quantise(faint, samples);
    EXPECT_NEAR(amplitudeAt(1000, samples), 0.3, 0.01);
    EXPECT_LT(amplitudeAt(3000, samples), 0.01);
}

TEST(DitherNoise, FullScaleIsTheLimit) {
    const std::vector<float> loud = {40000, 32767, -32768, -1e9F, 1e9F};
    Samples samples(loud.size());
    for (unsigned seed = 1; seed < 100; ++seed) {
        Dither(seed).quantise(loud, samples);
        EXPECT_EQ(samples[0], 32767);
        EXPECT_GE(samples[1], 32766);
        EXPECT_LE(samples[2], -32767);
        EXPECT_EQ(samples[3], -32768);
        EXPECT_EQ(samples[4], 32767);
    }
}

} // namespace orvel
