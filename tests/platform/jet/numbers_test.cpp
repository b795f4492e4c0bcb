#include "tests/platform/jet/built_file.h"

namespace orvel::test {
namespace {

constexpr std::uint8_t bigInteger = 19;
constexpr std::uint8_t decimalType = 16;
/// The first whole numbers that a double does not tell apart.
constexpr qint64 even = 9007199254740992;
constexpr qint64 odd = 9007199254740993;

QList<qint64> wholeNumbers(RecordSet &rows, int column) {
    QList<qint64> result;
    for (int row = 0; row < rows.recordCount(); ++row) {
        result += rows.value(row, column).toLongLong();
    }
    return result;
}

/// A catalogue whose numbers are decimals and big integers.
class LargeNumbers : public BuiltDatabase {
  protected:
    void SetUp() override {
        builder.columns = {
            {.name = "Nummer", .type = decimalType, .number = 0, .place = 0, .length = 17, .precision = 18},
            {.name = "Prijs", .type = decimalType, .number = 1, .place = 17, .length = 17, .precision = 18, .scale = 4},
            {.name = "Groot", .type = bigInteger, .number = 2, .place = 34, .length = 8},
        };
        builder.addRow(builder.row({{0, decimal(false, 0, 42)}, {1, decimal(true, 0, 123456)}, {2, little(even, 8)}}));
        builder.addRow(builder.row({}));
        builder.addRow(builder.row({{0, decimal(true, 0, 7)}, {1, decimal(false, 0, 50000)}, {2, little(odd, 8)}}));
        builder.addRow(builder.row({{0, decimal(false, 0, 10000000000)},
                                    {1, decimal(false, 0, 1)},
                                    {2, little(static_cast<std::uint64_t>(-5), 8)}}));
    }
};

INSTANTIATE_TEST_SUITE_P(Formats, LargeNumbers, ::testing::Bool(), formatName);

TEST_P(LargeNumbers, AreRead) {
    // Decimals and big integers read as null: a catalogue with such numbers looked empty.
    const BuiltFile file(builder);
    const auto rows = file.rows();
    EXPECT_EQ(rows->value(0, 0), QVariant(qint64{42}));
    EXPECT_EQ(rows->value(0, 0).toString(), QStringLiteral("42"));
    EXPECT_EQ(rows->value(0, 1), QVariant(-12.3456));
    EXPECT_EQ(rows->value(0, 2), QVariant(even));
    EXPECT_EQ(rows->value(2, 0), QVariant(qint64{-7}));
    EXPECT_EQ(rows->value(2, 1).toString(), QStringLiteral("5"));
    EXPECT_EQ(rows->value(2, 2).toString(), QStringLiteral("9007199254740993"));
    EXPECT_EQ(rows->value(3, 0), QVariant(qint64{10000000000}));
    EXPECT_EQ(rows->value(3, 1), QVariant(0.0001));
    for (const int column : {0, 1, 2}) {
        EXPECT_FALSE(rows->value(1, column).isValid());
    }
    const QStringList theirs = file.exportedRows();
    ASSERT_EQ(theirs.size(), 5);
    EXPECT_TRUE(theirs.at(1).startsWith(QStringLiteral("42,-12.3456,"))) << theirs.at(1).toStdString();
    EXPECT_TRUE(theirs.at(3).startsWith(QStringLiteral("-7,5.0000,"))) << theirs.at(3).toStdString();
    EXPECT_TRUE(theirs.at(4).startsWith(QStringLiteral("10000000000,0.0001,"))) << theirs.at(4).toStdString();
}

TEST_P(LargeNumbers, AreSelectedToTheLastDigit) {
    const BuiltFile file(builder);
    EXPECT_EQ(wholeNumbers(*file.rows("WHERE Nummer = 42"), 0), QList<qint64>{42});
    EXPECT_EQ(wholeNumbers(*file.rows("WHERE Nummer = -7"), 0), QList<qint64>{-7});
    EXPECT_EQ(wholeNumbers(*file.rows("WHERE Nummer = 10000000000"), 0), QList<qint64>{10000000000});
    EXPECT_EQ(wholeNumbers(*file.rows("WHERE Prijs = 5"), 0), QList<qint64>{-7});
    EXPECT_EQ(file.rows("WHERE Prijs = -12")->recordCount(), 0);
    EXPECT_EQ(wholeNumbers(*file.rows("WHERE Groot = 9007199254740993"), 2), QList<qint64>{odd});
    EXPECT_EQ(wholeNumbers(*file.rows("WHERE Groot = 9007199254740992"), 2), QList<qint64>{even});
}

TEST_P(LargeNumbers, AreFoundToTheLastDigit) {
    const BuiltFile file(builder);
    const auto rows = file.rows();
    EXPECT_TRUE(rows->findFirst(QStringLiteral("Nummer=-7")));
    EXPECT_EQ(rows->currentRow(), 2);
    EXPECT_TRUE(rows->findFirst(QStringLiteral("Groot=9007199254740993")));
    EXPECT_EQ(rows->currentRow(), 2);
    EXPECT_TRUE(rows->findFirst(QStringLiteral("Groot=-5")));
    EXPECT_EQ(rows->currentRow(), 3);
    EXPECT_FALSE(rows->findFirst(QStringLiteral("Groot=9007199254740994")));
    EXPECT_FALSE(rows->findFirst(QStringLiteral("Prijs=0")));
}

TEST_P(LargeNumbers, AreSortedBySize) {
    const BuiltFile file(builder);
    EXPECT_EQ(wholeNumbers(*file.rows("ORDER BY Nummer"), 0), (QList<qint64>{0, -7, 42, 10000000000}));
    EXPECT_EQ(wholeNumbers(*file.rows("ORDER BY Prijs"), 0), (QList<qint64>{0, 42, 10000000000, -7}));
    builder.addRow(builder.row({{2, little(even, 8)}}));
    const BuiltFile more(builder);
    EXPECT_EQ(wholeNumbers(*more.rows("ORDER BY Groot"), 2), (QList<qint64>{0, -5, even, even, odd}));
}

TEST_P(LargeNumbers, DecimalsAreWholeNumbersAsFarAsTheyFitElseTheNearestNumber) {
    builder = JetBuilder(GetParam());
    builder.columns = {
        {.name = "Een", .type = decimalType, .number = 0, .place = 0, .length = 17, .precision = 28, .scale = 2},
        {.name = "Nul", .type = decimalType, .number = 1, .place = 17, .length = 17, .precision = 28},
    };
    constexpr std::uint64_t ones = 0xffffffffffffffff;
    builder.addRow(builder.row({{0, decimal(false, 0, 900719925474099300)}, {1, decimal(true, 0, 0)}}));
    builder.addRow(builder.row({{0, decimal(true, 0xffffffff, ones)}, {1, decimal(false, 0, 0x7fffffffffffffff)}}));
    builder.addRow(builder.row({{0, decimal(false, 0, 5)}, {1, decimal(true, 0, 0x8000000000000000)}}));
    builder.addRow(builder.row({{0, decimal(false, ones, ones)}, {1, decimal(false, 0, 0x8000000000000000)}}));
    const auto rows = BuiltFile(builder).rows();
    EXPECT_EQ(rows->value(0, 0), QVariant(odd));
    EXPECT_EQ(rows->value(0, 1), QVariant(qint64{0}));
    EXPECT_EQ(rows->value(1, 0), QVariant(-792281625142643375935439503.35));
    EXPECT_EQ(rows->value(1, 1), QVariant(std::numeric_limits<qint64>::max()));
    EXPECT_EQ(rows->value(2, 0), QVariant(0.05));
    EXPECT_EQ(rows->value(2, 1), QVariant(std::numeric_limits<qint64>::min()));
    EXPECT_EQ(rows->value(3, 0), QVariant(3402823669209384634633746074317682114.55));
    EXPECT_EQ(rows->value(3, 1), QVariant(9223372036854775808.0));
}

TEST_P(LargeNumbers, ADecimalWithMoreDigitsThanThereCanBeIsDamage) {
    builder.columns[1].scale = 200;
    const auto rows = BuiltFile(builder).rows();
    EXPECT_EQ(errorOf([&] { (void)rows->value(0, 1); }), 3343);
}

TEST_P(LargeNumbers, DecimalsCannotBeChanged) {
    const auto rows = BuiltFile(builder).rows();
    rows->edit();
    EXPECT_EQ(errorOf([&] { rows->setField(0, 1); }), 3164);
}

} // namespace
} // namespace orvel::test
