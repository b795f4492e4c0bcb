// The header of a take that was killed told of less than the file held: up to a second of talk was not heard.
#include "platform/lame/system_audio_files.h"
#include "platform/sndfile/take_writer.h"
#include "tests/platform/audio/full_disk.h"
#include "tests/platform/audio/outside_tool.h"
#include "tests/platform/audio/temp_folder.h"

#include <QStandardPaths>

#include <chrono>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <thread>

namespace orvel {
namespace {

using namespace std::chrono_literals;
using test::contentOf;
using test::counting;
using test::littleEndian;
using test::samplesOf;
using test::writeContent;

class Repair : public testing::Test {
  protected:
    /// What a take of so many frames looks like whose header tells of others, and that ends with so many bytes more.
    static QByteArray take(std::size_t frames, std::size_t told, int more = 0) {
        const std::vector<std::int16_t> samples = counting(frames);
        const auto bytes = static_cast<std::uint32_t>(told * 2);
        return "RIFF" + littleEndian(36 + bytes, 4) + "WAVEfmt " +
               QByteArray::fromHex("100000000100010044ac00008858010002001000") + "data" + littleEndian(bytes, 4) +
               QByteArray(reinterpret_cast<const char *>(samples.data()), static_cast<qsizetype>(2 * frames)) +
               QByteArray(more, 'x');
    }
    void expectLeftAlone(const QByteArray &content, const char *what) {
        writeContent(path, content);
        EXPECT_FALSE(files.repairWav(path)) << what;
        EXPECT_EQ(contentOf(path), content) << what;
    }

    test::TempFolder folder;
    QString path = folder.path("take.wav");
    SystemAudioFiles files;
};

/// What a program that is not ours hears in the file.
QString framesBySox(const QString &path) {
    return test::runTool(QStringLiteral("soxi"), {QStringLiteral("-s"), path}).output.trimmed();
}

/// Stops a recording between two updates of its header, where the file holds more than that tells.
void stopWhereSamplesAreHidden(pid_t recording, const QString &path) {
    const auto deadline = std::chrono::steady_clock::now() + 30s;
    while (std::chrono::steady_clock::now() < deadline) {
        kill(recording, SIGSTOP);
        waitpid(recording, nullptr, WUNTRACED);
        if (contentOf(path).size() > 46 &&
            samplesOf(path).size() < static_cast<std::size_t>(contentOf(path).size() - 44) / 2) {
            return;
        }
        kill(recording, SIGCONT);
        std::this_thread::sleep_for(20ms);
    }
    ADD_FAILURE() << "the file never held more than its header told";
}

TEST_F(Repair, TellsOfEveryWholeFrameWhereverTheTakeWasCut) {
    const bool hasSox = !QStandardPaths::findExecutable(QStringLiteral("soxi")).isEmpty();
    for (const std::size_t frames : {0U, 1U, 2U, 999U, 44'100U, 44'101U, 88'199U}) {
        for (const std::size_t told : {0U, 1U, 500U, 44'100U, 90'000U}) {
            for (const int more : {0, 1}) {
                writeContent(path, take(frames, told, more));
                EXPECT_EQ(files.repairWav(path), frames != told) << frames << " " << told << " " << more;
                EXPECT_EQ(contentOf(path), take(frames, frames, more));
                EXPECT_FALSE(files.repairWav(path)) << "nothing is left to be done";
                if (hasSox && frames != told) {
                    EXPECT_EQ(framesBySox(path), QString::number(frames));
                }
            }
        }
    }
}

TEST_F(Repair, GivesBackWhatAKilledRecordingHad) {
    for (const auto life : {120ms, 700ms, 1500ms}) {
        const pid_t child = fork();
        if (child == 0) {
            TakeWriter writer(path);
            for (std::size_t done = 0;; done += 441) {
                writer.push(counting(441, done));
                std::this_thread::sleep_for(10ms);
            }
        }
        std::this_thread::sleep_for(life);
        stopWhereSamplesAreHidden(child, path);
        kill(child, SIGKILL);
        waitpid(child, nullptr, 0);
        const auto inFile = static_cast<std::size_t>(contentOf(path).size() - 44) / 2;
        ASSERT_GT(inFile, 0U);
        EXPECT_LT(samplesOf(path).size(), inFile) << "nothing was hidden: this proves nothing";
        EXPECT_TRUE(files.repairWav(path));
        EXPECT_EQ(samplesOf(path), counting(inFile));
    }
}

TEST_F(Repair, LeavesAloneWhatIsNoSuchTake) {
    const QByteArray whole = take(1000, 1000);
    expectLeftAlone(whole, "whole");
    expectLeftAlone("", "empty");
    expectLeftAlone("RIFF", "too short");
    expectLeftAlone(whole.left(43), "no whole header");
    expectLeftAlone(QByteArray(5000, '\0'), "nothing");
    const QByteArray cut = take(1000, 100);
    const auto changed = [&cut](qsizetype at, const QByteArray &to) {
        QByteArray content = cut;
        return content.replace(at, to.size(), to);
    };
    expectLeftAlone(changed(0, "RIFX"), "another kind");
    expectLeftAlone(changed(8, "AVI "), "another content");
    expectLeftAlone(changed(12, "LIST"), "other chunks first");
    expectLeftAlone(changed(16, littleEndian(18, 4)), "a longer format");
    expectLeftAlone(changed(20, littleEndian(3, 2)), "floating point");
    expectLeftAlone(changed(22, littleEndian(2, 2)), "two channels");
    expectLeftAlone(changed(32, littleEndian(3, 2)), "three bytes a frame");
    expectLeftAlone(changed(34, littleEndian(24, 2)), "24 bits");
    expectLeftAlone(changed(36, "fact"), "another chunk before the samples");
    // Behind the samples of this one is a chunk, which is no sound.
    const QByteArray list = "LIST" + littleEndian(4, 4) + "INFO";
    expectLeftAlone(take(1000, 1000).replace(4, 4, littleEndian(36 + 2000 + 12, 4)) + list, "a chunk at the end");
}

TEST_F(Repair, AWholeTakeThatMayNotBeWrittenIsFine) {
    writeContent(path, take(10, 10));
    chmod(QFile::encodeName(path).constData(), 0444);
    EXPECT_FALSE(files.repairWav(path));
    writeContent(folder.path("geknipt.wav"), take(10, 5));
    chmod(QFile::encodeName(folder.path("geknipt.wav")).constData(), 0444);
    EXPECT_EQ(test::errorOf([&] { files.repairWav(folder.path("geknipt.wav")); }), 70);
    EXPECT_EQ(contentOf(folder.path("geknipt.wav")), take(10, 5));
}

TEST_F(Repair, TellsWhereThereIsNoFile) {
    EXPECT_EQ(test::errorOf([&] { files.repairWav(path); }), 53);
    EXPECT_EQ(test::errorOf([&] { files.repairWav(folder.path()); }), 75);
}

} // namespace
} // namespace orvel
