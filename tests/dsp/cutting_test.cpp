#include "dsp/cutting.h"
#include "sound.h"

#include <gtest/gtest.h>

namespace orvel {

TEST(Cutting, WhatIsCutOutIsGoneAndTheRestStays) {
    const Samples take = noise(3000, 44100);
    Samples cut = take;
    cutOut(cut, 10000, 5000, testRate);
    ASSERT_EQ(cut.size(), take.size() - 5000);
    EXPECT_TRUE(std::equal(take.begin(), take.begin() + 10000, cut.begin()));
    EXPECT_TRUE(std::equal(take.begin() + 15221, take.end(), cut.begin() + 10221));
}

TEST(Cutting, TheSeamNeitherClicksNorIsHeardAsAHole) {
    Samples low = tone(100, 8000, 44100);
    cutOut(low, 10010, 5000, testRate);
    for (std::size_t i = 1; i < low.size(); ++i) {
        EXPECT_LT(std::abs(low[i] - low[i - 1]), 300) << i;
    }
    const Samples hiss = noise(3000, 44100);
    Samples cut = hiss;
    cutOut(cut, 10000, 5000, testRate);
    EXPECT_NEAR(rmsOf(Samples(cut.begin() + 10000, cut.begin() + 10220)), 3000, 600);
}

TEST(Cutting, WhatLiesOutsideTheTakeIsNoPartOfIt) {
    const Samples take = noise(3000, 1000);
    Samples cut = take;
    cutOut(cut, 2000, 10, testRate);
    EXPECT_EQ(cut, take);
    cutOut(cut, 990, 100, testRate);
    EXPECT_EQ(cut, Samples(take.begin(), take.begin() + 990));
    keepOnly(cut, 0, 5000, testRate);
    EXPECT_EQ(cut, Samples(take.begin(), take.begin() + 990));
    keepOnly(cut, 700, 300, testRate);
    EXPECT_TRUE(cut.empty());
}

TEST(Cutting, OnlyEdgesWhereSomethingWasCutOffAreFaded) {
    const Samples take(44100, 8000);
    Samples atBegin = take;
    keepOnly(atBegin, 1000, take.size(), testRate);
    EXPECT_EQ(atBegin.size(), take.size() - 1000);
    EXPECT_LT(atBegin.front(), 100);
    EXPECT_EQ(atBegin[88], 8000);
    EXPECT_EQ(atBegin.back(), 8000);
    Samples atEnd = take;
    keepOnly(atEnd, 0, 40000, testRate);
    EXPECT_EQ(atEnd.size(), 40000U);
    EXPECT_EQ(atEnd.front(), 8000);
    EXPECT_LT(atEnd.back(), 100);
    EXPECT_EQ(atEnd[40000 - 89], 8000);
}

} // namespace orvel
