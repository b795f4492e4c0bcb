#include "platform/jet/jet_engine.h"
#include "tests/platform/jet/jet_test_support.h"

#include <QDateTime>
#include <QDir>
#include <QFileInfo>
#include <QRegularExpression>

namespace orvel::test {
namespace {

std::unique_ptr<RecordSet> openTable(const QString &path, const QString &table) {
    return JetEngine().open(path)->query(QStringLiteral("SELECT * FROM [%1]").arg(table));
}

/// The table's name stands between the database's name and ".tsv".
QStringList described() {
    return QDir(fixture({})).entryList({QStringLiteral("*.tsv")}, QDir::Files, QDir::Name);
}

class DescribedDatabase : public ::testing::TestWithParam<QString> {
  protected:
    static QString description() { return fixture(GetParam()); }
    static QString database() { return fixture(GetParam().section(QLatin1Char('.'), 0, 1)); }
    static QString table() { return GetParam().section(QLatin1Char('.'), 2, 2); }
};

TEST_P(DescribedDatabase, ReadsWhatItsDescriptionSays) {
    QStringList expected = describedRows(description());
    const QStringList header = expected.takeFirst().split(QLatin1Char('\t'));
    const auto rows = openTable(database(), table());
    ASSERT_EQ(rows->fieldCount(), header.size());
    for (int column = 0; column < rows->fieldCount(); ++column) {
        EXPECT_EQ(rows->fieldName(column), header.at(column).section(QLatin1Char(':'), 0, 0));
    }
    expected.sort();
    EXPECT_EQ(rowLines(*rows), expected);
}

TEST_P(DescribedDatabase, ReadsWhatMdbExportReads) {
    const auto rows = openTable(database(), table());
    const QStringList theirs = exported(database(), table());
    if (database().endsWith(QStringLiteral("moved-rows.mdb"))) {
        // It also gives the places that a row left behind when it moved on.
        for (const QString &line : exportLines(*rows)) {
            EXPECT_TRUE(theirs.contains(line)) << line.toStdString();
        }
        return;
    }
    EXPECT_EQ(exportLines(*rows), theirs);
}

INSTANTIATE_TEST_SUITE_P(Fixtures, DescribedDatabase, ::testing::ValuesIn(described()), [](const auto &parameter) {
    QString name = parameter.param;
    return name.replace(QRegularExpression(QStringLiteral("[^A-Za-z0-9]")), QStringLiteral("_")).toStdString();
});

TEST(JetReading, ThereAreFixtures) {
    EXPECT_GE(described().size(), 28);
}

TEST(JetReading, ReadsAccess97) {
    if (!QFileInfo::exists(access97())) {
        GTEST_SKIP() << "access-97.mdb is not here";
    }
    QStringList expected = describedRows(access97() + QStringLiteral(".Steps.tsv"));
    const int fields = static_cast<int>(expected.takeFirst().split(QLatin1Char('\t')).size());
    const auto rows = openTable(access97(), QStringLiteral("Steps"));
    EXPECT_EQ(rows->fieldCount(), fields);
    // The description could not decode the code page: there each letter with an accent is a replacement character.
    QStringList lines = rowLines(*rows);
    lines.replaceInStrings(QRegularExpression(QStringLiteral("[éÉ]")), QString(QChar(QChar::ReplacementCharacter)));
    lines.sort();
    expected.sort();
    EXPECT_EQ(lines, expected);
    EXPECT_EQ(exportLines(*rows), exported(access97(), QStringLiteral("Steps")));
}

TEST(JetReading, GivesEachTypeAsTheInterfaceSays) {
    const auto rows = openTable(fixture(QStringLiteral("access-2003.mdb")), QStringLiteral("Steps"));
    rows->moveFirst();
    EXPECT_EQ(rows->field(QStringLiteral("Imported")).metaType().id(), QMetaType::Bool);
    EXPECT_EQ(rows->field(QStringLiteral("stap")).metaType().id(), QMetaType::Int);
    EXPECT_EQ(rows->field(QStringLiteral("Jaartal")).metaType().id(), QMetaType::Int);
    EXPECT_EQ(rows->field(QStringLiteral("tijd")).metaType().id(), QMetaType::QDateTime);
    EXPECT_EQ(rows->field(QStringLiteral("TITEL")).metaType().id(), QMetaType::QString);
}

} // namespace
} // namespace orvel::test
