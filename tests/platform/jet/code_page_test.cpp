#include "tests/platform/jet/built_file.h"

namespace orvel::test {
namespace {

QString textIn(std::uint16_t codePage, const std::string &bytes) {
    JetBuilder builder(true);
    builder.codePage = codePage;
    builder.columns = {{.name = "Titel", .type = 10, .number = 0, .fixed = false, .place = 0, .length = 100}};
    builder.addRow(builder.row({{0, plain(bytes)}}));
    const BuiltFile file(builder);
    return file.rows()->value(0, 0).toString();
}

TEST(Jet3CodePages, TextIsReadInTheCodePageOfTheHeader) {
    // Whatever the header said, text was read as Latin letters.
    EXPECT_EQ(textIn(1256, "\xe3\xd1\xcd\xc8\xc7"), QStringLiteral("مرحبا"));
    EXPECT_EQ(textIn(1251, "\xcd\xee\xf7\xfc"), QStringLiteral("Ночь"));
    EXPECT_EQ(textIn(1253, "\xed\xfd\xf7\xf4\xe1"), QStringLiteral("νύχτα"));
    EXPECT_EQ(textIn(1250, "\xb3\xf3\xec"), QStringLiteral("łóě"));
    EXPECT_EQ(textIn(874, "\xca\xc7"), QStringLiteral("สว"));
    EXPECT_EQ(textIn(932, "\x96\xe9\x82\xcc\x89\x77 A"), QStringLiteral("夜の駅 A"));
    EXPECT_EQ(textIn(1252, "caf\xe9 \x80\x35"), QStringLiteral("café €5"));
}

TEST(Jet3CodePages, AnUnknownOneIsTakenForThatOfTheWest) {
    for (const std::uint16_t codePage : std::initializer_list<std::uint16_t>{0, 1, 65535}) {
        EXPECT_EQ(textIn(codePage, "caf\xe9 \x80\x35"), QStringLiteral("café €5")) << codePage;
    }
}

TEST(Jet3CodePages, BytesThatACodePageDoesNotHaveKeepTheirNumber) {
    EXPECT_EQ(textIn(1252, "a\x81z"), QStringLiteral("a\u0081z"));
    // A character of two bytes that stops after the first.
    EXPECT_EQ(textIn(932, "a\x96"), QStringLiteral("a\u0096"));
    EXPECT_EQ(textIn(1256, ""), QString());
}

TEST(Jet3CodePages, ALetterThatCouldStillGetAnAccentIsNotLost) {
    EXPECT_EQ(textIn(1258, "Ti\xea\xec ng"), QStringLiteral("Tiế ng"));
    EXPECT_EQ(textIn(1258, "nh\xe2"), QStringLiteral("nhâ"));
    EXPECT_EQ(textIn(1258, "a\x8az"), QStringLiteral("a\u008az"));
}

TEST(Jet3CodePages, TablesAndFieldsAreFoundByTheirNamesInIt) {
    JetBuilder builder(true);
    builder.codePage = 1256;
    builder.columns = {
        {.name = "\xd1\xde\xe3", .type = 4, .number = 0, .place = 0, .length = 4},
        {.name = "Titel", .type = 10, .number = 1, .fixed = false, .place = 0, .length = 100},
    };
    builder.addRow(builder.row({{0, little(2, 4)}, {1, plain("\xc8")}}));
    builder.addRow(builder.row({{0, little(1, 4)}, {1, plain("\xc7")}}));
    const BuiltFile file(builder);
    const auto rows = file.rows();
    EXPECT_EQ(rows->fieldName(0), QStringLiteral("رقم"));
    EXPECT_TRUE(rows->findFirst(QStringLiteral("[رقم]=1")));
    EXPECT_EQ(rows->currentRow(), 1);
    EXPECT_EQ(file.rows("ORDER BY Titel")->value(0, 1).toString(), QStringLiteral("ا"));
    EXPECT_EQ(exportLines(*rows), file.exportedRows());
}

TEST(Jet3CodePages, MemosAreInItToo) {
    JetBuilder builder(true);
    builder.codePage = 1251;
    builder.columns = {{.name = "Memo", .type = 12, .number = 0, .fixed = false, .place = 0}};
    const Bytes text = plain("\xcd\xee\xf7\xfc");
    builder.addRow(builder.row({{0, JetBuilder::memo(text.size(), 0x80, 0, text)}}));
    EXPECT_EQ(BuiltFile(builder).rows()->value(0, 0).toString(), QStringLiteral("Ночь"));
}

TEST(Jet4CodePages, TheHeadersIsOfNoAccount) {
    JetBuilder builder(false);
    builder.codePage = 1256;
    builder.columns = {{.name = "Titel", .type = 10, .number = 0, .fixed = false, .place = 0, .length = 100}};
    builder.addRow(builder.row({{0, Bytes{0xff, 0xfe} + plain("caf\xe9")}}));
    EXPECT_EQ(BuiltFile(builder).rows()->value(0, 0).toString(), QStringLiteral("café"));
}

} // namespace
} // namespace orvel::test
