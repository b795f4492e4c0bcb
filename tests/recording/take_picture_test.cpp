// The outline of a take, while it is recorded and from its file.
#include "platform/fake/fake_database.h"
#include "recording/take_picture.h"
#include "station/places.h"
#include "tests/platform/audio/temp_folder.h"
#include "tests/test_platform.h"

#include <gtest/gtest.h>

namespace orvel {

namespace {

class Picture : public testing::Test, protected TestPlatform<FakeDatabaseEngine> {
  protected:
    /// Silence, and from `loud` on half of full scale; milliseconds.
    QString wav(int length, int loud) {
        const QString path = folder.path(QStringLiteral("%1-%2.wav").arg(length).arg(loud));
        const auto writer = realAudioFiles.wavWriter();
        writer->create(path, 44100);
        std::vector<std::int16_t> samples(static_cast<std::size_t>(length) * 441 / 10);
        std::fill(samples.begin() + std::int64_t{loud} * 441 / 10, samples.end(), std::int16_t{16384});
        writer->write(samples);
        writer->close();
        return path;
    }
    [[nodiscard]] float loudnessAt(double ms) const {
        const auto sample = static_cast<std::int64_t>(ms * picture.sampleRate() / 1000);
        return picture.peaks().between(sample, sample + 64).high;
    }

    test::TempFolder folder;
    int changes = 0;
    Places places{folder.path()};
    TakePicture picture{platform, places, [this] { ++changes; }};
};

} // namespace

TEST_F(Picture, AFileIsThereFromItsBeginningToItsEnd) {
    picture.read(wav(3000, 2000));
    timers.advance(100);
    EXPECT_TRUE(picture.isComplete());
    EXPECT_NEAR(picture.lengthMs(), 3000, 0.1);
    EXPECT_EQ(loudnessAt(1990), 0);
    EXPECT_NEAR(loudnessAt(2010), 0.5, 1e-3);
    EXPECT_NEAR(loudnessAt(2990), 0.5, 1e-3);
    EXPECT_GE(changes, 2);
}

/// Opening it at once would have the window stand still.
TEST_F(Picture, ALongFileIsReadInPieces) {
    const QString path = wav(600'000, 590'000);
    picture.read(path);
    EXPECT_FALSE(picture.isComplete());
    const double first = picture.lengthMs();
    EXPECT_GT(first, 0) << "something is seen at once";
    for (int i = 0; i < 2000 && !picture.isComplete(); ++i) {
        timers.advance(1);
    }
    EXPECT_TRUE(picture.isComplete());
    EXPECT_NEAR(picture.lengthMs(), 600'000, 0.1);
    EXPECT_NEAR(loudnessAt(595'000), 0.5, 1e-3);
}

TEST_F(Picture, AnotherFileTakesThePlaceOfOneThatIsHalfRead) {
    picture.read(wav(600'000, 1));
    ASSERT_FALSE(picture.isComplete());
    picture.read(wav(1000, 500));
    timers.advance(100);
    EXPECT_NEAR(picture.lengthMs(), 1000, 0.1);
    EXPECT_EQ(loudnessAt(400), 0);
}

TEST_F(Picture, ARecordingGrowsAndHidesWhatWasBefore) {
    picture.read(wav(1000, 0));
    timers.advance(100);
    picture.begin();
    EXPECT_EQ(picture.lengthMs(), 0);
    picture.grow(4410, 0.25F);
    picture.grow(8820, 0.75F);
    picture.grow(8820, 1.0F); // nothing came since
    EXPECT_NEAR(picture.lengthMs(), 200, 0.1);
    EXPECT_NEAR(loudnessAt(50), 0.25, 1e-3);
    EXPECT_NEAR(loudnessAt(150), 0.75, 1e-3);
}

TEST_F(Picture, WhatCannotBeReadHasNoOutlineAndSaysNothing) {
    picture.read(folder.path("weg.wav"));
    EXPECT_EQ(picture.lengthMs(), 0);
    EXPECT_TRUE(picture.isComplete());
    audioFiles.faults.readBlock = 2;
    picture.read(wav(3000, 0));
    timers.advance(100);
    EXPECT_TRUE(picture.isComplete());
    EXPECT_GT(picture.lengthMs(), 0);
    EXPECT_LT(picture.lengthMs(), 3000);
}

/// A voice track is stereo: its outline keeps the time of one channel.
TEST_F(Picture, AVoiceTrackKeepsItsTime) {
    picture.read(QStringLiteral(ORVEL_SOURCE_DIR "/samples/station/audio/jingles/002.mp3"));
    timers.advance(1000);
    const auto reader = realAudioFiles.reader();
    reader->open(QStringLiteral(ORVEL_SOURCE_DIR "/samples/station/audio/jingles/002.mp3"));
    EXPECT_EQ(picture.peaks().samples(), reader->frames());
    EXPECT_EQ(picture.sampleRate(), reader->sampleRate());
}

TEST_F(Picture, WhatIsSpokenIsCollectedWhileItIsRecorded) {
    picture.begin();
    picture.hear(-1, -1);
    EXPECT_TRUE(picture.speech().empty());
    picture.hear(44100, 48510);
    picture.hear(44100, 52920);
    EXPECT_EQ(picture.speech(), (std::vector<SpeechTimes>{{1000, 1200}}));
    picture.hear(88200, 92610);
    EXPECT_EQ(picture.speech(), (std::vector<SpeechTimes>{{1000, 1200}, {2000, 2100}}));
    picture.hear(-1, -1);
    EXPECT_TRUE(picture.speech().empty()) << "it was noise";
    picture.hear(88200, 92610);
    picture.clear();
    EXPECT_TRUE(picture.speech().empty());
}

} // namespace orvel
