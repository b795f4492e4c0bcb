// With a server that gave no answer the window stood still for 82 seconds.
#include "platform/away/away_file_system.h"
#include "platform/fake/fake_prompts.h"
#include "platform/qt/disk_file_system.h"
#include "platform/runtime_error.h"
#include "tests/platform/away/gate.h"

#include <QCoreApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QTemporaryDir>
#include <QThread>
#include <QTimer>

#include <algorithm>
#include <gtest/gtest.h>
#include <thread>

namespace orvel {

namespace {

/// A lock that is given back through a gate.
class SlowLock : public FileLock {
  public:
    SlowLock(std::shared_ptr<test::Gate> gate, std::unique_ptr<FileLock> real)
        : gate_(std::move(gate)), real_(std::move(real)) {}
    SlowLock(const SlowLock &) = delete;
    SlowLock(SlowLock &&) = delete;
    SlowLock &operator=(const SlowLock &) = delete;
    SlowLock &operator=(SlowLock &&) = delete;
    ~SlowLock() override { gate_->pass(); }

  private:
    std::shared_ptr<test::Gate> gate_;
    std::unique_ptr<FileLock> real_;
};

/// A disk behind a gate.
class SlowDisk : public DiskFileSystem {
  public:
    explicit SlowDisk(std::shared_ptr<test::Gate> gate) : gate_(std::move(gate)) {}

    [[nodiscard]] bool fileExists(const QString &path) const override {
        gate_->pass();
        onWindowThread = QThread::currentThread() == QCoreApplication::instance()->thread();
        return DiskFileSystem::fileExists(path);
    }
    [[nodiscard]] bool folderExists(const QString &path) const override {
        gate_->pass();
        return DiskFileSystem::folderExists(path);
    }
    [[nodiscard]] QByteArray read(const QString &path) const override {
        gate_->pass();
        return DiskFileSystem::read(path);
    }
    bool copy(const QString &source, const QString &target, const Progress &progress) override {
        return DiskFileSystem::copy(source, target, [&](qint64 done, qint64 total) {
            gate_->pass();
            return progress(done, total);
        });
    }
    std::shared_ptr<const std::atomic<Writable>> askWritable(const QString &folder) override {
        gate_->pass();
        return DiskFileSystem::askWritable(folder);
    }
    std::unique_ptr<FileLock> tryLock(const QString &path, const QByteArray &content) override {
        gate_->pass();
        auto lock = DiskFileSystem::tryLock(path, content);
        return lock ? std::make_unique<SlowLock>(gate_, std::move(lock)) : nullptr;
    }

    mutable std::atomic<bool> onWindowThread{false};

  private:
    std::shared_ptr<test::Gate> gate_;
};

/// How long the window stood still at most, ms.
class Heart {
  public:
    Heart() {
        since_.start();
        QObject::connect(&timer_, &QTimer::timeout, [this] { beat(); });
        timer_.start(5);
    }
    [[nodiscard]] qint64 longestPause() {
        beat();
        return longest_;
    }

  private:
    void beat() { longest_ = std::max(longest_, since_.restart()); }

    QTimer timer_;
    QElapsedTimer since_;
    qint64 longest_ = 0;
};

class Away : public testing::Test {
  protected:
    Away() {
        QDir(folder.path()).mkdir("station");
        QDir(folder.path()).mkdir("share");
        QDir(folder.path()).mkdir("stick");
        put("share/a.mp3", "geluid");
        put("station/a.mp3", "geluid");
    }
    ~Away() override {
        gate->open();
        // Nothing may be under way when the folder goes.
        for (int i = 0; i < 500 && gate->passing() > 0; ++i) {
            QThread::msleep(10);
        }
    }

    void put(const char *name, const QByteArray &content) const {
        QFile file(path(name));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(content);
    }
    [[nodiscard]] QString path(const char *name) const { return folder.filePath(QString::fromUtf8(name)); }
    [[nodiscard]] QStringList onShare() const {
        return QDir(path("share")).entryList(QDir::Files | QDir::Hidden, QDir::Name);
    }
    /// The number of the error that something throws, 0 without one.
    template <class Action>
    static int errorOf(Action action) {
        try {
            action();
        } catch (const RuntimeError &error) {
            return static_cast<int>(error.number());
        }
        return 0;
    }

    static constexpr int notReady = 71;
    QTemporaryDir folder;
    std::shared_ptr<test::Gate> gate = std::make_shared<test::Gate>();
    std::shared_ptr<SlowDisk> disk = std::make_shared<SlowDisk>(gate);
    FakePrompts prompts;
    AwayWork work{prompts};
    AwayFileSystem files{disk, work, path("station")};
};

} // namespace

TEST_F(Away, TheStationsOwnFilesAreAskedForDirectly) {
    EXPECT_TRUE(files.fileExists(path("station/a.mp3")));
    EXPECT_TRUE(disk->onWindowThread);
    EXPECT_TRUE(files.fileExists(path("station/../station/a.mp3")));
    EXPECT_TRUE(disk->onWindowThread);
}

TEST_F(Away, WhatLiesOutsideIsAskedForOnAnotherThread) {
    EXPECT_TRUE(files.fileExists(path("share/a.mp3")));
    EXPECT_FALSE(disk->onWindowThread);
    EXPECT_FALSE(files.fileExists(path("share/b.mp3")));
    // Neither a name that begins like the station's nor a way out of its folder makes it the station's.
    put("stationair", "x");
    EXPECT_TRUE(files.fileExists(path("stationair")));
    EXPECT_FALSE(disk->onWindowThread);
    EXPECT_TRUE(files.fileExists(path("station/../share/a.mp3")));
    EXPECT_FALSE(disk->onWindowThread);
    EXPECT_TRUE(prompts.waitedFor.isEmpty());
}

TEST_F(Away, ErrorsArriveAsTheyWereThrown) {
    EXPECT_EQ(errorOf([&] { static_cast<void>(files.read(path("share/weg.mp3"))); }), 53);
    EXPECT_EQ(errorOf([&] { files.remove(path("weg/weg.mp3")); }), 76);
    EXPECT_EQ(files.read(path("share/a.mp3")), "geluid");
}

TEST_F(Away, AnAnswerThatTakesLongIsWaitedForWithoutAPauseInTheWindow) {
    gate->close();
    QTimer::singleShot(700, [this] { gate->open(); });
    Heart heart;
    EXPECT_EQ(files.read(path("share/a.mp3")), "geluid");
    EXPECT_LE(heart.longestPause(), 100);
    EXPECT_EQ(prompts.waitedFor, QStringList{path("share")});
}

TEST_F(Away, WhoDoesNotWaitGoesOnAtOnceAndIsNotAskedAgain) {
    gate->close();
    prompts.patience = 20;
    EXPECT_EQ(errorOf([&] { static_cast<void>(files.read(path("share/a.mp3"))); }), notReady);
    ASSERT_EQ(prompts.waitedFor.size(), 1);
    QElapsedTimer watch;
    watch.start();
    EXPECT_EQ(errorOf([&] { files.write(path("share/b.mp3"), "x"); }), notReady);
    EXPECT_FALSE(files.folderExists(path("share")));
    EXPECT_FALSE(files.fileExists(path("share/a.mp3")));
    EXPECT_LT(watch.elapsed(), 100);
    EXPECT_EQ(prompts.waitedFor.size(), 1);
    // Other folders are not concerned.
    EXPECT_EQ(errorOf([&] { files.write(path("stick/b.mp3"), "x"); }), 0);
    // When the server answers after all, everything is as before.
    gate->open();
    QThread::msleep(200);
    EXPECT_EQ(files.read(path("share/a.mp3")), "geluid");
    EXPECT_EQ(onShare(), QStringList{"a.mp3"});
}

TEST_F(Away, ACopyShowsItsProgressAndCanBeStoppedWhileTheServerHangs) {
    put("station/lang.mp3", QByteArray(2'000'000, 'x'));
    gate->close();
    int looks = 0;
    Heart heart;
    const bool isWhole = files.copy(path("station/lang.mp3"), path("share/lang.mp3"), [&](qint64, qint64) {
        QCoreApplication::processEvents();
        return ++looks < 20;
    });
    EXPECT_FALSE(isWhole);
    EXPECT_EQ(looks, 20);
    EXPECT_LE(heart.longestPause(), 150); // also while the stop has a moment to be noticed
    // The server comes back: what was stopped stays stopped, and nothing is left of it.
    gate->open();
    for (int i = 0; i < 100 && onShare().size() > 1; ++i) {
        QThread::msleep(20);
    }
    EXPECT_EQ(onShare(), QStringList{"a.mp3"});
}

TEST_F(Away, ACopyThatIsLeftToItselfArrives) {
    put("station/lang.mp3", QByteArray(2'000'000, 'x'));
    gate->close();
    QTimer::singleShot(200, [this] { gate->open(); });
    qint64 last = 0;
    EXPECT_TRUE(files.copy(path("station/lang.mp3"), path("share/lang.mp3"), [&](qint64 done, qint64) {
        QCoreApplication::processEvents();
        last = std::max(last, done);
        return true;
    }));
    EXPECT_EQ(files.read(path("share/lang.mp3")), QByteArray(2'000'000, 'x'));
}

TEST_F(Away, AnEventThatAsksMeanwhileGetsItsAnswer) {
    gate->close();
    bool isThere = false;
    QTimer::singleShot(100, [&] { isThere = !files.folders(path("share/..")).isEmpty(); });
    QTimer::singleShot(300, [this] { gate->open(); });
    EXPECT_TRUE(files.fileExists(path("share/a.mp3")));
    EXPECT_TRUE(isThere);
}

TEST_F(Away, AThreadOfItsOwnJustWaits) {
    bool isThere = false;
    std::thread other([&] { isThere = files.fileExists(path("share/a.mp3")); });
    other.join();
    EXPECT_TRUE(isThere);
}

TEST_F(Away, ALockIsTakenAndGivenBackWithoutWaitingForTheServer) {
    const QString lockPath = path("share/orvel.lock");
    auto lock = files.tryLock(lockPath, "wij");
    ASSERT_TRUE(lock);
    EXPECT_EQ(files.read(lockPath), "wij");
    EXPECT_FALSE(files.tryLock(lockPath, "anderen"));
    gate->close();
    QElapsedTimer watch;
    watch.start();
    lock.reset();
    EXPECT_LT(watch.elapsed(), 100);
    gate->open();
    for (int i = 0; i < 100 && onShare().size() > 1; ++i) {
        QThread::msleep(20);
    }
    EXPECT_EQ(onShare(), QStringList{"a.mp3"});
}

TEST_F(Away, ALockThatComesWhenNobodyWaitsAnyMoreIsGivenBack) {
    gate->close();
    prompts.patience = 20;
    EXPECT_EQ(errorOf([&] { static_cast<void>(files.tryLock(path("share/orvel.lock"), "wij")); }), notReady);
    gate->open();
    QThread::msleep(200);
    EXPECT_TRUE(files.tryLock(path("share/orvel.lock"), "wij"));
}

TEST_F(Away, ALockInTheStationIsTakenDirectly) {
    auto lock = files.tryLock(path("station/orvel.lock"), "wij");
    ASSERT_TRUE(lock);
    lock.reset();
    EXPECT_FALSE(QFile::exists(path("station/orvel.lock"))) << "gone when it is given back, not some time later";
}

TEST_F(Away, WhetherAServerCanBeWrittenIsAskedWithoutWaiting) {
    gate->close();
    QElapsedTimer took;
    took.start();
    const auto answer = files.askWritable(path("share"));
    EXPECT_LT(took.elapsed(), 100);
    EXPECT_EQ(answer->load(), Writable::Unknown);
    gate->open();
    for (int i = 0; i < 500 && answer->load() == Writable::Unknown; ++i) {
        QThread::msleep(10);
    }
    EXPECT_EQ(answer->load(), Writable::Yes);
    EXPECT_EQ(onShare(), QStringList{"a.mp3"}) << "nothing of the looking stays";
    EXPECT_EQ(files.askWritable(path("station/niets"))->load(), Writable::No) << "the station is asked directly";
}

} // namespace orvel
