#include "widgets/theme.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QPushButton>
#include <QTest>

#include <cmath>
#include <gtest/gtest.h>

namespace orvel {

namespace {

// Relative luminance and contrast ratio as WCAG 2 defines them.
double luminance(const QColor &colour) {
    const auto linear = [](double part) {
        return part <= 0.03928 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF()) + 0.0722 * linear(colour.blueF());
}

double contrast(ThemeRole first, ThemeRole second) {
    const double a = luminance(themeColour(first));
    const double b = luminance(themeColour(second));
    return (std::max(a, b) + 0.05) / (std::min(a, b) + 0.05);
}

class ThemeContrast : public testing::TestWithParam<ThemeVariant> {
  protected:
    void SetUp() override { applyTheme(*qApp, GetParam()); }
    void TearDown() override { applyTheme(*qApp, ThemeVariant::Dark); }
};

TEST_P(ThemeContrast, TextIsReadableOnEverySurface) {
    using enum ThemeRole;
    for (const ThemeRole surface : {Window, Panel, Raised, Field, Hover}) {
        EXPECT_GE(contrast(Text, surface), 7.0) << static_cast<int>(surface);
    }
    for (const ThemeRole surface : {Window, Panel, Raised, Field}) {
        EXPECT_GE(contrast(MutedText, surface), 4.5) << static_cast<int>(surface);
        EXPECT_GE(contrast(DisabledText, surface), 3.0) << static_cast<int>(surface);
    }
    EXPECT_GE(contrast(Attention, Window), 4.5);
    EXPECT_GE(contrast(Attention, Panel), 4.5);
    EXPECT_GE(contrast(AccentText, Accent), 4.5);
    EXPECT_GE(contrast(RecordText, Record), 4.5);
}

TEST_P(ThemeContrast, ThingsToOperateStandOutFromWhatTheyStandOn) {
    using enum ThemeRole;
    for (const ThemeRole surface : {Window, Panel, Raised, Field}) {
        EXPECT_GE(contrast(Border, surface), 2.9) << static_cast<int>(surface);
    }
    EXPECT_GE(contrast(Accent, Panel), 3.0);
    EXPECT_GE(contrast(Record, Panel), 2.9);
    EXPECT_LT(contrast(DisabledText, Panel), contrast(MutedText, Panel));
}

INSTANTIATE_TEST_SUITE_P(Both, ThemeContrast, testing::Values(ThemeVariant::Dark, ThemeVariant::Light),
                         [](const auto &test) { return test.param == ThemeVariant::Dark ? "Dark" : "Light"; });

TEST(Theme, IsDarkUnlessSomebodySaysLight) {
    EXPECT_EQ(chooseTheme("", std::nullopt), ThemeVariant::Dark);
    EXPECT_EQ(chooseTheme("", ThemeVariant::Light), ThemeVariant::Light);
    EXPECT_EQ(chooseTheme("", ThemeVariant::Dark), ThemeVariant::Dark);
    EXPECT_EQ(chooseTheme("light", ThemeVariant::Dark), ThemeVariant::Light);
    EXPECT_EQ(chooseTheme("DARK", ThemeVariant::Light), ThemeVariant::Dark);
    EXPECT_EQ(chooseTheme("nonsense", ThemeVariant::Light), ThemeVariant::Light);
}

TEST(Theme, MakesTheRecordButtonRedWhileRecording) {
    QPushButton button("START OPNAME");
    button.setProperty("role", "record");
    button.resize(button.sizeHint());
    const auto face = [&button] { return button.grab().toImage().pixelColor(12, button.height() / 2); };
    const QColor idle = face();
    setRecording(button, true);
    EXPECT_EQ(face(), themeColour(ThemeRole::Record));
    EXPECT_NE(idle, themeColour(ThemeRole::Record));
    setRecording(button, false);
    EXPECT_EQ(face(), idle);
}

TEST(Theme, KeepsAButtonsSizeWhenItIsFocused) {
    for (const char *role : {"", "record", "primary", "quiet"}) {
        QPushButton button("Bewaar");
        button.setProperty("role", role);
        button.show();
        button.activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(&button));
        button.clearFocus();
        const QSize before = button.sizeHint();
        button.setFocus();
        ASSERT_TRUE(button.hasFocus());
        EXPECT_EQ(button.sizeHint(), before) << role;
    }
}

TEST(Theme, TakesItsSizesFromTheFont) {
    const QFont normal = QApplication::font();
    const auto heights = [] {
        QCheckBox mark("aan");
        QComboBox list;
        QPushButton button("Bewaar");
        return QVector<int>{mark.sizeHint().height(), list.sizeHint().height(), button.sizeHint().height()};
    };
    const QVector<int> before = heights();
    QFont large = normal;
    large.setPointSizeF(normal.pointSizeF() * 2);
    QApplication::setFont(large);
    applyTheme(*qApp, ThemeVariant::Dark);
    const QVector<int> after = heights();
    QApplication::setFont(normal);
    applyTheme(*qApp, ThemeVariant::Dark);
    for (qsizetype i = 0; i < before.size(); ++i) {
        EXPECT_GT(after.at(i), before.at(i) * 3 / 2) << i;
    }
}

} // namespace

TEST(Letters, AreAsLargeAsTheDesktopWantsWhereTheScreenHasRoom) {
    QFont font = QApplication::font();
    for (const double points : {9.0, 12.0, 16.0}) {
        font.setPointSizeF(points);
        EXPECT_EQ(fittingFont(font, {1920, 1080}), font) << points;
    }
    font.setPointSizeF(9);
    EXPECT_EQ(fittingFont(font, {1000, 640}), font);
}

TEST(Letters, AreSmallerWhereTheMainWindowWouldNotFit) {
    QFont font = QApplication::font();
    font.setPointSizeF(16);
    const double small = fittingFont(font, {1000, 640}).pointSizeF();
    const double larger = fittingFont(font, {1280, 800}).pointSizeF();
    EXPECT_GT(small, 10);
    EXPECT_LT(small, larger);
    EXPECT_LE(larger, 16);
    font.setPixelSize(22);
    EXPECT_LT(fittingFont(font, {1000, 640}).pixelSize(), 22);
}

} // namespace orvel
