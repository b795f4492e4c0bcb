#include "recording/input_level.h"
#include "tests/dsp/speech.h"

#include <gtest/gtest.h>

namespace orvel {

namespace {

constexpr std::size_t lookFrames = testRate * InputLevel::lookMs / 1000;

void feed(InputLevel &level, const Samples &samples) {
    for (std::size_t at = 0; at + lookFrames <= samples.size(); at += lookFrames) {
        int highest = 0;
        for (std::size_t i = at; i < at + lookFrames; ++i) {
            highest = std::max(highest, std::abs(int{samples[i]}));
        }
        level.heard(static_cast<float>(highest) / 32768);
    }
}

Samples with(Samples samples, const Samples &other) {
    for (std::size_t i = 0; i < samples.size(); ++i) {
        samples[i] = static_cast<std::int16_t>(std::clamp(samples[i] + other[i], -32768, 32767));
    }
    return samples;
}

/// RMS (dB) of the 10 ms pieces that are less than 30 dB below the loudest one: how loud it is spoken, without pauses.
double speechLevel(const Samples &samples) {
    constexpr std::size_t piece = testRate / 100;
    std::vector<double> squares;
    for (std::size_t at = 0; at + piece <= samples.size(); at += piece) {
        double sum = 0;
        for (std::size_t i = at; i < at + piece; ++i) {
            sum += static_cast<double>(samples[i]) * static_cast<double>(samples[i]);
        }
        squares.push_back(sum / static_cast<double>(piece));
    }
    const double least = *std::max_element(squares.begin(), squares.end()) / 1000;
    double sum = 0;
    double count = 0;
    for (const double square : squares) {
        if (square > least) {
            sum += square;
            ++count;
        }
    }
    return 10 * std::log10(sum / count / 32768 / 32768);
}

/// So loud that its speech level is this.
Samples atSpeechLevel(Samples samples, double decibels) {
    const double factor = std::pow(10, (decibels - speechLevel(samples)) / 20);
    for (std::int16_t &sample : samples) {
        sample = static_cast<std::int16_t>(std::lrint(std::clamp(factor * sample, -32768.0, 32767.0)));
    }
    return samples;
}

struct Spoken {
    double level; ///< dB, of the speech without its pauses
    InputVerdict right;
};

} // namespace

TEST(InputLevel, KnowsNothingAtFirstAndSaysStilInARoom) {
    InputLevel level;
    EXPECT_EQ(level.verdict(), InputVerdict::Unknown);
    feed(level, Samples(testRate));
    EXPECT_EQ(level.verdict(), InputVerdict::Silent);
    for (const double rms : {3.0, 30.0, 150.0}) { // -81, -61, -47 dB
        feed(level, pinkNoise(rms, 4 * testRate));
        EXPECT_EQ(level.verdict(), InputVerdict::Silent) << "the room is no voice: " << rms;
    }
    level.reset();
    EXPECT_EQ(level.verdict(), InputVerdict::Unknown);
}

TEST(InputLevel, JudgesVoicesByHowLoudTheyAre) {
    // Peaks of these voices are 10 to 24 dB above their level: at -6 all of them are cut off.
    static constexpr std::array voices = {"-v nl",           "-v nl+m3 -p 0",  "-v nl+f2 -p 90",   "-v nl -s 90",
                                          "-v nl+f4 -s 240", "-v nl+m7 -p 20", "-v nl+croak -p 0", "-v nl+whisper"};
    if (speak(spokenSentences[0]).empty()) {
        GTEST_SKIP() << "espeak-ng is not installed";
    }
    int judged = 0;
    int wrong = 0;
    for (const char *voice : voices) {
        Samples words;
        for (const std::size_t sentence : {std::size_t{0}, std::size_t{3}}) {
            const Samples spoken = speak(spokenSentences.at(sentence), voice);
            words.insert(words.end(), spoken.begin(), spoken.end());
        }
        for (const double room : {0.0, 10.0, 40.0}) { // none, -70, -58 dB
            const Samples noisy = pinkNoise(room > 0 ? room : 1, words.size());
            for (const auto &[loud, right] : {Spoken{-50, InputVerdict::TooSoft}, Spoken{-44, InputVerdict::TooSoft},
                                              Spoken{-30, InputVerdict::Good}, Spoken{-26, InputVerdict::Good},
                                              Spoken{-6, InputVerdict::TooLoud}}) {
                InputLevel level;
                feed(level, with(atSpeechLevel(words, loud), room > 0 ? noisy : Samples(words.size())));
                ++judged;
                if (level.verdict() != right) {
                    ++wrong;
                    std::printf("%s at %.0f dB in a room of %.0f: %d instead of %d\n", voice, loud, room,
                                static_cast<int>(level.verdict()), static_cast<int>(right));
                }
            }
        }
    }
    std::printf("%d of %d judged wrong\n", wrong, judged);
    EXPECT_EQ(wrong, 0);
}

TEST(InputLevel, HoldsThroughAPauseAndLetsGoAfterIt) {
    const Samples words = atPeak(speak(spokenSentences[3]), -9);
    if (words.empty()) {
        GTEST_SKIP() << "espeak-ng is not installed";
    }
    InputLevel level;
    feed(level, words);
    EXPECT_EQ(level.verdict(), InputVerdict::Good);
    feed(level, pinkNoise(20, testRate));
    EXPECT_EQ(level.verdict(), InputVerdict::Good) << "a breath";
    feed(level, pinkNoise(20, 2 * testRate + testRate / 2));
    EXPECT_EQ(level.verdict(), InputVerdict::Silent);
}

TEST(InputLevel, OneClipIsTooLoudForThreeSeconds) {
    const Samples words = atPeak(speak(spokenSentences[3]), -9);
    if (words.empty()) {
        GTEST_SKIP() << "espeak-ng is not installed";
    }
    InputLevel level;
    feed(level, words);
    level.heard(1);
    EXPECT_EQ(level.verdict(), InputVerdict::TooLoud);
    feed(level, words);
    feed(level, words);
    EXPECT_EQ(level.verdict(), InputVerdict::Good);
}

// The sign said that it was too loud and the verdict beside it that nobody spoke.
TEST(InputLevel, AClipAfterSilenceIsTooLoud) {
    InputLevel level;
    feed(level, Samples(4 * testRate));
    level.heard(1);
    EXPECT_EQ(level.verdict(), InputVerdict::TooLoud);
    feed(level, Samples(4 * testRate));
    EXPECT_EQ(level.verdict(), InputVerdict::Silent);
}

TEST(InputLevel, DoesNotFlickerAtALimit) {
    InputLevel level;
    int changes = 0;
    InputVerdict before = InputVerdict::Unknown;
    for (int i = 0; i < 1000; ++i) {
        const double around = -24 + 0.8 * std::sin(i / 10.0);
        level.heard(static_cast<float>(std::pow(10, (i % 3 == 0 ? around : -45) / 20)));
        changes += before != InputVerdict::Unknown && level.verdict() != before ? 1 : 0;
        before = level.verdict();
    }
    EXPECT_LE(changes, 1);
}

TEST(InputLevel, AClickIsNoVoice) {
    InputLevel level;
    feed(level, pinkNoise(10, 2 * testRate));
    level.heard(0.3F);
    level.heard(0.3F);
    feed(level, pinkNoise(10, testRate / 2));
    EXPECT_EQ(level.verdict(), InputVerdict::Silent);
}

} // namespace orvel
