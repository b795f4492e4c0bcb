#include "platform/qt/disk_file_system.h"
#include "tests/platform/audio/full_disk.h"
#include "tests/platform/audio/temp_folder.h"

#include <QFileInfo>

#include <fstream>
#include <gtest/gtest.h>
#include <sched.h>
#include <string>
#include <sys/mount.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace orvel {

using test::contentOf;
using test::errorOf;
using test::writeContent;

namespace {

const QStringList oddNames = {QStringLiteral("met spaties.mp3"), QStringLiteral("café Ünïcode €.mp3"),
                              QStringLiteral("'enkel' en \"dubbel\".mp3"), QStringLiteral("50%1 [x] #&;$(y).mp3"),
                              QStringLiteral("日本 🎙.mp3")};

class Disk : public testing::Test {
  protected:
    [[nodiscard]] QString path(const QString &name) const { return folder.path(name); }
    [[nodiscard]] QString path(const char *name) const { return folder.path(name); }
    /// Everything in the folder, hidden files too.
    [[nodiscard]] QStringList everything() const {
        return QDir(folder.path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
    }
    [[nodiscard]] mode_t mode(const char *name) const {
        struct stat status = {};
        stat(QFile::encodeName(path(name)).constData(), &status);
        return status.st_mode & 07777;
    }

    test::TempFolder folder;
    DiskFileSystem disk;
};

} // namespace

TEST_F(Disk, NamesAreTakenAsTheyStand) {
    for (const QString &name : oddNames) {
        disk.write(path(name), name.toUtf8());
        EXPECT_EQ(disk.read(path(name)), name.toUtf8());
        EXPECT_TRUE(disk.copy(path(name), path(QStringLiteral("kopie van ") + name), {}));
        disk.move(path(QStringLiteral("kopie van ") + name), path(QStringLiteral("x") + name));
        EXPECT_EQ(contentOf(path(QStringLiteral("x") + name)), name.toUtf8());
        EXPECT_EQ(disk.list(folder.path(), name), QStringList{name});
        disk.remove(path(QStringLiteral("x") + name));
    }
    EXPECT_EQ(disk.list(folder.path(), QStringLiteral("*.MP3")).size(), oddNames.size());
}

TEST_F(Disk, ACopyIsSeenOnlyWhenItIsWhole) {
    const QByteArray content(1'000'000, 'n');
    writeContent(path("bron"), content);
    writeContent(path("doel.mp3"), "oud");
    qint64 last = 0;
    int calls = 0;
    EXPECT_TRUE(disk.copy(path("bron"), path("doel.mp3"), [&](qint64 done, qint64 total) {
        EXPECT_TRUE(done > last || done == total); // the end is told once more when the disk has it
        EXPECT_EQ(total, content.size());
        EXPECT_EQ(contentOf(path("doel.mp3")), "oud");
        EXPECT_EQ(disk.list(folder.path(), QStringLiteral("*")), QStringList({"bron", "doel.mp3"}));
        last = done;
        ++calls;
        return true;
    }));
    EXPECT_EQ(last, content.size());
    EXPECT_GT(calls, 2);
    EXPECT_EQ(contentOf(path("doel.mp3")), content);
    EXPECT_EQ(everything(), QStringList({"bron", "doel.mp3"}));
}

TEST_F(Disk, ACopyThatIsStoppedLeavesTheTargetAsItWas) {
    writeContent(path("bron"), QByteArray(1'000'000, 'n'));
    writeContent(path("doel"), "oud");
    EXPECT_FALSE(disk.copy(path("bron"), path("doel"), [](qint64 done, qint64 /*total*/) { return done < 500'000; }));
    EXPECT_EQ(contentOf(path("doel")), "oud");
    EXPECT_FALSE(disk.copy(path("bron"), path("nieuw"), [](qint64 /*done*/, qint64 /*total*/) { return false; }));
    EXPECT_EQ(everything(), QStringList({"bron", "doel"}));
}

TEST_F(Disk, TellsTheSizeOfAFile) {
    writeContent(path("a.mdb"), QByteArray(12'345, 'a'));
    EXPECT_EQ(disk.fileSize(path("a.mdb")), 12'345);
    EXPECT_EQ(errorOf([&] { static_cast<void>(disk.fileSize(path("weg.mdb"))); }), 53);
}

TEST_F(Disk, TellsHowMuchRoomThereIs) {
    EXPECT_GT(disk.freeBytes(folder.path()), 0);
    EXPECT_EQ(disk.freeBytes(path("nergens")), -1);
}

TEST_F(Disk, LooksWhetherAFolderCanBeWrittenAndLeavesNothing) {
    EXPECT_EQ(disk.askWritable(folder.path())->load(), Writable::Yes);
    EXPECT_EQ(everything(), QStringList());
    EXPECT_EQ(disk.askWritable(path("nergens"))->load(), Writable::No);
    writeContent(path("bestand"), "x");
    EXPECT_EQ(disk.askWritable(path("bestand"))->load(), Writable::No);
}

TEST_F(Disk, AnEmptyFileIsCopiedToo) {
    writeContent(path("leeg"), {});
    writeContent(path("doel"), "oud");
    EXPECT_TRUE(disk.copy(path("leeg"), path("doel"), {}));
    EXPECT_TRUE(QFileInfo::exists(path("doel")));
    EXPECT_EQ(contentOf(path("doel")), QByteArray());
}

TEST_F(Disk, AFileKeepsItsPermissionsANewOneGetsTheUsual) {
    const mode_t before = umask(027);
    writeContent(path("bron"), "n");
    writeContent(path("doel"), "oud");
    chmod(QFile::encodeName(path("doel")).constData(), 0604);
    chmod(QFile::encodeName(path("bron")).constData(), 0400);
    disk.write(path("doel"), "nieuw");
    EXPECT_EQ(mode("doel"), 0604U);
    disk.copy(path("bron"), path("doel"), {});
    EXPECT_EQ(mode("doel"), 0604U);
    disk.copy(path("bron"), path("vers"), {});
    EXPECT_EQ(mode("vers"), 0640U);
    umask(before);
}

TEST_F(Disk, ALinkStaysALink) {
    writeContent(path("echt.ini"), "oud");
    ASSERT_TRUE(QFile::link(path("echt.ini"), path("orvel.ini")));
    disk.write(path("orvel.ini"), "nieuw");
    EXPECT_TRUE(QFileInfo(path("orvel.ini")).isSymLink());
    EXPECT_EQ(contentOf(path("echt.ini")), "nieuw");
}

TEST_F(Disk, FailuresHaveTheirNumbers) {
    writeContent(path("bestand"), "x");
    QDir(folder.path()).mkdir(QStringLiteral("map"));
    const QString tooLong = path(QString(300, u'n'));
    EXPECT_EQ(errorOf([&] { static_cast<void>(disk.read(path("weg"))); }), 53);
    EXPECT_EQ(errorOf([&] { static_cast<void>(disk.read(path("weg/weg"))); }), 76);
    EXPECT_EQ(errorOf([&] { static_cast<void>(disk.read(path("map"))); }), 53);
    EXPECT_EQ(errorOf([&] { disk.write(path("weg/weg"), "x"); }), 76);
    EXPECT_EQ(errorOf([&] { disk.write(path("map"), "x"); }), 75);
    EXPECT_EQ(errorOf([&] { disk.write(tooLong, "x"); }), 52);
    EXPECT_EQ(errorOf([&] { disk.copy(path("weg"), path("doel"), {}); }), 53);
    EXPECT_EQ(errorOf([&] { disk.copy(path("bestand"), path("weg/doel"), {}); }), 76);
    EXPECT_EQ(errorOf([&] { disk.copy(path("bestand"), path("map"), {}); }), 75);
    EXPECT_EQ(errorOf([&] { disk.move(path("weg"), path("doel")); }), 53);
    EXPECT_EQ(errorOf([&] { disk.move(path("bestand"), path("weg/doel")); }), 76);
    EXPECT_EQ(errorOf([&] { disk.move(path("bestand"), path("map")); }), 75);
    EXPECT_EQ(errorOf([&] { disk.move(path("bestand"), tooLong); }), 52);
    EXPECT_EQ(errorOf([&] { disk.remove(path("weg")); }), 53);
    EXPECT_EQ(errorOf([&] { disk.remove(path("map")); }), 53);
    EXPECT_EQ(errorOf([&] { disk.makeFolder(path("bestand")); }), 75);
    EXPECT_EQ(errorOf([&] { disk.makeFolder(path("bestand/onder")); }), 75);
    EXPECT_EQ(errorOf([&] { disk.makeFolder(QString()); }), 76);
    EXPECT_EQ(everything(), QStringList({"bestand", "map"}));
}

TEST_F(Disk, AFailureNamesTheFile) {
    try {
        static_cast<void>(disk.read(path("weg")));
        FAIL();
    } catch (const RuntimeError &error) {
        EXPECT_EQ(error.file(), path("weg"));
    }
}

TEST_F(Disk, AFileIsNotCopiedOntoItself) {
    writeContent(path("bestand"), "inhoud");
    EXPECT_EQ(errorOf([&] { disk.copy(path("bestand"), folder.path() + QStringLiteral("/./bestand"), {}); }), 70);
    EXPECT_EQ(contentOf(path("bestand")), "inhoud");
}

TEST_F(Disk, ListsNormalFilesWithoutRegardToCase) {
    for (const char *name : {"b.mdb", "A.MDB", "c.Mdb", "c.ldb", ".verborgen.mdb", "x[1].mdb"}) {
        writeContent(path(name), "x");
    }
    QDir(folder.path()).mkdir(QStringLiteral("map.mdb"));
    EXPECT_EQ(disk.list(folder.path(), QStringLiteral("*.mdb")), QStringList({"A.MDB", "b.mdb", "c.Mdb", "x[1].mdb"}));
    EXPECT_EQ(disk.list(folder.path(), QStringLiteral("X[1].*")), QStringList{"x[1].mdb"});
    EXPECT_EQ(disk.list(folder.path(), QStringLiteral("?.mdb")), QStringList({"A.MDB", "b.mdb", "c.Mdb"}));
    EXPECT_TRUE(disk.list(path("weg"), QStringLiteral("*")).isEmpty());
    EXPECT_TRUE(disk.list(QString(), QStringLiteral("*")).isEmpty());
}

TEST_F(Disk, ListsFoldersAsPeopleSeeThem) {
    for (const char *name : {"b", "A", "c.d", ".verborgen"}) {
        disk.makeFolder(path(name));
    }
    writeContent(path("bestand"), "x");
    EXPECT_EQ(disk.folders(folder.path()), QStringList({"A", "b", "c.d"}));
    EXPECT_TRUE(disk.folders(path("weg")).isEmpty());
    EXPECT_TRUE(disk.folders(path("bestand")).isEmpty());
    EXPECT_TRUE(disk.folders(QString()).isEmpty()) << "not those of the working folder";
}

TEST_F(Disk, DrivesAreFoldersAndTheRootIsTheFirst) {
    const QStringList drives = disk.drives();
    ASSERT_FALSE(drives.isEmpty());
    EXPECT_EQ(drives.first(), QStringLiteral("/"));
    for (const QString &drive : drives) {
        EXPECT_TRUE(disk.folderExists(drive)) << drive.toStdString();
        EXPECT_FALSE(drive.startsWith(QStringLiteral("/proc"))) << drive.toStdString();
    }
}

namespace {

void writeText(const char *file, const std::string &text) {
    std::ofstream(file) << text;
}

/// Gives this process a mount table of its own, in which it may mount as root.
bool enterOwnMountTable() {
    const std::string user = "0 " + std::to_string(geteuid()) + " 1";
    const std::string group = "0 " + std::to_string(getegid()) + " 1";
    if (unshare(CLONE_NEWUSER | CLONE_NEWNS) != 0) {
        return false;
    }
    writeText("/proc/self/setgroups", "deny");
    writeText("/proc/self/uid_map", user);
    writeText("/proc/self/gid_map", group);
    return true;
}

/// A stick in the place of sticks, another file system elsewhere, a mount point that is a file.
bool mountThings() {
    if (mount("tmpfs", "/media", "tmpfs", 0, nullptr) != 0 || mkdir("/media/STICK", 0755) != 0 ||
        mkdir("/media/leeg", 0755) != 0) {
        return false;
    }
    writeText("/media/bestand", "x");
    return mount("tmpfs", "/media/STICK", "tmpfs", 0, nullptr) == 0 &&
           mount("/etc/passwd", "/media/bestand", nullptr, MS_BIND, nullptr) == 0 &&
           mount("tmpfs", "/opt", "tmpfs", 0, nullptr) == 0;
}

/// Ends with 0 when the stick and the root are drives and the other things are not; with 77 when mounting is not
/// allowed.
[[noreturn]] void mountAndListDrives() {
    if (!enterOwnMountTable() || !mountThings()) {
        _exit(77);
    }
    const QStringList drives = DiskFileSystem().drives();
    const bool right = drives.contains(QStringLiteral("/media/STICK")) && drives.contains(QStringLiteral("/")) &&
                       !drives.contains(QStringLiteral("/media/leeg")) &&
                       !drives.contains(QStringLiteral("/media/bestand")) && !drives.contains(QStringLiteral("/opt"));
    _exit(right ? 0 : 1);
}

} // namespace

TEST_F(Disk, AMountedStickIsADriveAndOtherMountsAreNot) {
    const pid_t child = fork();
    ASSERT_GE(child, 0);
    if (child == 0) {
        mountAndListDrives();
    }
    int status = 0;
    ASSERT_EQ(waitpid(child, &status, 0), child);
    ASSERT_TRUE(WIFEXITED(status));
    if (WEXITSTATUS(status) == 77) {
        GTEST_SKIP() << "this machine does not let tests mount";
    }
    EXPECT_EQ(WEXITSTATUS(status), 0);
}

TEST_F(Disk, ASecondNameKeepsWhatTheFirstLoses) {
    writeContent(path("a.wav"), "raw");
    disk.write(path("b.wav"), "processed");
    disk.link(path("a.wav"), path("second.wav"));
    disk.move(path("b.wav"), path("a.wav"));
    EXPECT_EQ(disk.read(path("second.wav")), "raw");
    EXPECT_EQ(disk.read(path("a.wav")), "processed");
    disk.remove(path("a.wav"));
    EXPECT_EQ(disk.read(path("second.wav")), "raw");
    disk.write(path("c.wav"), "else");
    EXPECT_EQ(errorOf([&] { disk.link(path("c.wav"), path("second.wav")); }), 70);
    EXPECT_EQ(errorOf([&] { disk.link(path("none.wav"), path("third.wav")); }), 53);
}

TEST_F(Disk, AMoveOverwrites) {
    writeContent(path("bron"), "nieuw");
    writeContent(path("doel"), "oud");
    disk.move(path("bron"), path("doel"));
    EXPECT_EQ(contentOf(path("doel")), "nieuw");
    EXPECT_EQ(everything(), QStringList{"doel"});
}

TEST_F(Disk, AMoveToAnotherDiskCopiesAndRemoves) {
    const QTemporaryDir elsewhere(QStringLiteral("/dev/shm/orvel-XXXXXX"));
    struct stat here = {};
    struct stat there = {};
    stat(QFile::encodeName(folder.path()).constData(), &here);
    if (!elsewhere.isValid() || stat(QFile::encodeName(elsewhere.path()).constData(), &there) != 0 ||
        here.st_dev == there.st_dev) {
        GTEST_SKIP() << "there is no second disk";
    }
    writeContent(path("bron"), "inhoud");
    disk.move(path("bron"), elsewhere.filePath(QStringLiteral("doel")));
    EXPECT_EQ(contentOf(elsewhere.filePath(QStringLiteral("doel"))), "inhoud");
    EXPECT_TRUE(everything().isEmpty());
}

TEST_F(Disk, FoldersAreMadeWithThoseAboveThem) {
    disk.makeFolder(path("een/twee/drie"));
    EXPECT_TRUE(disk.folderExists(path("een/twee/drie")));
    EXPECT_NO_THROW(disk.makeFolder(path("een/twee/drie/")));
    EXPECT_FALSE(disk.fileExists(path("een")));
    EXPECT_FALSE(disk.folderExists(QString()));
}

} // namespace orvel
