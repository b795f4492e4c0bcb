// What the conversion tells while it runs.
#include "production/transcode.h"
#include "tests/platform/audio/temp_folder.h"
#include "tests/test_platform.h"

#include <algorithm>
#include <gtest/gtest.h>

namespace orvel {

namespace {

class Transcoding : public testing::Test {
  protected:
    /// The percentages that a take of so many frames goes through.
    std::vector<int> percentagesOf(int frames) {
        const auto wav = audioFiles.wavWriter();
        wav->create(folder.path("take.wav"), 44100);
        wav->write(std::vector<std::int16_t>(static_cast<std::size_t>(frames), 100));
        wav->close();
        const auto reader = audioFiles.reader();
        const auto writer = audioFiles.mp3Writer();
        writer->setFormat(mp3Format(0, false));
        std::vector<int> told;
        EXPECT_TRUE(convert(*reader, *writer, folder.path("take.wav"), folder.path("take.mp3"),
                            [&](int percent) { told.push_back(percent); }));
        return told;
    }

    test::TempFolder folder;
    SystemAudioFiles audioFiles;
};

} // namespace

// The gauge of a take without samples stayed at 0, as if nothing had been done.
TEST_F(Transcoding, ATakeWithoutFramesIsAtAHundred) {
    EXPECT_EQ(percentagesOf(0), std::vector<int>{100});
}

TEST_F(Transcoding, TheGaugeGrowsToAHundred) {
    const std::vector<int> told = percentagesOf(44100 * 10);
    EXPECT_TRUE(std::is_sorted(told.begin(), told.end()));
    EXPECT_TRUE(std::any_of(told.begin(), told.end(), [](int percent) { return percent > 30 && percent < 70; }));
    EXPECT_EQ(told.back(), 100);
}

TEST(TheBitRates, AreThoseOfTheSetup) {
    const std::vector<int> rates = {128, 192, 256, 320, 320};
    for (int index = 0; index < 5; ++index) {
        const Mp3Format format = mp3Format(index, false);
        EXPECT_EQ(format.kbitPerSecond, rates.at(static_cast<std::size_t>(index)));
        EXPECT_EQ(format.sampleRate, 44100);
        EXPECT_EQ(format.channels, 2);
        EXPECT_FALSE(format.freeFormat);
    }
    EXPECT_EQ(mp3Format(4, true).kbitPerSecond, 350);
    EXPECT_TRUE(mp3Format(4, true).freeFormat);
    EXPECT_EQ(mp3Format(3, true).kbitPerSecond, 320);
    EXPECT_FALSE(mp3Format(3, true).freeFormat) << "only where no other format will do";
}

TEST(TheBitRates, OutsideTheTableThereIsNoFormat) {
    for (const int index : {-1, 5, 7}) {
        EXPECT_EQ(mp3Format(index, true).sampleRate, 0) << index;
    }
}

} // namespace orvel
