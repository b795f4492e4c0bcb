#include "dsp/trim.h"
#include "sound.h"
#include "speech.h"

#include <gtest/gtest.h>

namespace orvel {

namespace {

constexpr std::size_t ms = testRate / 1000;

double amplitudeOf(double decibels) {
    return 32768 * std::pow(10, decibels / 20);
}

/// A take with so much noise around and under the sound.
struct NoisyTake {
    Samples samples;
    std::size_t begin = 0; ///< of the sound that is as loud as the noise
    std::size_t end = 0;
};

/// Where the RMS of 1 ms first and last reaches a level.
void markSound(NoisyTake &take, double level) {
    take.end = 0;
    for (std::size_t start = 0; start + ms <= take.samples.size(); start += ms) {
        const auto first = take.samples.begin() + static_cast<std::ptrdiff_t>(start);
        if (rmsOf(Samples(first, first + ms)) >= level) {
            take.begin = take.end == 0 ? start : take.begin;
            take.end = start + ms;
        }
    }
}

NoisyTake noisy(const Samples &sound, double decibels, unsigned seed) {
    NoisyTake take;
    take.samples.resize(500 * ms);
    take.samples.insert(take.samples.end(), sound.begin(), sound.end());
    take.samples.resize(take.samples.size() + 700 * ms);
    markSound(take, amplitudeOf(decibels));
    const Samples hiss = noise(amplitudeOf(decibels), take.samples.size(), seed);
    for (std::size_t i = 0; i < hiss.size(); ++i) {
        take.samples[i] = static_cast<std::int16_t>(std::clamp(take.samples[i] + hiss[i], -32768, 32767));
    }
    return take;
}

/// Trims both ends; gives where the rest began in the take.
std::size_t trim(Samples &samples, float threshold, std::int32_t &k) {
    Dither dither;
    trimStart(samples, threshold, testRate, dither, k);
    const std::int32_t atStart = k;
    trimEnd(samples, threshold, testRate, dither, k);
    return static_cast<std::size_t>(atStart);
}

Samples silence(std::size_t milliseconds) {
    return Samples(milliseconds * ms);
}

void append(Samples &to, const Samples &more) {
    to.insert(to.end(), more.begin(), more.end());
}

} // namespace

TEST(Trim, SpokenTakesAreCutWithinFiveMilliseconds) {
    unsigned seed = 1;
    for (const char *sentence : spokenSentences) {
        const Samples speech = speak(sentence);
        if (speech.empty()) {
            GTEST_SKIP() << "espeak-ng is not installed";
        }
        for (const double level : {-60.0, -50.0, -40.0}) {
            NoisyTake take = noisy(speech, level, seed++);
            const std::size_t length = take.samples.size();
            std::int32_t k = 0;
            const std::size_t begin = trim(take.samples, static_cast<float>(level + 6), k);
            EXPECT_EQ(take.samples.size() + static_cast<std::size_t>(k), length);
            const auto milliseconds = [](std::size_t frames) {
                return 1000.0 * static_cast<double>(frames) / testRate;
            };
            EXPECT_NEAR(milliseconds(begin), milliseconds(take.begin), 5) << sentence << " begins, noise " << level;
            EXPECT_NEAR(milliseconds(begin + take.samples.size()), milliseconds(take.end), 5)
                << sentence << " ends, noise " << level;
        }
    }
}

TEST(Trim, NothingAboveTheThresholdLeavesTheTakeAsItIs) {
    for (const float threshold : {0.0F, -10.0F, -30.0F}) {
        const Samples take = noise(amplitudeOf(-40), 44100);
        Samples same = take;
        std::int32_t k = 0;
        trim(same, threshold, k);
        EXPECT_EQ(same, take) << threshold;
        EXPECT_EQ(k, 0);
    }
}

TEST(Trim, AThresholdOfFullScaleLeavesEvenTheLoudestTake) {
    Samples take = silence(300);
    append(take, square(44100));
    append(take, silence(300));
    Samples same = take;
    std::int32_t k = 0;
    trim(same, 0, k);
    EXPECT_EQ(same, take);
}

TEST(Trim, BothCallsCountWhatTheyRemoved) {
    Dither dither;
    Samples take = silence(300);
    append(take, tone(440, 8000, 500 * ms));
    append(take, silence(200));
    const std::size_t length = take.size();
    std::int32_t k = 0;
    trimStart(take, -40, testRate, dither, k);
    EXPECT_NEAR(k, 298 * ms, 1 * ms);
    const std::int32_t atStart = k;
    trimEnd(take, -40, testRate, dither, k);
    EXPECT_NEAR(k - atStart, 198 * ms, 2 * ms);
    EXPECT_EQ(take.size(), length - static_cast<std::size_t>(k));
}

TEST(Trim, AClickIsNotSpeech) {
    Samples take = silence(100);
    append(take, noise(20000, 8 * ms)); // a mouse
    append(take, silence(400));
    append(take, tone(300, 8000, 500 * ms));
    append(take, silence(400));
    take.push_back(32767); // a faulty cable
    append(take, silence(100));
    std::int32_t k = 0;
    const std::size_t begin = trim(take, -40, k);
    EXPECT_NEAR(static_cast<double>(begin), 508 * ms, 5 * ms);
    EXPECT_NEAR(static_cast<double>(take.size()), 500 * ms, 10 * ms);
}

TEST(Trim, OnlyClicksAreNotThrownAwayEither) {
    Samples take = silence(100);
    append(take, noise(20000, 8 * ms));
    append(take, silence(400));
    const Samples before = take;
    std::int32_t k = 0;
    trim(take, -40, k);
    EXPECT_EQ(take, before);
}

TEST(Trim, TheBurstOfAConsonantBelongsToItsWord) {
    Samples take = silence(300);
    append(take, noise(4000, 12 * ms)); // p
    append(take, silence(60));
    append(take, tone(150, 8000, 400 * ms)); // u
    append(take, silence(80));
    append(take, noise(3000, 15 * ms)); // t
    append(take, silence(300));
    std::int32_t k = 0;
    const std::size_t begin = trim(take, -40, k);
    EXPECT_NEAR(static_cast<double>(begin), 300 * ms, 5 * ms);
    EXPECT_NEAR(static_cast<double>(take.size()), 567 * ms, 10 * ms);
}

TEST(Trim, AnOffsetAndRumbleAreNotSound) {
    Samples take = silence(400);
    append(take, tone(440, 3000, 500 * ms));
    append(take, silence(400));
    for (std::size_t i = 0; i < take.size(); ++i) {
        const double rumble = 600 * std::sin(2 * std::numbers::pi * 5 * static_cast<double>(i) / testRate);
        take[i] = static_cast<std::int16_t>(take[i] + 2500 + std::lrint(rumble));
    }
    std::int32_t k = 0;
    const std::size_t begin = trim(take, -40, k);
    EXPECT_NEAR(static_cast<double>(begin), 400 * ms, 5 * ms);
    EXPECT_NEAR(static_cast<double>(take.size()), 500 * ms, 10 * ms);
}

TEST(Trim, CutEdgesAreFadedAndTheRestStays) {
    const Samples hiss = noise(amplitudeOf(-45), 1500 * ms);
    Samples take = hiss;
    const Samples sound = tone(440, 8000, 500 * ms);
    std::copy(sound.begin(), sound.end(), take.begin() + 500 * ms);
    const Samples before = take;
    std::int32_t k = 0;
    const std::size_t begin = trim(take, -35, k);
    const std::size_t fade = 5 * ms;
    ASSERT_GT(take.size(), 2 * fade);
    EXPECT_TRUE(
        std::equal(take.begin() + fade, take.end() - fade, before.begin() + static_cast<std::ptrdiff_t>(begin + fade)));
    EXPECT_LE(std::abs(take.front()), 2);
    EXPECT_LE(std::abs(take.back()), 2);
    EXPECT_LT(rmsOf(Samples(take.begin(), take.begin() + ms)), amplitudeOf(-50));
    EXPECT_LT(rmsOf(Samples(take.end() - ms, take.end())), amplitudeOf(-50));
}

TEST(Trim, ATakeWithoutSilenceStaysAsItIs) {
    const Samples take = tone(440, 8000, 500 * ms);
    Samples same = take;
    std::int32_t k = 0;
    trim(same, -40, k);
    EXPECT_EQ(same, take);
    EXPECT_EQ(k, 0);
}

} // namespace orvel
