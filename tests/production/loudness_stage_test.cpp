#include "dsp/gain.h"
#include "platform/ebur128/ebur128_meter.h"
#include "platform/lame/system_audio_files.h"
#include "production/loudness_stage.h"
#include "tests/dsp/speech.h"

#include <QProcess>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <gtest/gtest.h>
#include <tuple>

namespace orvel {

namespace {

constexpr LoudnessGoal goal{-18, -1};

/// What another program says of the file of two channels that a take becomes.
Loudness judged(const Samples &samples) {
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("take.wav"));
    SystemAudioFiles files;
    const auto writer = files.wavWriter();
    writer->create(path, testRate);
    writer->write(samples);
    writer->close();
    QProcess ffmpeg;
    ffmpeg.start(QStringLiteral("ffmpeg"),
                 {QStringLiteral("-nostats"), QStringLiteral("-i"), path, QStringLiteral("-af"),
                  QStringLiteral("pan=stereo|c0=c0|c1=c0,ebur128=peak=true"), QStringLiteral("-f"),
                  QStringLiteral("null"), QStringLiteral("-")});
    ffmpeg.waitForFinished();
    const QString text = QString::fromUtf8(ffmpeg.readAllStandardError()).section(QStringLiteral("Summary:"), -1);
    const auto figure = [&](const char *pattern) {
        return QRegularExpression(QString::fromLatin1(pattern)).match(text).captured(1).toDouble();
    };
    return {figure(R"(I:\s+(-?[\d.]+) LUFS)"), figure(R"(Peak:\s+(-?[\d.]+) dBFS)")};
}

Samples mixed(Samples one, const Samples &other) {
    for (std::size_t i = 0; i < one.size(); ++i) {
        one[i] = static_cast<std::int16_t>(std::clamp(one[i] + other[i], -32768, 32767));
    }
    return one;
}

AudioTransform transformer() {
    AudioTransform transform;
    transform.setSampleRate(testRate);
    transform.setEnabled(true);
    return transform;
}

/// A take of ten kinds: voices low and high, slow and fast, one in noise, one that whispers, one that hardly pauses.
Samples takeOf(std::size_t kind) {
    static constexpr std::array options = {
        "-v nl",          "-v nl+m3 -p 0",    "-v nl+f2 -p 90", "-v nl -s 90",    "-v nl+f4 -s 240",
        "-v nl+m7 -p 20", "-v nl+croak -p 0", "-v nl+whisper",  "-v nl+f5 -p 60", "-v nl+m1 -s 300",
    };
    Samples spoken = speak(spokenSentences.at(kind), options.at(kind));
    if (kind == 8) {
        return mixed(atPeak(spoken, -12), pinkNoise(60, spoken.size()));
    }
    return spoken;
}

} // namespace

TEST(LoudnessMeter, ToldIsTheLoudnessOfTheTwoChannelsThatAreFiled) {
    // BS.1770: a 997 Hz tone of full scale on one channel is -3.01 LUFS; on two it is 0.
    Ebur128Meter meter;
    const std::optional<Loudness> told = meter.measure(tone(997, 32767 * 0.1, 3 * testRate), testRate);
    ASSERT_TRUE(told);
    EXPECT_NEAR(told->lufs, -20, 0.1);
    EXPECT_NEAR(told->truePeak, -20, 0.1);
}

TEST(LoudnessMeter, SilenceAndAMomentHaveNone) {
    Ebur128Meter meter;
    EXPECT_FALSE(meter.measure(Samples(2 * testRate), testRate));
    EXPECT_FALSE(meter.measure(tone(997, 10000, testRate / 3), testRate));
    EXPECT_FALSE(meter.measure({}, testRate));
    EXPECT_FALSE(meter.measure(tone(997, 10000, testRate), 0));
}

TEST(LoudnessMeter, SaysWhatAnotherProgramSays) {
    const Samples spoken = atPeak(speak(spokenSentences[3], "-v nl+f2"), -3);
    if (spoken.empty()) {
        GTEST_SKIP() << "espeak-ng is not installed";
    }
    Ebur128Meter meter;
    const std::optional<Loudness> told = meter.measure(spoken, testRate);
    ASSERT_TRUE(told);
    const Loudness other = judged(spoken);
    EXPECT_NEAR(told->lufs, other.lufs, 0.1);
    EXPECT_NEAR(told->truePeak, other.truePeak, 0.2);
}

TEST(LoudnessStage, TenTakesEighteenDecibelsApartEndAlike) {
    if (takeOf(0).empty()) {
        GTEST_SKIP() << "espeak-ng is not installed";
    }
    Ebur128Meter meter;
    AudioTransform transform = transformer();
    double softest = 0;
    double loudest = -100;
    double highest = -100;
    for (std::size_t kind = 0; kind < spokenSentences.size(); ++kind) {
        // Peaks from -21 to -3 dB.
        Samples take = atPeak(takeOf(kind), -21 + 2.0 * static_cast<double>(kind));
        const Loudness before = judged(take);
        const std::optional<Loudness> told = bringToLoudness(transform, take, testRate, goal, meter);
        ASSERT_TRUE(told);
        const Loudness after = judged(take);
        std::printf("take %zu: %.1f LUFS, %.1f dBTP -> %.1f LUFS, %.1f dBTP\n", kind, before.lufs, before.truePeak,
                    after.lufs, after.truePeak);
        EXPECT_NEAR(after.lufs, told->lufs, 0.1) << kind;
        softest = std::min(softest, after.lufs);
        loudest = std::max(loudest, after.lufs);
        highest = std::max(highest, after.truePeak);
    }
    EXPECT_LE(loudest - softest, 0.5);
    EXPECT_NEAR(softest, goal.target, 0.5);
    EXPECT_LE(highest, goal.truePeak + 0.05) << "as another program estimates it, in tenths";
}

TEST(LoudnessStage, WhereTheLimiterWorksHardTheGoalIsReachedAllTheSame) {
    Samples take = atPeak(speak(spokenSentences[5], "-v nl+m3"), -12);
    if (take.empty()) {
        GTEST_SKIP() << "espeak-ng is not installed";
    }
    AudioTransform transform = transformer();
    Ebur128Meter meter;
    const LoudnessGoal loud{-12, -1};
    ASSERT_TRUE(bringToLoudness(transform, take, testRate, loud, meter));
    const Loudness after = judged(take);
    EXPECT_NEAR(after.lufs, loud.target, 0.5);
    EXPECT_LE(after.truePeak, loud.truePeak + 0.05);
}

TEST(LoudnessStage, WithoutLimitingItIsTheTakeAndAGain) {
    const Samples before = tone(440, 3000, 2 * testRate);
    Samples take = before;
    AudioTransform transform = transformer();
    Ebur128Meter meter;
    const std::optional<Loudness> was = meter.measure(before, testRate);
    ASSERT_TRUE(bringToLoudness(transform, take, testRate, goal, meter));
    const double factor = std::pow(10, (goal.target - was->lufs) / 20);
    for (std::size_t i = 0; i < take.size(); ++i) {
        ASSERT_NEAR(static_cast<double>(take[i]), factor * static_cast<double>(before[i]), 1.6) << i;
    }
}

TEST(LoudnessStage, NoiseIsNotMadeAVoice) {
    Samples room = pinkNoise(8, 2 * testRate); // -72 dB
    AudioTransform transform = transformer();
    Ebur128Meter meter;
    const std::optional<Loudness> was = meter.measure(room, testRate);
    ASSERT_TRUE(was);
    const std::optional<Loudness> told = bringToLoudness(transform, room, testRate, goal, meter);
    ASSERT_TRUE(told);
    EXPECT_NEAR(told->lufs - was->lufs, 30, 1);
    Samples silence(testRate);
    EXPECT_FALSE(bringToLoudness(transform, silence, testRate, goal, meter));
    EXPECT_EQ(peakOf(silence), 0);
}

TEST(LoudnessGoal, IsOffUnlessItIsSetAndSaysWhatCannotBe) {
    EXPECT_FALSE(LoudnessGoal().isSet());
    EXPECT_TRUE(LoudnessGoal().problem().isEmpty());
    EXPECT_TRUE(goal.isSet());
    EXPECT_TRUE(goal.problem().isEmpty());
    // A sign that was forgotten would be full scale.
    EXPECT_FALSE((LoudnessGoal{18, -1}).problem().isEmpty());
    EXPECT_FALSE((LoudnessGoal{-60, -1}).problem().isEmpty());
    EXPECT_FALSE((LoudnessGoal{-18, 1}).problem().isEmpty());
}

} // namespace orvel
