#include "tests/widgets/paint_count.h"
#include "widgets/dot_matrix.h"
#include "widgets/led_label.h"

#include <gtest/gtest.h>

namespace orvel {

namespace {

// A picture of the dots, to compare with one that a person can read.
std::string picture(const QString &text) {
    const std::vector<quint16> columns = dotColumns(text);
    std::string rows;
    for (unsigned row = 0; row < dotRows; ++row) {
        for (const quint16 column : columns) {
            rows += (column >> row & 1U) != 0 ? '#' : '.';
        }
        rows += '\n';
    }
    return rows;
}

TEST(DotMatrix, DrawsACapitalInSevenRows) {
    EXPECT_EQ(picture("A"), "......\n"
                            "......\n"
                            ".###..\n"
                            "#...#.\n"
                            "#...#.\n"
                            "#####.\n"
                            "#...#.\n"
                            "#...#.\n"
                            "#...#.\n"
                            "......\n"
                            "......\n");
}

TEST(DotMatrix, PutsAccentsAboveTheLetter) {
    EXPECT_EQ(picture(QString::fromUtf8("ëÉ")), "......"
                                                "...#..\n"
                                                ".#.#.."
                                                "..#...\n"
                                                "......"
                                                "#####.\n"
                                                "......"
                                                "#.....\n"
                                                ".###.."
                                                "#.....\n"
                                                "#...#."
                                                "####..\n"
                                                "#####."
                                                "#.....\n"
                                                "#....."
                                                "#.....\n"
                                                ".###.."
                                                "#####.\n"
                                                "......"
                                                "......\n"
                                                "......"
                                                "......\n");
}

TEST(DotMatrix, TakesTheDotOffAnAccentedI) {
    const std::string rows = picture(QString::fromUtf8("ï"));
    EXPECT_EQ(rows.substr(7, 6), ".#.#..");
    EXPECT_EQ(rows.substr(14, 6), "......");
}

TEST(DotMatrix, DrawsOtherWritingFromTheSystemsFonts) {
    const std::vector<quint16> columns = dotColumns(QString::fromUtf8("Ж€ß"));
    EXPECT_TRUE(std::any_of(columns.begin(), columns.end(), [](quint16 column) { return column != 0; }));
}

TEST(DotMatrix, SurvivesBrokenText) {
    EXPECT_TRUE(dotColumns("").empty());
    EXPECT_FALSE(dotColumns(QString(QChar(0xD800))).empty());
    EXPECT_FALSE(dotColumns(QString(QChar(0x0301))).empty());
    EXPECT_FALSE(dotColumns(QString(QChar(u'\n'))).empty());
}

TEST(LedLabel, IsAsWideAsItsCharacters) {
    LedLabel label;
    EXPECT_EQ(label.characters(), 24);
    const int wide = label.sizeHint().width();
    label.setCharacters(12);
    EXPECT_NEAR(label.sizeHint().width(), wide / 2.0, wide / 20.0);
}

TEST(LedLabel, StandsStillUnlessAutoScrollIsOn) {
    LedLabel label;
    label.setText("Een titel die langer is dan vierentwintig tekens");
    test::PaintCount paints(label);
    QTest::qWait(200);
    EXPECT_EQ(label.scrollOffset(), 0);
    EXPECT_EQ(paints.take(), 0);
}

TEST(LedLabel, ScrollsWhileItIsSeen) {
    LedLabel label;
    EXPECT_EQ(label.scrollSpeed(), 200);
    label.setScrollSpeed(12);
    label.setText("Een titel die langer is dan vierentwintig tekens");
    label.setAutoScroll(true);
    QTest::qWait(100);
    EXPECT_EQ(label.scrollOffset(), 0);
    label.show();
    EXPECT_TRUE(QTest::qWaitFor([&] { return label.scrollOffset() > 3; }, 3000));
    label.setAutoScroll(false);
    EXPECT_EQ(label.scrollOffset(), 0);
}

TEST(LedLabel, BeginsANewTextAtItsStart) {
    LedLabel label;
    label.setScrollSpeed(6);
    label.setText("Een titel die langer is dan vierentwintig tekens");
    label.setAutoScroll(true);
    label.show();
    EXPECT_TRUE(QTest::qWaitFor([&] { return label.scrollOffset() > 3; }, 3000));
    label.setText("Een andere titel, ook lang genoeg om te rollen");
    EXPECT_EQ(label.scrollOffset(), 0);
}

TEST(LedLabel, ComesRoundAgain) {
    LedLabel label;
    label.setScrollSpeed(6);
    label.setText("ab");
    label.setAutoScroll(true);
    label.show();
    int highest = 0;
    bool cameRound = false;
    EXPECT_TRUE(QTest::qWaitFor(
        [&] {
            cameRound = cameRound || label.scrollOffset() < highest;
            highest = std::max(highest, label.scrollOffset());
            return cameRound;
        },
        5000));
    EXPECT_LT(highest, (2 + 4) * dotColumnsPerCharacter);
}

} // namespace

} // namespace orvel
