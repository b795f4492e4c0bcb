#include "platform/fake/fake_database.h"
#include "station/checked.h"
#include "station/drive_map.h"
#include "station/paths.h"
#include "station/recovery.h"
#include "station/shell_copy.h"
#include "tests/test_platform.h"

#include <QDir>
#include <QTemporaryDir>
#include <QThread>

#include <gtest/gtest.h>

namespace orvel {

namespace {

const QString title = QStringLiteral("Copieert....");

/// Copies like a slow server: every copy takes a second.
class SlowFileSystem : public FaultyFileSystem {
  public:
    using FaultyFileSystem::FaultyFileSystem;

    bool copy(const QString &source, const QString &target, const Progress &progress) override {
        constexpr int steps = 50;
        for (int step = 0; progress && step < steps; ++step) {
            QThread::msleep(20);
            if (!progress(step, steps)) {
                return false;
            }
        }
        return FaultyFileSystem::copy(source, target, {});
    }
};

class Shell : public testing::Test, protected TestPlatform<FakeDatabaseEngine> {
  protected:
    [[nodiscard]] QString path(const QString &relative) const { return folder.filePath(relative); }
    void put(const QString &relative, const QByteArray &content) { disk.write(path(relative), content); }
    ShellCopyResult copy(const QString &source, const QString &target, bool silent = false) {
        return Global::ShellCopyFile(platform, path(source), path(target), silent, title);
    }

    QTemporaryDir folder;
};

} // namespace

TEST_F(Shell, APatternThatMatchesNothingCopiesAndShowsNothing) {
    disk.makeFolder(path(QStringLiteral("naar")));
    EXPECT_EQ(copy(QStringLiteral("*.mdb"), QStringLiteral("naar")).copied, 0);
    EXPECT_EQ(copy(QStringLiteral("geen.mp3"), QStringLiteral("naar/geen.mp3")).copied, 0);
    EXPECT_TRUE(disk.list(path(QStringLiteral("naar")), QStringLiteral("*")).isEmpty());
}

TEST_F(Shell, OverwritingIsAskedUnlessSilent) {
    put(QStringLiteral("a.mp3"), "nieuw");
    put(QStringLiteral("b.mp3"), "oud");
    const QString question = QStringLiteral("Het bestand b.mp3 bestaat al. Wilt U het overschrijven ?");
    prompts.expectOverwrite(question, title, false);
    EXPECT_EQ(copy(QStringLiteral("a.mp3"), QStringLiteral("b.mp3")).copied, 0);
    EXPECT_EQ(disk.read(path(QStringLiteral("b.mp3"))), "oud");
    prompts.expectOverwrite(question, title, true);
    EXPECT_EQ(copy(QStringLiteral("a.mp3"), QStringLiteral("b.mp3")).copied, 1);
    EXPECT_EQ(disk.read(path(QStringLiteral("b.mp3"))), "nieuw");
    put(QStringLiteral("b.mp3"), "oud");
    EXPECT_EQ(copy(QStringLiteral("a.mp3"), QStringLiteral("b.mp3"), true).copied, 1);
}

TEST_F(Shell, AWildcardCopiesEveryMatchInOneOperation) {
    for (const char *name : {"een.mdb", "Twee.MDB", "drie met é.mdb", "nee.txt"}) {
        put(QString::fromUtf8(name), name);
    }
    disk.makeFolder(path(QStringLiteral("new")));
    EXPECT_EQ(copy(QStringLiteral("*.mdb"), QStringLiteral("new")).copied, 3);
    EXPECT_EQ(disk.list(path(QStringLiteral("new")), QStringLiteral("*")).size(), 3);
}

TEST_F(Shell, ASlowCopyShowsOneWindowUnderItsTitleThatStopsIt) {
    disk.makeFolder(path(QStringLiteral("van")));
    for (int file = 1; file <= 3; ++file) {
        put(QStringLiteral("van/%1.mdb").arg(file), "inhoud");
    }
    disk.makeFolder(path(QStringLiteral("naar")));
    SlowFileSystem slow(disk);
    Platform slowPlatform{sound, audioFiles, databases, slow, prompts, timers, joystick, report, loudness};
    prompts.stopAt = QStringLiteral("2.mdb"); // shows that the window is still the same one
    const ShellCopyResult result = Global::ShellCopyFile(slowPlatform, path(QStringLiteral("van/*.mdb")),
                                                         path(QStringLiteral("naar")), false, title);
    EXPECT_EQ(prompts.progressTitles, QStringList{title});
    EXPECT_EQ(result.copied, 1);
    EXPECT_EQ(result.skipped, 2);
    EXPECT_TRUE(result.stopped);
    EXPECT_EQ(QDir(path(QStringLiteral("naar"))).entryList(QDir::Files), QStringList{QStringLiteral("1.mdb")});
}

TEST_F(Shell, ASilentSlowCopyShowsNoWindow) {
    disk.makeFolder(path(QStringLiteral("van")));
    put(QStringLiteral("van/1.mdb"), "inhoud");
    disk.makeFolder(path(QStringLiteral("naar")));
    SlowFileSystem slow(disk);
    Platform slowPlatform{sound, audioFiles, databases, slow, prompts, timers, joystick, report, loudness};
    const ShellCopyResult result = Global::ShellCopyFile(slowPlatform, path(QStringLiteral("van/1.mdb")),
                                                         path(QStringLiteral("naar")), true, title);
    EXPECT_EQ(result.copied, 1);
    EXPECT_TRUE(prompts.progressTitles.isEmpty());
}

TEST_F(Shell, AMissingFolderIsAskedFor) {
    put(QStringLiteral("a.mp3"), "x");
    const Verbs makeOrNot{QStringLiteral("&Maak de map"), QStringLiteral("Maak &geen map")};
    const QString question =
        QStringLiteral("De map %1 bestaat niet. Wilt U ze maken ?").arg(path(QStringLiteral("weg")));
    prompts.expectAsk(question, title, false, Preset::No, makeOrNot);
    EXPECT_EQ(copy(QStringLiteral("a.mp3"), QStringLiteral("weg/a.mp3")).copied, 0);
    prompts.expectAsk(question, title, true, Preset::No, makeOrNot);
    EXPECT_EQ(copy(QStringLiteral("a.mp3"), QStringLiteral("weg/a.mp3")).copied, 1);
}

TEST_F(Shell, AnErrorIsShownWithNumberAndDescriptionAndNothingIsThrown) {
    put(QStringLiteral("a.mp3"), "x");
    files.fail(FaultyFileSystem::Operation::Copy, QStringLiteral("b.mp3"), ErrorNumber::DiskFull);
    prompts.expectMessage(QStringLiteral("Error: 61. De schijf is vol\n\n") + path(QStringLiteral("b.mp3")),
                          QStringLiteral("ShellCopyFile"), MessageIcon::Exclamation);
    const ShellCopyResult result = copy(QStringLiteral("a.mp3"), QStringLiteral("b.mp3"));
    EXPECT_EQ(result.copied, 0);
    EXPECT_EQ(result.skipped, 1);
    EXPECT_TRUE(result.stopped);
}

TEST_F(Shell, EveryFileIsCountedWhetherItWasCopiedOrPassedOver) {
    for (const char *name : {"van", "naar"}) {
        disk.makeFolder(path(QString::fromLatin1(name)));
    }
    for (const char *name : {"van/1.mp3", "van/2.mp3", "van/3.mp3", "naar/2.mp3"}) {
        put(QString::fromLatin1(name), name);
    }
    prompts.expectOverwrite(QStringLiteral("Het bestand 2.mp3 bestaat al. Wilt U het overschrijven ?"), title, false);
    int done = 0;
    const ShellCopyResult result =
        Global::ShellCopyFile(platform, path(QStringLiteral("van/*.mp3")), path(QStringLiteral("naar")), false, title,
                              {{}, {}, [&done] { ++done; }});
    EXPECT_EQ(done, 3);
    EXPECT_EQ(result.copied, 2);
    EXPECT_EQ(result.skipped, 1);
    EXPECT_FALSE(result.stopped);
}

TEST_F(Shell, RecoveryKeepsTheNewestFiftyAndOverwritesNothing) {
    Recovery recovery(disk, folder.path());
    QString first;
    for (int take = 0; take < Recovery::keptFiles + 3; ++take) {
        put(QStringLiteral("x.wav"), QByteArray::number(take));
        const QString kept = recovery.keep(path(QStringLiteral("x.wav")));
        first = first.isEmpty() ? kept : first;
        EXPECT_EQ(disk.read(kept), QByteArray::number(take));
    }
    EXPECT_EQ(disk.list(path(QStringLiteral("herstel")), QStringLiteral("*.wav")).size(), Recovery::keptFiles);
    EXPECT_FALSE(disk.fileExists(first));
}

TEST(Paths, ANameFromAListIsTakenAsItStands) {
    EXPECT_EQ(inFolder(QStringLiteral("/p/new"), QStringLiteral("a\\..\\b.mdb")),
              QStringLiteral("/p/new/a\\..\\b.mdb"));
    EXPECT_EQ(inFolder(QStringLiteral("/p/a\\b"), QStringLiteral("c")), QStringLiteral("/p/a\\b/c"));
}

TEST(Paths, NamesThatLeaveTheirFolderAreRefused) {
    const QString folder = QStringLiteral("/p");
    const QString temp = QStringLiteral("\\temp\\");
    const QString wav = QStringLiteral(".wav");
    EXPECT_EQ(takeFile(folder, temp, QStringLiteral("É'n naam"), wav), QStringLiteral("/p/temp/É'n naam.wav"));
    EXPECT_EQ(takeFile(folder, temp, QString(), wav), QStringLiteral("/p/temp/.wav"));
    for (const QString &name :
         {QStringLiteral("../x"), QStringLiteral("a/b"), QStringLiteral(".."), QString(QChar(0)), QString(300, u'x')}) {
        EXPECT_THROW(static_cast<void>(takeFile(folder, temp, name, wav)), RuntimeError) << name.toStdString();
    }
}

TEST(Checked, LimitsAreTheFields) {
    EXPECT_EQ(checkedInt16(32767), 32767);
    EXPECT_THROW(static_cast<void>(checkedInt16(32768)), RuntimeError);
    EXPECT_EQ(checkedInt32(-2147483648LL), -2147483647 - 1);
    EXPECT_THROW(static_cast<void>(checkedInt32(2147483648LL)), RuntimeError);
}

TEST_F(Shell, DriveLettersLeadToFoldersWithoutRegardToCase) {
    disk.makeFolder(path(QStringLiteral("audio/Muziek")));
    put(QStringLiteral("audio/Muziek/0001.MP3"), "x");
    DriveMap drives(disk, folder.path());
    drives.set(u'm', QStringLiteral("audio"));
    EXPECT_EQ(drives.resolve(QStringLiteral("M:\\muziek\\0001.mp3")), path(QStringLiteral("audio/Muziek/0001.MP3")));
    EXPECT_EQ(drives.resolve(QStringLiteral("Q:\\x\\y.mp3")), QStringLiteral("Q:/x/y.mp3"));
}

} // namespace orvel
