#include "platform/runtime_error.h"
#include "platform/sndfile/sndfile_reader.h"
#include "platform/sndfile/take_writer.h"
#include "tests/platform/audio/outside_tool.h"
#include "tests/platform/audio/temp_folder.h"

#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <utility>

namespace orvel {
namespace {

using test::runTool;
using test::TempFolder;

std::vector<std::int16_t> readAll(AudioFileReader &reader) {
    std::vector<std::int16_t> samples;
    for (QByteArray block = reader.readBlock(); !block.isEmpty(); block = reader.readBlock()) {
        const auto *first = reinterpret_cast<const std::int16_t *>(block.constData());
        samples.insert(samples.end(), first, first + block.size() / 2);
    }
    return samples;
}

int errorStateOf(const QString &path) {
    SndfileReader reader;
    reader.open(path);
    return reader.errorState();
}

/// A take of two seconds with a tone that grows from silence to full scale.
std::vector<std::int16_t> growingTone() {
    std::vector<std::int16_t> samples(88'200);
    for (std::size_t i = 0; i < samples.size(); ++i) {
        const auto t = static_cast<double>(i);
        samples[i] = static_cast<std::int16_t>(std::lrint(32'000 * t / 88'200 * std::sin(t * 0.0712)));
    }
    return samples;
}

class SndfileReaderTest : public testing::Test {
  protected:
    SndfileReaderTest() : take(folder.path("take.wav")), samples(growingTone()) {
        TakeWriter writer(take);
        writer.push(samples);
        writer.finish();
    }

    /// The take as another program writes it in another format.
    QString converted(const char *name, const QStringList &soxFormat) {
        QString path = folder.path(name);
        const QStringList arguments = QStringList{QStringLiteral("-D"), take} + soxFormat + QStringList{path};
        EXPECT_EQ(runTool(QStringLiteral("sox"), arguments).exitCode, 0);
        return path;
    }

    void expectSameWithin(const QString &path, int tolerance) {
        SndfileReader reader;
        reader.open(path);
        ASSERT_EQ(reader.errorState(), 0);
        EXPECT_EQ(reader.frames(), 88'200);
        const std::vector<std::int16_t> read = readAll(reader);
        ASSERT_EQ(read.size(), samples.size());
        int worst = 0;
        for (std::size_t i = 0; i < read.size(); ++i) {
            worst = std::max(worst, std::abs(read[i] - samples[i]));
        }
        EXPECT_LE(worst, tolerance);
    }

    TempFolder folder;
    QString take;
    std::vector<std::int16_t> samples;
};

TEST_F(SndfileReaderTest, GivesATakeBitForBit) {
    SndfileReader reader;
    reader.open(take);
    EXPECT_EQ(reader.errorState(), 0);
    EXPECT_EQ(reader.sampleRate(), 44100);
    EXPECT_EQ(reader.channels(), 1);
    EXPECT_EQ(reader.bytesPerFrame(), 2);
    EXPECT_EQ(reader.frames(), 88'200);
    EXPECT_EQ(readAll(reader), samples);
    EXPECT_TRUE(reader.readBlock().isEmpty());
    reader.close();
    EXPECT_TRUE(reader.readBlock().isEmpty());
    EXPECT_EQ(reader.frames(), 0);
}

TEST_F(SndfileReaderTest, ReadsEveryDepth) {
    expectSameWithin(converted("24.wav", {"-b", "24"}), 0);
    expectSameWithin(converted("32.wav", {"-b", "32"}), 0);
    expectSameWithin(converted("f32.wav", {"-e", "float", "-b", "32"}), 0);
    expectSameWithin(converted("f64.wav", {"-e", "float", "-b", "64"}), 0);
    expectSameWithin(converted("8.wav", {"-b", "8"}), 256);
    expectSameWithin(converted("mu.wav", {"-e", "u-law"}), 1024);
}

TEST_F(SndfileReaderTest, ReadsStereoAtAnotherRate) {
    SndfileReader reader;
    reader.open(converted("48.wav", {"-r", "48000", "-c", "2", "-b", "24"}));
    EXPECT_EQ(reader.errorState(), 0);
    EXPECT_EQ(reader.sampleRate(), 48'000);
    EXPECT_EQ(reader.channels(), 2);
    EXPECT_EQ(reader.bytesPerFrame(), 4);
    EXPECT_EQ(reader.frames(), 96'000);
    const std::vector<std::int16_t> read = readAll(reader);
    ASSERT_EQ(read.size(), 192'000U);
    EXPECT_EQ(read[150'000], read[150'001]);
}

TEST_F(SndfileReaderTest, LimitsFloatingPointBeyondFullScale) {
    const QString loud = folder.path("loud.wav");
    const QStringList arguments{"-v", "error", "-i", take, "-af", "volume=4", "-c:a", "pcm_f32le", loud};
    ASSERT_EQ(runTool("ffmpeg", arguments).exitCode, 0);
    SndfileReader reader;
    reader.open(loud);
    const std::vector<std::int16_t> read = readAll(reader);
    ASSERT_EQ(read.size(), samples.size());
    EXPECT_EQ(*std::max_element(read.begin(), read.end()), 32767);
    EXPECT_EQ(*std::min_element(read.begin(), read.end()), -32768);
    const auto same = [&](std::size_t i) { return read[i] == std::clamp(samples[i] * 4, -32768, 32767); };
    for (std::size_t i = 0; i < read.size(); ++i) {
        ASSERT_TRUE(same(i)) << i;
    }
}

TEST_F(SndfileReaderTest, ReadsMp3AtItsExactLength) {
    const QString mp3 = folder.path("take.mp3");
    ASSERT_EQ(runTool("lame", {"--quiet", "-b", "320", take, mp3}).exitCode, 0);
    expectSameWithin(mp3, 1200);
}

TEST_F(SndfileReaderTest, ReadsMp3BehindATitleAndAPicture) {
    const QString picture = folder.path("p.jpg");
    test::writeContent(picture, QByteArray::fromHex("ffd8ffe0") + QByteArray(90'000, '\xff'));
    const QString mp3 = folder.path("titel.mp3");
    ASSERT_EQ(runTool("lame", {"--quiet", "-b", "320", "--tt", "Tïtel", "--ti", picture, take, mp3}).exitCode, 0);
    ASSERT_TRUE(test::contentOf(mp3).startsWith("ID3"));
    expectSameWithin(mp3, 1200);
}

TEST_F(SndfileReaderTest, ReadsMp3WithoutLengthTag) {
    const QString mp3 = folder.path("t.mp3");
    ASSERT_EQ(runTool("lame", {"--quiet", "-t", "-b", "128", take, mp3}).exitCode, 0);
    SndfileReader reader;
    reader.open(mp3);
    ASSERT_EQ(reader.errorState(), 0);
    EXPECT_NEAR(static_cast<double>(readAll(reader).size()), 88'200, 3 * 1152);
}

/// libsndfile took its guess at the length, made from the quiet first frame, for the truth and stopped there.
TEST_F(SndfileReaderTest, ReadsMp3OfVariableRateWithoutLengthTagToItsEnd) {
    const QString wav = folder.path("v.wav");
    const QString mp3 = folder.path("v.mp3");
    ASSERT_EQ(runTool("sox", {"-n", "-r", "44100", "-c", "2", "-b", "16", wav, "synth", "10", "noise"}).exitCode, 0);
    ASSERT_EQ(runTool("lame", {"--quiet", "-t", "-V", "2", wav, mp3}).exitCode, 0);
    SndfileReader reader;
    reader.open(mp3);
    ASSERT_EQ(reader.errorState(), 0);
    EXPECT_NEAR(static_cast<double>(reader.frames()), 441'000, 3 * 1152);
    EXPECT_EQ(static_cast<std::int64_t>(readAll(reader).size()), reader.frames() * reader.channels());
}

TEST_F(SndfileReaderTest, ReadsOnFromTheFrameThatItIsTold) {
    const QString mp3 = folder.path("s.mp3");
    ASSERT_EQ(runTool("lame", {"--quiet", "-b", "320", take, mp3}).exitCode, 0);
    for (const QString &path : {take, mp3}) {
        SndfileReader reader;
        reader.open(path);
        const std::vector<std::int16_t> whole = readAll(reader);
        for (const std::size_t frame : {50'000U, 0U, 88'000U}) {
            reader.seek(static_cast<std::int64_t>(frame));
            const std::vector<std::int16_t> rest = readAll(reader);
            ASSERT_EQ(rest.size(), whole.size() - frame) << path.toStdString();
            for (std::size_t i = 0; i < rest.size(); ++i) {
                ASSERT_NEAR(rest[i], whole[frame + i], 2) << i; // the decoder has forgotten what came before
            }
        }
    }
}

TEST_F(SndfileReaderTest, ReadsWhatIsThereOfAFileThatWasCutOff) {
    for (const char *name : {"cut.wav", "cut.mp3"}) {
        const QString path = folder.path(name);
        ASSERT_EQ(runTool("sox", {take, path}).exitCode, 0);
        const QByteArray content = test::contentOf(path);
        test::writeContent(path, content.left(content.size() / 2 + 1));
        SndfileReader reader;
        reader.open(path);
        ASSERT_EQ(reader.errorState(), 0) << name;
        EXPECT_NEAR(static_cast<double>(readAll(reader).size()), 44'100, 2500) << name;
    }
}

TEST_F(SndfileReaderTest, ATakeWithoutSamplesEndsAtOnce) {
    const QString path = folder.path("leeg.wav");
    TakeWriter(path).finish();
    SndfileReader reader;
    reader.open(path);
    EXPECT_EQ(reader.errorState(), 0);
    EXPECT_EQ(reader.frames(), 0);
    EXPECT_TRUE(reader.readBlock().isEmpty());
}

TEST_F(SndfileReaderTest, TellsWhatItCannotRead) {
    EXPECT_EQ(errorStateOf(folder.path("is er niet.wav")), -1);
    EXPECT_EQ(errorStateOf(folder.path()), -1);
    test::writeContent(folder.path("leeg.wav"), {});
    EXPECT_EQ(errorStateOf(folder.path("leeg.wav")), -2);
    test::writeContent(folder.path("tekst.mp3"), QByteArray("Dit is geen geluid. ").repeated(500));
    EXPECT_EQ(errorStateOf(folder.path("tekst.mp3")), -2);
    test::writeContent(folder.path("kop.wav"), test::contentOf(take).left(30));
    EXPECT_EQ(errorStateOf(folder.path("kop.wav")), -2);
    test::writeContent(folder.path("rommel.raw"), QByteArray(5000, '\x55'));
    EXPECT_EQ(errorStateOf(folder.path("rommel.raw")), -2);
}

TEST_F(SndfileReaderTest, ReadsTheHighestRatesAndManyChannels) {
    const QString path = folder.path("c.wav");
    for (const auto &[rate, channels] : {std::pair(4000U, 1U), std::pair(384'000U, 2U), std::pair(192'000U, 32U)}) {
        test::writeContent(path, test::wavThatClaims(rate, channels));
        SndfileReader reader;
        reader.open(path);
        EXPECT_EQ(reader.errorState(), 0);
        EXPECT_EQ(reader.sampleRate(), static_cast<int>(rate));
        EXPECT_EQ(readAll(reader).size(), 512U);
    }
}

/// Whoever believed such a file took gigabytes of memory for what waits for the sound card.
TEST_F(SndfileReaderTest, RefusesClaimsThatNoSoundFileMakes) {
    const QString path = folder.path("c.wav");
    for (const auto &[rate, channels] : {std::pair(100'000'000U, 16U), std::pair(384'001U, 1U), std::pair(3999U, 1U),
                                         std::pair(1U, 1U), std::pair(44'100U, 33U), std::pair(44'100U, 512U)}) {
        test::writeContent(path, test::wavThatClaims(rate, channels));
        EXPECT_EQ(errorStateOf(path), -2) << rate << ' ' << channels;
    }
}

/// The length stands in a header, and the processing takes memory for it.
TEST_F(SndfileReaderTest, RefusesMoreSoundThanTheFileCanHold) {
    const QString flac = converted("l.flac", {"-b", "16"});
    QByteArray content = test::contentOf(flac);
    ASSERT_EQ(content.left(4), "fLaC");
    content[21] = static_cast<char>(content.at(21) | 0x0f); // 36 bits: the number of frames
    content.replace(22, 4, QByteArray(4, '\xff'));
    test::writeContent(flac, content);
    EXPECT_EQ(errorStateOf(flac), -2);

    const QString mp3 = folder.path("l.mp3");
    ASSERT_EQ(runTool("lame", {"--quiet", "-b", "128", take, mp3}).exitCode, 0);
    content = test::contentOf(mp3);
    const qsizetype tag = std::max(content.indexOf("Info"), content.indexOf("Xing"));
    ASSERT_GT(tag, 0);
    content.replace(tag + 8, 4, QByteArray::fromHex("7fffffff")); // frames of 1152
    test::writeContent(mp3, content);
    EXPECT_EQ(errorStateOf(mp3), -2);
}

TEST_F(SndfileReaderTest, ReadsALongSilenceInASmallFile) {
    const QString flac = folder.path("stil.flac");
    ASSERT_EQ(runTool("sox", {"-n", "-r", "44100", "-b", "16", flac, "trim", "0", "600"}).exitCode, 0);
    SndfileReader reader;
    reader.open(flac);
    EXPECT_EQ(reader.errorState(), 0);
    EXPECT_EQ(reader.frames(), 600 * 44'100);
    const QString mp3 = folder.path("stil.mp3");
    ASSERT_EQ(runTool("lame", {"--quiet", "-b", "8", "--resample", "24", "-m", "m", take, mp3}).exitCode, 0);
    EXPECT_EQ(errorStateOf(mp3), 0);
}

TEST_F(SndfileReaderTest, DoesNotWaitForAPipe) {
    const QString pipe = folder.path("pipe.wav");
    ASSERT_EQ(mkfifo(pipe.toLocal8Bit().constData(), 0600), 0);
    EXPECT_EQ(errorStateOf(pipe), -1);
}

TEST_F(SndfileReaderTest, CanBeOpenedAgainAfterAFailure) {
    SndfileReader reader;
    reader.open(folder.path("is er niet.wav"));
    EXPECT_EQ(reader.errorState(), -1);
    EXPECT_EQ(reader.channels(), 0);
    EXPECT_TRUE(reader.readBlock().isEmpty());
    reader.open(take);
    EXPECT_EQ(reader.errorState(), 0);
    EXPECT_EQ(readAll(reader), samples);
}

/// Damage must neither crash nor hang; what is read is anybody's guess, its amount is not.
TEST_F(SndfileReaderTest, SurvivesDamagedFiles) {
    for (const char *name : {"d.wav", "d.mp3"}) {
        const QString path = folder.path(name);
        ASSERT_EQ(runTool("sox", {take, path}).exitCode, 0);
        const QByteArray good = test::contentOf(path);
        std::uint32_t random = 1;
        for (int round = 0; round < 200; ++round) {
            QByteArray bad = good.left(20'000);
            for (int i = 0; i < 20; ++i) {
                random = random * 1664525 + 1013904223;
                const qsizetype range = i < 10 ? 64 : bad.size();
                bad[static_cast<qsizetype>(random >> 8) % range] = static_cast<char>(random);
            }
            test::writeContent(path, bad);
            SndfileReader reader;
            reader.open(path);
            try {
                std::size_t total = 0;
                for (QByteArray b = reader.readBlock(); !b.isEmpty() && total < 10'000'000; b = reader.readBlock()) {
                    total += static_cast<std::size_t>(b.size());
                }
                EXPECT_LT(total, 10'000'000U) << round;
            } catch (const RuntimeError &error) {
                EXPECT_EQ(error.number(), ErrorNumber::DeviceError);
            }
        }
    }
}

} // namespace
} // namespace orvel
