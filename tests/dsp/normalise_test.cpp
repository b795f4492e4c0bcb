#include "dsp/normalise.h"
#include "sound.h"

#include <gtest/gtest.h>

namespace orvel {

TEST(Normalise, ThePeakIsWithinOneStepAtEveryLevel) {
    Dither dither;
    for (const double amplitude : {3.0, 800.0, 32767.0}) {
        const Samples take = tone(441, amplitude, 10000);
        for (int percent = 0; percent <= 100; ++percent) {
            Samples level = take;
            normalise(level, static_cast<float>(percent), dither);
            EXPECT_NEAR(peakOf(level), std::round(percent * 327.67), 1) << percent << " % of " << amplitude;
        }
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

TEST(Normalise, AnOffsetIsNotAmplified) {
    Dither dither;
    Samples take = tone(441, 1000, 44100);
    for (std::int16_t &sample : take) {
        sample = static_cast<std::int16_t>(sample + 700);
    }
    normalise(take, 100, dither);
    double mean = 0;
    for (const std::int16_t sample : take) {
        mean += static_cast<double>(sample) / static_cast<double>(take.size());
    }
    EXPECT_NEAR(mean, 0, 1);
    EXPECT_NEAR(peakOf(take), 32767, 1);
    EXPECT_NEAR(amplitudeAt(441, take), 32767, 20);
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
