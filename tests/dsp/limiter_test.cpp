#include "dsp/limiter.h"
#include "sound.h"
#include "speech.h"

#include <gtest/gtest.h>
#include <limits>

namespace orvel {

namespace {

constexpr float ceiling = -1;

Samples limited(Samples samples, float gain) {
    Dither dither;
    limit(samples, {gain, ceiling}, testRate, dither);
    return samples;
}

/// dBTP, straight from the sampling theorem: twelve points from sample to sample, each of 64 samples under a Hann
/// window.
double truePeak(const Samples &samples) {
    constexpr int reach = 32;
    constexpr int points = 12;
    const auto count = static_cast<int>(samples.size());
    double highest = 0;
    for (int at = 0; at < count; ++at) {
        const double here = std::abs(double{static_cast<double>(samples[static_cast<std::size_t>(at)])});
        highest = std::max(highest, here);
        // Points far below the highest sample so far are not looked at: twice as much never lies between two samples.
        if (here < highest / 2) {
            continue;
        }
        for (int point = 1; point < points; ++point) {
            const double shift = static_cast<double>(point) / points;
            double sum = 0;
            for (int i = std::max(0, at - reach + 1); i <= std::min(count - 1, at + reach); ++i) {
                const double distance = static_cast<double>(i - at) - shift;
                const double angle = std::numbers::pi * distance;
                const double hann = 0.5 + 0.5 * std::cos(angle / reach);
                sum += static_cast<double>(samples[static_cast<std::size_t>(i)]) * std::sin(angle) / angle * hann;
            }
            highest = std::max(highest, std::abs(sum));
        }
    }
    return 20 * std::log10(highest / 32768 + 1e-9);
}

/// What the limiter did to the gain, sample by sample, of a sound that is nowhere near 0.
std::vector<double> gainOf(const Samples &before, const Samples &after, double factor) {
    std::vector<double> gain;
    for (std::size_t i = 0; i < before.size(); ++i) {
        gain.push_back(static_cast<double>(after[i]) / (factor * static_cast<double>(before[i])));
    }
    return gain;
}

} // namespace

TEST(Limiter, NothingOfAVoiceRisesAboveTheCeiling) {
    for (const char *voice : spokenVoices) {
        const Samples spoken = atPeak(speak(spokenSentences[0], voice), -12);
        if (spoken.empty()) {
            GTEST_SKIP() << "espeak-ng is not installed";
        }
        for (const float gain : {6.0F, 24.0F}) {
            const double peak = truePeak(limited(spoken, gain));
            EXPECT_LE(peak, ceiling) << voice << " by " << gain;
        }
        EXPECT_GE(truePeak(limited(spoken, 14)), ceiling - 0.3) << "no more than it has to: " << voice;
    }
}

TEST(Limiter, APeakBetweenTheSamplesIsSeen) {
    // A quarter of the rate, half a sample late: every sample is 3 dB below the sound's peak.
    Samples between(testRate);
    for (std::size_t i = 0; i < between.size(); ++i) {
        between[i] = static_cast<std::int16_t>(i % 4 < 2 ? 11000 : -11000);
    }
    const Samples after = limited(between, 9);
    // The last samples stand beside the end, where the sound is another one.
    EXPECT_LE(peakOf(after), 32768 * std::pow(10, -4.0 / 20));
    EXPECT_LE(truePeak(after), ceiling);
}

TEST(Limiter, WhereNothingPassesTheSoundIsTheAmplifiedOne) {
    const Samples quiet = atPeak(noise(2000, testRate), -20);
    const Samples after = limited(quiet, 12);
    const double factor = std::pow(10, 12 / 20.0);
    for (std::size_t i = 0; i < quiet.size(); ++i) {
        ASSERT_NEAR(static_cast<double>(after[i]), factor * static_cast<double>(quiet[i]), 1.6) << i;
    }
}

TEST(Limiter, TheGainMovesSmoothlyAndComesBack) {
    // A level of 3000 with a burst of 20 ms that needs a third.
    Samples sound(testRate);
    for (std::size_t i = 0; i < sound.size(); ++i) {
        const bool inBurst = i >= 20000 && i < 20882;
        sound[i] = static_cast<std::int16_t>(inBurst ? 30000 : 3000);
    }
    const double factor = std::pow(10, 9 / 20.0);
    const std::vector<double> gain = gainOf(sound, limited(sound, 9), factor);
    for (std::size_t i = 1; i < gain.size(); ++i) {
        ASSERT_NEAR(gain[i], gain[i - 1], 0.01) << "at " << i;
        if (i < 20000 - testRate / 100) {
            ASSERT_NEAR(gain[i], 1, 0.001) << "long before the peak, at " << i;
        }
    }
    EXPECT_LT(*std::min_element(gain.begin(), gain.end()), 0.4);
    EXPECT_NEAR(gain[20882 + testRate / 2], 1, 0.01) << "half a second after the burst";
}

TEST(Limiter, ALowToneIsNotBentWithinItsPeriods) {
    // At 100 Hz a gain that followed every half wave would add a third harmonic.
    const Samples loud = tone(100, 16000, 2 * testRate);
    const Samples after = limited(loud, 12);
    EXPECT_LT(amplitudeAt(300, after), 0.005 * amplitudeAt(100, after));
}

TEST(Limiter, OddInputDoesNoHarm) {
    Dither dither;
    Samples none;
    limit(none, {6, ceiling}, testRate, dither);
    EXPECT_TRUE(none.empty());
    for (const std::size_t count : {std::size_t{1}, std::size_t{15}, std::size_t{257}}) {
        Samples few(count, 30000);
        limit(few, {20, ceiling}, testRate, dither);
        EXPECT_LE(peakOf(few), 29205) << count;
        EXPECT_GE(peakOf(few), 20000) << count;
    }
    const Samples before = tone(440, 20000, 1000);
    for (const float nonsense : {std::numeric_limits<float>::quiet_NaN(), std::numeric_limits<float>::infinity()}) {
        Samples samples = before;
        limit(samples, {nonsense, ceiling}, testRate, dither);
        limit(samples, {0, nonsense}, testRate, dither);
        limit(samples, {0, ceiling}, 0, dither);
        EXPECT_EQ(samples, before);
    }
    Samples slow = pinkNoise(9000, 30000);
    limit(slow, {20, ceiling}, 8000, dither);
    EXPECT_LE(peakOf(slow), 29205);
}

} // namespace orvel
