// Which style a step's type has, and in which colours.
#include "playlist/step_types.h"

#include <gtest/gtest.h>

namespace orvel {

// Codes beside a range were taken for events, and 4 and 5 for each other, without a test that noticed.
TEST(StepTypes, EveryCodeHasItsStyle) {
    const auto named = [](int type, const char *style) { EXPECT_EQ(styleName(type).toStdString(), style) << type; };
    named(1, "Track");
    named(2, "Pres");
    named(3, "Jingle");
    named(4, "Event");
    named(5, "Tijd");
    for (const auto &[first, last, style] : {std::tuple{6, 9, ""},
                                             {10, 15, "Promo"},
                                             {16, 19, ""},
                                             {20, 25, "Event"},
                                             {26, 29, ""},
                                             {30, 34, "Event"},
                                             {35, 39, ""},
                                             {40, 47, "Event"},
                                             {48, 49, ""},
                                             {50, 52, "Event"},
                                             {53, 300, ""},
                                             {-5, 0, ""}}) {
        for (int type = first; type <= last; ++type) {
            named(type, style);
        }
    }
}

TEST(StepTypes, EveryKindHasItsOwnTwoColours) {
    Settings settings;
    settings.MusBack = 1;
    settings.MusTxt = 2;
    settings.PresBack = 3;
    settings.PresTxt = 4;
    settings.JingBack = 5;
    settings.jingTxt = 6;
    settings.TijdBack = 7;
    settings.TijdTxt = 8;
    settings.EventBack = 9;
    settings.EventTxt = 10;
    settings.RecBack = 11;
    settings.RecTxt = 12;
    const StepStyles wanted = {{QStringLiteral("Track"), {1, 2}},  {QStringLiteral("Pres"), {3, 4}},
                               {QStringLiteral("Jingle"), {5, 6}}, {QStringLiteral("Tijd"), {7, 8}},
                               {QStringLiteral("Event"), {9, 10}}, {QStringLiteral("Promo"), {11, 12}}};
    EXPECT_EQ(applyStepStyles(settings), wanted);
}

/// The rows' colours were all that told them apart, and most of them look alike to many.
TEST(StepTypes, EachKindHasASymbolAndAWordOfItsOwn) {
    QStringList symbols;
    QStringList words;
    for (const int type : {1, 2, 3, 4, 5, 10}) {
        const QStringList parts = kindLabel(type).split(u' ');
        ASSERT_EQ(parts.size(), 2) << type;
        symbols << parts.at(0);
        words << parts.at(1);
    }
    EXPECT_EQ(symbols.removeDuplicates(), 0);
    EXPECT_EQ(words.removeDuplicates(), 0);
    EXPECT_EQ(words.at(1), QStringLiteral("Link"));
    EXPECT_EQ(kindLabel(15), kindLabel(10)) << "advertising";
    EXPECT_EQ(kindLabel(47), kindLabel(4)) << "an event";
    EXPECT_EQ(kindLabel(99), QString());
}

} // namespace orvel
