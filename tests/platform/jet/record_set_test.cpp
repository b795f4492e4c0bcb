#include "platform/fake/fake_database.h"
#include "platform/jet/jet_engine.h"
#include "tests/platform/jet/jet_test_support.h"

#include <QDateTime>

namespace orvel::test {
namespace {

enum class Kind { Jet, Fake };

/// The same playlist in the real engine and in the fake: whatever a room relies on must hold in both.
class RecordSetContract : public ::testing::TestWithParam<Kind> {
  protected:
    RecordSetContract() {
        const auto real = JetEngine().open(copy_.path())->query(QStringLiteral("SELECT * FROM Steps"));
        QStringList header;
        QList<QVariantList> rows;
        for (int column = 0; column < real->fieldCount(); ++column) {
            header += real->fieldName(column);
        }
        for (int row = 0; row < real->recordCount(); ++row) {
            QVariantList values;
            for (int column = 0; column < real->fieldCount(); ++column) {
                values += real->value(row, column);
            }
            rows += values;
        }
        fake_.setTable(copy_.path(), QStringLiteral("Steps"), header, rows);
    }

    std::unique_ptr<RecordSet> query(const char *statement) {
        DatabaseEngine &engine = GetParam() == Kind::Jet ? static_cast<DatabaseEngine &>(jet_) : fake_;
        return engine.open(copy_.path())->query(QString::fromLatin1(statement));
    }

    static QList<int> numbers(RecordSet &rows, const char *field) {
        QList<int> result;
        if (rows.recordCount() > 0) {
            for (rows.moveFirst(); !rows.endOfFile(); rows.moveNext()) {
                result += rows.field(QString::fromLatin1(field)).toInt();
            }
        }
        return result;
    }

    WorkCopy copy_{fixture(QStringLiteral("access-2003.mdb"))};
    JetEngine jet_;
    FakeDatabaseEngine fake_;
};

TEST_P(RecordSetContract, OrdersByAField) {
    EXPECT_EQ(numbers(*query("SELECT * FROM Steps ORDER BY [Stap]"), "stap"), (QList<int>{1, 2, 3, 4, 5}));
    EXPECT_EQ(numbers(*query("select * from [steps] order by OUTTRO"), "outtro"), (QList<int>{0, 0, 3410, 4320, 5230}));
    // Blauwe Lantaarn, Marte, Presentatie (twice, as in the table), Trio.
    EXPECT_EQ(numbers(*query("SELECT * FROM Steps ORDER BY artiest"), "stap"), (QList<int>{5, 3, 2, 4, 1}));
    EXPECT_EQ(numbers(*query("SELECT * FROM Steps ORDER BY Jaartal"), "stap"), (QList<int>{2, 4, 1, 3, 5}));
}

TEST_P(RecordSetContract, SelectsByANumber) {
    EXPECT_EQ(numbers(*query("SELECT * FROM Steps WHERE [Type] = 2"), "stap"), (QList<int>{2, 4}));
    EXPECT_EQ(numbers(*query("SELECT * FROM Steps WHERE imported = -1 ORDER BY stap"), "stap"), (QList<int>{1, 3, 5}));
    EXPECT_EQ(numbers(*query("SELECT * FROM Steps WHERE Imported=0;"), "stap"), (QList<int>{2, 4}));
    EXPECT_EQ(query("SELECT * FROM Steps WHERE type = 99")->recordCount(), 0);
}

TEST_P(RecordSetContract, WalksFromFirstToEnd) {
    const auto rows = query("SELECT * FROM Steps ORDER BY stap");
    EXPECT_EQ(rows->currentRow(), 0);
    EXPECT_FALSE(rows->endOfFile());
    rows->moveLast();
    EXPECT_EQ(rows->currentRow(), 4);
    rows->moveNext();
    EXPECT_TRUE(rows->endOfFile());
    EXPECT_EQ(rows->currentRow(), rows->recordCount());
    EXPECT_EQ(errorOf([&] { rows->moveNext(); }), 3021);
    EXPECT_EQ(errorOf([&] { (void)rows->field(0); }), 3021);
    EXPECT_EQ(errorOf([&] { rows->edit(); }), 3021);
    rows->moveTo(2);
    EXPECT_EQ(rows->field(QStringLiteral("STAP")).toInt(), 3);
    EXPECT_EQ(errorOf([&] { rows->moveTo(5); }), 3021);
    EXPECT_EQ(errorOf([&] { rows->moveTo(-1); }), 3021);
    EXPECT_EQ(rows->currentRow(), 2);
}

TEST_P(RecordSetContract, AnEmptyResultHasNoCurrentRecord) {
    const auto rows = query("SELECT * FROM Steps WHERE type = 99");
    EXPECT_TRUE(rows->endOfFile());
    EXPECT_EQ(errorOf([&] { rows->moveFirst(); }), 3021);
    EXPECT_EQ(errorOf([&] { rows->moveLast(); }), 3021);
    EXPECT_FALSE(rows->findFirst(QStringLiteral("stap=1")));
}

TEST_P(RecordSetContract, FindsTheFirstMatchAndElseStaysWhereItIs) {
    const auto rows = query("SELECT * FROM Steps ORDER BY stap");
    EXPECT_TRUE(rows->findFirst(QStringLiteral("type=2")));
    EXPECT_EQ(rows->currentRow(), 1);
    EXPECT_TRUE(rows->findFirst(QStringLiteral("Stap = 5")));
    EXPECT_EQ(rows->currentRow(), 4);
    EXPECT_FALSE(rows->findFirst(QStringLiteral("[stap]=-7")));
    EXPECT_EQ(rows->currentRow(), 4);
    EXPECT_FALSE(rows->findFirst(QStringLiteral("Jaartal=0"))); // nulls are not zero
    EXPECT_EQ(errorOf([&] { rows->findFirst(QStringLiteral("artiest=3")); }), 13);
    EXPECT_EQ(errorOf([&] { rows->findFirst(QStringLiteral("niets=3")); }), 3265);
    EXPECT_EQ(errorOf([&] { rows->findFirst(QStringLiteral("stap=")); }), 3075);
    EXPECT_EQ(errorOf([&] { rows->findFirst(QStringLiteral("stap=1 or 1=1")); }), 3075);
}

TEST_P(RecordSetContract, RefusesWhatItDoesNotKnow) {
    EXPECT_EQ(errorOf([&] { query("SELECT * FROM Nergens"); }), 3078);
    EXPECT_EQ(errorOf([&] { query("SELECT * FROM Steps ORDER BY [niets]"); }), 3265);
    EXPECT_EQ(errorOf([&] { query("SELECT * FROM Steps WHERE [niets] = 1"); }), 3265);
    EXPECT_EQ(errorOf([&] { query("SELECT * FROM Steps WHERE artiest = 1"); }), 13);
    EXPECT_EQ(errorOf([&] { (void)query("SELECT * FROM Steps")->fieldIndex(QStringLiteral("niets")); }), 3265);
    EXPECT_EQ(errorOf([&] { (void)query("SELECT * FROM Steps")->value(0, 18); }), 3265);
    EXPECT_EQ(errorOf([&] { (void)query("SELECT * FROM Steps")->value(0, -1); }), 3265);
}

TEST_P(RecordSetContract, StoresAnEditAsOne) {
    const auto rows = query("SELECT * FROM Steps ORDER BY stap");
    rows->moveTo(1);
    rows->edit();
    rows->setField(0, true);
    rows->setField(rows->fieldIndex(QStringLiteral("mixtype")), 3);
    EXPECT_FALSE(rows->field(0).toBool());
    EXPECT_FALSE(query("SELECT * FROM Steps WHERE stap = 2")->field(0).toBool());
    rows->update();
    EXPECT_EQ(rows->currentRow(), 1);
    EXPECT_EQ(rows->field(0), QVariant(true));
    const auto again = query("SELECT * FROM Steps WHERE stap = 2");
    EXPECT_EQ(again->field(0), QVariant(true));
    EXPECT_EQ(again->field(QStringLiteral("mixtype")), QVariant(3));
}

TEST_P(RecordSetContract, MovingGivesAnEditUp) {
    const auto rows = query("SELECT * FROM Steps ORDER BY stap");
    rows->moveTo(1);
    rows->edit();
    rows->setField(0, true);
    rows->moveNext();
    EXPECT_EQ(errorOf([&] { rows->update(); }), 3164);
    EXPECT_EQ(errorOf([&] { rows->setField(0, true); }), 3164);
    EXPECT_FALSE(query("SELECT * FROM Steps WHERE stap = 2")->field(0).toBool());
}

TEST_P(RecordSetContract, RefusesValuesThatCannotBeStored) {
    const auto rows = query("SELECT * FROM Steps ORDER BY stap");
    const int mixtype = rows->fieldIndex(QStringLiteral("mixtype"));
    rows->edit();
    EXPECT_EQ(errorOf([&] { rows->setField(rows->fieldIndex(QStringLiteral("artiest")), 1); }), 3164);
    EXPECT_EQ(errorOf([&] { rows->setField(rows->fieldIndex(QStringLiteral("tijd")), 1); }), 3164);
    EXPECT_EQ(errorOf([&] { rows->setField(mixtype, QVariant()); }), 3164);
    EXPECT_EQ(errorOf([&] { rows->setField(mixtype, QStringLiteral("veel")); }), 13);
    EXPECT_EQ(errorOf([&] { rows->setField(18, 1); }), 3265);
    rows->setField(mixtype, QStringLiteral("2"));
    rows->update();
    EXPECT_EQ(rows->field(mixtype), QVariant(2));
}

TEST_P(RecordSetContract, FindsChangedValues) {
    const auto rows = query("SELECT * FROM Steps ORDER BY stap");
    EXPECT_FALSE(rows->findFirst(QStringLiteral("mixtype=7")));
    rows->moveTo(3);
    rows->edit();
    rows->setField(rows->fieldIndex(QStringLiteral("mixtype")), 7);
    rows->update();
    rows->moveFirst();
    EXPECT_TRUE(rows->findFirst(QStringLiteral("mixtype=7")));
    EXPECT_EQ(rows->currentRow(), 3);
}

TEST_P(RecordSetContract, RefreshShowsWhatOthersChanged) {
    const auto rows = query("SELECT * FROM Steps WHERE Imported = 0");
    rows->moveLast();
    const auto other = query("SELECT * FROM Steps WHERE stap = 2");
    other->edit();
    other->setField(0, true);
    other->update();
    EXPECT_EQ(rows->recordCount(), 2);
    rows->refresh();
    EXPECT_EQ(rows->recordCount(), 1);
    EXPECT_EQ(rows->currentRow(), 0);
}

INSTANTIATE_TEST_SUITE_P(Engines, RecordSetContract, ::testing::Values(Kind::Jet, Kind::Fake),
                         [](const auto &parameter) { return parameter.param == Kind::Jet ? "Jet" : "Fake"; });

TEST(FakeDatabase, RecordsUpdatesAndFailsOnDemand) {
    FakeDatabaseEngine engine;
    const QString path = QStringLiteral("een.mdb");
    EXPECT_EQ(errorOf([&] { (void)engine.open(path); }), 53);
    engine.setTable(path, QStringLiteral("Steps"), {QStringLiteral("Imported"), QStringLiteral("stap")},
                    {{false, 2}, {false, 1}});
    const auto rows = engine.open(path)->query(QStringLiteral("SELECT * FROM Steps ORDER BY stap"));
    rows->edit();
    rows->setField(0, 1);
    engine.fail(FakeDatabaseEngine::Call::Update, ErrorNumber::DatabaseLocked);
    EXPECT_EQ(errorOf([&] { rows->update(); }), 3260);
    EXPECT_TRUE(engine.updates().isEmpty());
    engine.clearFailure(FakeDatabaseEngine::Call::Update);
    rows->edit();
    rows->setField(0, 1);
    rows->update();
    const FakeDatabaseEngine::Update expected{
        .path = path, .table = QStringLiteral("Steps"), .row = 1, .field = QStringLiteral("Imported"), .value = true};
    EXPECT_EQ(engine.updates(), QList<FakeDatabaseEngine::Update>{expected});
    EXPECT_EQ(engine.rows(path, QStringLiteral("steps")).at(1).at(0), QVariant(true));
    engine.fail(FakeDatabaseEngine::Call::Open, ErrorNumber::PermissionDenied, 1);
    EXPECT_NE(engine.open(path), nullptr);
    EXPECT_EQ(errorOf([&] { (void)engine.open(path); }), 70);
    engine.removeFile(path);
    EXPECT_EQ(errorOf([&] { rows->refresh(); }), 53);
}

} // namespace
} // namespace orvel::test
