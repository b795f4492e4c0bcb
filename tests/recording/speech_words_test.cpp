#include "playlist/current_step.h"
#include "recording/allowed.h"
#include "recording/speech_words.h"

#include <gtest/gtest.h>

namespace orvel {

namespace {

struct Said {
    std::optional<SpeechTimes> speech;
    std::optional<std::int32_t> post;
    const char *sentence;
};

const std::vector<Said> table = {
    {SpeechTimes{400, 9100}, 9600, "Spraak 0,4 tot 9,1 s, 0,5 s vóór de zang"},
    {SpeechTimes{400, 10900}, 9600, "Spraak 0,4 tot 10,9 s, 1,3 s over de intro"},
    {SpeechTimes{400, 9100}, {}, "Spraak 0,4 tot 9,1 s"},
    {SpeechTimes{0, 9600}, 9600, "Spraak 0,0 tot 9,6 s, precies op de zang"},
    {SpeechTimes{0, 9551}, 9600, "Spraak 0,0 tot 9,6 s, precies op de zang"},
    {SpeechTimes{0, 9550}, 9600, "Spraak 0,0 tot 9,6 s, 0,1 s vóór de zang"},
    {SpeechTimes{0, 9650}, 9600, "Spraak 0,0 tot 9,7 s, 0,1 s over de intro"},
    {SpeechTimes{0, 9649}, 9600, "Spraak 0,0 tot 9,6 s, precies op de zang"},
    {SpeechTimes{449, 1450}, 2500, "Spraak 0,4 tot 1,5 s, 1,1 s vóór de zang"},
    {SpeechTimes{61000, 3725000}, 60000, "Spraak 61,0 tot 3725,0 s, 3665,0 s over de intro"},
    {{}, 9600, "Geen spraak gevonden"},
    {{}, {}, "Geen spraak gevonden"},
};

} // namespace

TEST(SpeechWords, OneSentenceTellsHowTheTakeFits) {
    for (const Said &said : table) {
        EXPECT_EQ(speechSentence(said.speech, said.post).toStdString(), said.sentence);
    }
}

TEST(SpeechWords, SpeechIsFromTheFirstStretchToTheLast) {
    EXPECT_FALSE(wholeOf(speechTimes({}, 44100)));
    EXPECT_EQ(wholeOf(speechTimes({{441, 44100}}, 44100)), (SpeechTimes{10, 1000}));
    const std::vector<SpeechTimes> three = speechTimes({{441, 44100}, {88200, 88244}, {441000, 882000}}, 44100);
    EXPECT_EQ(three, (std::vector<SpeechTimes>{{10, 1000}, {2000, 2001}, {10000, 20000}}));
    EXPECT_EQ(wholeOf(three), (SpeechTimes{10, 20000}));
}

// The post is the end of an intro: the plain recorder has none, nor has a link before an item without intro.
TEST(SpeechWords, ThePostIsWhereTheNextItemsVocalsBegin) {
    CurrentStep step;
    step.StepSelected = true;
    step.PrevOutroMs = 3400;
    step.NextIntroMs = 6200;
    step.TalkTotalMs = 9600;
    EXPECT_EQ(postOf(step, {}), 9600);
    EXPECT_FALSE(postOf(step, {true, false}));
    step.StepSelected = false;
    EXPECT_FALSE(postOf(step, {}));
    step.StepSelected = true;
    step.NextIntroMs = 0;
    step.TalkTotalMs = 3400;
    EXPECT_FALSE(postOf(step, {}));
}

} // namespace orvel
