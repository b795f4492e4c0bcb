#include "dsp/compress.h"
#include "dsp/gain.h"
#include "dsp/reverb.h"
#include "dsp/trim.h"
#include "sound.h"
#include "speech.h"

#include <gtest/gtest.h>
#include <limits>

namespace orvel {

namespace {

constexpr std::size_t ms = testRate / 1000;

double amplitudeOf(double decibels) {
    return 32768 * std::pow(10, decibels / 20);
}

/// Silence before and behind.
Samples around(const Samples &sound) {
    Samples take(500 * ms);
    take.insert(take.end(), sound.begin(), sound.end());
    take.resize(take.size() + 700 * ms);
    return take;
}

Samples mixed(Samples take, const Samples &hiss) {
    for (std::size_t i = 0; i < take.size(); ++i) {
        take[i] = static_cast<std::int16_t>(std::clamp(take[i] + hiss[i], -32768, 32767));
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

// A sound that begins at once passes the threshold 5 ms early, as the RMS of 10 ms is what counts; the cut is up to 3
// ms before that.

Samples silence(std::size_t milliseconds) {
    return Samples(milliseconds * ms);
}

void append(Samples &to, const Samples &more) {
    to.insert(to.end(), more.begin(), more.end());
}

} // namespace

// Low voices are silent between two beats of the vocal cords, and a "t" is nothing but a burst: what was asked to be
// loud for half of 40 ms lost up to half a second of words, and a compressed or reverberant voice more.
TEST(Trim, NothingOfAWordAboveTheThresholdIsCut) {
    unsigned seed = 1;
    for (const char *voice : spokenVoices) {
        for (const char *speed : {" -s 110", " -s 240"}) {
            const Samples clean = around(atPeak(speak("negentienhonderdtachtig", std::string(voice) + speed), -12));
            ASSERT_GT(peakOf(clean), 0) << "espeak-ng is not installed";
            const Levels levels(clean);
            for (const double hiss : {-120.0, -60.0, -45.0}) {
                const double rms = amplitudeOf(hiss);
                for (const Samples &noisy : {mixed(clean, noise(rms, clean.size(), seed)),
                                             mixed(clean, pinkNoise(rms, clean.size(), seed + 1))}) {
                    for (double threshold = -60; threshold <= -20; threshold += 5) {
                        const auto [first, last] = levels.passage(threshold);
                        Samples take = noisy;
                        std::int32_t k = 0;
                        const std::size_t begin = trim(take, static_cast<float>(threshold), k);
                        const std::string what = std::string(voice) + speed + ", noise " + std::to_string(hiss) +
                                                 ", threshold " + std::to_string(threshold);
                        EXPECT_TRUE(begin <= first || first == last) << what;
                        EXPECT_GE(begin + take.size(), last) << what;
                    }
                }
                seed += 2;
            }
        }
    }
}

TEST(Trim, NothingOfAWordIsCutAfterTheStagesBefore) {
    Dither dither;
    for (const char *voice : spokenVoices) {
        Samples clean = around(speak(spokenSentences[3], voice));
        ASSERT_GT(peakOf(clean), 0) << "espeak-ng is not installed";
        amplify(clean, 0.9F * 32767 / static_cast<float>(peakOf(clean)), dither);
        compress(clean, {-30, 70, 0}, testRate, dither);
        for (const bool wet : {false, true}) {
            if (wet) {
                reverb(clean, {20, 15, 20, 20}, testRate, dither);
            }
            const Levels levels(clean);
            for (const double threshold : {-50.0, -40.0, -30.0, -25.0}) {
                const auto [first, last] = levels.passage(threshold);
                Samples take = clean;
                std::int32_t k = 0;
                const std::size_t begin = trim(take, static_cast<float>(threshold), k);
                EXPECT_TRUE(begin <= first || first == last) << voice << wet << threshold;
                EXPECT_GE(begin + take.size(), last) << voice << wet << threshold;
            }
        }
    }
}

TEST(Trim, NineteenOfTwentyCutsAreWithinFiveMilliseconds) {
    int edges = 0;
    int near = 0;
    unsigned seed = 1;
    for (const char *voice : spokenVoices) {
        for (const char *sentence : {spokenSentences[0], spokenSentences[3], spokenSentences[8]}) {
            const Samples clean = around(atPeak(speak(sentence, voice), -12));
            ASSERT_GT(peakOf(clean), 0) << "espeak-ng is not installed";
            for (const double hiss : {-120.0, -70.0, -60.0}) {
                for (const bool pink : {false, true}) {
                    const double rms = amplitudeOf(hiss);
                    Samples take =
                        mixed(clean, pink ? pinkNoise(rms, clean.size(), seed++) : noise(rms, clean.size(), seed++));
                    const double threshold = std::max(hiss + 10, -60.0);
                    const auto [first, last] = Levels(clean).passage(threshold);
                    std::int32_t k = 0;
                    const std::size_t begin = trim(take, static_cast<float>(threshold), k);
                    edges += 2;
                    near += first - begin <= 5 * ms ? 1 : 0;
                    near += begin + take.size() - last <= 5 * ms ? 1 : 0;
                    EXPECT_LE(begin, first) << voice << ": " << sentence << ", noise " << hiss;
                    EXPECT_GE(begin + take.size(), last) << voice << ": " << sentence << ", noise " << hiss;
                }
            }
        }
    }
    EXPECT_GE(near, 0.95 * edges) << near << " of " << edges;
}

// The first 2 ms of a word lost 3 to 9 dB to the fade.
TEST(Trim, TheFadeLiesOutsideTheWord) {
    for (const char *voice : spokenVoices) {
        const Samples clean = around(atPeak(speak(spokenSentences[3], voice), -12));
        ASSERT_GT(peakOf(clean), 0) << "espeak-ng is not installed";
        for (const double threshold : {-60.0, -45.0, -30.0}) {
            const auto [first, last] = Levels(clean).passage(threshold);
            Samples take = clean;
            std::int32_t k = 0;
            const std::size_t begin = trim(take, static_cast<float>(threshold), k);
            ASSERT_GE(begin + take.size(), last);
            EXPECT_TRUE(std::equal(clean.begin() + static_cast<std::ptrdiff_t>(first),
                                   clean.begin() + static_cast<std::ptrdiff_t>(last),
                                   take.begin() + static_cast<std::ptrdiff_t>(first - begin)))
                << voice << ", threshold " << threshold;
        }
    }
}

TEST(Trim, AThresholdThatIsNoLevelDoesNoHarm) {
    const Samples before = around(tone(440, 8000, 500 * ms));
    constexpr float infinite = std::numeric_limits<float>::infinity();
    for (const float threshold : {std::numeric_limits<float>::quiet_NaN(), infinite, 1e9F}) {
        Samples take = before;
        std::int32_t k = 0;
        trim(take, threshold, k);
        EXPECT_EQ(take, before) << threshold;
    }
    for (const float threshold : {-infinite, -1e9F}) {
        Samples take = before;
        std::int32_t k = 0;
        trim(take, threshold, k);
        EXPECT_LT(take.size(), 520 * ms) << threshold;
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
    EXPECT_NEAR(k, 293 * ms, 2 * ms);
    const std::int32_t atStart = k;
    trimEnd(take, -40, testRate, dither, k);
    EXPECT_NEAR(k - atStart, 193 * ms, 2 * ms);
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
    EXPECT_NEAR(static_cast<double>(begin), 501 * ms, 3 * ms);
    EXPECT_NEAR(static_cast<double>(take.size()), 514 * ms, 5 * ms);
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
    EXPECT_NEAR(static_cast<double>(begin), 293 * ms, 3 * ms);
    EXPECT_NEAR(static_cast<double>(take.size()), 581 * ms, 5 * ms);
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
    EXPECT_NEAR(static_cast<double>(begin), 393 * ms, 3 * ms);
    EXPECT_NEAR(static_cast<double>(take.size()), 514 * ms, 5 * ms);
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
