// Where the words of a take stand in what was recorded.
#include "dsp/alignment.h"
#include "dsp/compress.h"
#include "dsp/cutting.h"
#include "dsp/dither.h"
#include "dsp/gain.h"
#include "sound.h"
#include "speech.h"

#include <gtest/gtest.h>

namespace orvel {

namespace {

constexpr std::size_t alignedMs = testRate / 1000;

void silenceFor(Samples &take, std::size_t milliseconds) {
    const Samples hiss = pinkNoise(8, milliseconds * alignedMs, static_cast<unsigned>(take.size()));
    take.insert(take.end(), hiss.begin(), hiss.end());
}

/// Silence, a sentence, half a second of silence, another sentence, silence.
struct Recording {
    explicit Recording(const std::string &options, std::size_t number = 0) {
        silenceFor(samples, 830);
        for (const std::size_t sentence : {number % 10, (number + 1) % 10}) {
            const Samples said = atPeak(speak(spokenSentences.at(sentence), options), -12);
            begins.push_back(samples.size());
            samples.insert(samples.end(), said.begin(), said.end());
            silenceFor(samples, 500);
        }
    }
    Samples samples;
    std::vector<std::size_t> begins;
};

SpeechSearch searched(const Samples &samples) {
    SpeechSearch search(testRate);
    search.add(samples);
    return search;
}

std::vector<Placement> placed(const Samples &take, const Samples &original) {
    return placeInOriginal(searched(take), searched(original));
}

/// What the studio makes of a take: louder by 6 dB, and pressed together.
Samples processed(Samples samples) {
    Dither dither;
    amplify(samples, 2, dither);
    compress(samples, {-30, 60}, testRate, dither);
    return samples;
}

double shiftMsAt(const std::vector<Placement> &placements, std::size_t sample) {
    for (const Placement &place : placements) {
        if (sample < place.end) {
            return static_cast<double>(place.shift) / alignedMs;
        }
    }
    return -1;
}

} // namespace

TEST(Alignment, WhatWasCutOffInFrontIsFoundForEveryVoice) {
    std::size_t number = 0;
    for (const char *voice : spokenVoices) {
        for (const std::size_t cutMs : {0U, 37U, 412U, 790U}) {
            SCOPED_TRACE(std::string(voice) + " " + std::to_string(cutMs));
            const Recording dry(voice, number++);
            Samples take = processed(dry.samples);
            keepOnly(take, cutMs * alignedMs, take.size() - 300 * alignedMs, testRate);
            const auto placements = placed(take, dry.samples);
            EXPECT_EQ(placements.size(), 1U) << "nothing was cut between";
            EXPECT_NEAR(shiftMsAt(placements, 0), static_cast<double>(cutMs), 20);
            EXPECT_EQ(placements.back().end, take.size());
        }
    }
}

TEST(Alignment, WhatWentOutOfAPauseIsFoundAndHasNoPlaceInTheTake) {
    const Recording dry("-v nl", 3);
    Samples take = processed(dry.samples);
    const std::size_t pause = dry.begins.at(1) - 350 * alignedMs;
    cutOut(take, pause, 200 * alignedMs, testRate);
    const auto placements = placed(take, dry.samples);
    EXPECT_NEAR(shiftMsAt(placements, dry.begins.at(0) + 300 * alignedMs), 0, 20);
    const std::size_t second = dry.begins.at(1) + 300 * alignedMs;
    EXPECT_NEAR(shiftMsAt(placements, second - 200 * alignedMs), 200, 20);
    ASSERT_TRUE(inTake(placements, second));
    EXPECT_NEAR(static_cast<double>(*inTake(placements, second)), static_cast<double>(second - 200 * alignedMs),
                20.0 * alignedMs);
    std::size_t lost = 0;
    for (std::size_t at = 0; at < dry.samples.size(); at += alignedMs) {
        lost += inTake(placements, at) ? 0U : 1U;
    }
    EXPECT_NEAR(static_cast<double>(lost), 200, 20);
}

TEST(Alignment, TheOriginalIsLaidBesideTheTake) {
    const Recording dry("-v nl+f2", 5);
    Samples take = dry.samples;
    cutOut(take, dry.begins.at(1) - 350 * alignedMs, 200 * alignedMs, testRate);
    keepOnly(take, 600 * alignedMs, take.size(), testRate);
    const Samples laid = layBeside(placed(take, dry.samples), dry.samples, testRate);
    ASSERT_EQ(laid.size(), take.size());
    // The same words at the same time: what is left of the difference is what the cuts fade.
    double difference = 0;
    for (std::size_t i = 0; i < laid.size(); ++i) {
        difference += std::pow(laid[i] - take[i], 2);
    }
    EXPECT_LT(std::sqrt(difference / static_cast<double>(laid.size())), rmsOf(take) / 2);
    for (std::size_t i = 1; i < laid.size(); ++i) {
        ASSERT_LT(std::abs(laid[i] - laid[i - 1]), 9000) << "a click at " << i;
    }
}

TEST(Alignment, WithoutSpeechOrWithAnotherVoiceNothingIsShifted) {
    const Samples silence(2 * testRate);
    EXPECT_EQ(placed(silence, Samples(3 * testRate)), (std::vector<Placement>{{0, silence.size(), 0}}));
    const Samples nothing;
    EXPECT_EQ(placed(nothing, nothing), (std::vector<Placement>{{0, 0, 0}}));
    const Recording dry("-v nl", 1);
    Samples longer = dry.samples;
    longer.resize(longer.size() + testRate);
    EXPECT_EQ(shiftMsAt(placed(longer, dry.samples), 0), 0) << "a take that is longer than its original";
    EXPECT_EQ(layBeside({{0, longer.size(), 0}}, dry.samples, testRate).size(), longer.size());
}

TEST(Alignment, ALongTakeIsFoundBehindALongSilence) {
    SpeechSearch take(testRate);
    SpeechSearch original(testRate);
    const Recording dry("-v nl", 2);
    original.add(Samples(40 * testRate));
    for (int i = 0; i < 300; ++i) {
        original.add(dry.samples);
        take.add(dry.samples);
    }
    const auto placements = placeInOriginal(take, original);
    EXPECT_EQ(placements.size(), 1U);
    EXPECT_NEAR(shiftMsAt(placements, 0), 40.0 * testRate / alignedMs, 20);
    EXPECT_EQ(placements.front().end, take.samples());
}

} // namespace orvel
