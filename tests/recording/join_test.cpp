// What plays when around a take.
#include "recording/join.h"

#include <gtest/gtest.h>

namespace orvel {

namespace {

using Anchor = JoinClip::Anchor;

const QString lost = QStringLiteral("Geen bestand van 'De laatste tram' gevonden.");

JoinItem item(const char *path, std::int32_t talkMs) {
    return {QStringLiteral("Titel"), QString::fromLatin1(path), {}, talkMs};
}

JoinItem missing(std::int32_t talkMs) {
    return {QStringLiteral("De laatste tram"), {}, lost, talkMs};
}

JoinClip byEnd(const char *path, std::int64_t end, std::int64_t from) {
    return {QString::fromLatin1(path), Anchor::End, end, from, end};
}

JoinClip byBegin(const char *path, std::int64_t begin, std::int64_t to = JoinClip::wholeFile) {
    return {QString::fromLatin1(path), Anchor::Begin, begin, begin, to};
}

struct Case {
    const char *what;
    JoinParts parts;
    std::vector<JoinClip> along; ///< with a run-up of 5000 ms
    std::vector<JoinClip> context;
    QStringList problems;
};

const std::vector<Case> &cases() {
    static const std::vector<Case> table{
        {"both neighbours",
         {item("a", 3400), "t", item("b", 6200)},
         {byEnd("a", 3400, -5000), byBegin("b", 3400)},
         {byEnd("a", 3400, -5000), byBegin("t", 0), byBegin("b", 3400, 14600)},
         {}},
        {"no outro: the next item begins with the take",
         {item("a", 0), "t", item("b", 6200)},
         {byEnd("a", 0, -5000), byBegin("b", 0)},
         {byEnd("a", 0, -5000), byBegin("t", 0), byBegin("b", 0, 11200)},
         {}},
        {"no intro",
         {item("a", 3400), "t", item("b", 0)},
         {byEnd("a", 3400, -5000), byBegin("b", 3400)},
         {byEnd("a", 3400, -5000), byBegin("t", 0), byBegin("b", 3400, 8400)},
         {}},
        {"the first step of the playlist",
         {{}, "t", item("b", 6200)},
         {byBegin("b", 0)},
         {byBegin("t", 0), byBegin("b", 0, 11200)},
         {}},
        {"the last step of the playlist",
         {item("a", 3400), "t", {}},
         {byEnd("a", 3400, -5000)},
         {byEnd("a", 3400, -5000), byBegin("t", 0)},
         {}},
        {"nothing around it", {{}, "t", {}}, {}, {byBegin("t", 0)}, {}},
        {"the previous item's file is missing: its outro still counts",
         {missing(3400), "t", item("b", 6200)},
         {byBegin("b", 3400)},
         {byBegin("t", 0), byBegin("b", 3400, 14600)},
         {lost}},
        {"the next item's file is missing",
         {item("a", 3400), "t", missing(6200)},
         {byEnd("a", 3400, -5000)},
         {byEnd("a", 3400, -5000), byBegin("t", 0)},
         {lost}},
        {"both are missing", {missing(1), "t", missing(2)}, {}, {byBegin("t", 0)}, {lost, lost}},
        {"no take yet",
         {item("a", 3400), {}, item("b", 6200)},
         {byEnd("a", 3400, -5000), byBegin("b", 3400)},
         {byEnd("a", 3400, -5000), byBegin("b", 3400, 14600)},
         {}},
        {"times below zero are none",
         {item("a", -700), "t", item("b", -1)},
         {byEnd("a", 0, -5000), byBegin("b", 0)},
         {byEnd("a", 0, -5000), byBegin("t", 0), byBegin("b", 0, 5000)},
         {}},
    };
    return table;
}

} // namespace

TEST(Join, AlongATakeTheOutroBeginsWithItAndTheNextItemFollowsWhenItEnds) {
    for (const Case &row : cases()) {
        const JoinSchedule schedule = alongTake(row.parts, 5000);
        EXPECT_TRUE(schedule.clips == row.along) << row.what;
        EXPECT_EQ(schedule.problems, row.problems) << row.what;
    }
}

TEST(Join, InContextTheTakeLiesOverOutroAndIntro) {
    for (const Case &row : cases()) {
        const JoinSchedule schedule = inContext(row.parts);
        EXPECT_TRUE(schedule.clips == row.context) << row.what;
        EXPECT_EQ(schedule.problems, row.problems) << row.what;
    }
}

} // namespace orvel
