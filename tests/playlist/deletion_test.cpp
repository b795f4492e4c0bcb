// What deleting playlists asks, keeps and leaves.
#include "platform/fake/fake_database.h"
#include "playlist/deletion.h"
#include "station/recovery.h"
#include "tests/platform/audio/temp_folder.h"
#include "tests/test_platform.h"

#include <gtest/gtest.h>

namespace orvel {

using test::contentOf;
using test::writeContent;
using Operation = FaultyFileSystem::Operation;

namespace {

const QString title = QStringLiteral("Playlists verwijderen");
const QString questionForToDo = QStringLiteral("Wenst U ALLE nog te bewerken playlists te verwijderen ?");
const QString questionForFinished = QStringLiteral("Wenst U ALLE afgewerkte playlists te verwijderen ?");

QString questionFor(const char *name) {
    return QStringLiteral("Wenst U het bestand %1 te verwijderen ?").arg(QString::fromLatin1(name));
}

class Deleting : public testing::Test, protected TestPlatform<FakeDatabaseEngine> {
  protected:
    Deleting() { QDir(folder.path()).mkdir(QStringLiteral("lijsten")); }

    void put(const char *name) { writeContent(folder.path("lijsten/") + QString::fromLatin1(name), name); }
    [[nodiscard]] ShownPlaylists shown(const char *selected = "") const {
        return {folder.path("lijsten"), disk.list(folder.path("lijsten"), QStringLiteral("*.mdb")),
                QString::fromLatin1(selected)};
    }
    [[nodiscard]] QString names() const { return disk.list(folder.path("lijsten"), QStringLiteral("*")).join(u' '); }
    [[nodiscard]] QString keptNames() const {
        QStringList names;
        for (const KeptFile &kept : recovery.kept()) {
            names << kept.name;
        }
        return names.join(u' ');
    }
    bool deleteToDo(const ShownPlaylists &list) {
        return deletion.deleteToDo(list, [this] {
            ++closes;
            if (closingFails) {
                throw RuntimeError(ErrorNumber::DeviceError);
            }
        });
    }

    test::TempFolder folder;
    Recovery recovery{files, folder.path()};
    bool takeRuns = false;
    bool closingFails = false;
    int closes = 0;
    QStringList told;
    Deletion deletion{
        {files, prompts, recovery, [this] { return takeRuns; }, [this](const QString &sentence) { told << sentence; }}};
};

} // namespace

// What was deleted was gone, and Enter on the question was enough.
TEST_F(Deleting, TheSelectedPlaylistIsKeptInTheRecoveryFolder) {
    put("een.mdb");
    put("twee.mdb");
    prompts.expectAsk(questionFor("een.mdb"), title, true, Preset::No);
    EXPECT_TRUE(deleteToDo(shown("een.mdb")));
    EXPECT_EQ(names(), QStringLiteral("twee.mdb"));
    EXPECT_EQ(closes, 1);
    ASSERT_EQ(recovery.kept().size(), 1U);
    EXPECT_EQ(contentOf(recovery.kept().front().path), "een.mdb");
    prompts.expectAsk(questionFor("twee.mdb"), title, true, Preset::No);
    EXPECT_TRUE(deletion.deleteFinished(shown("twee.mdb")));
    EXPECT_EQ(keptNames(), QStringLiteral("twee.mdb een.mdb"));
    EXPECT_EQ(closes, 1) << "finished playlists are never the open one";
    EXPECT_TRUE(told.isEmpty());
}

TEST_F(Deleting, WithoutASelectionAllPlaylistsGoAndNothingElse) {
    put("een.mdb");
    put("twee.MDB");
    put("blijft.txt");
    prompts.expectAsk(questionForToDo, title, true, Preset::No);
    EXPECT_TRUE(deleteToDo(shown()));
    EXPECT_EQ(names(), QStringLiteral("blijft.txt"));
    EXPECT_EQ(keptNames(), QStringLiteral("twee.MDB een.mdb"));
    put("drie.mdb");
    prompts.expectAsk(questionForFinished, title, true, Preset::No);
    EXPECT_TRUE(deletion.deleteFinished(shown()));
    EXPECT_EQ(names(), QStringLiteral("blijft.txt"));
}

TEST_F(Deleting, NoChangesNothing) {
    put("een.mdb");
    prompts.expectAsk(questionForToDo, title, false, Preset::No);
    EXPECT_FALSE(deleteToDo(shown()));
    prompts.expectAsk(questionFor("een.mdb"), title, false, Preset::No);
    EXPECT_FALSE(deletion.deleteFinished(shown("een.mdb")));
    EXPECT_EQ(names(), QStringLiteral("een.mdb"));
    EXPECT_EQ(closes, 0);
}

TEST_F(Deleting, AnEmptyListAsksNothing) {
    EXPECT_FALSE(deleteToDo(shown()));
    EXPECT_FALSE(deletion.deleteFinished(shown()));
    takeRuns = true;
    EXPECT_FALSE(deleteToDo(shown()));
    EXPECT_TRUE(told.isEmpty());
}

// The button did nothing, and nobody was told why.
TEST_F(Deleting, WhileATakeRunsPlaylistsToDoStayAndItIsTold) {
    put("een.mdb");
    takeRuns = true;
    EXPECT_FALSE(deleteToDo(shown("een.mdb")));
    EXPECT_EQ(told, QStringList{QStringLiteral("Er loopt een opname. Wis te bewerken playlists als die gestopt is.")});
    takeRuns = false;
    prompts.whileOpen([this] { takeRuns = true; });
    prompts.expectAsk(questionFor("een.mdb"), title, true, Preset::No);
    EXPECT_FALSE(deleteToDo(shown("een.mdb")));
    EXPECT_EQ(told.size(), 2);
    EXPECT_EQ(names(), QStringLiteral("een.mdb"));
    EXPECT_EQ(closes, 0);
}

// Nothing happened at this button either, though no take has to do with finished playlists.
TEST_F(Deleting, FinishedPlaylistsGoWhileATakeRuns) {
    put("een.mdb");
    takeRuns = true;
    prompts.expectAsk(questionFor("een.mdb"), title, true, Preset::No);
    EXPECT_TRUE(deletion.deleteFinished(shown("een.mdb")));
    EXPECT_EQ(names(), QString());
}

TEST_F(Deleting, OfPlaylistsToDoEveryErrorIsIgnoredAndTheRestGoes) {
    for (const char *name : {"a.mdb", "b.mdb", "c.mdb"}) {
        put(name);
    }
    closingFails = true;
    files.fail(Operation::Move, QStringLiteral("/b."), ErrorNumber::PermissionDenied);
    prompts.expectAsk(questionForToDo, title, true, Preset::No);
    EXPECT_TRUE(deleteToDo(shown()));
    EXPECT_EQ(names(), QStringLiteral("b.mdb"));
    EXPECT_EQ(keptNames(), QStringLiteral("c.mdb a.mdb"));
}

TEST_F(Deleting, OfFinishedPlaylistsNoErrorIsIgnored) {
    for (const char *name : {"a.mdb", "b.mdb", "c.mdb"}) {
        put(name);
    }
    files.fail(Operation::Move, QStringLiteral("/b."), ErrorNumber::PermissionDenied);
    prompts.expectAsk(questionForFinished, title, true, Preset::No);
    EXPECT_THROW(deletion.deleteFinished(shown()), RuntimeError);
    EXPECT_EQ(names(), QStringLiteral("b.mdb c.mdb"));
    EXPECT_EQ(keptNames(), QStringLiteral("a.mdb"));
}

TEST_F(Deleting, WhatGoesIsWhatWasAskedAbout) {
    put("een.mdb");
    prompts.whileOpen([this] { put("nieuw.mdb"); });
    prompts.expectAsk(questionForToDo, title, true, Preset::No);
    EXPECT_TRUE(deleteToDo(shown()));
    EXPECT_EQ(names(), QStringLiteral("nieuw.mdb"));
}

} // namespace orvel
