// Disks that are full, read-only or broken, and a program that is killed.
#include "platform/qt/disk_file_system.h"
#include "tests/platform/audio/full_disk.h"
#include "tests/platform/audio/temp_folder.h"
#include "tests/platform/qt/disk_calls.h"

#include <QDateTime>
#include <QFileInfo>

#include <cerrno>
#include <gtest/gtest.h>
#include <sys/mount.h>
#include <sys/stat.h>

namespace orvel {

using test::contentOf;
using test::errorOf;
using test::writeContent;

namespace {

/// Permissions mean nothing to root: while this lives, the program is somebody else.
class OrdinaryUser {
  public:
    OrdinaryUser() : wasRoot_(geteuid() == 0) {
        if (wasRoot_) {
            static_cast<void>(seteuid(65534));
        }
    }
    OrdinaryUser(const OrdinaryUser &) = delete;
    OrdinaryUser &operator=(const OrdinaryUser &) = delete;
    OrdinaryUser(OrdinaryUser &&) = delete;
    OrdinaryUser &operator=(OrdinaryUser &&) = delete;
    ~OrdinaryUser() {
        if (wasRoot_) {
            static_cast<void>(seteuid(0));
        }
    }

  private:
    bool wasRoot_;
};

class FaultyDisk : public testing::Test {
  protected:
    FaultyDisk() {
        writeContent(bron, QByteArray(1'000'000, 'n'));
        writeContent(doel, "oud");
    }

    void setMode(const QString &path, mode_t mode) { chmod(QFile::encodeName(path).constData(), mode); }
    /// The target is as it was and nothing else lies about.
    [[nodiscard]] bool nothingChanged() const {
        const QStringList entries =
            QDir(folder.path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
        return contentOf(doel) == "oud" && entries == QStringList({"bron", "doel"});
    }

    test::DiskCallsGuard guard;
    test::TempFolder folder;
    QString bron = folder.path("bron");
    QString doel = folder.path("doel");
    DiskFileSystem disk;
};

} // namespace

TEST_F(FaultyDisk, ContentIsOnTheDiskBeforeItGetsItsName) {
    test::diskCalls().recording = true;
    disk.write(doel, "nieuw");
    EXPECT_EQ(test::diskCalls().log, std::vector<std::string>({"fsync", "rename", "fsync"}));
    test::diskCalls().log.clear();
    disk.copy(bron, doel, {});
    EXPECT_EQ(test::diskCalls().log, std::vector<std::string>({"fsync", "rename", "fsync"}));
}

TEST_F(FaultyDisk, ADiskThatIsFullAtAnyByteLeavesTheTargetAsItWas) {
    for (const rlim_t bytes : {0U, 1U, 4096U, 300'000U, 999'999U}) {
        EXPECT_TRUE(test::inChild([&] {
            test::limitFileSize(bytes);
            return errorOf([&] { disk.copy(bron, doel, {}); }) == 61;
        })) << bytes;
        EXPECT_TRUE(nothingChanged()) << bytes;
    }
    EXPECT_TRUE(test::inChild([&] {
        test::limitFileSize(1'000'000);
        return errorOf([&] { disk.copy(bron, doel, {}); }) == 0;
    }));
}

TEST_F(FaultyDisk, ASmallDiskFillsUp) {
    const QTemporaryDir small;
    const QByteArray place = QFile::encodeName(small.path());
    if (mount("tmpfs", place.constData(), "tmpfs", 0, "size=256k") != 0) {
        GTEST_SKIP() << "mounting a small disk is not allowed here";
    }
    const QString target = small.filePath(QStringLiteral("doel"));
    disk.write(target, "oud");
    EXPECT_EQ(errorOf([&] { disk.copy(bron, target, {}); }), 61);
    EXPECT_EQ(errorOf([&] { disk.write(target, QByteArray(1'000'000, 'n')); }), 61);
    EXPECT_EQ(contentOf(target), "oud");
    EXPECT_EQ(QDir(small.path()).entryList(QDir::Files | QDir::Hidden), QStringList{"doel"});
    mount("tmpfs", place.constData(), "tmpfs", MS_REMOUNT | MS_RDONLY, "size=256k");
    EXPECT_EQ(errorOf([&] { disk.write(target, "nieuw"); }), 70);
    EXPECT_EQ(errorOf([&] { disk.remove(target); }), 70);
    EXPECT_EQ(errorOf([&] { disk.makeFolder(small.filePath(QStringLiteral("map"))); }), 70);
    EXPECT_EQ(contentOf(target), "oud");
    umount(place.constData());
}

TEST_F(FaultyDisk, ASyncThatFailsIsAFailure) {
    for (const auto &[error, number] : {std::pair(EIO, 57), std::pair(ENOSPC, 61), std::pair(EDQUOT, 61)}) {
        test::diskCalls().fsyncError = error;
        EXPECT_EQ(errorOf([&] { disk.write(doel, "nieuw"); }), number);
        EXPECT_EQ(errorOf([&] { disk.copy(bron, doel, {}); }), number);
        EXPECT_TRUE(nothingChanged());
    }
}

TEST_F(FaultyDisk, ADiskThatCannotSyncAtAllWorks) {
    for (const int code : {EINVAL, ENOSYS, ENOTSUP}) {
        test::diskCalls().fsyncError = code;
        disk.write(doel, "nieuw" + QByteArray::number(code));
        EXPECT_EQ(contentOf(doel), "nieuw" + QByteArray::number(code));
    }
}

TEST_F(FaultyDisk, ARenameThatFailsLeavesTheTargetAsItWas) {
    for (const auto &[error, number] : {std::pair(EACCES, 70), std::pair(EIO, 57), std::pair(ESTALE, 71)}) {
        test::diskCalls().renameError = error;
        EXPECT_EQ(errorOf([&] { disk.write(doel, "nieuw"); }), number);
        EXPECT_EQ(errorOf([&] { disk.copy(bron, doel, {}); }), number);
        EXPECT_EQ(errorOf([&] { disk.move(bron, doel); }), number);
        EXPECT_TRUE(nothingChanged());
    }
}

// A share that went away in the middle of a copy kept a part of it for ever.
TEST_F(FaultyDisk, WhatADyingShareKeptIsRemovedWhenItIsBack) {
    const QStringList clean = {"bron", "doel"};
    const auto entries = [this] { return QDir(folder.path()).entryList(QDir::Files | QDir::Hidden, QDir::Name); };
    test::diskCalls().fsyncError = ENOTCONN;
    test::diskCalls().unlinkError = ENOTCONN;
    EXPECT_EQ(errorOf([&] { disk.copy(bron, doel, {}); }), 71);
    EXPECT_EQ(entries().size(), 3);
    test::diskCalls() = {};
    disk.write(doel, "nieuw");
    EXPECT_EQ(entries(), clean);
}

TEST_F(FaultyDisk, WhatAnEarlierRunLeftIsRemovedAndNothingOfAnybodyElse) {
    test::diskCalls().fsyncError = ENOTCONN;
    test::diskCalls().unlinkError = ENOTCONN;
    EXPECT_EQ(errorOf([&] { disk.copy(bron, doel, {}); }), 71);
    test::diskCalls() = {};
    const QStringList left = QDir(folder.path()).entryList({".orvel-*.tmp"}, QDir::Files | QDir::Hidden);
    ASSERT_EQ(left.size(), 1);
    const auto age = [this](const QString &name, int seconds) {
        QFile file(folder.path(name));
        ASSERT_TRUE(file.open(QIODevice::ReadWrite));
        ASSERT_TRUE(file.setFileTime(QDateTime::currentDateTime().addSecs(-seconds), QFile::FileModificationTime));
    };
    const QString others = QStringLiteral(".orvel-00000000-abc.tmp");
    writeContent(folder.path(others), "van een ander");
    age(others, 5000);
    // As young as something that is being written.
    DiskFileSystem().write(doel, "a");
    EXPECT_TRUE(QFileInfo::exists(folder.path(left.first())));
    age(left.first(), 5000);
    DiskFileSystem().write(doel, "b");
    EXPECT_FALSE(QFileInfo::exists(folder.path(left.first())));
    EXPECT_TRUE(QFileInfo::exists(folder.path(others)));
}

TEST_F(FaultyDisk, ACopyThatIsStoppedWhileTheDiskIsWaitedForChangesNothing) {
    EXPECT_FALSE(disk.copy(bron, doel, [calls = 0](qint64 done, qint64 total) mutable {
        calls += done == total ? 1 : 0;
        return calls < 2; // everything was written, and then synced
    }));
    EXPECT_TRUE(nothingChanged());
}

TEST_F(FaultyDisk, AShareThatIsGoneIsNotAFullDisk) {
    for (const int error : {ENOTCONN, EHOSTDOWN, ETIMEDOUT, ENETUNREACH, ECONNRESET}) {
        test::diskCalls().fsyncError = error;
        EXPECT_EQ(errorOf([&] { disk.copy(bron, doel, {}); }), 71) << error;
    }
}

TEST_F(FaultyDisk, AReadOnlyFolderStaysAsItIs) {
    setMode(folder.path(), 0555);
    {
        const OrdinaryUser user;
        EXPECT_EQ(errorOf([&] { disk.write(folder.path("nieuw"), "x"); }), 70);
        EXPECT_EQ(errorOf([&] { disk.copy(bron, folder.path("nieuw"), {}); }), 70);
        EXPECT_EQ(errorOf([&] { disk.move(bron, folder.path("nieuw")); }), 70);
        EXPECT_EQ(errorOf([&] { disk.remove(bron); }), 70);
        EXPECT_EQ(errorOf([&] { disk.makeFolder(folder.path("map")); }), 70);
    }
    setMode(folder.path(), 0755);
    EXPECT_TRUE(nothingChanged());
}

TEST_F(FaultyDisk, AReadOnlyFileIsNotReplaced) {
    setMode(folder.path(), 0777);
    setMode(doel, 0444);
    {
        const OrdinaryUser user;
        EXPECT_EQ(errorOf([&] { disk.write(doel, "nieuw"); }), 70);
        EXPECT_EQ(errorOf([&] { disk.copy(bron, doel, {}); }), 70);
        EXPECT_EQ(errorOf([&] { disk.move(bron, doel); }), 70);
    }
    EXPECT_TRUE(nothingChanged());
}

TEST_F(FaultyDisk, AFileThatMayNotBeReadIsReported) {
    setMode(folder.path(), 0755);
    setMode(bron, 0000);
    const OrdinaryUser user;
    EXPECT_EQ(errorOf([&] { static_cast<void>(disk.read(bron)); }), 70);
}

TEST_F(FaultyDisk, AProgramThatIsKilledLeavesAWholeFile) {
    const QByteArray even(3'000'000, 'e');
    const QByteArray odd(2'000'000, 'o');
    disk.write(doel, even);
    for (int round = 0; round < 15; ++round) {
        const pid_t child = fork();
        if (child == 0) {
            for (int i = 0;; ++i) {
                disk.write(doel, i % 2 == 0 ? odd : even);
            }
        }
        usleep(static_cast<useconds_t>(1000 + round * 1700));
        kill(child, SIGKILL);
        waitpid(child, nullptr, 0);
        const QByteArray content = contentOf(doel);
        ASSERT_TRUE(content == even || content == odd) << content.size();
    }
}

} // namespace orvel
