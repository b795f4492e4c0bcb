#include "tests/platform/jet/built_file.h"

#include <QDateTime>

#include <cmath>

namespace orvel::test {
namespace {

INSTANTIATE_TEST_SUITE_P(Formats, BuiltDatabase, ::testing::Bool(), formatName);

TEST_P(BuiltDatabase, ReadsEveryTypeOfValue) {
    builder.columns = {
        {.name = "JaNee", .type = 1, .number = 0, .place = 0, .length = 1},
        {.name = "Byte", .type = 2, .number = 1, .place = 1, .length = 1},
        {.name = "Kort", .type = 3, .number = 2, .place = 2, .length = 2},
        {.name = "Lang", .type = 4, .number = 3, .place = 4, .length = 4},
        {.name = "Geld", .type = 5, .number = 4, .place = 8, .length = 8},
        {.name = "Enkel", .type = 6, .number = 5, .place = 16, .length = 4},
        {.name = "Dubbel", .type = 7, .number = 6, .place = 20, .length = 8},
        {.name = "Datum", .type = 8, .number = 7, .place = 28, .length = 8},
        {.name = "Tekst", .type = 10, .number = 8, .fixed = false, .place = 0, .length = 100},
        {.name = "Memo", .type = 12, .number = 9, .fixed = false, .place = 1},
    };
    const Bytes memo = text(u"kort verhaal");
    builder.addRow(builder.row({{0, {}},
                                {1, little(255, 1)},
                                {2, little(0xfffe, 2)},
                                {3, little(0x80000000, 4)},
                                {4, little(static_cast<std::uint64_t>(-123456), 8)},
                                {5, real32(0.5F)},
                                {6, real64(-1e300)},
                                {7, real64(-1.25)},
                                {8, text(u"caf\u00e9")},
                                {9, JetBuilder::memo(memo.size(), 0x80, 0, memo)}}));
    builder.addRow(builder.row({}));
    const BuiltFile file(builder);
    const auto rows = file.rows();
    ASSERT_EQ(rows->recordCount(), 2);
    EXPECT_EQ(rows->value(0, 0), QVariant(true));
    EXPECT_EQ(rows->value(0, 1), QVariant(255));
    EXPECT_EQ(rows->value(0, 2), QVariant(-2));
    EXPECT_EQ(rows->value(0, 3), QVariant(std::numeric_limits<qint32>::min()));
    EXPECT_EQ(rows->value(0, 4), QVariant(-12.3456));
    EXPECT_EQ(rows->value(0, 5), QVariant(0.5));
    EXPECT_EQ(rows->value(0, 6), QVariant(-1e300));
    // The fraction is the time of day, before the first day too.
    EXPECT_EQ(rows->value(0, 7).toDateTime(), QDateTime(QDate(1899, 12, 29), QTime(6, 0), Qt::UTC));
    EXPECT_EQ(rows->value(0, 8).toString(), QStringLiteral("café"));
    EXPECT_EQ(rows->value(0, 9).toString(), QStringLiteral("kort verhaal"));
    EXPECT_EQ(rows->value(1, 0), QVariant(false));
    for (int column = 1; column < rows->fieldCount(); ++column) {
        EXPECT_FALSE(rows->value(1, column).isValid()) << column;
    }
    const QStringList theirs = exported(file.path(), QStringLiteral("Proef"));
    ASSERT_EQ(theirs.size(), 3);
    EXPECT_TRUE(theirs.at(1).startsWith(QStringLiteral("1,255,-2,-2147483648,-12.3456,0.5,-1e+300,")))
        << theirs.at(1).toStdString();
    EXPECT_TRUE(theirs.at(1).endsWith(QStringLiteral("\"café\",\"kort verhaal\""))) << theirs.at(1).toStdString();
}

TEST_P(BuiltDatabase, ReadsMemosWhereverTheyStand) {
    builder.columns = {{.name = "Memo", .type = 12, .number = 0, .fixed = false, .place = 0}};
    const Bytes all = text(u"Dit verhaal staat in stukken.");
    const Bytes head(all.begin(), all.begin() + 10);
    const Bytes tail(all.begin() + 10, all.end());
    const std::uint32_t whole = builder.addLongValue(all);
    const std::uint32_t last = builder.addLongValue(little(0, 4) + tail);
    const std::uint32_t first = builder.addLongValue(little(last, 4) + head);
    builder.addRow(builder.row({{0, JetBuilder::memo(all.size(), 0x40, whole)}}));
    builder.addRow(builder.row({{0, JetBuilder::memo(all.size(), 0x00, first)}}));
    builder.addRow(builder.row({{0, JetBuilder::memo(0, 0x80)}}));
    const BuiltFile file(builder);
    const auto rows = file.rows();
    ASSERT_EQ(rows->recordCount(), 3);
    EXPECT_EQ(rows->value(0, 0).toString(), QStringLiteral("Dit verhaal staat in stukken."));
    EXPECT_EQ(rows->value(1, 0).toString(), QStringLiteral("Dit verhaal staat in stukken."));
    EXPECT_EQ(rows->value(2, 0), QVariant(QString()));
    EXPECT_TRUE(rows->value(2, 0).isValid());
    const QString quoted = QStringLiteral("\"Dit verhaal staat in stukken.\"");
    EXPECT_EQ(exported(file.path(), QStringLiteral("Proef")).mid(1, 2), QStringList({quoted, quoted}));
}

TEST_P(BuiltDatabase, AMemoThatPointsAstrayIsAnErrorNotACrash) {
    builder.columns = {{.name = "Memo", .type = 12, .number = 0, .fixed = false, .place = 0}};
    const std::uint32_t loop = builder.addLongValue(little(0x500, 4));
    const std::uint32_t circle = builder.addLongValue(little((5U << 8) | 1U, 4) + Bytes(1));
    builder.addRow(builder.row({{0, JetBuilder::memo(100, 0x00, loop)}}));
    builder.addRow(builder.row({{0, JetBuilder::memo(100, 0x40, 0xffffff00)}}));
    builder.addRow(builder.row({{0, JetBuilder::memo(0x3fffffff, 0x00, circle)}}));
    builder.addRow(builder.row({{0, JetBuilder::memo(100, 0x80)}}));
    builder.addRow(builder.row({{0, Bytes(5)}}));
    const auto rows = BuiltFile(builder).rows();
    for (int row = 0; row < rows->recordCount(); ++row) {
        EXPECT_EQ(errorOf([&] { (void)rows->value(row, 0); }), 3343) << row;
    }
}

TEST_P(BuiltDatabase, CountsDeletedColumns) {
    // Columns 1 and 3 have been deleted: their bits and places stay, and the last one shows before the first.
    builder.columnCount = 5;
    builder.columns = {
        {.name = "Vlag", .type = 1, .number = 4, .place = 0, .length = 1, .position = 0},
        {.name = "Getal", .type = 4, .number = 0, .place = 0, .length = 4, .position = 1},
        {.name = "Tekst", .type = 10, .number = 2, .fixed = false, .place = 1, .length = 100, .position = 2},
    };
    builder.addRow(builder.row({{0, little(7, 4)}, {2, text(u"zeven")}, {4, {}}}));
    builder.addRow(builder.row({{0, little(8, 4)}, {2, text(u"acht")}}));
    const auto rows = BuiltFile(builder).rows();
    EXPECT_EQ(rows->fieldName(0), QStringLiteral("Vlag"));
    EXPECT_EQ(rows->value(0, 0), QVariant(true));
    EXPECT_EQ(rows->value(0, 1), QVariant(7));
    EXPECT_EQ(rows->value(0, 2), QVariant(QStringLiteral("zeven")));
    EXPECT_EQ(rows->value(1, 0), QVariant(false));
}

TEST_P(BuiltDatabase, ARowOlderThanAColumnHasNoValueThere) {
    builder.columns = {
        {.name = "Getal", .type = 4, .number = 0, .place = 0, .length = 4},
        {.name = "Nieuw", .type = 4, .number = 1, .place = 4, .length = 4},
        {.name = "Vlag", .type = 1, .number = 2, .place = 0, .length = 1},
    };
    builder.addRow(builder.row({{0, little(7, 4)}, {1, little(9, 4)}, {2, {}}}, 1));
    const auto rows = BuiltFile(builder).rows();
    EXPECT_EQ(rows->value(0, 0), QVariant(7));
    EXPECT_FALSE(rows->value(0, 1).isValid());
    EXPECT_EQ(rows->value(0, 2), QVariant(false));
}

TEST_P(BuiltDatabase, ANullNumberForWhichTheRowHasNoPlaceGetsOne) {
    // The row ends its fixed values early, as some writers do for nulls at the end: text stands where the number goes.
    builder.columns = {
        {.name = "Getal", .type = 4, .number = 0, .place = 0, .length = 4},
        {.name = "Tekst", .type = 10, .number = 1, .fixed = false, .place = 0, .length = 100},
    };
    JetBuilder withLater(GetParam());
    withLater.columns = builder.columns;
    withLater.columns.push_back({.name = "Later", .type = 4, .number = 2, .place = 4, .length = 4});
    JetBuilder expected = withLater;
    const JetBuilder::Values values{{0, little(7, 4)}, {1, text(u"tekst op die plek")}};
    withLater.addRow(builder.row(values, 3));
    const BuiltFile file(withLater);
    const auto rows = file.rows();
    EXPECT_EQ(rows->value(0, 1).toString(), QStringLiteral("tekst op die plek"));
    EXPECT_FALSE(rows->value(0, 2).isValid());
    rows->edit();
    rows->setField(2, 5);
    rows->update();
    JetBuilder::Values with5 = values;
    with5[2] = little(5, 4);
    expected.addRow(expected.row(with5));
    EXPECT_EQ(file.content(), BuiltFile(expected).content());
    EXPECT_EQ(file.exportedRows(), exportLines(*rows));
}

TEST_P(BuiltDatabase, WritesEveryTypeOfNumber) {
    builder.columns = {
        {.name = "Byte", .type = 2, .number = 0, .place = 0, .length = 1},
        {.name = "Kort", .type = 3, .number = 1, .place = 1, .length = 2},
        {.name = "Lang", .type = 4, .number = 2, .place = 3, .length = 4},
        {.name = "Geld", .type = 5, .number = 3, .place = 7, .length = 8},
        {.name = "Enkel", .type = 6, .number = 4, .place = 15, .length = 4},
        {.name = "Dubbel", .type = 7, .number = 5, .place = 19, .length = 8},
        {.name = "Teller", .type = 4, .number = 6, .place = 27, .length = 4, .flags = 0x06},
        {.name = "Groot", .type = 19, .number = 7, .place = 31, .length = 8},
    };
    builder.addRow(builder.row({{6, little(1, 4)}}));
    JetBuilder expected(GetParam());
    expected.columns = builder.columns;
    expected.addRow(builder.row({{0, little(200, 1)},
                                 {1, little(0x8000, 2)},
                                 {2, little(0xfffffffe, 4)},
                                 {3, little(static_cast<std::uint64_t>(-25001), 8)},
                                 {4, real32(1.5F)},
                                 {5, real64(0.1)},
                                 {6, little(1, 4)},
                                 {7, little(static_cast<std::uint64_t>(-9007199254740992), 8)}}));
    const BuiltFile file(builder);
    const auto rows = file.rows();
    rows->edit();
    const QVariantList values{200, -32768, -2.0, -2.5001, 1.5, 0.1};
    for (int column = 0; column < values.size(); ++column) {
        rows->setField(column, values.at(column));
    }
    rows->setField(7, -9007199254740992.0);
    rows->update();
    EXPECT_EQ(readAll(file.path()), readAll(BuiltFile(expected).path()));
    EXPECT_EQ(rows->value(0, 3), QVariant(-2.5001));

    rows->edit();
    EXPECT_EQ(errorOf([&] { rows->setField(0, 256); }), 6);
    EXPECT_EQ(errorOf([&] { rows->setField(0, -1); }), 6);
    EXPECT_EQ(errorOf([&] { rows->setField(1, 32768); }), 6);
    EXPECT_EQ(errorOf([&] { rows->setField(2, 2147483647.5); }), 6);
    EXPECT_EQ(errorOf([&] { rows->setField(3, 1e15); }), 6);
    EXPECT_EQ(errorOf([&] { rows->setField(4, 1e39); }), 6);
    EXPECT_EQ(errorOf([&] { rows->setField(5, std::nan("")); }), 6);
    EXPECT_EQ(errorOf([&] { rows->setField(6, 2); }), 3164); // a counter
    EXPECT_EQ(errorOf([&] { rows->setField(7, 9007199254740994.0); }), 6);
}

TEST_P(BuiltDatabase, FollowsMovedRowsAndSkipsWhatIsHidden) {
    builder.columns = {{.name = "Getal", .type = 4, .number = 0, .place = 0, .length = 4}};
    const auto number = [&](unsigned value) { return builder.row({{0, little(value, 4)}}); };
    builder.addRow(number(1));
    const std::uint32_t target = builder.addRow(number(2), hiddenFlag);
    const std::uint32_t halfway = builder.addRow(little(target, 4), hiddenFlag | movedFlag);
    builder.addRow(little(halfway, 4), movedFlag);
    builder.addRow(number(3), hiddenFlag); // deleted
    builder.addRow(little(target, 4), hiddenFlag | movedFlag);
    const BuiltFile file(builder);
    const auto rows = file.rows("ORDER BY Getal");
    ASSERT_EQ(rows->recordCount(), 2);
    EXPECT_EQ(rows->value(1, 0), QVariant(2));
    rows->moveLast();
    rows->edit();
    rows->setField(0, 9);
    rows->update();
    EXPECT_EQ(file.rows("ORDER BY Getal")->value(1, 0), QVariant(9));
}

TEST_P(BuiltDatabase, AMoveInACircleIsDamage) {
    builder.columns = {{.name = "Getal", .type = 4, .number = 0, .place = 0, .length = 4}};
    const std::uint32_t here = builder.addRow(little(0, 4), movedFlag);
    JetBuilder circle(GetParam());
    circle.columns = builder.columns;
    circle.addRow(little(here, 4), movedFlag);
    EXPECT_EQ(errorOf([&] { (void)BuiltFile(circle).rows(); }), 3343);
    EXPECT_EQ(errorOf([&] { (void)BuiltFile(builder).rows(); }), 3343);
}

TEST_P(BuiltDatabase, ReadsMapsOfMapsAndManyPages) {
    builder.columns = {{.name = "Getal", .type = 4, .number = 0, .place = 0, .length = 4}};
    builder.mapOfMaps = true;
    for (unsigned i = 0; i < 500; ++i) {
        if (i % 100 == 0) {
            builder.startPage();
        }
        builder.addRow(builder.row({{0, little(500 - i, 4)}}));
    }
    const BuiltFile file(builder);
    const auto rows = file.rows("ORDER BY Getal");
    ASSERT_EQ(rows->recordCount(), 500);
    EXPECT_EQ(rows->value(499, 0), QVariant(500));
    EXPECT_EQ(exported(file.path(), QStringLiteral("Proef")).size(), 501);
}

TEST_P(BuiltDatabase, ReadsDefinitionsOverSeveralPages) {
    for (std::uint16_t i = 0; i < 200; ++i) {
        const auto place = static_cast<std::uint16_t>(2 * i);
        builder.columns.push_back({.name = "Een kolom met een behoorlijk lange naam " + std::to_string(i),
                                   .type = 3,
                                   .number = i,
                                   .place = place,
                                   .length = 2});
    }
    builder.addRow(builder.row({{0, little(1, 2)}, {199, little(199, 2)}}));
    const auto rows = BuiltFile(builder).rows();
    ASSERT_EQ(rows->fieldCount(), 200);
    EXPECT_EQ(rows->fieldName(199), QStringLiteral("Een kolom met een behoorlijk lange naam 199"));
    EXPECT_EQ(rows->value(0, 199), QVariant(199));
    EXPECT_FALSE(rows->value(0, 198).isValid());
}

TEST_P(BuiltDatabase, ReadsAndWritesEncodedFiles) {
    builder.columns = {
        {.name = "Vlag", .type = 1, .number = 0, .place = 0, .length = 1},
        {.name = "Tekst", .type = 10, .number = 1, .fixed = false, .place = 0, .length = 100},
    };
    builder.key = 0x12345678;
    builder.addRow(builder.row({{1, text(u"gecodeerd")}}));
    const BuiltFile file(builder);
    EXPECT_FALSE(readAll(file.path()).contains("gecodeerd"));
    EXPECT_EQ(exported(file.path(), QStringLiteral("Proef")).at(1), QStringLiteral("0,\"gecodeerd\""));
    const auto rows = file.rows();
    EXPECT_EQ(rows->value(0, 1).toString(), QStringLiteral("gecodeerd"));
    const QByteArray before = readAll(file.path());
    rows->edit();
    rows->setField(0, true);
    rows->update();
    const QByteArray after = readAll(file.path());
    qsizetype changed = 0;
    for (qsizetype i = 0; i < before.size(); ++i) {
        changed += before.at(i) != after.at(i) ? 1 : 0;
    }
    EXPECT_EQ(changed, 1);
    EXPECT_EQ(exported(file.path(), QStringLiteral("Proef")).at(1), QStringLiteral("1,\"gecodeerd\""));
}

TEST_P(BuiltDatabase, RefusesAFieldOfAnIndex) {
    builder.columns = {
        {.name = "Sleutel", .type = 4, .number = 0, .place = 0, .length = 4},
        {.name = "Getal", .type = 4, .number = 1, .place = 4, .length = 4},
    };
    builder.indexed = {0};
    builder.addRow(builder.row({{0, little(1, 4)}, {1, little(2, 4)}}));
    const BuiltFile file(builder);
    const auto rows = file.rows();
    rows->edit();
    EXPECT_EQ(errorOf([&] { rows->setField(0, 5); }), 3164);
    rows->setField(1, 5);
    rows->update();
    EXPECT_EQ(rows->value(0, 0), QVariant(1));
    EXPECT_EQ(rows->value(0, 1), QVariant(5));
}

TEST_P(BuiltDatabase, ValuesOfOtherTypesAreToldToBeUnreadable) {
    // They read as null: a field that had a value looked empty, and a search in it found nothing without a word.
    builder.columns = {
        {.name = "Guid", .type = 15, .number = 0, .place = 0, .length = 16},
        {.name = "Ole", .type = 11, .number = 1, .fixed = false, .place = 0},
    };
    builder.addRow(builder.row({{0, Bytes(16, 7)}, {1, Bytes(12)}}));
    builder.addRow(builder.row({}));
    const BuiltFile file(builder);
    const auto rows = file.rows();
    for (const int column : {0, 1}) {
        EXPECT_EQ(rows->value(0, column), QVariant(QStringLiteral("(niet leesbaar)")));
        EXPECT_FALSE(rows->value(1, column).isValid());
    }
    EXPECT_EQ(errorOf([&] { rows->findFirst(QStringLiteral("Guid=7")); }), 13);
    EXPECT_EQ(errorOf([&] { (void)file.rows("WHERE Ole = 0"); }), 13);
    rows->edit();
    EXPECT_EQ(errorOf([&] { rows->setField(0, 1); }), 3164);
}

TEST(Jet3Rows, UseTheJumpTableBeyond256Bytes) {
    JetBuilder builder(true);
    for (std::uint16_t i = 0; i < 6; ++i) {
        builder.columns.push_back(
            {.name = "T" + std::to_string(i), .type = 10, .number = i, .fixed = false, .place = i, .length = 255});
    }
    QStringList expected;
    // Every length of the first text moves the borders of 256 to other columns.
    for (std::size_t length = 0; length < 256; length += 5) {
        JetBuilder::Values values;
        QStringList texts;
        for (std::uint16_t i = 0; i < 6; ++i) {
            const std::string text(i == 0 ? length : 120U + i, static_cast<char>('a' + i));
            values[i] = plain(text);
            texts +=
                length == 0 && i == 0 ? QString() : QLatin1Char('"') + QString::fromStdString(text) + QLatin1Char('"');
        }
        builder.addRow(builder.row(values));
        expected += texts.join(QLatin1Char(','));
    }
    const BuiltFile file(builder);
    const QStringList ours = exportLines(*file.rows());
    EXPECT_EQ(ours.mid(1), expected);
    EXPECT_EQ(exported(file.path(), QStringLiteral("Proef")), ours);
}

TEST(Jet4Text, SwitchesBetweenCompressedAndPlain) {
    JetBuilder builder(false);
    builder.columns = {{.name = "Tekst", .type = 10, .number = 0, .fixed = false, .place = 0, .length = 100}};
    const Bytes mark{0xff, 0xfe};
    builder.addRow(builder.row({{0, mark + plain("abc")}}));
    builder.addRow(builder.row({{0, mark + plain("ab") + Bytes{0} + utf16(u"\u591c\u99c5") + Bytes{0} + plain("c")}}));
    builder.addRow(builder.row({{0, mark}}));
    builder.addRow(builder.row({{0, utf16(u"\u591c")}}));
    // A half character at the end is dropped.
    builder.addRow(builder.row({{0, mark + Bytes{0} + utf16(u"\u591c") + Bytes{0x41}}}));
    builder.addRow(builder.row({{0, Bytes{0x41}}}));
    const auto rows = BuiltFile(builder).rows();
    const QStringList expected{QStringLiteral("abc"), QStringLiteral("ab夜駅c"), QString(),
                               QStringLiteral("夜"),  QStringLiteral("夜"),      QString()};
    for (int row = 0; row < expected.size(); ++row) {
        EXPECT_EQ(rows->value(row, 0).toString(), expected.at(row)) << row;
    }
}

} // namespace
} // namespace orvel::test
