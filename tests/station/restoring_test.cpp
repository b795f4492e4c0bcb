// Where kept files go back to, and what is asked and told.
#include "platform/fake/fake_database.h"
#include "station/restoring.h"
#include "tests/platform/audio/temp_folder.h"
#include "tests/test_platform.h"

#include <gtest/gtest.h>

namespace orvel {

using test::contentOf;
using test::writeContent;

namespace {

class Restores : public testing::Test, protected TestPlatform<FakeDatabaseEngine> {
  protected:
    Restores() {
        for (const char *name : {"new", "ok", "temp"}) {
            QDir(folder.path()).mkdir(QString::fromLatin1(name));
        }
    }
    /// Keeps a file of this content, and gives it as the list shows it.
    KeptFile keep(const char *name, const QByteArray &content) {
        writeContent(folder.path(name), content);
        recovery.keep(folder.path(name));
        return recovery.kept().front();
    }
    void expectQuestion(const char *place, const char *name, bool answer) {
        prompts.expectAsk(
            QStringLiteral("%1 staat al %2. Wilt U dat vervangen ?\n\nWat er nu staat, blijft bewaard en kan "
                           "ook weer teruggezet worden.")
                .arg(QString::fromLatin1(place), QString::fromLatin1(name)),
            QStringLiteral("Herstellen"), answer, Preset::No,
            {QStringLiteral("&Vervang"), QStringLiteral("&Laat staan")});
    }

    test::TempFolder folder;
    Recovery recovery{files, folder.path()};
    bool takeRuns = false;
    Restoring restoring{{files, prompts, recovery, folder.path(), [this] { return takeRuns; }}};
};

} // namespace

TEST_F(Restores, EachKindGoesWhereTheProgramLooksForIt) {
    const char *toDo = "bij de te bewerken playlists";
    for (const auto &[name, place, told] : {std::tuple{"VT1.wav", "temp", "bij de opnames"},
                                            {"VT1.mp3", "ok", "bij de voicetracks"},
                                            {"avond.mdb", "new", toDo},
                                            {"NACHT.MDB", "new", toDo}}) {
        const auto [done, replaced, sentence] = restoring.putBack(keep(name, name));
        EXPECT_TRUE(done);
        EXPECT_FALSE(replaced);
        EXPECT_EQ(sentence,
                  QStringLiteral("%1 staat weer %2.").arg(QString::fromLatin1(name), QString::fromLatin1(told)));
        EXPECT_EQ(contentOf(folder.path(QString::fromLatin1(place) + u'/' + QString::fromLatin1(name))), name);
    }
    EXPECT_TRUE(recovery.kept().empty());
}

TEST_F(Restores, ATakeAsItWasBeforeProcessingComesBackUnderItsOwnName) {
    const KeptFile raw = keep("VT1.ruw.wav", "ruw");
    EXPECT_EQ(takeNameOf(raw), QStringLiteral("VT1"));
    EXPECT_TRUE(restoring.putBack(raw).done);
    EXPECT_EQ(contentOf(folder.path("temp/VT1.wav")), "ruw");
}

TEST_F(Restores, WhatHasTheNameIsReplacedOnYesOnlyAndKept) {
    const KeptFile kept = keep("VT1.wav", "eerste");
    writeContent(folder.path("temp/VT1.wav"), "tweede");
    expectQuestion("Bij de opnames", "VT1.wav", false);
    auto result = restoring.putBack(kept);
    EXPECT_FALSE(result.done);
    EXPECT_EQ(result.sentence, QStringLiteral("Er is niets teruggezet."));
    EXPECT_EQ(contentOf(folder.path("temp/VT1.wav")), "tweede");
    expectQuestion("Bij de opnames", "VT1.wav", true);
    result = restoring.putBack(kept);
    EXPECT_TRUE(result.done);
    EXPECT_TRUE(result.replaced);
    EXPECT_TRUE(result.sentence.endsWith(QStringLiteral("Wat daar stond, is nu bewaard.")));
    EXPECT_EQ(contentOf(folder.path("temp/VT1.wav")), "eerste");
    ASSERT_EQ(recovery.kept().size(), 1U);
    EXPECT_EQ(contentOf(recovery.kept().front().path), "tweede");
}

TEST_F(Restores, NothingIsPutBackWhileATakeRuns) {
    const KeptFile kept = keep("VT1.wav", "eerste");
    takeRuns = true;
    EXPECT_TRUE(restoring.putBack(kept).sentence.contains(QStringLiteral("loopt een opname")));
    takeRuns = false;
    writeContent(folder.path("temp/VT1.wav"), "loopt");
    prompts.whileOpen([this] { takeRuns = true; });
    expectQuestion("Bij de opnames", "VT1.wav", true);
    EXPECT_FALSE(restoring.putBack(kept).done);
    EXPECT_EQ(contentOf(folder.path("temp/VT1.wav")), "loopt");
    EXPECT_EQ(contentOf(kept.path), "eerste");
}

TEST_F(Restores, WhatFailsIsToldAndNothingIsLost) {
    const KeptFile kept = keep("avond.mdb", "lijst");
    files.fail(FaultyFileSystem::Operation::Move, QStringLiteral("/new/"), ErrorNumber::DiskFull);
    const auto result = restoring.putBack(kept);
    EXPECT_FALSE(result.done);
    EXPECT_EQ(result.sentence, QStringLiteral("avond.mdb kon niet worden teruggezet: De schijf is vol."));
    EXPECT_EQ(contentOf(kept.path), "lijst");
}

} // namespace orvel
