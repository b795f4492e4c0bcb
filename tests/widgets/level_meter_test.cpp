#include "tests/widgets/paint_count.h"
#include "widgets/level_meter.h"

#include <gtest/gtest.h>
#include <limits>

namespace orvel {

namespace {

TEST(LevelMeter, ShowsDecibelsOfFullScale) {
    LevelMeter meter;
    EXPECT_DOUBLE_EQ(meter.levelDb(), -60);
    meter.setLevel(0.5F);
    EXPECT_NEAR(meter.levelDb(), -6.02, 0.01);
    meter.reset();
    meter.setLevel(0.00001F);
    EXPECT_DOUBLE_EQ(meter.levelDb(), -60);
    meter.setLevel(1.0F);
    EXPECT_DOUBLE_EQ(meter.levelDb(), 0);
}

TEST(LevelMeter, TakesWhatIsNotALevelAsSilence) {
    LevelMeter meter;
    meter.setLevel(std::numeric_limits<float>::quiet_NaN());
    meter.setLevel(-1);
    EXPECT_DOUBLE_EQ(meter.levelDb(), -60);
    EXPECT_FALSE(meter.isClipped());
    meter.setLevel(std::numeric_limits<float>::infinity());
    EXPECT_DOUBLE_EQ(meter.levelDb(), 0);
    EXPECT_TRUE(meter.isClipped());
}

TEST(LevelMeter, RisesAtOnceAndFallsTwentyDecibelsIn1700Milliseconds) {
    LevelMeter meter;
    meter.setLevel(1.0F);
    meter.setLevel(0.1F);
    EXPECT_DOUBLE_EQ(meter.levelDb(), 0);
    meter.advance(1700);
    EXPECT_NEAR(meter.levelDb(), -20, 0.01);
    meter.setLevel(0.5F);
    EXPECT_NEAR(meter.levelDb(), -6.02, 0.01);
    meter.advance(60000);
    EXPECT_DOUBLE_EQ(meter.levelDb(), -60);
}

TEST(LevelMeter, HoldsThePeakForAWhile) {
    LevelMeter meter;
    meter.setLevel(0.5F);
    meter.advance(LevelMeter::holdMillis);
    EXPECT_NEAR(meter.holdDb(), -6.02, 0.01);
    EXPECT_LT(meter.levelDb(), -20);
    meter.advance(1700);
    EXPECT_NEAR(meter.holdDb(), -26.02, 0.01);
}

TEST(LevelMeter, LightsTheClipLampForTwoSeconds) {
    LevelMeter meter;
    meter.setLevel(0.999F);
    EXPECT_FALSE(meter.isClipped());
    meter.setLevel(32767.0F / 32768.0F);
    EXPECT_TRUE(meter.isClipped());
    meter.advance(1000);
    meter.setLevel(0.2F);
    meter.advance(999);
    EXPECT_TRUE(meter.isClipped());
    meter.advance(1);
    EXPECT_FALSE(meter.isClipped());
}

TEST(LevelMeter, StartsTheTwoSecondsAnewWithEveryClip) {
    LevelMeter meter;
    meter.setLevel(1.0F);
    meter.advance(1500);
    meter.setLevel(1.0F);
    meter.advance(1500);
    EXPECT_TRUE(meter.isClipped());
}

TEST(LevelMeter, FallsByItselfWhenNothingNewComes) {
    LevelMeter meter;
    meter.show();
    meter.setLevel(0.5F);
    EXPECT_TRUE(QTest::qWaitFor([&meter] { return meter.levelDb() < -7; }, 5000));
}

TEST(LevelMeter, PaintsOnlyWhenASegmentChanges) {
    LevelMeter meter;
    meter.resize(400, 24);
    test::PaintCount paints(meter);
    meter.setLevel(0.5F);
    EXPECT_EQ(paints.take(), 1);
    meter.setLevel(0.5F);
    EXPECT_EQ(paints.take(), 0);
    meter.reset();
    EXPECT_EQ(paints.take(), 1);
    meter.setLevel(0);
    EXPECT_EQ(paints.take(), 0);
}

TEST(LevelMeter, LightsYellowFromTheQuietEnd) {
    for (const Qt::Orientation orientation : {Qt::Horizontal, Qt::Vertical}) {
        LevelMeter meter(orientation);
        const bool lying = orientation == Qt::Horizontal;
        meter.resize(lying ? QSize(400, 24) : QSize(24, 400));
        meter.setLevel(0.0316F); // -30 dB: half of the bar
        const QImage image = meter.grab().toImage();
        // Between two segments there is a dark line: the brightest of some pixels is the segment.
        const auto brightness = [&](int place) {
            int brightest = 0;
            for (int i = 0; i < 8; ++i) {
                const QPoint at = lying ? QPoint(place + i, 12) : QPoint(12, 399 - place - i);
                brightest = std::max(brightest, image.pixelColor(at).value());
            }
            return brightest;
        };
        EXPECT_GT(brightness(20), 200) << orientation;
        EXPECT_GT(brightness(150), 200) << orientation;
        EXPECT_LT(brightness(220), 80) << orientation;
        EXPECT_LT(brightness(350), 80) << orientation;
    }
}

TEST(LevelScale, HasItsEndsWhereTheBarOfTheMeterHasThem) {
    LevelScale scale;
    LevelMeter meter;
    scale.resize(400, 30);
    meter.resize(400, 24);
    const QRectF bar = levelBarRect(meter.size(), Qt::Horizontal, meter.fontMetrics());
    const QImage image = scale.grab().toImage();
    QVector<int> ticks;
    for (int x = 1; x < image.width(); ++x) {
        const int now = image.pixelColor(x, 1).lightness();
        const int before = image.pixelColor(x - 1, 1).lightness();
        if (now > before + 60) {
            ticks.push_back(x);
        }
    }
    ASSERT_EQ(ticks.size(), 11);
    EXPECT_NEAR(ticks.first(), bar.left(), 1);
    EXPECT_NEAR(ticks.last(), bar.right(), 1);
}

} // namespace

} // namespace orvel
