// While the disk took 3 s for a sync nothing was written: a take that was killed then lost all of it.
#include "platform/fake/faulty_storage.h"
#include "platform/sndfile/take_writer.h"
#include "tests/platform/audio/full_disk.h"
#include "tests/platform/audio/temp_folder.h"
#include "tests/platform/away/gate.h"

#include <atomic>
#include <cerrno>
#include <gtest/gtest.h>
#include <thread>

namespace orvel {
namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;
using test::contentOf;
using test::counting;
using test::errorOf;
using test::samplesOf;

class SlowSync : public testing::Test {
  protected:
    /// Talks at the speed of a sound card; how many frames it was in all.
    void talk(TakeWriter &writer, Clock::duration howLong) {
        for (const auto end = Clock::now() + howLong; Clock::now() < end;) {
            std::this_thread::sleep_for(10ms);
            writer.push(counting(441, talked));
            talked += 441;
        }
    }

    test::TempFolder folder;
    QString path = folder.path("take.wav");
    FaultyStorage storage;
    std::size_t talked = 0;
};

TEST_F(SlowSync, TheWriterGoesOnMeanwhile) {
    std::atomic<int> running = 0;
    std::atomic<int> most = 0;
    std::atomic<int> syncs = 0;
    storage.onSync([&] {
        most = std::max<int>(most, ++running);
        std::this_thread::sleep_for(++syncs == 1 ? 3s : 1s);
        --running;
    });
    TakeWriter writer(path, {}, storage);
    talk(writer, 1200ms);
    ASSERT_EQ(syncs, 1);
    ASSERT_EQ(running, 1);
    for (int i = 0; i < 2; ++i) {
        talk(writer, 1200ms);
        ASSERT_EQ(running, 1) << "the first sync is still under way";
        // What a kill would leave now: all but a moment of it, and a header that knows of all but a second.
        EXPECT_GT(contentOf(path).size(), static_cast<qsizetype>(44 + 2 * talked) - 44100);
        EXPECT_GT(samplesOf(path).size() + 44100 + 4410, talked);
    }
    writer.finish();
    EXPECT_EQ(running, 0);
    EXPECT_EQ(most, 1);
    EXPECT_EQ(samplesOf(path), counting(talked));
}

TEST_F(SlowSync, TheLastOneTakesAllOfTheTake) {
    std::atomic<qint64> sizeAtSync = 0;
    std::atomic<bool> isOver = false;
    storage.onSync([&] {
        sizeAtSync = QFileInfo(path).size();
        std::this_thread::sleep_for(300ms);
        isOver = true;
    });
    TakeWriter writer(path, {}, storage);
    writer.push(counting(5000));
    writer.finish();
    EXPECT_TRUE(isOver);
    EXPECT_EQ(sizeAtSync, 44 + 10'000);
}

TEST_F(SlowSync, OneThatFailsEndsTheTakeAndIsTold) {
    storage.fail(FaultyStorage::Call::Sync, EIO);
    TakeWriter writer(path, {}, storage);
    talk(writer, 2200ms); // the first sync is after one second, and its end is looked at another second later
    EXPECT_TRUE(writer.status().diskFailed);
    EXPECT_FALSE(writer.status().diskFull);
    EXPECT_EQ(errorOf([&] { writer.finish(); }), 57);
    const auto take = samplesOf(path);
    EXPECT_GT(take.size(), 44100U / 2);
    EXPECT_EQ(take, counting(take.size()));
}

TEST_F(SlowSync, OneThatHangsIsNotWaitedForForEver) {
    const auto gate = std::make_shared<test::Gate>();
    gate->close();
    storage.onSync([gate] { gate->pass(); });
    TakeLimits limits;
    limits.longestSync = 300ms;
    {
        TakeWriter writer(path, limits, storage);
        writer.push(counting(5000));
        const auto begin = Clock::now();
        EXPECT_EQ(errorOf([&] { writer.finish(); }), 71);
        EXPECT_LT(Clock::now() - begin, 2s);
        EXPECT_GE(Clock::now() - begin, 250ms);
    }
    EXPECT_EQ(samplesOf(path), counting(5000)) << "what was written is there";
    gate->open();
    for (int i = 0; i < 500 && gate->passing() > 0; ++i) {
        std::this_thread::sleep_for(10ms);
    }
}

} // namespace
} // namespace orvel
