#include "platform/fake/fake_database.h"
#include "production/take_loudness.h"
#include "tests/dsp/sound.h"
#include "tests/test_platform.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace orvel {

namespace {

class TakesLoudness : public testing::Test, protected TestPlatform<FakeDatabaseEngine> {
  protected:
    void write(const Samples &samples) {
        const auto writer = realAudioFiles.wavWriter();
        writer->create(take, testRate);
        writer->write(samples);
        writer->close();
    }

    QTemporaryDir folder;
    QString take = folder.filePath(QStringLiteral("LINK1.wav"));
    TakeLoudness loudness{platform};
};

} // namespace

TEST_F(TakesLoudness, IsThatOfTheFile) {
    write(tone(997, 3276.8, 3 * testRate));
    EXPECT_FALSE(loudness.of(take)) << "not measured yet";
    loudness.measure(take);
    ASSERT_TRUE(loudness.of(take));
    EXPECT_NEAR(loudness.of(take)->lufs, -20, 0.1);
    EXPECT_NEAR(loudness.of(take)->truePeak, -20, 0.1);
}

TEST_F(TakesLoudness, ATakeThatHasNoneForgetsTheOneBefore) {
    write(tone(997, 3276.8, 3 * testRate));
    loudness.measure(take);
    write(Samples(testRate));
    loudness.measure(take);
    EXPECT_FALSE(loudness.of(take));
    loudness.measure(folder.filePath(QStringLiteral("gone.wav")));
    EXPECT_FALSE(loudness.of(folder.filePath(QStringLiteral("gone.wav"))));
}

TEST_F(TakesLoudness, IsToldInDutchFigures) {
    EXPECT_EQ(toText(Loudness{-18.26, -2.1}), QStringLiteral("-18,3 LUFS, piek -2,1 dBTP"));
}

} // namespace orvel
