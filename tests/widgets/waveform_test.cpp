#include "tests/widgets/paint_count.h"
#include "widgets/theme.h"
#include "widgets/waveform.h"

#include <QElapsedTimer>
#include <QSignalSpy>
#include <QWheelEvent>

#include <gtest/gtest.h>

namespace orvel {

namespace {

/// Ten seconds of axis, a sound of four seconds that is loud in its second one.
class TheWaveform : public testing::Test {
  protected:
    TheWaveform() {
        wave.resize(1006, 106); // 1000 x 100 inside its frame: a pixel is 10 ms
        wave.setAxis(10'000);
        wave.setLength(4000);
        wave.setSource([this](double from, double to) {
            ++asked;
            return from < 2000 && to > 1000 ? Waveform::Column{-0.5F, 0.5F} : Waveform::Column{};
        });
    }
    /// At a moment, and at a height from the middle (0) to the top (1).
    [[nodiscard]] QColor pixel(double ms, double height) {
        const QImage image = wave.grab().toImage();
        return image.pixelColor(3 + static_cast<int>(ms / wave.shownSpan() * 1000), 53 - static_cast<int>(height * 49));
    }
    static QPoint at(double ms) { return {3 + static_cast<int>(ms / 10), 53}; }
    void wheel(double ms, int notches) {
        const QPointF place(at(ms));
        QWheelEvent event(place, place, {}, {0, notches * 120}, Qt::NoButton, Qt::NoModifier, Qt::NoScrollPhase, false);
        QCoreApplication::sendEvent(&wave, &event);
    }

    Waveform wave;
    int asked = 0;
};

TEST_F(TheWaveform, StandsOnItsTimeAxis) {
    EXPECT_GT(pixel(1500, 0.4).lightness(), 120);
    EXPECT_LT(pixel(1500, 0.7).lightness(), 60) << "half as high as it could be";
    EXPECT_LT(pixel(500, 0.4).lightness(), 60);
    EXPECT_LT(pixel(2500, 0.4).lightness(), 60);
}

TEST_F(TheWaveform, WhatAStretchMeansIsSeenBehindIt) {
    wave.setZones(
        {{3000, QColor(80, 80, 255), "outro"}, {9000, QColor(255, 255, 0), "intro"}, {9000, Qt::red, "te lang"}});
    EXPECT_GT(pixel(200, -0.8).blue(), pixel(200, -0.8).red());
    EXPECT_GT(pixel(5000, -0.8).red(), pixel(5000, -0.8).blue());
    EXPECT_GT(pixel(5000, -0.8).green(), pixel(5000, -0.8).blue());
    EXPECT_GT(pixel(9800, -0.8).red(), pixel(9800, -0.8).green() + 20);
}

TEST_F(TheWaveform, ALongerSoundWidensTheAxisBySteps) {
    wave.setLength(9990);
    EXPECT_EQ(wave.shownSpan(), 10'000);
    wave.setLength(10'010);
    const double wider = wave.shownSpan();
    EXPECT_GT(wider, 11'000);
    wave.setLength(11'000);
    EXPECT_EQ(wave.shownSpan(), wider) << "it does not shrink all the time";
    wave.setLength(100);
    EXPECT_EQ(wave.shownSpan(), 10'000);
}

/// A hundred times a second, beside a recording.
TEST_F(TheWaveform, AGrowingSoundIsPaintedOnlyWhereItGrows) {
    test::PaintCount count(wave);
    count.take();
    wave.setLength(4100);
    EXPECT_EQ(count.take(), 1);
    EXPECT_LT(count.lastRegion().boundingRect().width(), 30);
    wave.setPosition(1000);
    wave.setPosition(1010);
    count.take();
    EXPECT_LT(count.lastRegion().boundingRect().width(), 30);
}

TEST_F(TheWaveform, AClickSaysWhereToListen) {
    QSignalSpy seek(&wave, &Waveform::seekWanted);
    QTest::mouseClick(&wave, Qt::LeftButton, {}, at(1500));
    ASSERT_EQ(seek.size(), 1);
    EXPECT_NEAR(seek.at(0).at(0).toDouble(), 1500, 11);
    QTest::mouseClick(&wave, Qt::LeftButton, {}, at(8000));
    EXPECT_EQ(seek.at(1).at(0).toDouble(), 4000) << "behind its end is its end";
    wave.setLength(0);
    QTest::mouseClick(&wave, Qt::LeftButton, {}, at(1500));
    EXPECT_EQ(seek.size(), 2);
}

TEST_F(TheWaveform, TheWheelZoomsAroundThePointer) {
    wheel(1500, 10);
    EXPECT_LT(wave.shownSpan(), 2000);
    EXPECT_NEAR(wave.shownFrom() + wave.shownSpan() * 0.15, 1500, 15) << "what is under the pointer stays there";
    wheel(1500, 200);
    EXPECT_GE(wave.shownSpan(), 50);
    wheel(1500, -400);
    EXPECT_EQ(wave.shownSpan(), 10'000);
    EXPECT_EQ(wave.shownFrom(), 0);
    wheel(5000, 5);
    QTest::mouseDClick(&wave, Qt::LeftButton, {}, at(9000));
    EXPECT_EQ(wave.shownSpan(), 10'000);
}

TEST_F(TheWaveform, HandlesCutBothEnds) {
    QSignalSpy cut(&wave, &Waveform::cutWanted);
    QSignalSpy scrub(&wave, &Waveform::scrubbed);
    QSignalSpy seek(&wave, &Waveform::seekWanted);
    wave.setCuttable(true);
    QTest::mousePress(&wave, Qt::LeftButton, {}, at(0));
    QTest::mouseMove(&wave, at(900));
    QTest::mouseRelease(&wave, Qt::LeftButton, {}, at(900));
    ASSERT_EQ(cut.size(), 1);
    EXPECT_NEAR(cut.at(0).at(0).toDouble(), 900, 11);
    EXPECT_EQ(cut.at(0).at(1).toDouble(), 4000);
    EXPECT_GE(scrub.size(), 1) << "what is cut is heard";
    EXPECT_EQ(seek.size(), 0);
    QTest::mousePress(&wave, Qt::LeftButton, {}, at(4000));
    QTest::mouseMove(&wave, at(-3000));
    QTest::mouseRelease(&wave, Qt::LeftButton, {}, at(-3000));
    ASSERT_EQ(cut.size(), 2);
    EXPECT_EQ(cut.at(1).at(0).toDouble(), 0);
    EXPECT_NEAR(cut.at(1).at(1).toDouble(), 50, 1) << "something stays";
}

TEST_F(TheWaveform, WhatMayNotBeCutHasNoHandles) {
    QSignalSpy cut(&wave, &Waveform::cutWanted);
    QTest::mousePress(&wave, Qt::LeftButton, {}, at(0));
    QTest::mouseMove(&wave, at(900));
    QTest::mouseRelease(&wave, Qt::LeftButton, {}, at(900));
    wave.setPosition(1000);
    QTest::keyClick(&wave, Qt::Key_BracketLeft);
    EXPECT_EQ(cut.size(), 0);
}

TEST_F(TheWaveform, KeysDoWhatTheMouseDoes) {
    QSignalSpy seek(&wave, &Waveform::seekWanted);
    QSignalSpy cut(&wave, &Waveform::cutWanted);
    wave.setCuttable(true);
    wave.setPosition(1000);
    QTest::keyClick(&wave, Qt::Key_Right);
    QTest::keyClick(&wave, Qt::Key_Left);
    ASSERT_EQ(seek.size(), 2);
    EXPECT_EQ(seek.at(0).at(0).toDouble(), 1100);
    EXPECT_EQ(seek.at(1).at(0).toDouble(), 900);
    QTest::keyClick(&wave, Qt::Key_BracketLeft);
    QTest::keyClick(&wave, Qt::Key_BracketRight);
    ASSERT_EQ(cut.size(), 2);
    EXPECT_EQ(cut.at(0), QVariantList({1000.0, 4000.0}));
    EXPECT_EQ(cut.at(1), QVariantList({0.0, 1000.0}));
    QTest::keyClick(&wave, Qt::Key_Plus);
    EXPECT_LT(wave.shownSpan(), 10'000);
    QTest::keyClick(&wave, Qt::Key_Minus);
    EXPECT_EQ(wave.shownSpan(), 10'000);
}

TEST_F(TheWaveform, TellsWhereItIs) {
    wave.setPosition(1234);
    EXPECT_EQ(wave.text(), "1,2 van 4,0 s");
    EXPECT_EQ(wave.maximum(), 4000);
}

/// The colour that is farthest from the pane's in a square around a place, and how far, by WCAG 2.
double contrastIn(const QImage &image, const QRect &square, QColor *found = nullptr) {
    const auto luminance = [](const QColor &colour) {
        const auto linear = [](double part) {
            return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
        };
        return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF()) + 0.0722 * linear(colour.blueF());
    };
    double lightest = 0;
    double darkest = 1;
    for (int y = square.top(); y <= square.bottom(); ++y) {
        for (int x = square.left(); x <= square.right(); ++x) {
            const double here = luminance(image.pixelColor(x, y));
            if (here > lightest && found != nullptr) {
                *found = image.pixelColor(x, y);
            }
            lightest = std::max(lightest, here);
            darkest = std::min(darkest, here);
        }
    }
    return (lightest + 0.05) / (darkest + 0.05);
}

class MarksInTheWaveform : public TheWaveform, public testing::WithParamInterface<ThemeVariant> {
  protected:
    MarksInTheWaveform() {
        applyTheme(*qApp, GetParam());
        wave.setZones({{3000, QColor(0x6E, 0x9B, 0xFF), {}}, {9000, QColor(0xF2, 0xD2, 0x3C), {}}});
        // As loud as can be, so that the marks stand in the brightest surroundings.
        wave.setSource([](double, double) { return Waveform::Column{-1, 1}; });
    }
    ~MarksInTheWaveform() override { applyTheme(*qApp, ThemeVariant::Dark); }
    [[nodiscard]] QImage picture() { return wave.grab().toImage().convertToFormat(QImage::Format_RGB32); }
    [[nodiscard]] bool differs(const QImage &before, double ms, int y) {
        return picture().pixel(at(ms).x(), y) != before.pixel(at(ms).x(), y);
    }
};

TEST_P(MarksInTheWaveform, SpeechIsABracketAndAClipATriangleOnALine) {
    const QImage plain = picture();
    wave.setMarks({{1000, 2000}}, {3500});
    const int bracketY = 106 - 3 - 8 - 1;
    for (const double inside : {1010.0, 1500.0, 1990.0}) {
        EXPECT_TRUE(differs(plain, inside, bracketY)) << inside;
    }
    EXPECT_TRUE(differs(plain, 1010, bracketY - 4)) << "its ends stand up";
    EXPECT_FALSE(differs(plain, 1500, bracketY - 4)) << "and it is open between them";
    for (const double outside : {900.0, 2100.0, 3400.0}) {
        EXPECT_FALSE(differs(plain, outside, bracketY)) << outside;
    }
    EXPECT_TRUE(differs(plain, 3500, 50)) << "the line";
    EXPECT_FALSE(differs(plain, 3460, 50));
    EXPECT_TRUE(differs(plain, 3470, 4)) << "the triangle is wide above";
    EXPECT_TRUE(differs(plain, 3530, 4));
    EXPECT_FALSE(differs(plain, 3460, 20));
    wave.setMarks({}, {});
    EXPECT_EQ(picture(), plain) << "and all of it goes";
}

TEST_P(MarksInTheWaveform, TheyStandOutOfWhatIsAroundThem) {
    wave.setMarks({{1000, 2000}, {5000, 6000}}, {3500, 7000});
    const QImage image = picture();
    for (const double ms : {1500.0, 5500.0}) {
        EXPECT_GE(contrastIn(image, {at(ms).x() - 2, 106 - 3 - 8 - 3, 4, 4}), 3) << ms;
    }
    // The line of a clip against the glass beside it, whatever sound is behind.
    for (const double ms : {3500.0, 7000.0}) {
        EXPECT_GE(contrastIn(image, {at(ms).x() - 2, 70, 4, 2}), 3) << ms;
    }
}

TEST_P(MarksInTheWaveform, AStretchThatGrowsIsPaintedOnlyWhereItGrows) {
    wave.setMarks({{100, 900}, {2000, 3000}}, {500});
    test::PaintCount count(wave);
    count.take();
    wave.setMarks({{100, 900}, {2000, 3040}}, {500});
    EXPECT_EQ(count.take(), 1);
    EXPECT_GE(count.lastRegion().boundingRect().left(), at(2900).x());
    wave.setMarks({{100, 900}, {2000, 3040}}, {500});
    EXPECT_EQ(count.take(), 0) << "nothing new";
}

INSTANTIATE_TEST_SUITE_P(BothThemes, MarksInTheWaveform, testing::Values(ThemeVariant::Dark, ThemeVariant::Light));

} // namespace

} // namespace orvel
