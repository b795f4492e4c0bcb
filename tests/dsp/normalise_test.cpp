#include "dsp/normalise.h"
#include "sound.h"

#include <gtest/gtest.h>
#include <limits>

namespace orvel {

// "Within one step" hid that 0 % was not silence but dither.
TEST(Normalise, ThePeakIsExactAtEveryLevel) {
    Dither dither;
    for (const double amplitude : {3.0, 800.0, 32767.0}) {
        const Samples take = tone(441, amplitude, 10000);
        for (int percent = 0; percent <= 100; ++percent) {
            Samples level = take;
            normalise(level, static_cast<float>(percent), dither);
            EXPECT_EQ(peakOf(level), std::lround(percent * 327.67)) << percent << " % of " << amplitude;
        }
    }
}

TEST(Normalise, ALevelOfNothingIsDigitalSilence) {
    Dither dither;
    for (const Samples &sound : {tone(441, 20000, 10000), noise(3000, 10000), Samples(10000, 5)}) {
        Samples take = sound;
        normalise(take, 0, dither);
        EXPECT_EQ(take, Samples(10000));
    }
}

// The mean of the whole take was taken off, also where there was nothing: digital silence became an offset.
TEST(Normalise, DigitalSilenceBesideSoundStaysDigitalSilence) {
    Dither dither;
    const Samples quiet(10 * Dither::blockSize);
    Samples take = quiet;
    Samples sound = tone(90, 9000, 20 * Dither::blockSize);
    for (std::int16_t &sample : sound) {
        sample = static_cast<std::int16_t>(sample > 0 ? sample : sample / 3); // lopsided, like a voice
    }
    take.insert(take.end(), sound.begin(), sound.end());
    take.insert(take.end(), quiet.begin(), quiet.end());
    normalise(take, 95, dither);
    EXPECT_EQ(Samples(take.begin(), take.begin() + std::ssize(quiet)), quiet);
    EXPECT_EQ(Samples(take.end() - std::ssize(quiet), take.end()), quiet);
    const double factor = std::round(0.95 * 32767) / peakOf(sound);
    for (std::size_t i = 0; i < sound.size(); ++i) {
        ASSERT_NEAR(take[quiet.size() + i], factor * sound[i], 1.6) << "a low voice keeps its shape";
    }
}

// A level of -50 % in the settings file turned the sound upside down.
TEST(Normalise, ALevelOutsideItsLimitsIsTheLimit) {
    Dither dither;
    constexpr float infinite = std::numeric_limits<float>::infinity();
    const Samples before = tone(441, 8000, 10000);
    for (const float percent : {-50.0F, -infinite}) {
        Samples take = before;
        normalise(take, percent, dither);
        EXPECT_EQ(take, Samples(10000)) << percent;
    }
    for (const float percent : {300.0F, infinite, std::numeric_limits<float>::quiet_NaN()}) {
        Samples take = before;
        normalise(take, percent, dither);
        EXPECT_EQ(peakOf(take), 32767) << percent;
        EXPECT_GT(take[20], 0) << percent;
    }
}

TEST(Normalise, TheOneLoudestSampleDecides) {
    Dither dither;
    Samples take = tone(441, 1000, 10000);
    take[5000] = -8000;
    normalise(take, 50, dither);
    EXPECT_NEAR(take[5000], -16384, 2);
    EXPECT_EQ(std::min_element(take.begin(), take.end()) - take.begin(), 5000);
}

TEST(Normalise, SilenceStaysSilence) {
    Dither dither;
    Samples take(10000);
    normalise(take, 100, dither);
    EXPECT_EQ(take, Samples(10000));
    Samples offset(10000, 5);
    normalise(offset, 100, dither);
    EXPECT_EQ(offset, Samples(10000, 5));
}

TEST(Normalise, ATakeAtItsLevelStaysAsItIs) {
    Dither dither;
    Samples take = {32767, -32767, 100, -100};
    normalise(take, 100, dither);
    EXPECT_EQ(take, (Samples{32767, -32767, 100, -100}));
}

TEST(Normalise, AnEmptyTakeStaysEmpty) {
    Dither dither;
    Samples take;
    normalise(take, 100, dither);
    EXPECT_TRUE(take.empty());
}

} // namespace orvel
