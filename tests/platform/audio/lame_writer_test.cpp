#include "platform/lame/lame_writer.h"
#include "platform/lame/system_audio_files.h"
#include "platform/runtime_error.h"
#include "tests/platform/audio/full_disk.h"
#include "tests/platform/audio/outside_tool.h"
#include "tests/platform/audio/temp_folder.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <cmath>
#include <gtest/gtest.h>

namespace orvel {
namespace {

using test::runTool;
using test::TempFolder;

std::vector<std::int16_t> voiceLike(std::size_t frames) {
    std::vector<std::int16_t> samples(frames);
    std::uint32_t random = 7;
    for (std::size_t i = 0; i < frames; ++i) {
        random = random * 1664525 + 1013904223;
        const double t = static_cast<double>(i) / 44100;
        const double syllable = 0.5 + 0.5 * std::sin(2 * M_PI * 4 * t);
        const double tone = std::sin(2 * M_PI * 150 * t) + 0.5 * std::sin(2 * M_PI * 450 * t);
        samples[i] = static_cast<std::int16_t>(std::lrint(9000 * syllable * tone + (random >> 24)));
    }
    return samples;
}

QByteArray bytesOf(std::span<const std::int16_t> samples) {
    return {reinterpret_cast<const char *>(samples.data()), static_cast<qsizetype>(samples.size_bytes())};
}

/// Writes samples in blocks of an odd size.
void encode(LameWriter &writer, const QString &path, const std::vector<std::int16_t> &samples, int channels = 1) {
    writer.create(path);
    ASSERT_EQ(writer.errorState(), 0);
    const std::size_t step = 1237 * static_cast<std::size_t>(channels);
    for (std::size_t at = 0; at < samples.size(); at += step) {
        writer.write(bytesOf(std::span(samples).subspan(at, std::min(step, samples.size() - at))));
    }
    writer.close();
}

struct Probe {
    int sampleRate = 0;
    int channels = 0;
    int bitRate = 0;
};

Probe ffprobe(const QString &path) {
    const auto result = runTool("ffprobe", {"-v", "error", "-show_streams", "-of", "json", path});
    const QJsonObject stream =
        QJsonDocument::fromJson(result.output.toUtf8()).object()["streams"].toArray().at(0).toObject();
    return {stream["sample_rate"].toString().toInt(), stream["channels"].toInt(),
            stream["bit_rate"].toString().toInt()};
}

/// The bit rate in kbit/s of every frame of an MPEG-1 Layer III file at 44100 Hz, by ISO 11172-3, 2.4.2.3; empty when
/// something between two frames is not a frame.
std::vector<int> frameRates(const QByteArray &file) {
    constexpr std::array<int, 16> kRates{0, 32, 40, 48, 56, 64, 80, 96, 112, 128, 160, 192, 224, 256, 320, 0};
    std::vector<int> rates;
    for (qsizetype at = 0; at < file.size();) {
        const auto byte = [&](qsizetype i) { return static_cast<unsigned char>(file.at(at + i)); };
        if (at + 4 > file.size() || byte(0) != 0xFF || (byte(1) & 0xFE) != 0xFA || (byte(2) & 0x0C) != 0) {
            return {};
        }
        const int rate = kRates[byte(2) >> 4];
        if (rate == 0) {
            return {};
        }
        rates.push_back(rate);
        at += 144'000 * rate / 44'100 + ((byte(2) & 2) >> 1);
    }
    return rates;
}

/// The file as another program decodes it: interleaved samples.
std::vector<std::int16_t> decoded(const TempFolder &folder, const QString &mp3) {
    const QString raw = folder.path("decoded.raw");
    EXPECT_EQ(runTool("ffmpeg", {"-v", "error", "-y", "-i", mp3, "-f", "s16le", raw}).exitCode, 0);
    const QByteArray bytes = test::contentOf(raw);
    const auto *first = reinterpret_cast<const std::int16_t *>(bytes.constData());
    return {first, first + bytes.size() / 2};
}

Mp3Format stationFormat(int kbit) {
    return {44100, 2, kbit, false};
}

TEST(LameWriter, WritesAnExactConstantRateInTwoEqualChannels) {
    const TempFolder folder;
    const std::vector<std::int16_t> take = voiceLike(133'077);
    for (const int kbit : {128, 192, 256, 320}) {
        const QString path = folder.path("spraak één.mp3");
        LameWriter writer;
        writer.setFormat(stationFormat(kbit));
        writer.setInput(44100, 1);
        encode(writer, path, take);
        const Probe probe = ffprobe(path);
        EXPECT_EQ(probe.sampleRate, 44100);
        EXPECT_EQ(probe.channels, 2);
        EXPECT_EQ(probe.bitRate, kbit * 1000);
        const std::vector<int> rates = frameRates(test::contentOf(path));
        ASSERT_GT(rates.size(), 100U);
        // The first one is the tag's: big enough for it.
        EXPECT_EQ(std::vector<int>(rates.begin() + 1, rates.end()), std::vector<int>(rates.size() - 1, kbit));
        const std::vector<std::int16_t> sound = decoded(folder, path);
        ASSERT_EQ(sound.size(), take.size() * 2) << "the tag must tell the exact length";
        double error = 0;
        double power = 0;
        for (std::size_t i = 0; i < take.size(); ++i) {
            ASSERT_EQ(sound[2 * i], sound[2 * i + 1]);
            error += std::pow(sound[2 * i] - take[i], 2);
            power += std::pow(take[i], 2);
        }
        EXPECT_LT(error / power, 0.003) << "it must be the same sound at the same place";
    }
}

TEST(LameWriter, TellsTheExactLengthWhateverItIs) {
    const TempFolder folder;
    const QString path = folder.path("a.mp3");
    for (const std::size_t frames : {1U, 575U, 576U, 1151U, 1152U, 1153U, 1729U, 44100U, 50000U}) {
        LameWriter writer;
        writer.setFormat(stationFormat(256));
        writer.setInput(44100, 1);
        encode(writer, path, voiceLike(frames));
        EXPECT_TRUE(test::contentOf(path).left(200).contains("LAME3.100"));
        EXPECT_EQ(decoded(folder, path).size(), frames * 2);
        const auto reader = SystemAudioFiles().reader();
        reader->open(path);
        EXPECT_EQ(reader->frames(), static_cast<std::int64_t>(frames));
        EXPECT_EQ(reader->channels(), 2);
    }
}

TEST(LameWriter, IsTheSameAsTheLameCommandAtItsOwnQuality) {
    const TempFolder folder;
    const std::vector<std::int16_t> take = voiceLike(220'500);
    test::writeContent(folder.path("a.raw"), bytesOf(take));
    const QStringList raw{"--quiet", "-r", "-s", "44.1", "-m", "j", "--bitwidth", "16", "--cbr", "-b", "192"};
    QByteArray stereo;
    for (const std::int16_t sample : take) {
        stereo.append(reinterpret_cast<const char *>(&sample), 2).append(reinterpret_cast<const char *>(&sample), 2);
    }
    test::writeContent(folder.path("a.raw"), stereo);
    ASSERT_EQ(runTool("lame", raw + QStringList{folder.path("a.raw"), folder.path("lame.mp3")}).exitCode, 0);
    LameWriter writer;
    writer.setFormat(stationFormat(192));
    writer.setInput(44100, 1);
    encode(writer, folder.path("ours.mp3"), take);
    // All but the tag, which tells replay gain in lame's own file.
    EXPECT_EQ(test::contentOf(folder.path("ours.mp3")).mid(700), test::contentOf(folder.path("lame.mp3")).mid(700));
}

TEST(LameWriter, KeepsTwoChannelsApartAndMakesOneOfThemOnDemand) {
    const TempFolder folder;
    std::vector<std::int16_t> stereo;
    for (const std::int16_t sample : voiceLike(44100)) {
        stereo.push_back(sample);
        stereo.push_back(0);
    }
    LameWriter writer;
    writer.setFormat(stationFormat(192));
    writer.setInput(44100, 2);
    encode(writer, folder.path("st.mp3"), stereo, 2);
    const double left = test::soxStat(folder.path("st.mp3"), "RMS     amplitude", {"remix", "1"});
    const double right = test::soxStat(folder.path("st.mp3"), "RMS     amplitude", {"remix", "2"});
    EXPECT_GT(left, 0.1);
    EXPECT_LT(right, 0.01);

    writer.setFormat({44100, 1, 128, false});
    encode(writer, folder.path("mono.mp3"), stereo, 2);
    EXPECT_EQ(ffprobe(folder.path("mono.mp3")).channels, 1);
}

TEST(LameWriter, ResamplesAnInputOfAnotherRate) {
    const TempFolder folder;
    LameWriter writer;
    writer.setFormat(stationFormat(192));
    writer.setInput(48000, 1);
    encode(writer, folder.path("a.mp3"), voiceLike(48000));
    EXPECT_EQ(ffprobe(folder.path("a.mp3")).sampleRate, 44100);
    EXPECT_NEAR(static_cast<double>(decoded(folder, folder.path("a.mp3")).size()), 88200, 4 * 1152);
}

TEST(LameWriter, WritesTrueFreeFormatOnDemand) {
    const TempFolder folder;
    const std::vector<std::int16_t> take = voiceLike(88'200);
    LameWriter writer;
    writer.setFormat({44100, 2, 350, true});
    writer.setInput(44100, 1);
    encode(writer, folder.path("vrij.mp3"), take);
    const QByteArray content = test::contentOf(folder.path("vrij.mp3"));
    EXPECT_NEAR(static_cast<double>(content.size()) * 8 / 2, 350'000, 12'000);
    EXPECT_EQ(static_cast<unsigned char>(content.at(2)) >> 4, 0) << "the rate's index of free format";
    // One of the few that play it.
    ASSERT_EQ(runTool("lame", {"--quiet", "--decode", folder.path("vrij.mp3"), folder.path("vrij.wav")}).exitCode, 0);
    EXPECT_NEAR(test::soxStat(folder.path("vrij.wav"), "Length (seconds)"), 2, 0.06);
    EXPECT_GT(test::soxStat(folder.path("vrij.wav"), "RMS     amplitude"), 0.1);
}

TEST(LameWriter, AFileWithoutSamplesIsStillClosed) {
    const TempFolder folder;
    LameWriter writer;
    writer.setFormat(stationFormat(256));
    writer.setInput(44100, 1);
    encode(writer, folder.path("leeg.mp3"), {});
    EXPECT_FALSE(frameRates(test::contentOf(folder.path("leeg.mp3"))).empty());
}

TEST(LameWriter, TellsWhyItCannotBegin) {
    const TempFolder folder;
    const QString path = folder.path("a.mp3");
    LameWriter writer;
    writer.setInput(44100, 1);
    writer.create(path);
    EXPECT_EQ(writer.errorState(), -1) << "no format was set";
    writer.setFormat(stationFormat(350));
    writer.create(path);
    EXPECT_EQ(writer.errorState(), -3) << "350 kbit/s is free format only";
    writer.setFormat(stationFormat(256));
    writer.setInput(44100, 6);
    writer.create(path);
    EXPECT_EQ(writer.errorState(), -3);
    EXPECT_TRUE(test::contentOf(path).isNull() && !QFile::exists(path)) << "a refused format must leave no file";
    writer.setInput(44100, 1);
    writer.create(folder.path("geen/map/a.mp3"));
    EXPECT_EQ(writer.errorState(), -2);
    EXPECT_THROW(writer.write(QByteArray(100, '\0')), RuntimeError);
    writer.close();
    writer.create(path);
    EXPECT_EQ(writer.errorState(), 0);
}

// An MP3 file was written through a link that stood in its place.
TEST(LameWriter, MakesTheFileAnewNeverThroughALink) {
    const TempFolder folder;
    test::writeContent(folder.path("elders.txt"), "van een ander");
    ASSERT_TRUE(QFile::link(folder.path("elders.txt"), folder.path("a.mp3")));
    LameWriter writer;
    writer.setFormat(stationFormat(128));
    writer.setInput(44100, 1);
    writer.create(folder.path("a.mp3"));
    writer.write(bytesOf(voiceLike(4410)));
    writer.close();
    EXPECT_EQ(test::contentOf(folder.path("elders.txt")), "van een ander");
    EXPECT_GT(test::contentOf(folder.path("a.mp3")).size(), 1000);
}

TEST(LameWriter, TellsAFullDiskOnceAndClosesTheFile) {
    const TempFolder folder;
    EXPECT_TRUE(test::inChild([&] {
        test::limitFileSize(20'000);
        LameWriter writer;
        writer.setFormat(stationFormat(320));
        writer.setInput(44100, 1);
        writer.create(folder.path("a.mp3"));
        const QByteArray block = bytesOf(voiceLike(44100));
        const int error = test::errorOf([&] { writer.write(block); });
        return error == 61 && test::errorOf([&] { writer.close(); }) == 0 &&
               test::contentOf(folder.path("a.mp3")).size() == 20'000;
    }));
}

TEST(LameWriter, TellsADiskThatIsFullAtTheEnd) {
    const TempFolder folder;
    EXPECT_TRUE(test::inChild([&] {
        LameWriter writer;
        writer.setFormat(stationFormat(320));
        writer.setInput(44100, 1);
        writer.create(folder.path("a.mp3"));
        writer.write(bytesOf(voiceLike(44100)));
        test::limitFileSize(static_cast<rlim_t>(test::contentOf(folder.path("a.mp3")).size()));
        return test::errorOf([&] { writer.close(); }) == 61 && test::errorOf([&] { writer.close(); }) == 0;
    }));
}

} // namespace
} // namespace orvel
