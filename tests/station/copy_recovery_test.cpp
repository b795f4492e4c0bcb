// Copies that are cut short, and what the recovery folder does with names, kinds and failing disks.
#include "platform/fake/fake_database.h"
#include "station/paths.h"
#include "station/recovery.h"
#include "station/shell_copy.h"
#include "tests/platform/audio/full_disk.h"
#include "tests/platform/audio/temp_folder.h"
#include "tests/test_platform.h"

#include <gtest/gtest.h>

namespace orvel {

using test::contentOf;
using test::errorOf;
using test::writeContent;
using Operation = FaultyFileSystem::Operation;

namespace {

const QString copyTitle = QStringLiteral("Copying...");

class CopyAndRecovery : public testing::Test, protected TestPlatform<FakeDatabaseEngine> {
  protected:
    ShellCopyResult copy(const char *source, const QString &target, bool silent = false) {
        return Global::ShellCopyFile(platform, folder.path(source), target, silent, copyTitle);
    }
    void expectError(const char *text, const QString &path) {
        prompts.expectMessage(QString::fromUtf8(text) + QStringLiteral("\n\n") + path, QStringLiteral("ShellCopyFile"),
                              MessageIcon::Exclamation);
    }
    [[nodiscard]] QStringList kept(const char *pattern = "*") const {
        return disk.list(folder.path("herstel"), QString::fromUtf8(pattern));
    }
    /// A kept file of a moment long ago, the higher the number the younger.
    void keptLongAgo(int number, const char *extension) {
        writeContent(folder.path(QStringLiteral("herstel/oud.20200101-000000-%1-000%2")
                                     .arg(number, 3, 10, QLatin1Char('0'))
                                     .arg(QLatin1String(extension))),
                     "oud");
    }

    test::TempFolder folder;
    Recovery recovery{files, folder.path()};
};

} // namespace

TEST_F(CopyAndRecovery, SilentAsksNothingMakesTheFolderAndStillShowsErrors) {
    writeContent(folder.path("a.mp3"), "nieuw");
    EXPECT_EQ(copy("a.mp3", folder.path("weg/diep/a.mp3"), true).copied, 1);
    EXPECT_EQ(contentOf(folder.path("weg/diep/a.mp3")), "nieuw");
    files.fail(Operation::MakeFolder, QStringLiteral("dicht"), ErrorNumber::PermissionDenied);
    expectError("Error: 70. Geen toegang", folder.path("dicht"));
    EXPECT_EQ(copy("a.mp3", folder.path("dicht/a.mp3"), true).skipped, 1);
}

TEST_F(CopyAndRecovery, ADiskThatFillsUpStopsTheOperationAndLeavesNoHalfFile) {
    for (const char *name : {"1.mdb", "2.mdb", "3.mdb"}) {
        writeContent(folder.path(name), QByteArray(1'000'000, 'n'));
    }
    QDir(folder.path()).mkdir(QStringLiteral("new"));
    files.failCopyAfter(500'000, QStringLiteral("new/2.mdb"), ErrorNumber::DiskFull);
    expectError("Error: 61. De schijf is vol", folder.path("new/2.mdb"));
    const ShellCopyResult result = copy("*.mdb", folder.path("new"));
    EXPECT_EQ(result.copied, 1);
    EXPECT_EQ(result.skipped, 2);
    EXPECT_EQ(QDir(folder.path("new")).entryList(QDir::Files | QDir::Hidden), QStringList{"1.mdb"});
}

TEST_F(CopyAndRecovery, ANoKeepsOneFileTheOthersAreCopied) {
    for (const char *name : {"1.mdb", "2.mdb", "new/1.mdb"}) {
        QDir(folder.path()).mkpath(QStringLiteral("new"));
        writeContent(folder.path(name), name);
    }
    prompts.expectOverwrite(QStringLiteral("Het bestand 1.mdb bestaat al. Wilt U het overschrijven ?"), copyTitle,
                            false);
    EXPECT_EQ(copy("*.mdb", folder.path("new")).copied, 1);
    EXPECT_EQ(contentOf(folder.path("new/1.mdb")), "new/1.mdb");
    EXPECT_EQ(contentOf(folder.path("new/2.mdb")), "2.mdb");
}

TEST_F(CopyAndRecovery, ATakeIsKeptUnderItsNameInAFolderThatIsMade) {
    writeContent(folder.path("Été 'n take.v2.wav"), "stem");
    const QString place = recovery.keep(folder.path("Été 'n take.v2.wav"));
    EXPECT_EQ(contentOf(place), "stem");
    EXPECT_TRUE(QFileInfo(place).fileName().startsWith(QStringLiteral("Été 'n take.v2.")));
    EXPECT_TRUE(place.endsWith(QStringLiteral(".wav")));
    EXPECT_FALSE(disk.fileExists(folder.path("Été 'n take.v2.wav")));
    recovery.discard(place);
    EXPECT_FALSE(disk.fileExists(place));
    EXPECT_NO_THROW(recovery.discard(place));
}

TEST_F(CopyAndRecovery, EachKindHasItsNewestFiftyAndFilesOfOthersStay) {
    QDir(folder.path()).mkdir(QStringLiteral("herstel"));
    for (int number = 0; number < Recovery::keptFiles; ++number) {
        keptLongAgo(number, ".wav");
        keptLongAgo(number, ".mdb");
    }
    writeContent(folder.path("herstel/van mij.wav"), "mijn");
    writeContent(folder.path("x.wav"), "nieuw");
    const QString place = recovery.keep(folder.path("x.wav"));
    EXPECT_EQ(contentOf(place), "nieuw");
    EXPECT_EQ(kept("*.mdb").size(), Recovery::keptFiles);
    EXPECT_EQ(kept("*.wav").size(), Recovery::keptFiles + 1);
    EXPECT_TRUE(kept().contains(QStringLiteral("van mij.wav")));
    EXPECT_FALSE(kept().contains(QStringLiteral("oud.20200101-000000-000-000.wav"))) << "the oldest went";
    EXPECT_TRUE(kept().contains(QStringLiteral("oud.20200101-000000-001-000.wav")));
}

// The clock had been ahead: fifty files bore later stamps, and the take that was kept was the first to go.
TEST_F(CopyAndRecovery, TheOrderOfKeepingCountsWhateverTheClockSaid) {
    QDir(folder.path()).mkdir(QStringLiteral("herstel"));
    for (int number = 0; number < Recovery::keptFiles; ++number) {
        writeContent(
            folder.path(
                QStringLiteral("herstel/later.29990101-000000-%1-000.wav").arg(number, 3, 10, QLatin1Char('0'))),
            "later");
    }
    writeContent(folder.path("herstel/nog later.29990101-000000-999-000007.mdb"), "lijst");
    QStringList places;
    for (int take = 0; take < Recovery::keptFiles + 2; ++take) {
        writeContent(folder.path("x.wav"), QByteArray::number(take));
        places << recovery.keep(folder.path("x.wav"));
        ASSERT_EQ(contentOf(places.last()), QByteArray::number(take)) << "just kept, and gone";
        EXPECT_EQ(kept("*.wav").size(), Recovery::keptFiles);
        if (take == 0) {
            EXPECT_FALSE(kept().contains(QStringLiteral("later.29990101-000000-000-000.wav")));
            EXPECT_TRUE(kept().contains(QStringLiteral("later.29990101-000000-001-000.wav")));
            EXPECT_TRUE(places.last().endsWith(QStringLiteral("-000008.wav"))) << "one number for all kinds";
        }
    }
    EXPECT_TRUE(kept("later*").isEmpty());
    EXPECT_FALSE(disk.fileExists(places.at(0)));
    EXPECT_FALSE(disk.fileExists(places.at(1)));
    EXPECT_TRUE(disk.fileExists(places.at(2)));
}

// A folder that cannot be listed tells no numbers: what stands there is not replaced, and what was kept stays.
TEST_F(CopyAndRecovery, AFolderThatCannotBeListedLosesNothing) {
    files.fail(Operation::List, QStringLiteral("herstel"), ErrorNumber::PermissionDenied);
    QStringList places;
    for (int take = 0; take < 5; ++take) {
        writeContent(folder.path("x.wav"), QByteArray::number(take));
        places << recovery.keep(folder.path("x.wav"));
    }
    for (int take = 0; take < 5; ++take) {
        EXPECT_EQ(contentOf(places.at(take)), QByteArray::number(take));
    }
}

TEST_F(CopyAndRecovery, WhatCannotBeKeptStaysWhereItIs) {
    writeContent(folder.path("x.wav"), "stem");
    files.fail(Operation::Move, QStringLiteral("herstel"), ErrorNumber::DiskFull);
    EXPECT_EQ(errorOf([&] { recovery.keep(folder.path("x.wav")); }), 61);
    EXPECT_EQ(contentOf(folder.path("x.wav")), "stem");
    EXPECT_EQ(recovery.keepCopy(folder.path("x.wav")), QString());
    EXPECT_EQ(contentOf(folder.path("x.wav")), "stem");
    EXPECT_EQ(kept().size(), 1);
    files.fail(Operation::Link, QStringLiteral("herstel"), ErrorNumber::DiskFull);
    EXPECT_EQ(recovery.keepCopy(folder.path("x.wav")),
              QStringLiteral("Van x.wav is geen kopie bewaard in de map herstel (De schijf is vol)."));
    EXPECT_EQ(kept().size(), 1);
}

// A file of any size was copied: one of 100 GiB, most of it holes, filled the disk.
TEST_F(CopyAndRecovery, AFileBeyondAnyPlaylistsSizeIsNotCopied) {
    QFile list(folder.path("lijst.mdb"));
    ASSERT_TRUE(list.open(QIODevice::WriteOnly));
    ASSERT_TRUE(list.resize(qint64{16} * 1024 * 1024 + 1));
    EXPECT_EQ(recovery.keepCopy(list.fileName()),
              QStringLiteral("Van lijst.mdb is geen kopie bewaard in de map herstel (het bestand is te groot)."));
    EXPECT_TRUE(kept().isEmpty());
    ASSERT_TRUE(list.resize(qint64{16} * 1024 * 1024));
    EXPECT_EQ(recovery.keepCopy(list.fileName()), QString());
    EXPECT_EQ(kept().size(), 1);
}

// Fifty stayed of each kind: whoever deleted a month of playlists at once got back the last fifty.
TEST_F(CopyAndRecovery, OfPlaylistsFiveHundredStay) {
    QDir(folder.path()).mkdir(QStringLiteral("herstel"));
    for (int number = 0; number < 499; ++number) {
        keptLongAgo(number, ".mdb");
    }
    writeContent(folder.path("herstel/heel oud.20190101-000000-000-000.mdb"), "oud");
    writeContent(folder.path("een.mdb"), "lijst");
    recovery.keep(folder.path("een.mdb"));
    EXPECT_EQ(kept("*.mdb").size(), 500);
    EXPECT_TRUE(kept("heel oud*").isEmpty());
    EXPECT_EQ(kept("een*").size(), 1);
}

// The bound for playlists kept every longer voice track from being kept before it was replaced.
TEST_F(CopyAndRecovery, SoundOfAnySizeIsKeptUnderASecondName) {
    for (const char *name : {"lang.mp3", "lang.WAV"}) {
        QFile file(folder.path(name));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        ASSERT_TRUE(file.resize(qint64{17} * 1024 * 1024));
        files.fail(Operation::Copy, QStringLiteral("herstel"), ErrorNumber::DiskFull);
        EXPECT_EQ(recovery.keepCopy(file.fileName()), QString()) << name << ": a second name needs no room";
        files.heal();
        ASSERT_FALSE(recovery.kept().empty());
        writeContent(folder.path("nieuw"), "nieuw");
        disk.move(folder.path("nieuw"), file.fileName());
        EXPECT_EQ(QFileInfo(recovery.kept().front().path).size(), qint64{17} * 1024 * 1024) << name;
        EXPECT_EQ(recovery.kept().front().name, QString::fromLatin1(name));
    }
    files.fail(Operation::Link, QStringLiteral("herstel"), ErrorNumber::PermissionDenied);
    EXPECT_EQ(recovery.keepCopy(folder.path("lang.mp3")),
              QStringLiteral("Van lang.mp3 is geen kopie bewaard in de map herstel (Geen toegang)."));
}

TEST_F(CopyAndRecovery, APlaylistsCopyDoesNotChangeWithIt) {
    writeContent(folder.path("een.mdb"), "voor");
    EXPECT_EQ(recovery.keepCopy(folder.path("een.mdb")), QString());
    QFile list(folder.path("een.mdb"));
    ASSERT_TRUE(list.open(QIODevice::ReadWrite));
    list.write("na__"); // in place, as playlists are marked
    list.close();
    EXPECT_EQ(contentOf(recovery.kept().front().path), "voor");
}

TEST_F(CopyAndRecovery, TheListTellsKindNameAndTimeTheLastKeptFirst) {
    QDir(folder.path()).mkdir(QStringLiteral("herstel"));
    EXPECT_TRUE(recovery.kept().empty());
    for (const char *name :
         {"VT 1.v2.20260102-030405-678-000007.wav", "Klaar.20260102-030405-678-000012.MP3",
          "avond.20270101-000000-000-000009.mdb", "oud.20210304-050607-008-123.mdb", // of before they were counted
          "van mij.wav", "notitie.20260102-030405-678-000013.txt", "kaal.20260102-030405-678-000014"}) {
        writeContent(folder.path(QStringLiteral("herstel/") + QString::fromLatin1(name)), name);
    }
    const std::vector<KeptFile> kept = recovery.kept();
    ASSERT_EQ(kept.size(), 4U);
    QStringList lines;
    for (const KeptFile &file : kept) {
        lines << file.name + u' ' + QString::number(static_cast<int>(file.kind)) +
                     file.when.toString(QStringLiteral(" d-M-yyyy h:m:s.zzz"));
    }
    EXPECT_EQ(lines, (QStringList{QStringLiteral("Klaar.MP3 1 2-1-2026 3:4:5.678"),
                                  QStringLiteral("avond.mdb 2 1-1-2027 0:0:0.000"),
                                  QStringLiteral("VT 1.v2.wav 0 2-1-2026 3:4:5.678"),
                                  QStringLiteral("oud.mdb 2 4-3-2021 5:6:7.008")}));
    EXPECT_EQ(contentOf(kept.front().path), "Klaar.20260102-030405-678-000012.MP3");
    files.fail(Operation::List, QStringLiteral("herstel"), ErrorNumber::DeviceError);
    EXPECT_TRUE(recovery.kept().empty());
}

TEST_F(CopyAndRecovery, WhatIsPutBackHasItsNameAgainAndIsNoLongerKept) {
    writeContent(folder.path("VT 1.wav"), "stem");
    recovery.keep(folder.path("VT 1.wav"));
    recovery.putBack(recovery.kept().front(), folder.path());
    EXPECT_EQ(contentOf(folder.path("VT 1.wav")), "stem");
    EXPECT_TRUE(recovery.kept().empty());
}

TEST_F(CopyAndRecovery, WhatStandsInThePlaceIsKeptFirst) {
    writeContent(folder.path("VT 1.wav"), "eerste");
    recovery.keep(folder.path("VT 1.wav"));
    writeContent(folder.path("VT 1.wav"), "tweede");
    recovery.putBack(recovery.kept().front(), folder.path());
    EXPECT_EQ(contentOf(folder.path("VT 1.wav")), "eerste");
    ASSERT_EQ(recovery.kept().size(), 1U);
    EXPECT_EQ(contentOf(recovery.kept().front().path), "tweede");
}

// Keeping what stood in the place dropped the oldest file: the very one that was to be put back.
TEST_F(CopyAndRecovery, TheOldestOfFiftyCanBePutBackToo) {
    QDir(folder.path()).mkdir(QStringLiteral("herstel"));
    for (int number = 0; number < Recovery::keptFiles; ++number) {
        keptLongAgo(number, ".wav");
    }
    writeContent(folder.path("oud.wav"), "staat er");
    const KeptFile oldest = recovery.kept().back();
    recovery.putBack(oldest, folder.path());
    EXPECT_EQ(contentOf(folder.path("oud.wav")), "oud");
    EXPECT_EQ(contentOf(recovery.kept().front().path), "staat er");
}

TEST_F(CopyAndRecovery, WhatCannotBePutBackChangesNothing) {
    writeContent(folder.path("VT 1.wav"), "eerste");
    recovery.keep(folder.path("VT 1.wav"));
    KeptFile first = recovery.kept().front();
    QDir(folder.path()).mkdir(QStringLiteral("temp"));
    writeContent(folder.path("temp/VT 1.wav"), "tweede");
    first.path += QStringLiteral(".weg"); // somebody else took it away
    EXPECT_EQ(errorOf([&] { recovery.putBack(first, folder.path("temp")); }), 53);
    EXPECT_EQ(contentOf(folder.path("temp/VT 1.wav")), "tweede");
    EXPECT_EQ(recovery.kept().size(), 1U) << "what stood there is in its place again";
}

TEST(TakeFile, OnlyNamesThatLeaveTheFolderOrThatThisDiskDoesNotTakeAreBad) {
    const auto number = [](const QString &name) {
        return errorOf([&] {
            static_cast<void>(takeFile(QStringLiteral("/p"), QStringLiteral("\\temp\\"), name, QStringLiteral(".wav")));
        });
    };
    for (const char *name : {"/etc/x", "map/x", ".", "..", "../x"}) {
        EXPECT_EQ(number(QString::fromUtf8(name)), 52) << name;
    }
    EXPECT_EQ(number(QString(QChar(0))), 52);
    EXPECT_EQ(number(QString(201, u'x')), 52);
    EXPECT_EQ(number(QString(101, QChar(0xE9))), 52) << "bytes count, not characters";
    EXPECT_EQ(number(QString(QChar(0xD800))), 52);
    // "Wat nu?" was refused, though nothing but a disk's own rules speaks against it.
    for (const char *name : {"", "...", "..x", "console", "com10", "50% 'n été & meer", " x ", "Wat nu?", "a:b",
                             "\"a\"", "con", "..\\x"}) {
        EXPECT_EQ(number(QString::fromUtf8(name)), 0) << name;
    }
    EXPECT_EQ(number(QString(200, u'x')), 0);
}

} // namespace orvel
