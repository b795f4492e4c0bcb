#include "platform/tempo.h"
#include "tests/dsp/sound.h"
#include "tests/dsp/speech.h"

#include <gtest/gtest.h>
#include <limits>
#include <stdexcept>

namespace orvel {

namespace {

constexpr double oneMs = testRate / 1000.0;

/// Bursts of a tone, one every 500 ms, each 100 ms long.
Samples beats(int count) {
    Samples take;
    for (int i = 0; i < count; ++i) {
        const Samples burst = tone(300, 8000, 4410);
        take.insert(take.end(), burst.begin(), burst.end());
        take.resize(static_cast<std::size_t>(i + 1) * 22050);
    }
    return take;
}

/// The middles of the bursts, by the energy of what lies around where they should be.
double middleOf(const Samples &take, double from, double to) {
    double weight = 0;
    double sum = 0;
    for (auto at = static_cast<std::size_t>(std::max(from, 0.0));
         at < std::min<std::size_t>(static_cast<std::size_t>(to), take.size()); ++at) {
        const double energy = std::pow(take[at], 2);
        weight += energy;
        sum += energy * static_cast<double>(at);
    }
    return sum / weight;
}

} // namespace

TEST(Tempo, EverythingComesAsMuchEarlier) {
    const Samples take = beats(40);
    for (const double factor : {1.01, 1.02, 1.04}) {
        const Samples faster = atTempo(take, testRate, factor);
        EXPECT_NEAR(static_cast<double>(faster.size()), static_cast<double>(take.size()) / factor, 1);
        for (int i = 0; i < 40; ++i) {
            const double expected = (i * 22050 + 2205) / factor;
            EXPECT_NEAR(middleOf(faster, expected - 8000, expected + 8000), expected, 20 * oneMs)
                << factor << ", " << i;
        }
    }
}

TEST(Tempo, ThePitchStays) {
    const Samples take = tone(220, 8000, 88200);
    const Samples faster = atTempo(take, testRate, 1.04);
    const Samples middle(faster.begin() + 22050, faster.begin() + 66150);
    EXPECT_GT(amplitudeAt(220, middle), 7600);
    EXPECT_LT(amplitudeAt(220 * 1.04, middle), 400);
}

TEST(Tempo, AFactorOfOneLeavesEverySample) {
    const Samples take = noise(3000, 50000);
    EXPECT_EQ(atTempo(take, testRate, 1), take);
    EXPECT_TRUE(atTempo({}, testRate, 1.04).empty());
}

TEST(Tempo, ShortTakesKeepTheirLengthToo) {
    for (const std::size_t length : {1U, 100U, 2000U, 10000U}) {
        EXPECT_EQ(atTempo(noise(3000, length), testRate, 1.04).size(),
                  static_cast<std::size_t>(std::lrint(static_cast<double>(length) / 1.04)));
    }
}

TEST(Tempo, WhatIsNoTempoIsRefused) {
    const Samples take = tone(220, 8000, 1000);
    for (const double factor : {0.0, -1.0, 3.0, std::numeric_limits<double>::quiet_NaN()}) {
        EXPECT_THROW(static_cast<void>(atTempo(take, testRate, factor)), std::invalid_argument);
    }
}

} // namespace orvel
