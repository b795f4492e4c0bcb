#include "platform/runtime_error.h"
#include "platform/sndfile/take_writer.h"
#include "tests/platform/audio/full_disk.h"
#include "tests/platform/audio/temp_folder.h"

#include <chrono>
#include <csignal>
#include <gtest/gtest.h>
#include <numeric>
#include <sys/mount.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace orvel {
namespace {

using namespace std::chrono_literals;
using test::contentOf;
using test::counting;
using test::errorOf;
using test::inChild;
using test::limitFileSize;
using test::samplesOf;
using test::TempFolder;

TEST(TakeWriter, WritesWhatWasPushedInBlocksOfAnySize) {
    const TempFolder folder;
    const QString path = folder.path("één \"take\" 1.wav");
    const std::vector<std::int16_t> samples = counting(100'003);
    TakeWriter writer(path);
    for (std::size_t at = 0, size = 1; at < samples.size(); at += size) {
        size = std::min(size * 37 % 1999 + 1, samples.size() - at);
        writer.push(std::span(samples).subspan(at, size));
    }
    writer.finish();
    EXPECT_EQ(samplesOf(path), samples);
    const RecorderStatus status = writer.status();
    EXPECT_EQ(status.frames, 100'003);
    EXPECT_EQ(status.overruns, 0);
    EXPECT_FALSE(status.diskFull);
}

TEST(TakeWriter, AnEmptyTakeIsAValidFile) {
    const TempFolder folder;
    const QString path = folder.path("leeg.wav");
    TakeWriter(path).finish();
    EXPECT_EQ(contentOf(path).size(), 44);
    EXPECT_EQ(test::little32(contentOf(path), 40), 0U);
}

/// A quiet room, as every microphone brings one.
std::vector<std::int16_t> room(std::size_t frames) {
    std::vector<std::int16_t> samples(frames);
    for (std::size_t i = 0; i < frames; ++i) {
        samples[i] = static_cast<std::int16_t>(static_cast<int>(i * 7919 % 13) - 6);
    }
    return samples;
}

/// Half a second of that, then so many milliseconds of a tone.
std::vector<std::int16_t> wordAfterSilence(int milliseconds) {
    std::vector<std::int16_t> samples =
        room(kTakeRate / 2 + std::size_t{kTakeRate} / 1000 * static_cast<std::size_t>(milliseconds));
    for (std::size_t i = kTakeRate / 2; i < samples.size(); ++i) {
        samples[i] = static_cast<std::int16_t>(i / 60 % 2 == 0 ? 6000 : -6000);
    }
    return samples;
}

TEST(TakeWriter, TellsWhereSomebodySpeaksWhileItIsRecorded) {
    const TempFolder folder;
    TakeWriter writer(folder.path("a.wav"));
    writer.push(room(kTakeRate / 2));
    writer.flush();
    EXPECT_EQ(writer.status().speechFrom, -1) << "nobody yet";
    writer.push(room(kTakeRate / 2));
    writer.push(wordAfterSilence(300));
    writer.flush();
    constexpr int ms20 = kTakeRate / 50;
    RecorderStatus status = writer.status();
    EXPECT_NEAR(static_cast<double>(status.speechFrom), 1.5 * kTakeRate, ms20);
    EXPECT_NEAR(static_cast<double>(status.speechTo), 1.8 * kTakeRate, ms20);
    writer.push(wordAfterSilence(700));
    writer.finish();
    status = writer.status();
    EXPECT_NEAR(static_cast<double>(status.speechFrom), 2.3 * kTakeRate, 2 * ms20) << "the next stretch";
    EXPECT_NEAR(static_cast<double>(status.speechTo), 3.0 * kTakeRate, 2 * ms20);
}

TEST(TakeWriter, OverwritesALongerTake) {
    const TempFolder folder;
    const QString path = folder.path("a.wav");
    test::writeContent(path, QByteArray(100'000, 'x'));
    TakeWriter writer(path);
    writer.push(counting(10));
    writer.finish();
    EXPECT_EQ(contentOf(path).size(), 44 + 20);
}

TEST(TakeWriter, FlushBringsFileAndHeaderUpToDate) {
    const TempFolder folder;
    const QString path = folder.path("a.wav");
    TakeWriter writer(path);
    for (std::size_t done = 0; done < 5000; done += 1000) {
        writer.push(counting(1000, done));
        writer.flush();
        EXPECT_EQ(samplesOf(path), counting(done + 1000));
        EXPECT_EQ(writer.status().frames, static_cast<std::int64_t>(done + 1000));
    }
    writer.finish();
    writer.finish();
    writer.flush();
}

TEST(TakeWriter, TellsThePeakSinceTheLastLook) {
    const TempFolder folder;
    TakeWriter writer(folder.path("a.wav"));
    writer.push(std::vector<std::int16_t>{0, 8192, -16384, 5});
    EXPECT_FLOAT_EQ(writer.status().peak, 0.5F);
    EXPECT_FLOAT_EQ(writer.status().peak, 0.0F);
    writer.push(std::vector<std::int16_t>{-32768});
    EXPECT_FLOAT_EQ(writer.status().peak, 1.0F);
}

TEST(TakeWriter, KeepsTheTimeOfATakeWithAHole) {
    const TempFolder folder;
    const QString path = folder.path("a.wav");
    TakeWriter writer(path);
    writer.push(counting(100));
    writer.pushHole(3000);
    writer.push(counting(50, 3100));
    writer.finish();
    std::vector<std::int16_t> expected = counting(3150);
    std::fill(expected.begin() + 100, expected.begin() + 3100, std::int16_t{0});
    EXPECT_EQ(samplesOf(path), expected);
    EXPECT_EQ(writer.status().overruns, 1);
}

TEST(TakeWriter, TellsAnOverrunAndPutsSilenceInItsPlace) {
    const TempFolder folder;
    const QString path = folder.path("a.wav");
    TakeLimits limits;
    limits.ringSamples = 1024;
    TakeWriter writer(path, limits);
    writer.push(counting(5000)); // far more than the ring holds, in one go: no writer is fast enough
    writer.flush();
    writer.push(counting(10, 5000));
    for (int i = 0; i < 8; ++i) { // the silence that is due comes as there is room for it
        writer.flush();
        writer.push({});
    }
    writer.flush();
    writer.push(counting(10, 5010));
    writer.finish();
    const RecorderStatus status = writer.status();
    EXPECT_GE(status.overruns, 1);
    const std::vector<std::int16_t> take = samplesOf(path);
    ASSERT_EQ(take.size(), 5020U);
    EXPECT_EQ(std::vector(take.begin(), take.begin() + 1024), counting(1024));
    EXPECT_EQ(std::accumulate(take.begin() + 1024, take.begin() + 5000, 0), 0);
    EXPECT_EQ(std::vector(take.end() - 10, take.end()), counting(10, 5010));
}

TEST(TakeWriter, TellsWhyAFileCannotBeMade) {
    const TempFolder folder;
    EXPECT_EQ(errorOf([&] { const TakeWriter writer(folder.path("no/such/a.wav")); }), 76);
    EXPECT_EQ(errorOf([&] { const TakeWriter writer(folder.path()); }), 75);
    EXPECT_EQ(errorOf([&] { const TakeWriter writer(QStringLiteral("/proc/orvel.wav")); }), 70);
}

// A file that could not be made was told as one without access, also where the disk had no room for it.
TEST(TakeWriter, ADiskWithoutRoomForANewFileIsFull) {
    const TempFolder folder;
    const QByteArray mountPoint = folder.path().toLocal8Bit();
    // Room for the folder itself and for no file.
    if (mount("tmpfs", mountPoint.constData(), "tmpfs", 0, "size=128k,nr_inodes=1") != 0) {
        GTEST_SKIP() << "mounting a small disk is not allowed here";
    }
    EXPECT_EQ(errorOf([&] { const TakeWriter writer(folder.path("a.wav")); }), 61);
    umount(mountPoint.constData());
}

// Every failure while writing was told as a full disk.
TEST(TakeWriter, ADiskThatFailsIsNotFull) {
    const TempFolder folder;
    const QString path = folder.path("a.wav");
    TakeWriter writer(path);
    writer.push(counting(1000));
    writer.flush();
    EXPECT_FALSE(writer.status().diskFailed);
    ASSERT_TRUE(test::breakDiskUnder(path));
    writer.push(counting(1000));
    writer.flush();
    EXPECT_TRUE(writer.status().diskFailed);
    EXPECT_FALSE(writer.status().diskFull);
    EXPECT_EQ(errorOf([&] { writer.finish(); }), 57);
    EXPECT_EQ(samplesOf(path), counting(1000));
}

// A work file was written through a link: a file elsewhere became a take.
TEST(TakeWriter, MakesTheFileAnewNeverThroughALink) {
    const TempFolder folder;
    const QString path = folder.path("a.wav");
    test::writeContent(folder.path("elders.txt"), "van een ander");
    for (const bool hard : {false, true}) {
        QFile::remove(path);
        ASSERT_TRUE(hard ? link(QFile::encodeName(folder.path("elders.txt")), QFile::encodeName(path)) == 0
                         : QFile::link(folder.path("elders.txt"), path));
        TakeWriter writer(path);
        writer.push(counting(10));
        writer.finish();
        EXPECT_EQ(contentOf(folder.path("elders.txt")), "van een ander");
        EXPECT_EQ(samplesOf(path), counting(10));
        EXPECT_FALSE(QFileInfo(path).isSymLink());
    }
    QFile::remove(path);
    ASSERT_TRUE(QFile::link(folder.path("nergens.txt"), path));
    TakeWriter(path).finish();
    EXPECT_FALSE(QFile::exists(folder.path("nergens.txt")));
    EXPECT_EQ(QDir(folder.path()).entryList(QDir::Files | QDir::Hidden), (QStringList{"a.wav", "elders.txt"}));
}

TEST(TakeWriter, AnEarlierTakeStaysWhereNoneCanBeMade) {
    const TempFolder folder;
    const QByteArray mountPoint = folder.path().toLocal8Bit();
    if (mount("tmpfs", mountPoint.constData(), "tmpfs", 0, "size=128k,nr_inodes=2") != 0) {
        GTEST_SKIP() << "mounting a small disk is not allowed here";
    }
    test::writeContent(folder.path("a.wav"), "eerder");
    EXPECT_EQ(errorOf([&] { const TakeWriter writer(folder.path("a.wav")); }), 61);
    EXPECT_EQ(contentOf(folder.path("a.wav")), "eerder");
    umount(mountPoint.constData());
}

TEST(TakeWriter, TakesNoDeviceForAFile) {
    const TempFolder folder;
    const QString path = folder.path("a.wav");
    ASSERT_EQ(mkfifo(QFile::encodeName(path), 0600), 0);
    EXPECT_EQ(errorOf([&] { const TakeWriter writer(path); }), 75);
    EXPECT_EQ(QDir(folder.path()).entryList(QDir::System | QDir::Hidden | QDir::NoDotAndDotDot), QStringList{"a.wav"});
}

// Disks that fill up.

/// What must hold on any full disk: everything up to a whole sample is there, and the take is told to be cut.
bool recordsUntilFull(const QString &path, std::size_t atLeast) {
    TakeWriter writer(path);
    for (std::size_t done = 0; done < 200'000; done += 10'000) {
        writer.push(counting(10'000, done));
        writer.flush();
    }
    if (!writer.status().diskFull || errorOf([&] { writer.finish(); }) != 61 || writer.status().overruns != 0) {
        return false;
    }
    const std::vector<std::int16_t> take = samplesOf(path);
    return take.size() >= atLeast && take.size() < 200'000 && take == counting(take.size()) &&
           writer.status().frames == static_cast<std::int64_t>(take.size()) &&
           static_cast<std::size_t>(contentOf(path).size()) == 44 + take.size() * 2;
}

TEST(TakeWriterDiskFull, KeepsWhatFitsInAFileThatMayNotGrow) {
    const TempFolder folder;
    for (const rlim_t limit : {rlim_t{100'000}, rlim_t{100'001}}) {
        EXPECT_TRUE(inChild([&] {
            limitFileSize(limit);
            return recordsUntilFull(folder.path("a.wav"), (100'000 - 44) / 2);
        })) << limit;
    }
}

TEST(TakeWriterDiskFull, KeepsWhatFitsOnASmallDisk) {
    const TempFolder folder;
    const QByteArray mountPoint = folder.path().toLocal8Bit();
    if (mount("tmpfs", mountPoint.constData(), "tmpfs", 0, "size=128k") != 0) {
        GTEST_SKIP() << "mounting a small disk is not allowed here";
    }
    EXPECT_TRUE(recordsUntilFull(folder.path("a.wav"), 50'000));
    umount(mountPoint.constData());
}

TEST(TakeWriterDiskFull, SaysSoBeforeTheFirstSample) {
    const TempFolder folder;
    EXPECT_TRUE(inChild([&] {
        limitFileSize(30); // not even the header
        return errorOf([&] { const TakeWriter writer(folder.path("a.wav")); }) == 61;
    }));
}

TEST(TakeWriterDiskFull, StopsWhereAWavFileEnds) {
    const TempFolder folder;
    TakeLimits limits;
    limits.maxFrames = 1500;
    TakeWriter writer(folder.path("a.wav"), limits);
    writer.push(counting(1000));
    writer.flush();
    EXPECT_FALSE(writer.status().diskFull);
    writer.push(counting(1000, 1000));
    writer.flush();
    EXPECT_TRUE(writer.status().diskFull);
    EXPECT_EQ(errorOf([&] { writer.finish(); }), 61);
    EXPECT_EQ(samplesOf(folder.path("a.wav")), counting(1500));
}

// A process that is killed.

TEST(TakeWriter, LeavesAValidTakeWhenTheProcessIsKilled) {
    const TempFolder folder;
    const QString path = folder.path("a.wav");
    const pid_t child = fork();
    if (child == 0) {
        TakeWriter writer(path);
        for (std::size_t done = 0;; done += 441) {
            writer.push(counting(441, done));
            std::this_thread::sleep_for(10ms);
        }
    }
    std::this_thread::sleep_for(2700ms);
    // Looked at while it grows, as a program beside it would...
    const std::vector<std::int16_t> growing = samplesOf(path);
    EXPECT_GT(growing.size(), 44100U / 2);
    EXPECT_EQ(growing, counting(growing.size()));
    // ...and after its end: at most the last second is missing from what the header tells.
    kill(child, SIGKILL);
    waitpid(child, nullptr, 0);
    const std::vector<std::int16_t> take = samplesOf(path);
    EXPECT_GE(take.size(), growing.size());
    EXPECT_EQ(take, counting(take.size()));
    EXPECT_GT(44 + (take.size() + 44'100) * 2, static_cast<std::size_t>(contentOf(path).size()));
}

} // namespace
} // namespace orvel
