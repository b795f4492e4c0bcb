// What the presenter reads beside the talk-over bar.
#include "recording/talk_words.h"
#include "tests/desk.h"

namespace orvel {

namespace {

/// Outro 3,4 s and intro 6,2 s.
CurrentStep link() {
    CurrentStep step;
    step.times.visible = true;
    step.row = link1;
    step.PrevOutroMs = 3400;
    step.NextIntroMs = 6200;
    step.TalkTotalMs = 9600;
    return step;
}

class TalkWords : public Desk {
  protected:
    TalkWords() {
        const auto named = [](QVariantList row, const QVariant &performer, const QVariant &title) {
            row[stepColumn("artiest")] = performer;
            row[stepColumn("Titel")] = title;
            return row;
        };
        databases.setTable(places.newFolder() + QStringLiteral("/namen.mdb"), QStringLiteral("Steps"), header(),
                           {named(music(1), QStringLiteral("Trio Waterland"), QStringLiteral("De laatste tram")),
                            slot(2, QStringLiteral("LINK1")),
                            named(music(3), QVariant(), QStringLiteral(" Morgen misschien ")),
                            slot(4, QStringLiteral("LINK2")), music(5), slot(6, QStringLiteral("LINK3"))});
        playlist.open(settings.NewPath, QStringLiteral("namen.mdb"));
    }
};

} // namespace

TEST_F(TalkWords, ALinkStandsBetweenItsNeighbours) {
    const Neighbours words = neighboursOf(playlist, link());
    EXPECT_EQ(words.previous, QStringLiteral("← Trio Waterland, De laatste tram, outro 3,4"));
    EXPECT_EQ(words.talk, QStringLiteral("jij 9,6 s"));
    EXPECT_EQ(words.next, QStringLiteral("intro 6,2, Morgen misschien →"));
}

TEST_F(TalkWords, WhatIsNotThereIsLeftOut) {
    step = link();
    step.row = 3; // between a title without a performer and nothing but a time
    EXPECT_EQ(neighboursOf(playlist, step).previous, QStringLiteral("← Morgen misschien, outro 3,4"));
    EXPECT_EQ(neighboursOf(playlist, step).next, QStringLiteral("intro 6,2 →"));
    step.row = 5; // the last one
    EXPECT_EQ(neighboursOf(playlist, step).next, QString());
    step.row = 0;
    EXPECT_EQ(neighboursOf(playlist, step).previous, QString());
    step.times.visible = false;
    EXPECT_EQ(neighboursOf(playlist, step), Neighbours());
    playlist.close();
    EXPECT_EQ(neighboursOf(playlist, link()), Neighbours());
}

TEST(TalkPhases, EachHasASymbolAndWords) {
    using Part = TalkPhase::Part;
    struct Row {
        std::int32_t elapsed;
        TalkPhase expected;
    };
    const Row rows[] = {
        {0, {Part::Outro, QStringLiteral("◀ outro, nog 9,6 s")}},
        {3399, {Part::Outro, QStringLiteral("◀ outro, nog 6,2 s")}},
        {3400, {Part::Intro, QStringLiteral("▶ intro, nog 6,2 s")}},
        {9600, {Part::Intro, QStringLiteral("▶ intro, nog 0,0 s")}},
        {9610, {Part::TooLong, QStringLiteral("■ 0,0 s te lang")}},
        {10900, {Part::TooLong, QStringLiteral("■ 1,3 s te lang")}},
        {129600, {Part::TooLong, QStringLiteral("■ 120,0 s te lang")}},
    };
    for (const Row &row : rows) {
        EXPECT_EQ(phaseOf(link(), row.elapsed), row.expected) << row.elapsed;
    }
}

TEST(TalkPhases, WithNothingToTalkOverThereIsNone) {
    CurrentStep step = link();
    step.TalkTotalMs = 0;
    EXPECT_EQ(phaseOf(step, 1000), TalkPhase());
    step = link();
    step.times.visible = false;
    EXPECT_EQ(phaseOf(step, 1000), TalkPhase());
}

TEST(TalkPhases, SecondsHaveOneDecimalAndAComma) {
    EXPECT_EQ(inSeconds(0), QStringLiteral("0,0"));
    EXPECT_EQ(inSeconds(49), QStringLiteral("0,0"));
    EXPECT_EQ(inSeconds(50), QStringLiteral("0,1"));
    EXPECT_EQ(inSeconds(12345), QStringLiteral("12,3"));
    EXPECT_EQ(inSeconds(-49), QStringLiteral("0,0"));
    EXPECT_EQ(inSeconds(-1250), QStringLiteral("-1,3"));
    EXPECT_EQ(inSeconds(3'600'000), QStringLiteral("3600,0"));
}

} // namespace orvel
