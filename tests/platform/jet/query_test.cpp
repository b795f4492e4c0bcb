#include "platform/query.h"
#include "tests/platform/jet/jet_test_support.h"

#include <QDateTime>

#include <cmath>

namespace orvel::test {
namespace {

TEST(QueryParsing, ReadsTheFiveStatementsOfTheSystem) {
    const Query byType = Query::parse(QStringLiteral("SELECT * FROM Steps WHERE [Type] = 2"));
    EXPECT_EQ(byType.table, QStringLiteral("Steps"));
    ASSERT_TRUE(byType.where);
    EXPECT_EQ(byType.where->field, QStringLiteral("Type"));
    EXPECT_EQ(byType.where->value, 2);
    EXPECT_EQ(byType.orderBy, QString());
    EXPECT_EQ(Query::parse(QStringLiteral("SELECT * FROM Steps ORDER BY [Stap]")).orderBy, QStringLiteral("Stap"));
    EXPECT_EQ(Query::parse(QStringLiteral("SELECT * From Audio ORDER BY TrackNr")).table, QStringLiteral("Audio"));
    EXPECT_EQ(Query::parse(QStringLiteral("SELECT * From jingles ORDER BY TrackNr")).orderBy,
              QStringLiteral("TrackNr"));
    EXPECT_EQ(Query::parse(QStringLiteral("SELECT * FROM Stations ORDER BY [Stationname]")).orderBy,
              QStringLiteral("Stationname"));
}

TEST(QueryParsing, IsNotParticularAboutCaseAndSpace) {
    const Query query = Query::parse(QStringLiteral("  select*from[My Table]where[a b]=-7 Order\tBy\n[c] ; "));
    EXPECT_EQ(query.table, QStringLiteral("My Table"));
    ASSERT_TRUE(query.where);
    EXPECT_EQ(query.where->field, QStringLiteral("a b"));
    EXPECT_EQ(query.where->value, -7);
    EXPECT_EQ(query.orderBy, QStringLiteral("c"));
}

TEST(QueryParsing, RefusesEverythingElse) {
    for (const char *statement :
         {"", "SELECT", "SELECT stap FROM Steps", "SELECT * FROM", "SELECT * FROM [Steps", "SELECT * FROM []",
          "SELECT * FROM Steps WHERE", "SELECT * FROM Steps WHERE stap", "SELECT * FROM Steps WHERE stap = 'x'",
          "SELECT * FROM Steps WHERE stap = 1 AND type = 2", "SELECT * FROM Steps WHERE stap > 1",
          "SELECT * FROM Steps WHERE stap = 99999999999999999999", "SELECT * FROM Steps ORDER stap",
          "SELECT * FROM Steps ORDER BY stap DESC", "SELECT * FROM Steps ORDER BY stap, type",
          "SELECT * FROM Steps; DELETE FROM Steps", "DELETE FROM Steps", "SELECT * FROM a, b"}) {
        EXPECT_EQ(errorOf([&] { (void)Query::parse(QString::fromLatin1(statement)); }), 3075) << statement;
    }
}

TEST(SortedOrder, PutsNullsFirstAndTextWithoutRegardToCaseThenAccents) {
    const std::vector<QVariant> texts{QStringLiteral("zon"),     QStringLiteral("Eén"), QVariant(),
                                      QStringLiteral("een"),     QStringLiteral("EEN"), QStringLiteral("Eend"),
                                      QString(QLatin1String(""))};
    EXPECT_EQ(sortedOrder(texts), (std::vector<int>{2, 6, 3, 4, 1, 5, 0}));
    const std::vector<QVariant> numbers{3, QVariant(), -1.5, 3, std::nan(""), 2};
    EXPECT_EQ(sortedOrder(numbers), (std::vector<int>{1, 4, 2, 5, 0, 3}));
    const std::vector<QVariant> truths{false, true};
    EXPECT_EQ(sortedOrder(truths), (std::vector<int>{1, 0}));
    const std::vector<QVariant> dates{QDateTime(QDate(2024, 1, 2), QTime(0, 0), Qt::UTC),
                                      QDateTime(QDate(2024, 1, 1), QTime(23, 0), Qt::UTC)};
    EXPECT_EQ(sortedOrder(dates), (std::vector<int>{1, 0}));
}

} // namespace
} // namespace orvel::test
