#include "production/fitting.h"
#include "tests/dsp/sound.h"
#include "tests/dsp/speech.h"

#include <gtest/gtest.h>

namespace orvel {

namespace {

constexpr std::size_t perMs = testRate / 1000;

struct Word {
    std::size_t begin = 0; ///< samples, in the take
    std::size_t end = 0;
    Samples sound;
};

/// Words that were spoken one by one, with known pauses between them.
struct SpokenTake {
    Samples samples;
    std::vector<Word> words;
};

constexpr std::array spokenWords = {"goedemorgen", "negentienhonderdtachtig", "straks", "muziek", "luisteren"};

/// Without the silence that the computer voice puts around it: what passes 30 dB below its loudest moment.
Samples wordOf(const char *text, const std::string &options) {
    const Samples all = atPeak(speak(text, options), -9);
    if (all.empty()) {
        return {};
    }
    const Levels levels(all);
    const auto [first, last] = levels.passage(levels.highest(0, all.size()) - 30);
    return {all.begin() + static_cast<std::ptrdiff_t>(first), all.begin() + static_cast<std::ptrdiff_t>(last)};
}

/// gapsMs: before the first word, between the words, and behind the last one.
SpokenTake takeOf(const std::string &options, const std::vector<std::size_t> &gapsMs) {
    SpokenTake take;
    for (std::size_t i = 0; i + 1 < gapsMs.size(); ++i) {
        take.samples.resize(take.samples.size() + gapsMs[i] * perMs);
        Word word;
        word.sound = wordOf(spokenWords.at(i), options);
        word.begin = take.samples.size();
        take.samples.insert(take.samples.end(), word.sound.begin(), word.sound.end());
        word.end = take.samples.size();
        take.words.push_back(std::move(word));
    }
    take.samples.resize(take.samples.size() + gapsMs.back() * perMs);
    return take;
}

std::int32_t msOf(std::size_t samples) {
    return static_cast<std::int32_t>(samples * 1000 / testRate);
}

/// Where the last sound ends: the clean samples' own energy, 30 dB below the loudest moment.
double endMs(const Samples &samples) {
    const Levels levels(samples);
    return static_cast<double>(levels.passage(levels.highest(0, samples.size()) - 30).second) * 1000 / testRate;
}

double energyOf(const Samples &samples, double from, double to) {
    double sum = 0;
    for (auto i = static_cast<std::size_t>(std::max(from, 0.0)); i < samples.size() && static_cast<double>(i) < to;
         ++i) {
        sum += std::pow(samples[i], 2);
    }
    return sum;
}

bool holds(const Samples &samples, const Samples &word) {
    return std::search(samples.begin(), samples.end(), word.begin(), word.end()) != samples.end();
}

const std::vector<std::size_t> gaps = {500, 120, 700, 300, 450, 800};
constexpr std::int32_t spare = 470 + 450 + 50 + 200; ///< silence before, and pauses over 250 ms
constexpr std::array speeds = {" -s 110", " -s 160", " -s 240"};

Samples withNoise(Samples take, double level) {
    const Samples hiss = noise(32768 * std::pow(10, level / 20), take.size(), 3);
    for (std::size_t i = 0; i < take.size(); ++i) {
        take[i] = static_cast<std::int16_t>(std::clamp(take[i] + hiss[i], -32768, 32767));
    }
    return take;
}

} // namespace

TEST(Fitting, WithShorterPausesTheLastWordEndsBeforeThePostAndEveryWordIsThere) {
    for (const char *voice : spokenVoices) {
        for (const char *speed : speeds) {
            const SpokenTake take = takeOf(std::string(voice) + speed, gaps);
            ASSERT_GT(peakOf(take.samples), 0) << "espeak-ng is not installed";
            for (const std::int32_t less : {200, 469, 700, 1100}) {
                const std::int32_t post = msOf(take.words.back().end) - less + 100;
                const Fitted fitted = fitToPost(take.samples, testRate, post);
                ASSERT_EQ(fitted.outcome, Fitted::Outcome::Fits) << voice << speed << less;
                EXPECT_EQ(fitted.tempo, 1) << voice << speed << less;
                EXPECT_NEAR(endMs(fitted.samples), post - 100, 30) << voice << speed << less;
                for (const Word &word : take.words) {
                    EXPECT_TRUE(holds(fitted.samples, word.sound)) << voice << speed << less;
                }
            }
        }
    }
}

TEST(Fitting, WhatPausesCannotGiveTheTempoDoesAndEveryWordKeepsItsSound) {
    int fits = 0;
    for (const char *voice : spokenVoices) {
        for (const char *speed : speeds) {
            const SpokenTake take = takeOf(std::string(voice) + speed, gaps);
            ASSERT_GT(peakOf(take.samples), 0) << "espeak-ng is not installed";
            const auto shortest = static_cast<double>(msOf(take.words.back().end) - spare);
            for (const double factor : {1.01, 1.03}) {
                const auto post = static_cast<std::int32_t>(shortest / factor) + 100;
                const Fitted fitted = fitToPost(take.samples, testRate, post);
                ASSERT_EQ(fitted.outcome, Fitted::Outcome::Fits) << voice << speed << factor;
                EXPECT_NEAR(fitted.tempo, factor, 0.01);
                EXPECT_NEAR(endMs(fitted.samples), post - 100, 30) << voice << speed << factor;
                ++fits;
                // Backwards from the end: the pauses are 250 ms by now, all but the one of 120 ms.
                double end = static_cast<double>(post - 100) * static_cast<double>(perMs);
                for (std::size_t i = take.words.size(); i-- > 0;) {
                    const Word &word = take.words[i];
                    const double length = static_cast<double>(word.sound.size()) / factor;
                    const double heard = energyOf(fitted.samples, end - length - 2205, end + 2205);
                    const double spoken = energyOf(word.sound, 0, 1e9) / factor;
                    EXPECT_NEAR(10 * std::log10(heard / spoken), 0, 1) << voice << speed << factor << ", word " << i;
                    const double pause = i > 0 ? static_cast<double>(std::min<std::size_t>(gaps[i], 250)) : 0;
                    end -= length + pause * static_cast<double>(perMs) / factor;
                }
            }
        }
    }
    EXPECT_EQ(fits, 36);
}

TEST(Fitting, TheFitHoldsInARoomThatIsNotSilent) {
    for (const char *voice : spokenVoices) {
        const SpokenTake take = takeOf(std::string(voice) + " -s 160", gaps);
        ASSERT_GT(peakOf(take.samples), 0) << "espeak-ng is not installed";
        const Samples noisy = withNoise(take.samples, -55);
        const std::int32_t post = msOf(take.words.back().end) - 900 + 100;
        const Fitted fitted = fitToPost(noisy, testRate, post);
        ASSERT_EQ(fitted.outcome, Fitted::Outcome::Fits) << voice;
        EXPECT_NEAR(endMs(fitted.samples), post - 100, 30) << voice;
        // The words as they came out of the microphone, noise and all.
        for (const Word &word : take.words) {
            EXPECT_TRUE(holds(fitted.samples, Samples(noisy.begin() + static_cast<std::ptrdiff_t>(word.begin),
                                                      noisy.begin() + static_cast<std::ptrdiff_t>(word.end))))
                << voice;
        }
    }
}

TEST(Fitting, TheSilenceBeforeGoesFirstThenThePausesThenTheTempo) {
    const SpokenTake take = takeOf("-v nl", gaps);
    ASSERT_GT(peakOf(take.samples), 0) << "espeak-ng is not installed";
    const std::int32_t end = msOf(take.words.back().end);
    const Fitted before = fitToPost(take.samples, testRate, end - 400 + 100);
    EXPECT_NEAR(before.beforeMs, 400, 20);
    EXPECT_EQ(before.pausesMs, 0);
    EXPECT_EQ(before.sentence, QStringLiteral("Past op de intro: 0,4 s stilte vooraf weg."));
    const Fitted pauses = fitToPost(take.samples, testRate, end - 870 + 100);
    EXPECT_NEAR(pauses.beforeMs, 470, 20);
    EXPECT_NEAR(pauses.pausesMs, 400, 40);
    EXPECT_EQ(pauses.tempo, 1);
    EXPECT_EQ(pauses.sentence, QStringLiteral("Past op de intro: 0,5 s stilte vooraf weg, pauzes 0,4 s korter."));
    const Fitted faster = fitToPost(take.samples, testRate, end - spare - 70 + 100);
    EXPECT_GT(faster.tempo, 1);
    EXPECT_TRUE(faster.sentence.endsWith(QStringLiteral(" % sneller."))) << faster.sentence.toStdString();
}

// Of what a pause has over 250 ms each gives the same share.
TEST(Fitting, ThePausesShareWhatIsNeeded) {
    Samples take(30 * perMs);
    for (const std::size_t pause : {450U, 850U, 200U, 0U}) {
        const Samples beep = tone(300, 8000, 400 * perMs);
        take.insert(take.end(), beep.begin(), beep.end());
        take.resize(take.size() + pause * perMs);
    }
    take = withNoise(take, -70);
    const Fitted fitted = fitToPost(take, testRate, msOf(take.size()) - 400 + 100);
    ASSERT_EQ(fitted.outcome, Fitted::Outcome::Fits);
    // 200 and 600 ms to give for 400: half of each.
    const Levels levels(fitted.samples);
    const auto isSilent = [&](std::size_t fromMs, std::size_t toMs) {
        return levels.highest(fromMs * perMs, toMs * perMs) < -60;
    };
    EXPECT_TRUE(isSilent(30 + 400 + 25, 30 + 400 + 350 - 25));
    EXPECT_FALSE(isSilent(30 + 400 + 25, 30 + 400 + 350 + 25));
    EXPECT_TRUE(isSilent(30 + 800 + 350 + 25, 30 + 800 + 350 + 550 - 25));
    EXPECT_FALSE(isSilent(30 + 800 + 350 + 25, 30 + 800 + 350 + 550 + 25));
}

TEST(Fitting, ATakeThatEndsEarlierStaysWhereItWasSpoken) {
    const SpokenTake take = takeOf("-v nl", gaps);
    ASSERT_GT(peakOf(take.samples), 0) << "espeak-ng is not installed";
    const std::size_t end = take.words.back().end;
    const Fitted fitted = fitToPost(take.samples, testRate, msOf(end) + 500);
    EXPECT_EQ(fitted.outcome, Fitted::Outcome::Early);
    EXPECT_TRUE(fitted.changed);
    EXPECT_EQ(fitted.sentence, QStringLiteral("Past al, 0,5 s vóór de zang; de stilte erachter is weg."));
    ASSERT_LT(fitted.samples.size(), end + 100 * perMs);
    ASSERT_GE(fitted.samples.size(), end);
    EXPECT_TRUE(std::equal(take.samples.begin(), take.samples.begin() + static_cast<std::ptrdiff_t>(end),
                           fitted.samples.begin()));
    const Fitted again = fitToPost(fitted.samples, testRate, msOf(end) + 500);
    EXPECT_EQ(again.outcome, Fitted::Outcome::Early);
    EXPECT_FALSE(again.changed);
    EXPECT_EQ(again.samples, fitted.samples);
    EXPECT_EQ(again.sentence, QStringLiteral("Past al, 0,5 s vóór de zang."));
}

TEST(Fitting, WhatFitsOnceFitsTwice) {
    const SpokenTake take = takeOf("-v nl", gaps);
    ASSERT_GT(peakOf(take.samples), 0) << "espeak-ng is not installed";
    const std::int32_t post = msOf(take.words.back().end) - 700 + 100;
    const Fitted once = fitToPost(take.samples, testRate, post);
    ASSERT_EQ(once.outcome, Fitted::Outcome::Fits);
    const Fitted twice = fitToPost(once.samples, testRate, post);
    EXPECT_LT(std::abs(endMs(twice.samples) - endMs(once.samples)), 10);
}

TEST(Fitting, WhatCannotFitIsAsItWasAndTellsHowMuchIsTooMuch) {
    const SpokenTake take = takeOf("-v nl", gaps);
    ASSERT_GT(peakOf(take.samples), 0) << "espeak-ng is not installed";
    const double shortest = (msOf(take.words.back().end) - spare) / 1.04;
    const auto post = static_cast<std::int32_t>(shortest) - 1250 + 100;
    const Fitted fitted = fitToPost(take.samples, testRate, post);
    EXPECT_EQ(fitted.outcome, Fitted::Outcome::TooLong);
    EXPECT_EQ(fitted.samples, take.samples);
    EXPECT_FALSE(fitted.changed);
    EXPECT_EQ(fitted.sentence, QStringLiteral("Past niet: nog 1,3 s te lang."));
    for (const std::int32_t impossible : {100, 50, 0, -5000}) {
        const Fitted no = fitToPost(take.samples, testRate, impossible);
        EXPECT_EQ(no.outcome, Fitted::Outcome::TooLong) << impossible;
        EXPECT_EQ(no.samples, take.samples);
    }
}

TEST(Fitting, SilenceIsNoTake) {
    for (const Samples &take : {Samples(), Samples(44100), noise(200, 88200)}) {
        const Fitted fitted = fitToPost(take, testRate, 3000);
        EXPECT_EQ(fitted.outcome, Fitted::Outcome::Silent);
        EXPECT_EQ(fitted.samples, take);
        EXPECT_FALSE(fitted.changed);
        EXPECT_EQ(fitted.sentence, QStringLiteral("Geen spraak gevonden."));
    }
}

} // namespace orvel
