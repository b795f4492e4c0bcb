#include "platform/fake/fake_database.h"
#include "production/take_findings.h"
#include "station/places.h"
#include "tests/dsp/sound.h"
#include "tests/test_platform.h"

#include <QDir>
#include <QTemporaryDir>
#include <QThread>

#include <gtest/gtest.h>

namespace orvel {

namespace {

constexpr std::size_t findingMs = testRate / 1000;
const QString foundLink = QStringLiteral("LINK1");

class Finding : public testing::Test, protected TestPlatform<FakeDatabaseEngine> {
  protected:
    Finding() { QDir(folder.path()).mkdir(QStringLiteral("temp")); }

    void write(const QString &path, const Samples &samples) {
        const auto writer = realAudioFiles.wavWriter();
        writer->create(path, testRate);
        writer->write(samples);
        writer->close();
    }
    /// Silence of a second, a word, silence of half a second.
    static Samples wordOf(double amplitude, std::size_t milliseconds) {
        Samples take(testRate);
        const Samples word = tone(300, amplitude, milliseconds * testRate / 1000);
        take.insert(take.end(), word.begin(), word.end());
        take.resize(take.size() + testRate / 2);
        return take;
    }
    void waitUntilKnown() {
        for (int i = 0; i < 3000 && findings.of(foundLink) == nullptr; ++i) {
            QThread::msleep(10);
            timers.advance(10);
        }
    }

    QTemporaryDir folder;
    Places places{folder.path()};
    QString take = places.take(foundLink);
    QString dry = folder.filePath(QStringLiteral("droog.wav"));
    int changes = 0;
    TakeFindings findings{platform, places, [this] { ++changes; }};
};

} // namespace

TEST_F(Finding, SpeechAndLoudnessAreThoseOfTheFile) {
    write(take, tone(997, 3276.8, 3 * testRate));
    EXPECT_EQ(findings.of(foundLink), nullptr) << "nobody looked yet";
    findings.want(foundLink, {});
    ASSERT_NE(findings.of(foundLink), nullptr) << "at once";
    ASSERT_TRUE(findings.of(foundLink)->loudness);
    EXPECT_NEAR(findings.of(foundLink)->loudness->lufs, -20, 0.1);
    EXPECT_NEAR(findings.of(foundLink)->loudness->truePeak, -20, 0.1);
    write(take, wordOf(8000, 2000));
    findings.want(foundLink, {});
    EXPECT_NEAR(findings.of(foundLink)->loudness->lufs, -20, 0.1) << "it is known";
    findings.forget(foundLink);
    EXPECT_EQ(findings.of(foundLink), nullptr);
    findings.want(foundLink, {});
    ASSERT_EQ(findings.of(foundLink)->marks.speech.size(), 1U);
    EXPECT_NEAR(findings.of(foundLink)->marks.speech.front().begin, 1000, 20);
    EXPECT_NEAR(findings.of(foundLink)->marks.speech.front().end, 3000, 20);
    EXPECT_EQ(changes, 0);
}

TEST_F(Finding, ATakeThatIsSilentOrCannotBeReadHasNone) {
    write(take, Samples(testRate));
    findings.want(foundLink, {});
    ASSERT_NE(findings.of(foundLink), nullptr);
    EXPECT_FALSE(findings.of(foundLink)->loudness);
    EXPECT_TRUE(findings.of(foundLink)->marks.speech.empty());
    findings.want(QStringLiteral("WEG"), {});
    EXPECT_EQ(findings.of(QStringLiteral("WEG")), nullptr);
    findings.forget(foundLink);
    audioFiles.faults.readBlock = 1;
    findings.want(foundLink, {});
    EXPECT_EQ(findings.of(foundLink), nullptr);
    audioFiles.faults = {};
    findings.want(foundLink, {});
    EXPECT_EQ(findings.of(foundLink), nullptr) << "it is not read again and again";
}

// Where it was too loud is told by what was recorded: what the stages make of it is softer.
TEST_F(Finding, ClipsOfTheOriginalAreFoundWhereTheyAreInTheTake) {
    Samples original = wordOf(9000, 800);
    const Samples second = wordOf(9000, 1500);
    original.insert(original.end(), second.begin(), second.end());
    const std::size_t inWord = 1400 * findingMs;
    for (const std::size_t at : {100 * findingMs, inWord, inWord + 100, inWord + 300 * findingMs}) {
        original.at(at) = -32768;
    }
    write(dry, original);
    Samples processed(original.begin() + 600 * findingMs, original.end()); // what was trimmed off
    for (std::int16_t &sample : processed) {
        sample = static_cast<std::int16_t>(sample / 2);
    }
    write(take, processed);
    findings.want(foundLink, dry);
    ASSERT_NE(findings.of(foundLink), nullptr);
    const std::vector<std::int32_t> &clips = findings.of(foundLink)->marks.clips;
    ASSERT_EQ(clips.size(), 2U) << "the first was cut off, and two samples beside each other are one";
    EXPECT_NEAR(clips.at(0), (static_cast<double>(inWord) / testRate) * 1000 - 600 * 44 / 44.1, 20);
    EXPECT_NEAR(clips.at(1) - clips.at(0), 300, 5);
}

TEST_F(Finding, ALongTakeIsReadBesideTheWork) {
    Samples hour = wordOf(8000, 3000);
    hour.resize((TakeFindings::atOnce + 5) * std::size_t{testRate});
    write(take, hour);
    findings.want(foundLink, {});
    EXPECT_EQ(findings.of(foundLink), nullptr) << "nobody waits for it";
    findings.want(foundLink, {}); // the desk asks again and again
    waitUntilKnown();
    ASSERT_NE(findings.of(foundLink), nullptr);
    EXPECT_EQ(findings.of(foundLink)->marks.speech.size(), 1U);
    EXPECT_EQ(changes, 1);
}

TEST_F(Finding, WhatChangesWhileItIsReadIsReadAnew) {
    Samples longer = wordOf(8000, 3000);
    longer.resize((TakeFindings::atOnce + 5) * std::size_t{testRate});
    write(take, longer);
    findings.want(foundLink, {});
    findings.forget(foundLink);
    write(take, wordOf(8000, 2000));
    findings.want(foundLink, {});
    ASSERT_NE(findings.of(foundLink), nullptr);
    for (int i = 0; i < 50; ++i) {
        QThread::msleep(10);
        timers.advance(10);
    }
    EXPECT_NEAR(findings.of(foundLink)->marks.speech.front().end, 3000, 20)
        << "what was read before is nothing any more";
    EXPECT_EQ(changes, 0);
}

TEST_F(Finding, LoudnessIsToldInDutchFigures) {
    EXPECT_EQ(toText(Loudness{-18.26, -2.1}), QStringLiteral("-18,3 LUFS, piek -2,1 dBTP"));
}

} // namespace orvel
