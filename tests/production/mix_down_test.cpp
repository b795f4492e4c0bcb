// Files of more than two channels as stereo.
#include "production/mix_down.h"

#include <gtest/gtest.h>
#include <vector>

namespace orvel {

namespace {

/// One block of samples.
class OneBlock : public AudioFileReader {
  public:
    OneBlock(int channels, std::vector<std::int16_t> samples) : channels_(channels), samples_(std::move(samples)) {}
    void open(const QString &path) override { opened = path; }
    void close() override { ++closed; }
    [[nodiscard]] int errorState() const override { return 7; }
    [[nodiscard]] int sampleRate() const override { return 48000; }
    [[nodiscard]] int channels() const override { return channels_; }
    [[nodiscard]] std::int64_t frames() const override { return 123; }
    [[nodiscard]] int bytesPerFrame() const override { return 2 * channels_; }
    [[nodiscard]] QByteArray readBlock() override {
        const std::vector<std::int16_t> block = std::exchange(samples_, {});
        return {reinterpret_cast<const char *>(block.data()), static_cast<qsizetype>(block.size() * 2)};
    }

    QString opened;
    int closed = 0;

  private:
    int channels_;
    std::vector<std::int16_t> samples_;
};

std::vector<int> mixed(int channels, std::vector<std::int16_t> samples) {
    OneBlock source(channels, std::move(samples));
    const QByteArray block = StereoReader(source).readBlock();
    const auto *first = reinterpret_cast<const std::int16_t *>(block.constData());
    return {first, first + block.size() / 2};
}

} // namespace

TEST(MixingDown, OneOrTwoChannelsStayAsTheyAre) {
    EXPECT_EQ(mixed(1, {1, -2, 32767}), (std::vector{1, -2, 32767}));
    EXPECT_EQ(mixed(2, {1, -2, 32767, -32768}), (std::vector{1, -2, 32767, -32768}));
    OneBlock mono(1, {});
    EXPECT_EQ(StereoReader(mono).channels(), 1);
    EXPECT_EQ(StereoReader(mono).bytesPerFrame(), 2);
}

TEST(MixingDown, TheFirstTwoKeepTheirSide) {
    // Six channels: everything together is 1 + 4 / 2 = 3 at the most.
    EXPECT_EQ(mixed(6, {30000, 0, 0, 0, 0, 0}), (std::vector{10000, 0}));
    EXPECT_EQ(mixed(6, {0, 30000, 0, 0, 0, 0}), (std::vector{0, 10000}));
}

TEST(MixingDown, TheOthersStandInTheMiddleAtHalfTheirLevel) {
    for (std::size_t channel = 2; channel < 6; ++channel) {
        std::vector<std::int16_t> frame(6, 0);
        frame[channel] = 30000;
        EXPECT_EQ(mixed(6, frame), (std::vector{5000, 5000})) << channel;
    }
    EXPECT_EQ(mixed(3, {0, 0, 30000}), (std::vector{10000, 10000}));
}

TEST(MixingDown, EverythingAtFullScaleKeepsWithinIt) {
    EXPECT_EQ(mixed(6, std::vector<std::int16_t>(6, 32767)), (std::vector{32767, 32767}));
    EXPECT_EQ(mixed(6, std::vector<std::int16_t>(6, -32768)), (std::vector{-32768, -32768}));
    EXPECT_EQ(mixed(32, std::vector<std::int16_t>(32, 32767)), (std::vector{32767, 32767}));
}

TEST(MixingDown, EveryFrameOfABlockIsMixed) {
    EXPECT_EQ(mixed(3, {300, 600, 0, -300, -600, 0, 0, 0, 300}), (std::vector{200, 400, -200, -400, 100, 100}));
    EXPECT_TRUE(mixed(3, {}).empty()) << "an empty block is the end";
}

TEST(MixingDown, TellsTheRestOfTheFileAsItIs) {
    OneBlock source(6, {});
    StereoReader reader(source);
    reader.open(QStringLiteral("zes.wav"));
    EXPECT_EQ(source.opened, QStringLiteral("zes.wav"));
    EXPECT_EQ(reader.errorState(), 7);
    EXPECT_EQ(reader.sampleRate(), 48000);
    EXPECT_EQ(reader.frames(), 123);
    EXPECT_EQ(reader.channels(), 2);
    EXPECT_EQ(reader.bytesPerFrame(), 4);
    reader.close();
    EXPECT_EQ(source.closed, 1);
}

} // namespace orvel
