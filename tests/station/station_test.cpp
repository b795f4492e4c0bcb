// A station's folders and files, whether they can be written, and who works there.
#include "platform/fake/fake_database.h"
#include "platform/fake/faulty_storage.h"
#include "station/places.h"
#include "station/station_lock.h"
#include "station/work_folders.h"
#include "tests/test_platform.h"

#include <QDateTime>
#include <QDir>
#include <QScopeGuard>
#include <QSet>
#include <QSysInfo>
#include <QTemporaryDir>

#include <cerrno>
#include <gtest/gtest.h>

namespace orvel {

namespace {

using Operation = FaultyFileSystem::Operation;

const QStringList workFolders = {QStringLiteral("journal"), QStringLiteral("new"),  QStringLiteral("ok"),
                                 QStringLiteral("takes"),   QStringLiteral("temp"), QStringLiteral("temp2")};

class AStation : public testing::Test, protected TestPlatform<FakeDatabaseEngine> {
  protected:
    [[nodiscard]] QStringList in(const QString &relative) const {
        return QDir(folder.filePath(relative)).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
    }
    [[nodiscard]] QString path(const QString &relative) const { return folder.filePath(relative); }

    QTemporaryDir folder;
    Places places{folder.path()};
};

class WorkFolders : public AStation {};
class TheStationLock : public AStation {};

} // namespace

TEST_F(WorkFolders, AreMadeAndLeftEmpty) {
    EXPECT_EQ(makeWorkFolders(files, places), QString());
    EXPECT_EQ(in({}), workFolders);
    for (const QString &name : workFolders) {
        EXPECT_TRUE(in(name).isEmpty()) << name.toStdString();
    }
}

TEST_F(WorkFolders, WhatIsInThemStays) {
    QDir(folder.path()).mkdir(QStringLiteral("ok"));
    disk.write(path(QStringLiteral("ok/LINK.mp3")), "klank");
    EXPECT_EQ(makeWorkFolders(files, places), QString());
    EXPECT_EQ(disk.read(path(QStringLiteral("ok/LINK.mp3"))), "klank");
    EXPECT_EQ(in(QStringLiteral("ok")).size(), 1);
}

TEST_F(WorkFolders, EachOneThatCannotBeWrittenIsTold) {
    for (const QString &name : workFolders) {
        files.heal();
        files.fail(Operation::Write, path(name) + u'/', ErrorNumber::PermissionDenied);
        const QString problem = makeWorkFolders(files, places);
        EXPECT_TRUE(problem.startsWith(QStringLiteral("ORVEL kan niet schrijven in de map %1 (%2")
                                           .arg(path(name), describe(ErrorNumber::PermissionDenied))))
            << problem.toStdString();
        EXPECT_TRUE(problem.contains(QStringLiteral("Opnemen en bewaren lukt niet")));
    }
}

TEST_F(WorkFolders, OneThatCannotBeMadeDoesNotKeepTheOthersFromBeingMade) {
    files.fail(Operation::MakeFolder, path(QStringLiteral("new")), ErrorNumber::PathAccess);
    const QString problem = makeWorkFolders(files, places);
    EXPECT_TRUE(problem.contains(path(QStringLiteral("new")))) << problem.toStdString();
    EXPECT_EQ(in({}), workFolders.mid(0, 1) + workFolders.mid(2));
}

TEST_F(WorkFolders, TheFirstCauseIsTold) {
    files.fail(Operation::Write, path(QStringLiteral("ok")), ErrorNumber::PermissionDenied);
    files.fail(Operation::Write, path(QStringLiteral("temp2")), ErrorNumber::DiskFull);
    const QString problem = makeWorkFolders(files, places);
    EXPECT_TRUE(problem.contains(path(QStringLiteral("ok"))));
    EXPECT_FALSE(problem.contains(path(QStringLiteral("temp2"))));
}

TEST_F(WorkFolders, AFileInTheWayIsTold) {
    disk.write(path(QStringLiteral("temp")), "geen map");
    EXPECT_TRUE(makeWorkFolders(files, places).contains(path(QStringLiteral("temp"))));
}

// An empty file fits on a full disk: the presenter was told when the link was spoken.
TEST_F(WorkFolders, ADiskWithoutAnyRoomIsTold) {
    FaultyStorage storage;
    storage.fillUpAt(0, QStringLiteral("temp/"));
    DiskFileSystem full(storage);
    EXPECT_TRUE(makeWorkFolders(full, places).contains(path(QStringLiteral("temp"))));
    EXPECT_TRUE(in(QStringLiteral("temp")).isEmpty());
}

TEST_F(TheStationLock, AStationHasOneProgramAndSaysWhose) {
    StationLock first(files, places);
    ASSERT_TRUE(first.get());
    EXPECT_TRUE(first.get());
    StationLock second(files, places);
    EXPECT_FALSE(second.get());
    EXPECT_EQ(second.holder().machine, presentHolder().machine);
    EXPECT_TRUE(second.sentence().contains(presentHolder().user));
    { const StationLock leaving = StationLock(files, places); }
    EXPECT_FALSE(second.get()) << "one that never had it frees nothing";
}

TEST_F(TheStationLock, TheNextOneGoesOnWhenTheFirstIsGone) {
    auto first = std::make_unique<StationLock>(files, places);
    ASSERT_TRUE(first->get());
    StationLock second(files, places);
    ASSERT_FALSE(second.get());
    first.reset();
    EXPECT_TRUE(second.get());
    EXPECT_TRUE(in({}).contains(QStringLiteral("orvel.lock"))) << "now it is the second one's";
}

TEST_F(TheStationLock, SaysWhoWhereAndSinceWhen) {
    const Holder somebody{QStringLiteral("José"), QStringLiteral("studio-2"), QStringLiteral("21-11-2026 20:00")};
    const auto held = disk.tryLock(places.lockFile(), toText(somebody));
    ASSERT_TRUE(held);
    StationLock lock(files, places);
    ASSERT_FALSE(lock.get());
    EXPECT_EQ(lock.holder(), somebody);
    EXPECT_TRUE(lock.sentence().startsWith(
        QStringLiteral("Deze werkmap is in gebruik door José op studio-2, sinds 21-11-2026 20:00.")));
}

// A lock file that could not be read was told with gaps: "in gebruik door  op , sinds .".
TEST_F(TheStationLock, SomebodyWithoutANameIsAnotherProgram) {
    const auto held = disk.tryLock(places.lockFile(), "onleesbaar");
    StationLock lock(files, places);
    ASSERT_FALSE(lock.get());
    EXPECT_EQ(lock.holder(), Holder());
    EXPECT_TRUE(lock.sentence().startsWith(QStringLiteral("Deze werkmap is in gebruik door een ander programma.")))
        << lock.sentence().toStdString();
    files.fail(Operation::Read, QStringLiteral("orvel.lock"), ErrorNumber::PermissionDenied);
    EXPECT_EQ(lock.holder(), Holder()) << "nothing is thrown";
}

TEST_F(TheStationLock, AFolderThatCannotBeWrittenKeepsNobodyOut) {
    files.fail(Operation::Lock, QStringLiteral("orvel.lock"), ErrorNumber::PermissionDenied);
    StationLock lock(files, places);
    EXPECT_TRUE(lock.get());
    files.heal();
    StationLock other(files, places);
    EXPECT_TRUE(other.get()) << "and it holds nothing";
}

TEST(WhoHoldsIt, IsReadAsItWasWritten) {
    const Holder holder{QStringLiteral("\"Zoë\\\n"), QStringLiteral("pc{1}"), QStringLiteral("01-02-2026 03:04")};
    EXPECT_EQ(holderIn(toText(holder)), holder);
    EXPECT_EQ(holderIn(toText({})), Holder());
}

TEST(WhoHoldsIt, WhatCannotBeReadIsEmpty) {
    for (const char *text : {"", "{", "[]", "7", "{\"user\":7}"}) {
        EXPECT_EQ(holderIn(text), Holder()) << text;
    }
    EXPECT_EQ(holderIn("{\"user\":\"An\"}"), (Holder{QStringLiteral("An"), {}, {}}));
}

TEST(WhoHoldsIt, ThisProgramIsNamedByUserMachineAndMoment) {
    const QByteArray before = qgetenv("USER");
    qputenv("USER", "presentator");
    const auto restored = qScopeGuard([&] { before.isNull() ? qunsetenv("USER") : qputenv("USER", before); });
    const Holder present = presentHolder();
    EXPECT_EQ(present.user, QStringLiteral("presentator"));
    EXPECT_EQ(present.machine, QSysInfo::machineHostName());
    const QDateTime since = QDateTime::fromString(present.since, QStringLiteral("dd-MM-yyyy HH:mm"));
    ASSERT_TRUE(since.isValid()) << present.since.toStdString();
    EXPECT_LT(std::abs(since.secsTo(QDateTime::currentDateTime())), 120);
}

TEST(PlacesOfAStation, HangUnderTheProgramFolder) {
    const Places places(QStringLiteral("/huis"));
    EXPECT_EQ(places.programFolder(), QStringLiteral("/huis"));
    EXPECT_EQ(places.newFolder(), QStringLiteral("/huis/new"));
    EXPECT_EQ(places.okFolder(), QStringLiteral("/huis/ok"));
    EXPECT_EQ(places.tempFolder(), QStringLiteral("/huis/temp"));
    EXPECT_EQ(places.temp2Folder(), QStringLiteral("/huis/temp2"));
    EXPECT_EQ(places.recoveryFolder(), QStringLiteral("/huis/herstel"));
    EXPECT_EQ(places.journalFolder(), QStringLiteral("/huis/journal"));
    EXPECT_EQ(places.settingsFile(), QStringLiteral("/huis/orvel.ini"));
    EXPECT_EQ(places.stationList(), QStringLiteral("/huis/syncstations.mdb"));
    EXPECT_EQ(places.reportTemplate(), QStringLiteral("/huis/rep/play0.rpt"));
}

TEST(PlacesOfAStation, ATakeHasItsNameInEveryFolder) {
    const Places places(QStringLiteral("/huis"));
    const QString name = QStringLiteral("a.b c");
    EXPECT_EQ(places.take(name), QStringLiteral("/huis/temp/a.b c.wav"));
    EXPECT_EQ(places.encoded(name), QStringLiteral("/huis/temp/a.b c.mp3"));
    EXPECT_EQ(places.journalEntry(name), QStringLiteral("/huis/journal/a.b c.take"));
    EXPECT_EQ(places.stageOutput(name), QStringLiteral("/huis/temp2/a.b c.wav"));
    EXPECT_EQ(places.filed(name), QStringLiteral("/huis/ok/a.b c.mp3"));
    EXPECT_EQ(Places::filedOnServer(QStringLiteral("/server/s"), name), QStringLiteral("/server/s/a.b c.mp3"));
    QSet<QString> all{places.take(name),     places.encoded(name),        places.journalEntry(name),
                      places.takeLock(name), places.rawTake(name),        places.stageOutput(name),
                      places.filed(name),    places.takeVersion(name, 1), places.takeVersion(name, 2)};
    EXPECT_EQ(all.size(), 9) << "no two are the same file";
}

TEST(PlacesOfAStation, TheCataloguesHangUnderTheDatabasePath) {
    EXPECT_EQ(Places::tracks(QStringLiteral("/muziek")), QStringLiteral("/muziek/digital.mdb"));
    EXPECT_EQ(Places::jingles(QStringLiteral("/muziek")), QStringLiteral("/muziek/jingles.mdb"));
}

TEST(PlacesOfAStation, NoNameLeavesItsFolder) {
    const Places places(QStringLiteral("/huis"));
    const QString bad = QStringLiteral("../x");
    using Place = std::function<QString()>;
    for (const Place &place :
         {Place([&] { return places.take(bad); }), Place([&] { return places.encoded(bad); }),
          Place([&] { return places.journalEntry(bad); }), Place([&] { return places.takeLock(bad); }),
          Place([&] { return places.rawTake(bad); }), Place([&] { return places.stageOutput(bad); }),
          Place([&] { return places.takeVersion(bad, 1); }), Place([&] { return places.filed(bad); }),
          Place([&] { return Places::filedOnServer(bad, bad); })}) {
        try {
            ADD_FAILURE() << place().toStdString();
        } catch (const RuntimeError &error) {
            EXPECT_EQ(error.number(), ErrorNumber::BadFileName);
        }
    }
}

} // namespace orvel
