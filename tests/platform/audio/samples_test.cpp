#include "platform/samples.h"

#include <array>
#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <vector>

namespace orvel {
namespace {

constexpr float inFloat(int sample) {
    return static_cast<float>(sample) / 32768;
}

std::vector<std::int16_t> mixed(const std::vector<float> &interleaved, std::size_t channels) {
    std::vector<std::int16_t> mono(interleaved.size() / channels);
    mixToMono(interleaved, channels, mono);
    return mono;
}

TEST(MixToMono, OneChannelAndTwoAlikeAreKeptBitForBit) {
    std::vector<float> one;
    std::vector<float> two;
    std::vector<std::int16_t> same;
    for (int sample = -32768; sample <= 32767; ++sample) {
        one.push_back(inFloat(sample));
        two.insert(two.end(), 2, inFloat(sample));
        same.push_back(static_cast<std::int16_t>(sample));
    }
    EXPECT_EQ(mixed(one, 1), same);
    EXPECT_EQ(mixed(two, 2), same);
}

TEST(MixToMono, OfTwoAndMoreTheFirstTwoCountAlike) {
    EXPECT_EQ(mixed({inFloat(1000), inFloat(3000), inFloat(-32768), inFloat(32767)}, 2),
              (std::vector<std::int16_t>{2000, 0}));
    EXPECT_EQ(mixed({inFloat(1000), inFloat(3000), 1, 1, inFloat(8), inFloat(-4), -1, -1}, 4),
              (std::vector<std::int16_t>{2000, 2}));
}

TEST(MixToMono, IsNeverMoreThanHalfAStepBeside) {
    for (int left = -32768; left <= 32767; left += 251) {
        for (int right = -32768; right <= 32767; right += 257) {
            const int sample = mixed({inFloat(left), inFloat(right)}, 2).front();
            ASSERT_LE(std::abs(2 * sample - (left + right)), 1) << left << ' ' << right;
        }
    }
}

/// 1.5 and 0.1 are 0.8: only the mean is limited.
TEST(MixToMono, LimitsTheMeanAndNotItsParts) {
    EXPECT_EQ(mixed({1.5F, 0.1F, 1.5F, 0.7F, -1.5F, -0.7F}, 2), (std::vector<std::int16_t>{26214, 32767, -32768}));
}

TEST(MixToMono, WhatIsNoNumberIsSilence) {
    EXPECT_EQ(mixed({std::numeric_limits<float>::quiet_NaN(), 0.5F}, 1), (std::vector<std::int16_t>{0, 16384}));
}

} // namespace
} // namespace orvel
