// The dry original beside the take: the same words at the same time, equally loud.
#include "dsp/trim.h"
#include "platform/ebur128/ebur128_meter.h"
#include "production/comparison.h"
#include "production/fitting.h"
#include "production/loudness_stage.h"
#include "tests/dsp/sound.h"
#include "tests/dsp/speech.h"

#include <gtest/gtest.h>

namespace orvel {

namespace {

constexpr std::size_t comparedMs = testRate / 1000;

/// 0.9 s of a quiet room, a sentence that is spoken softly, a pause, another one, 0.7 s of the room.
Samples softlySpoken(const std::string &voice, std::size_t number) {
    Samples take = pinkNoise(4, 900 * comparedMs, 1);
    for (const std::size_t sentence : {number % 10, (number + 4) % 10}) {
        const Samples said = atPeak(speak(spokenSentences.at(sentence), voice), -22);
        take.insert(take.end(), said.begin(), said.end());
        const Samples pause = pinkNoise(4, 700 * comparedMs, 2);
        take.insert(take.end(), pause.begin(), pause.end());
    }
    return take;
}

/// What the stages make of it: pressed together, trimmed and brought to -16 LUFS. The samples that the trim took off in
/// front are known.
struct ProcessedTake {
    explicit ProcessedTake(Samples dry) : samples(std::move(dry)) {
        AudioTransform transform;
        transform.setSampleRate(testRate);
        transform.setEnabled(true);
        transform.compress(samples, -35, 50, 0);
        transform.trimStart(samples, -50, cut);
        std::int32_t behind = 0;
        transform.trimEnd(samples, -50, behind);
        bringToLoudness(transform, samples, testRate, LoudnessGoal{-16, -1}, meter);
    }
    Samples samples;
    std::int32_t cut = 0;
    Ebur128Meter meter;
};

/// The moments at which a sentence passes 25 dB below its loudest moment, ms.
std::pair<double, double> sentenceEdges(const Samples &samples, std::size_t from, std::size_t to) {
    const Samples part(samples.begin() + static_cast<std::ptrdiff_t>(from),
                       samples.begin() + static_cast<std::ptrdiff_t>(std::min(to, samples.size())));
    const Levels levels(part);
    const auto [first, last] = levels.passage(levels.highest(0, part.size()) - 25);
    return {static_cast<double>(first + from) / comparedMs, static_cast<double>(last + from) / comparedMs};
}

} // namespace

TEST(Comparison, IsAsLoudAsTheTakeAndItsWordsStandWhereTheTakesDo) {
    std::size_t number = 0;
    for (const char *voice : spokenVoices) {
        SCOPED_TRACE(voice);
        const Samples dry = softlySpoken(voice, number++);
        ProcessedTake take(dry);
        ASSERT_GT(take.cut, static_cast<std::int32_t>(300 * comparedMs)) << "there is something to find";
        const double before = take.meter.measure(dry, testRate)->lufs;
        const double wanted = take.meter.measure(take.samples, testRate)->lufs;
        ASSERT_GT(wanted - before, 5) << "the take is louder";
        const Samples beside = comparable(take.samples, dry, testRate, take.meter);
        ASSERT_EQ(beside.size(), take.samples.size());
        const auto reached = take.meter.measure(beside, testRate);
        ASSERT_TRUE(reached);
        EXPECT_NEAR(reached->lufs, wanted, 0.5);
        EXPECT_LE(reached->truePeak, -0.9);
        // The truth is what the trim said that it took off.
        const Samples truth(dry.begin() + take.cut, dry.end());
        const std::size_t middle = beside.size() / 2;
        const auto [begin, end] = sentenceEdges(beside, 0, middle);
        const auto [trueBegin, trueEnd] = sentenceEdges(truth, 0, middle);
        EXPECT_NEAR(begin, trueBegin, 20);
        EXPECT_NEAR(end, trueEnd, 20);
    }
}

TEST(Comparison, OfAFittedTakeTheNearestPlaceIsHeard) {
    const Samples dry = softlySpoken("-v nl", 2);
    ProcessedTake take(dry);
    const auto fitted =
        fitToPost(take.samples, testRate, static_cast<std::int32_t>(take.samples.size() / comparedMs) - 500);
    ASSERT_EQ(fitted.outcome, Fitted::Outcome::Fits);
    ASSERT_GT(fitted.pausesMs, 300);
    const Samples beside = comparable(fitted.samples, dry, testRate, take.meter);
    ASSERT_EQ(beside.size(), fitted.samples.size());
    const std::size_t middle = beside.size() / 2;
    // Compression moves an edge by itself: the last words' end is compared with the fitted take's own.
    EXPECT_NEAR(sentenceEdges(beside, middle, beside.size()).second,
                sentenceEdges(fitted.samples, middle, fitted.samples.size()).second, 60);
}

TEST(Comparison, OfATakeWithoutLoudnessTheOriginalStaysAsItIs) {
    Ebur128Meter meter;
    const Samples take(2 * testRate);
    const Samples dry = tone(300, 8000, 3 * testRate);
    const Samples beside = comparable(take, dry, testRate, meter);
    EXPECT_EQ(beside, Samples(dry.begin(), dry.begin() + 2 * testRate));
}

} // namespace orvel
