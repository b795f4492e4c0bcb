// The fakes that other tests trust.
#include "platform/fake/fake_prompts.h"
#include "platform/fake/faulty_file_system.h"
#include "platform/fake/manual_timers.h"
#include "platform/qt/disk_file_system.h"
#include "tests/platform/audio/full_disk.h"
#include "tests/platform/audio/temp_folder.h"

#include <gtest/gtest-spi.h>
#include <gtest/gtest.h>

namespace orvel {

TEST(FakePrompts, AnswersItsScript) {
    FakePrompts prompts;
    prompts.expectAsk(QStringLiteral("Playlist Klaar ?"), QStringLiteral("Playlist overzetten"), true);
    prompts.expectInput(QStringLiteral("Naam"), QStringLiteral("Titel"), QStringLiteral("take"));
    prompts.expectColour(5);
    prompts.expectColour(std::nullopt);
    EXPECT_TRUE(prompts.ask(QStringLiteral("Playlist Klaar ?"), QStringLiteral("Playlist overzetten")));
    EXPECT_EQ(prompts.input(QStringLiteral("Naam"), QStringLiteral("Titel")), QStringLiteral("take"));
    EXPECT_EQ(prompts.colour(0), 5);
    EXPECT_EQ(prompts.colour(0), std::nullopt);
    EXPECT_EQ(prompts.open(), 0U);
}

TEST(FakePrompts, AnUnexpectedQuestionFailsTheTest) {
    EXPECT_NONFATAL_FAILURE(
        {
            FakePrompts prompts;
            prompts.ask(QStringLiteral("Zeker ?"), QString());
        },
        "unexpected: ask | Zeker ?");
}

TEST(FakePrompts, AnotherQuestionThanTheNextFailsTheTest) {
    EXPECT_NONFATAL_FAILURE(
        {
            FakePrompts prompts;
            prompts.expectAsk(QStringLiteral("Zeker ?"), QStringLiteral("Titel"), true);
            prompts.ask(QStringLiteral("Zeker ?"), QStringLiteral("Andere titel"));
        },
        "asked:    ask | Zeker ? | Andere titel");
}

TEST(FakePrompts, AnExpectationThatNobodyMeetsFailsTheTest) {
    EXPECT_NONFATAL_FAILURE(
        {
            FakePrompts prompts;
            prompts.expectMessage(QStringLiteral("Klaar"), QStringLiteral("Titel"), MessageIcon::Information);
        },
        "nobody asked: message | Klaar | Titel | information");
}

TEST(ManualTimers, TicksRunInTheOrderOfTheirMoments) {
    ManualTimers timers;
    QStringList ticks;
    const auto slow = timers.create(30, MissedTicks::Drop, [&] { ticks << QStringLiteral("slow"); });
    const auto quick = timers.create(20, MissedTicks::CatchUp, [&] { ticks << QStringLiteral("quick"); });
    const auto off = timers.create(1, MissedTicks::Drop, [&] { ticks << QStringLiteral("off"); });
    slow->setEnabled(true);
    quick->setEnabled(true);
    EXPECT_EQ(timers.enabledIntervals(), std::vector<int>({30, 20}));
    timers.advance(59);
    EXPECT_EQ(ticks, QStringList({"quick", "slow", "quick"}));
    timers.advance(1);
    EXPECT_EQ(ticks.size(), 5);
    slow->setEnabled(true);
    timers.advance(29);
    EXPECT_EQ(ticks.size(), 6);
}

TEST(ManualTimers, AStallSwallowsTicksOfDroppingTimersOnly) {
    ManualTimers timers;
    int dropped = 0;
    int caughtUp = 0;
    const auto drop = timers.create(10, MissedTicks::Drop, [&] { ++dropped; });
    const auto catchUp = timers.create(10, MissedTicks::CatchUp, [&] { ++caughtUp; });
    drop->setEnabled(true);
    catchUp->setEnabled(true);
    timers.stall(1000);
    EXPECT_EQ(dropped, 1);
    EXPECT_EQ(caughtUp, 100);
}

TEST(FaultyFileSystem, FailsWhereItIsTold) {
    const test::TempFolder folder;
    DiskFileSystem disk;
    FaultyFileSystem files(disk);
    test::writeContent(folder.path("bron"), QByteArray(1'000'000, 'n'));
    files.failCopyAfter(500'000, QStringLiteral("vol"), ErrorNumber::DiskFull);
    files.fail(FaultyFileSystem::Operation::Remove, QStringLiteral("bron"), ErrorNumber::PermissionDenied);
    qint64 reached = 0;
    const auto progress = [&](qint64 done, qint64 /*total*/) {
        reached = done;
        return true;
    };
    EXPECT_EQ(test::errorOf([&] { files.copy(folder.path("bron"), folder.path("vol"), progress); }), 61);
    EXPECT_GT(reached, 0);
    EXPECT_LT(reached, 500'000);
    EXPECT_FALSE(files.fileExists(folder.path("vol")));
    EXPECT_TRUE(files.copy(folder.path("bron"), folder.path("goed"), progress));
    EXPECT_EQ(test::errorOf([&] { files.remove(folder.path("bron")); }), 70);
    files.heal();
    EXPECT_EQ(test::errorOf([&] { files.remove(folder.path("bron")); }), 0);
    files.fail(FaultyFileSystem::Operation::Lock, QStringLiteral("slot"), ErrorNumber::DiskNotReady);
    EXPECT_EQ(test::errorOf([&] { static_cast<void>(files.tryLock(folder.path("slot"), "wij")); }), 71);
    EXPECT_TRUE(files.tryLock(folder.path("ander"), "wij"));
}

} // namespace orvel
