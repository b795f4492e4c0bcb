// Which recording card is taken at the start, and which one is stored at the end.
#include "platform/fake/fake_sound_card.h"
#include "recording/cards.h"

#include <gtest/gtest.h>

namespace orvel {

namespace {

const ListedCard mic{QStringLiteral("Microfoon"), 1, true};
const ListedCard mixer{QStringLiteral("Mengtafel"), 2, true};
const ListedCard monitor{QStringLiteral("Monitor"), 2, false};

StoredCard stored(int position, const char *name = "") {
    return {position, QString::fromLatin1(name)};
}

std::string text(const StoredCard &card) {
    return (QString::number(card.position) + u' ' + card.name).toStdString();
}

} // namespace

TEST(CardChoice, TheStoredNameDecidesAndItsPlaceIsLearnt) {
    CardChoice choice;
    EXPECT_EQ(choice.begin(stored(0, "Mengtafel"), {mic, mixer}).position, 1);
    EXPECT_EQ(text(choice.toStore()), "1 Mengtafel");
    EXPECT_EQ(choice.begin(stored(0, "Monitor"), {mic, monitor}).position, 1) << "the presenter chose it by its name";
    EXPECT_EQ(choice.begin(stored(1, "Twee  woorden"), {mic}).position, 0) << "names are stored in one line";
    EXPECT_EQ(choice.begin(stored(1, "Een kaart"), {mic, {QStringLiteral("Een\n kaart"), 2, true}}).position, 1);
}

TEST(CardChoice, WithoutANameThePositionDecidesAndTheNameIsLearnt) {
    CardChoice choice;
    const auto [position, sentence] = choice.begin(stored(1), {mic, mixer});
    EXPECT_EQ(position, 1);
    EXPECT_TRUE(sentence.isEmpty());
    EXPECT_EQ(text(choice.toStore()), "1 Mengtafel");
}

TEST(CardChoice, AStoredCardThatIsAwayIsToldAndStaysTheStoredOne) {
    CardChoice choice;
    const auto [position, sentence] = choice.begin(stored(1, "Mengtafel"), {mic});
    EXPECT_EQ(position, 0);
    EXPECT_EQ(sentence, QStringLiteral("De opnamekaart Mengtafel is er niet; er wordt opgenomen met Microfoon."));
    EXPECT_EQ(text(choice.toStore()), "1 Mengtafel");
    choice.choose(0, mic);
    EXPECT_EQ(text(choice.toStore()), "0 Microfoon") << "the presenter chose another one";
}

// Only a card whose name was known stayed the stored one: a position was forgotten at the end of the program.
TEST(CardChoice, AStoredPositionWithNothingToRecordFromStaysTheStoredOne) {
    for (const auto &[place, cards] : std::vector<std::pair<int, std::vector<ListedCard>>>{
             {3, {mic, mixer}}, {1, {mic, monitor}}, {-1, {mic}}, {1, {mic}}}) {
        CardChoice choice;
        const auto [position, sentence] = choice.begin(stored(place), cards);
        EXPECT_EQ(position, 0) << place;
        EXPECT_FALSE(sentence.isEmpty()) << place;
        EXPECT_EQ(text(choice.toStore()), QString::number(place).toStdString() + " ");
    }
    CardChoice choice;
    EXPECT_EQ(choice.begin(stored(3), {mic}).sentence,
              QStringLiteral("De opnamekaart op plaats 4 van de lijst is er niet; er wordt opgenomen met Microfoon."));
}

// When another card was plugged in, the one that stood in for the stored card was taken for the presenter's choice.
TEST(CardChoice, OnlyTheStoredCardsOwnPlaceIsFollowed) {
    CardChoice choice;
    choice.begin(stored(1, "Mengtafel"), {mic});
    choice.follow(1, mic);
    EXPECT_EQ(text(choice.toStore()), "1 Mengtafel");
    choice.begin(stored(0, "Microfoon"), {mic});
    choice.follow(1, mic);
    EXPECT_EQ(text(choice.toStore()), "1 Microfoon");
    CardChoice nameless;
    nameless.begin(stored(3), {mic});
    nameless.follow(1, mic);
    EXPECT_EQ(text(nameless.toStore()), "3 ");
}

TEST(ListedCards, AreThoseThatCanRecordWithInputsFirst) {
    Card out{QStringLiteral("m"), QStringLiteral("Monitor"), {QStringLiteral("Uitgang")}};
    out.isMonitor = true;
    FakeSoundCard sound({out,
                         {QStringLiteral("a"), QStringLiteral("Een"), {QStringLiteral("Ingang")}},
                         {QStringLiteral("b"), QStringLiteral("Twee"), {QStringLiteral("Ingang")}}});
    QStringList lines;
    for (const ListedCard &card : listedCards(sound.audioRecord())) {
        lines << QStringLiteral("%1 %2 %3").arg(card.device).arg(card.name, card.isInput ? u"in" : u"uit");
    }
    EXPECT_EQ(lines.join(u','), QStringLiteral("1 Een in,2 Twee in,3 Monitor uit"));
}

} // namespace orvel
