#include "dsp/peaks.h"

#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <random>

namespace orvel {

namespace {

std::vector<std::int16_t> anySamples(std::size_t count) {
    std::mt19937 random(7);
    std::uniform_int_distribution<int> sample(-20000, 20000);
    std::vector<std::int16_t> samples(count);
    std::generate(samples.begin(), samples.end(), [&] { return static_cast<std::int16_t>(sample(random)); });
    return samples;
}

/// As it is said: by looking at every sample, and at those beside the stretch that may count too.
Extent lookAtAll(const std::vector<std::int16_t> &samples, std::int64_t from, std::int64_t to, std::int64_t beside) {
    const auto clamped = [&](std::int64_t at) { return std::clamp<std::int64_t>(at, 0, std::ssize(samples)); };
    const auto [low, high] =
        std::minmax_element(samples.begin() + clamped(from - beside), samples.begin() + clamped(to + beside));
    return {static_cast<float>(*low) / 32768.0F, static_cast<float>(*high) / 32768.0F};
}

} // namespace

TEST(PeaksTest, EveryStretchHasItsLowestAndHighestSample) {
    const auto samples = anySamples(300'000);
    Peaks peaks;
    peaks.append(samples);
    std::mt19937 random(11);
    for (int i = 0; i < 2000; ++i) {
        const std::int64_t from = std::uniform_int_distribution<std::int64_t>(0, 299'000)(random);
        const std::int64_t length = std::uniform_int_distribution<std::int64_t>(1, 300'000 - from)(random);
        const Extent found = peaks.between(from, from + length);
        const Extent inside = lookAtAll(samples, from, from + length, 0);
        const Extent beside = lookAtAll(samples, from, from + length, std::max<std::int64_t>(length / 8, 64));
        ASSERT_LE(found.low, inside.low);
        ASSERT_GE(found.high, inside.high);
        ASSERT_GE(found.low, beside.low);
        ASSERT_LE(found.high, beside.high);
    }
}

TEST(PeaksTest, AWordBetweenSilencesKeepsItsPlaceInAnHour) {
    Peaks peaks;
    const std::vector<std::int16_t> silence(44100);
    for (int second = 0; second < 3600; ++second) {
        if (second == 1800) {
            peaks.append(std::vector<std::int16_t>(44100, 12000));
        } else {
            peaks.append(silence);
        }
    }
    EXPECT_EQ(peaks.samples(), 3600 * 44100LL);
    // The picture of the hour on a screen of 3840.
    constexpr std::int64_t pixel = 3600 * 44100LL / 3840;
    const std::int64_t word = 1800 * 44100LL / pixel;
    for (std::int64_t x = 0; x < 3840; ++x) {
        const Extent column = peaks.between(x * pixel, (x + 1) * pixel);
        EXPECT_EQ(column.low, 0);
        if (x < word - 1 || x > word + 3) {
            EXPECT_EQ(column.high, 0) << x;
        }
    }
    EXPECT_NEAR(peaks.between((word + 1) * pixel, (word + 2) * pixel).high, 12000 / 32768.0, 1e-6);
}

TEST(PeaksTest, OddPiecesGiveWhatOnePieceGives) {
    const auto samples = anySamples(10'007);
    Peaks whole;
    whole.append(samples);
    Peaks pieces;
    std::span<const std::int16_t> rest(samples);
    for (std::size_t size = 1; !rest.empty(); size = size * 3 % 257 + 1) {
        pieces.append(rest.first(std::min(size, rest.size())));
        rest = rest.subspan(std::min(size, rest.size()));
    }
    ASSERT_EQ(pieces.samples(), whole.samples());
    for (std::int64_t from = 0; from < whole.samples(); from += 97) {
        ASSERT_EQ(pieces.between(from, from + 500), whole.between(from, from + 500));
    }
}

TEST(PeaksTest, ALevelStandsForSamplesThatAreNotThereYet) {
    Peaks peaks;
    peaks.append(1000, 0.5F);
    peaks.append(1000, 0.0F);
    peaks.append(64, 7.0F); // past full scale
    EXPECT_EQ(peaks.samples(), 2064);
    EXPECT_NEAR(peaks.between(0, 900).high, 0.5, 1e-4);
    EXPECT_NEAR(peaks.between(0, 900).low, -0.5, 1e-4);
    EXPECT_EQ(peaks.between(1100, 1900), Extent{});
    EXPECT_NEAR(peaks.between(2048, 2064).high, 1, 1e-4);
}

TEST(PeaksTest, NothingIsFlat) {
    Peaks peaks;
    EXPECT_EQ(peaks.between(0, 100), Extent{});
    peaks.append(std::vector<std::int16_t>(100, 5));
    EXPECT_EQ(peaks.between(50, 50), Extent{});
    EXPECT_EQ(peaks.between(100, 200), Extent{});
    EXPECT_NE(peaks.between(-10, 10), Extent{});
    peaks.clear();
    EXPECT_EQ(peaks.between(0, 100), Extent{});
    EXPECT_EQ(peaks.samples(), 0);
}

} // namespace orvel
