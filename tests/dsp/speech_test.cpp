#include "dsp/speech.h"
#include "sound.h"
#include "speech.h"

#include <gtest/gtest.h>

namespace orvel {

namespace {

constexpr std::size_t oneMs = testRate / 1000;

void addSound(Samples &take, const Samples &more) {
    take.insert(take.end(), more.begin(), more.end());
}

Samples quiet(std::size_t milliseconds) {
    return Samples(milliseconds * oneMs);
}

Samples inNoise(Samples take, double belowLoudest, bool pink, unsigned seed) {
    const double rms = 32768 * std::pow(10, (Levels(take).highest(0, take.size()) - belowLoudest) / 20);
    const Samples hiss = pink ? pinkNoise(rms, take.size(), seed) : noise(rms, take.size(), seed);
    for (std::size_t i = 0; i < take.size(); ++i) {
        take[i] = static_cast<std::int16_t>(std::clamp(take[i] + hiss[i], -32768, 32767));
    }
    return take;
}

double msFrom(std::size_t one, std::size_t other) {
    return std::abs(static_cast<double>(one) - static_cast<double>(other)) / oneMs;
}

struct Surroundings {
    double noiseBelowLoudest; ///< dB
    bool pink;
};

constexpr std::array places = {Surroundings{200, false}, Surroundings{50, true}, Surroundings{40, false},
                               Surroundings{30, true}, Surroundings{30, false}};

void listen(SpeechWatch &watch, const Samples &take, std::size_t block = 441) {
    for (std::size_t at = 0; at < take.size(); at += block) {
        watch.add(std::span(take).subspan(at, std::min(block, take.size() - at)));
    }
}

} // namespace

// The truth: where the clean voice passes 30 dB below its loudest moment, or 6 dB above the noise where that is more.
TEST(Speech, NineteenOfTwentyEdgesAreWithinTwentyMilliseconds) {
    int edges = 0;
    int near = 0;
    int live = 0;
    int takes = 0;
    unsigned seed = 1;
    for (const char *voice : spokenVoices) {
        for (const char *speed : {" -s 110", " -s 160", " -s 240"}) {
            for (const std::size_t sentence : {seed % 10, (seed + 3) % 10}) {
                Samples clean = quiet(700);
                addSound(clean, atPeak(speak(spokenSentences.at(sentence), std::string(voice) + speed),
                                       seed % 2 == 0 ? -25 : -9));
                addSound(clean, quiet(500));
                ASSERT_GT(peakOf(clean), 0) << "espeak-ng is not installed";
                const Levels levels(clean);
                const double loudest = levels.highest(0, clean.size());
                for (const Surroundings &room : places) {
                    const auto [first, last] = levels.passage(loudest - std::min(30.0, room.noiseBelowLoudest - 6));
                    const Samples take = inNoise(clean, room.noiseBelowLoudest, room.pink, seed++);
                    const std::vector<SpeechSegment> found = findSpeech(take, testRate);
                    ASSERT_FALSE(found.empty()) << voice << speed << ", noise " << room.noiseBelowLoudest;
                    edges += 2;
                    near += msFrom(found.front().begin, first) <= 20 ? 1 : 0;
                    near += msFrom(found.back().end, last) <= 20 ? 1 : 0;
                    EXPECT_LE(msFrom(found.front().begin, first), 80) << voice << speed;
                    SpeechWatch watch(testRate);
                    listen(watch, take);
                    ++takes;
                    live += watch.begin() && msFrom(*watch.begin(), first) <= 40 ? 1 : 0;
                }
            }
        }
    }
    EXPECT_GE(near, 0.95 * edges) << near << " of " << edges;
    EXPECT_GE(live, 0.95 * takes) << live << " of " << takes;
}

TEST(Speech, WhatIsNoVoiceIsNoSpeech) {
    Samples clicks = quiet(500);
    addSound(clicks, noise(20000, 8 * oneMs));
    addSound(clicks, quiet(500));
    Samples rumble = tone(20, 12000, std::size_t{2} * testRate);
    const std::array takes = {Samples(),
                              Samples(20),
                              quiet(2000),
                              noise(300, std::size_t{2} * testRate),
                              pinkNoise(300, std::size_t{2} * testRate),
                              noise(3, std::size_t{2} * testRate),
                              Samples(std::size_t{2} * testRate, 2500),
                              rumble,
                              clicks};
    for (std::size_t i = 0; i < takes.size(); ++i) {
        EXPECT_TRUE(findSpeech(takes.at(i), testRate).empty()) << i;
        SpeechWatch watch(testRate);
        listen(watch, takes.at(i));
        EXPECT_FALSE(watch.isSpeaking()) << i;
    }
}

TEST(Speech, PausesOfATenthAndAHalfPartTheStretches) {
    Samples take = quiet(400);
    addSound(take, tone(200, 6000, 300 * oneMs));
    addSound(take, quiet(100));
    addSound(take, tone(200, 6000, 300 * oneMs));
    addSound(take, quiet(400));
    addSound(take, tone(200, 6000, 300 * oneMs));
    addSound(take, quiet(200));
    const std::vector<SpeechSegment> found = findSpeech(inNoise(take, 50, false, 1), testRate);
    ASSERT_EQ(found.size(), 2U);
    EXPECT_NEAR(static_cast<double>(found[0].begin), 400 * oneMs, 10 * oneMs);
    EXPECT_NEAR(static_cast<double>(found[0].end), 1100 * oneMs, 10 * oneMs);
    EXPECT_NEAR(static_cast<double>(found[1].begin), 1500 * oneMs, 10 * oneMs);
    EXPECT_NEAR(static_cast<double>(found[1].end), 1800 * oneMs, 10 * oneMs);
}

TEST(Speech, TheDigitalSilenceOfAServerThatStartsIsNoRoom) {
    Samples take = quiet(300);
    Samples room = quiet(600);
    addSound(room, tone(200, 6000, 500 * oneMs));
    addSound(room, quiet(300));
    addSound(take, inNoise(room, 30, false, 1));
    const std::vector<SpeechSegment> found = findSpeech(take, testRate);
    ASSERT_EQ(found.size(), 1U);
    EXPECT_NEAR(static_cast<double>(found[0].begin), 900 * oneMs, 10 * oneMs);
    EXPECT_NEAR(static_cast<double>(found[0].end), 1400 * oneMs, 10 * oneMs);
}

TEST(Speech, AClickBesideSpeechIsNoPartOfIt) {
    Samples take = quiet(100);
    addSound(take, noise(20000, 8 * oneMs));
    addSound(take, quiet(400));
    addSound(take, tone(200, 6000, 500 * oneMs));
    addSound(take, quiet(400));
    const std::vector<SpeechSegment> found = findSpeech(take, testRate);
    ASSERT_EQ(found.size(), 1U);
    EXPECT_NEAR(static_cast<double>(found[0].begin), 508 * oneMs, 10 * oneMs);
}

TEST(Speech, WhoSpeaksAtOnceBeginsAtOnce) {
    Samples take = speak(spokenSentences[3]);
    ASSERT_GT(peakOf(take), 0) << "espeak-ng is not installed";
    const auto first = std::find_if(take.begin(), take.end(), [](int sample) { return std::abs(sample) > 500; });
    take.erase(take.begin(), first);
    addSound(take, quiet(1000));
    take = inNoise(take, 45, false, 1);
    ASSERT_FALSE(findSpeech(take, testRate).empty());
    EXPECT_LE(findSpeech(take, testRate).front().begin, 20 * oneMs);
    SpeechWatch watch(testRate);
    listen(watch, take);
    ASSERT_TRUE(watch.begin());
    EXPECT_LE(*watch.begin(), 40 * oneMs);
}

TEST(SpeechWatch, TellsWhileSomebodySpeaksWhateverTheBlocks) {
    Samples take = quiet(400);
    addSound(take, tone(200, 6000, 500 * oneMs));
    addSound(take, quiet(500));
    take = inNoise(take, 45, false, 1);
    for (const std::size_t block : {1U, 100U, 441U, 5000U}) {
        SpeechWatch watch(testRate);
        listen(watch, Samples(take.begin(), take.begin() + 390 * oneMs), block);
        EXPECT_FALSE(watch.isSpeaking());
        EXPECT_FALSE(watch.begin());
        listen(watch, Samples(take.begin() + 390 * oneMs, take.begin() + 600 * oneMs), block);
        EXPECT_TRUE(watch.isSpeaking());
        listen(watch, Samples(take.begin() + 600 * oneMs, take.end()), block);
        EXPECT_FALSE(watch.isSpeaking());
        ASSERT_TRUE(watch.begin());
        ASSERT_TRUE(watch.lastHeard());
        EXPECT_NEAR(static_cast<double>(*watch.begin()), 400 * oneMs, 10 * oneMs);
        EXPECT_NEAR(static_cast<double>(*watch.lastHeard()), 900 * oneMs, 10 * oneMs);
    }
}

// What is marked live: every stretch between pauses, and the one that is being spoken.
TEST(Speech, TheLatestStretchGrowsAndAPauseBeginsANewOne) {
    SpeechWatch watch(testRate);
    EXPECT_FALSE(watch.latest());
    const auto room = [](std::size_t milliseconds) { return pinkNoise(6, milliseconds * oneMs); };
    listen(watch, room(600));
    EXPECT_FALSE(watch.latest());
    listen(watch, tone(300, 6000, 500 * oneMs));
    ASSERT_TRUE(watch.latest());
    EXPECT_LE(msFrom(watch.latest()->begin, 600 * oneMs), 20);
    EXPECT_LE(msFrom(watch.latest()->end, 1100 * oneMs), 20);
    listen(watch, room(100));
    listen(watch, tone(300, 6000, 300 * oneMs));
    EXPECT_LE(msFrom(watch.latest()->begin, 600 * oneMs), 20) << "a short pause is none";
    listen(watch, room(400));
    listen(watch, tone(300, 6000, 300 * oneMs));
    EXPECT_LE(msFrom(watch.latest()->begin, 1900 * oneMs), 20);
    EXPECT_LE(msFrom(watch.latest()->end, 2200 * oneMs), 20);
    EXPECT_LE(msFrom(*watch.begin(), 600 * oneMs), 20);
}

} // namespace orvel
