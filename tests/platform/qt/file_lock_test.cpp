#include "platform/qt/disk_file_system.h"
#include "tests/platform/audio/full_disk.h"
#include "tests/platform/audio/temp_folder.h"
#include "tests/platform/qt/disk_calls.h"

#include <QFileInfo>

#include <array>
#include <cerrno>
#include <gtest/gtest.h>

namespace orvel {

using test::contentOf;
using test::errorOf;
using test::inChild;

namespace {

class Locks : public testing::Test {
  protected:
    test::DiskCallsGuard guard;
    test::TempFolder folder;
    QString path = folder.path("orvel.lock");
    DiskFileSystem disk;
};

/// A process that has the lock and does nothing else, until it is killed.
class Holder {
  public:
    explicit Holder(const QString &path) {
        std::array<int, 2> ready{};
        if (pipe(ready.data()) != 0) {
            qFatal("no pipe");
        }
        child_ = fork();
        if (child_ == 0) {
            const auto lock = DiskFileSystem().tryLock(path, "houder");
            const char answer = lock ? 'j' : 'n';
            static_cast<void>(!write(ready[1], &answer, 1));
            pause();
        }
        char answer = 0;
        hasIt_ = read(ready[0], &answer, 1) == 1 && answer == 'j';
        close(ready[0]);
        close(ready[1]);
    }
    Holder(const Holder &) = delete;
    Holder(Holder &&) = delete;
    Holder &operator=(const Holder &) = delete;
    Holder &operator=(Holder &&) = delete;
    ~Holder() { die(); }

    [[nodiscard]] bool hasIt() const { return hasIt_; }
    void die() {
        if (child_ > 0) {
            kill(child_, SIGKILL);
            waitpid(child_, nullptr, 0);
            child_ = 0;
        }
    }

  private:
    pid_t child_ = 0;
    bool hasIt_ = false;
};

} // namespace

TEST_F(Locks, TwoOfOneProcessExcludeEachOther) {
    auto first = disk.tryLock(path, "eerste");
    ASSERT_TRUE(first);
    DiskFileSystem again;
    EXPECT_FALSE(again.tryLock(path, "tweede"));
    EXPECT_FALSE(disk.tryLock(path, "derde"));
    EXPECT_EQ(disk.read(path), "eerste");
    first.reset();
    EXPECT_FALSE(QFileInfo::exists(path));
    EXPECT_TRUE(again.tryLock(path, "tweede"));
}

TEST_F(Locks, AnotherProcessIsLockedOutAndReadsWhoHasIt) {
    const Holder other(path);
    ASSERT_TRUE(other.hasIt());
    EXPECT_FALSE(disk.tryLock(path, "wij"));
    EXPECT_EQ(disk.read(path), "houder");
}

TEST_F(Locks, OursLocksAnotherProcessOut) {
    const auto mine = disk.tryLock(path, "wij");
    ASSERT_TRUE(mine);
    EXPECT_FALSE(inChild([&] { return DiskFileSystem().tryLock(path, "kind") != nullptr; }));
    EXPECT_EQ(disk.read(path), "wij");
}

TEST_F(Locks, TheLockOfAKilledProcessIsGone) {
    Holder other(path);
    ASSERT_TRUE(other.hasIt());
    other.die();
    EXPECT_EQ(disk.read(path), "houder") << "who had it can still be read";
    const auto mine = disk.tryLock(path, "wij");
    EXPECT_TRUE(mine);
    EXPECT_EQ(disk.read(path), "wij");
}

TEST_F(Locks, ShorterContentReplacesLongerContentOfOneWhoDied) {
    test::writeContent(path, QByteArray(5000, 'x'));
    const auto mine = disk.tryLock(path, "wij");
    ASSERT_TRUE(mine);
    EXPECT_EQ(contentOf(path), "wij");
}

// What removes the file removes a name: a lock on the file without a name locks nobody out.
TEST_F(Locks, ALockThatGoesTakesNobodyElsesFile) {
    auto mine = disk.tryLock(path, "wij");
    ASSERT_TRUE(QFile::remove(path));
    const Holder other(path);
    ASSERT_TRUE(other.hasIt());
    mine.reset();
    EXPECT_EQ(contentOf(path), "houder");
}

TEST_F(Locks, NeverHeldTwiceWhereManyTakeAndGiveBack) {
    const QString inside = folder.path("binnen");
    const auto takeTurns = [&] {
        DiskFileSystem files;
        for (int turns = 0; turns < 200;) {
            if (const auto lock = files.tryLock(path, "beurt")) {
                const int handle = ::open(QFile::encodeName(inside).constData(), O_CREAT | O_EXCL | O_CLOEXEC, 0666);
                if (handle < 0) {
                    return false; // somebody else is in
                }
                ::close(handle);
                ::unlink(QFile::encodeName(inside).constData());
                ++turns;
            }
        }
        return true;
    };
    std::array<pid_t, 3> children{};
    for (pid_t &child : children) {
        child = fork();
        if (child == 0) {
            _exit(takeTurns() ? 0 : 1);
        }
    }
    for (const pid_t child : children) {
        int status = 0;
        waitpid(child, &status, 0);
        EXPECT_EQ(status, 0);
    }
}

TEST_F(Locks, WhereNoFileCanBeMadeItSaysWhy) {
    EXPECT_EQ(errorOf([&] { static_cast<void>(disk.tryLock(folder.path("geen/orvel.lock"), "a")); }), 76);
    EXPECT_EQ(errorOf([&] { static_cast<void>(disk.tryLock(folder.path(), "a")); }), 75);
    EXPECT_TRUE(inChild([&] {
        test::limitFileSize(2);
        return errorOf([&] { static_cast<void>(disk.tryLock(path, "te lang")); }) == 61 && !QFileInfo::exists(path);
    }));
}

TEST_F(Locks, ADiskWithoutSuchLocksUsesTheOtherKind) {
    for (const int error : {ENOLCK, ENOTSUP, EINVAL, ENOSYS}) {
        test::diskCalls().rangeLockError = error;
        auto mine = disk.tryLock(path, "wij");
        ASSERT_TRUE(mine) << error;
        EXPECT_FALSE(disk.tryLock(path, "ook wij")) << error;
        EXPECT_EQ(disk.read(path), "wij");
    }
}

TEST_F(Locks, ADiskWithoutAnyLocksLocksNobodyOut) {
    test::diskCalls().rangeLockError = ENOLCK;
    test::diskCalls().fileLockError = ENOLCK;
    const auto one = disk.tryLock(path, "een");
    EXPECT_TRUE(one);
    const auto other = disk.tryLock(path, "ander");
    EXPECT_TRUE(other);
}

} // namespace orvel
