// The open playlist: opening, times, slots, writing, and what other programs do to its file meanwhile.
#include "tests/desk.h"

namespace orvel {

namespace {

using Call = FakeDatabaseEngine::Call;

class OpenPlaylist : public Desk {
  protected:
    [[nodiscard]] QString file(const QString &name) const { return places.newFolder() + u'/' + name; }
    void put(const QString &name, const QList<QVariantList> &rows, const QStringList &fields = header()) {
        databases.setTable(file(name), QStringLiteral("Steps"), fields, rows);
    }
    void open(const QString &name, const QList<QVariantList> &rows) {
        put(name, rows);
        tested.open(places.newFolder(), name);
    }
    static QVariantList timed(int stap, const QVariant &intro, const QVariant &outtro) {
        QVariantList row = music(stap);
        row[IntroColumn] = intro;
        row[OuttroColumn] = outtro;
        return row;
    }
    static QList<QVariantList> steps(int count) {
        QList<QVariantList> rows;
        for (int stap = 1; stap <= count; ++stap) {
            rows << timed(stap, stap, 1000 + stap);
        }
        return rows;
    }
    template <class Action>
    static ErrorNumber errorOf(Action action) {
        try {
            action();
        } catch (const RuntimeError &error) {
            return error.number();
        }
        return ErrorNumber{};
    }
    ErrorNumber errorOfOpening(const QString &name) {
        return errorOf([&] { tested.open(places.newFolder(), name); });
    }

    QStringList kept;
    Playlist tested{databases, [this](const QString &path) { kept << path; }};
    const QString nacht = QStringLiteral("nacht.mdb");
};

} // namespace

TEST_F(OpenPlaylist, HasItsStepsInTheOrderOfTheirNumbers) {
    open(nacht, {music(3), slot(1, QStringLiteral("A")), slot(2, QStringLiteral("B"))});
    EXPECT_TRUE(tested.isOpen());
    EXPECT_EQ(tested.fileName(), nacht);
    EXPECT_EQ(tested.fullPath(), file(nacht));
    ASSERT_EQ(tested.stepCount(), 3);
    EXPECT_EQ(tested.value(0, AtrackColumn), QStringLiteral("A"));
    EXPECT_EQ(tested.value(1, AtrackColumn), QStringLiteral("B"));
    EXPECT_EQ(tested.value(2, StapColumn), 3);
    EXPECT_EQ(databases.statements().last(2).join(u'|'),
              QStringLiteral("SELECT * FROM Steps WHERE [Type] = 2|SELECT * FROM Steps ORDER BY [Stap]"));
}

TEST_F(OpenPlaylist, FindsFieldsByNameWhateverTheirOrderAndCase) {
    QStringList fields = header();
    QVariantList row = slot(1, QStringLiteral("A"));
    std::reverse(fields.begin(), fields.end());
    std::reverse(row.begin(), row.end());
    for (QString &field : fields) {
        field = field.toUpper();
    }
    put(nacht, {row}, fields);
    tested.open(places.newFolder(), nacht);
    EXPECT_EQ(tested.value(0, AtrackColumn), QStringLiteral("A"));
    EXPECT_EQ(tested.value(0, TypeColumn), 2);
    EXPECT_EQ(tested.intro(1), 5000);
}

TEST_F(OpenPlaylist, CountsItsSlots) {
    open(nacht, {music(1), slot(2, QStringLiteral("A")), slot(3, QVariant()), music(4)});
    EXPECT_EQ(tested.presCount(), 2);
}

TEST_F(OpenPlaylist, WithoutSlotsTheNumberOfTheOneBeforeStays) {
    open(nacht, {slot(1, QStringLiteral("A")), slot(2, QStringLiteral("B"))});
    open(QStringLiteral("muziek.mdb"), {music(1)});
    EXPECT_EQ(tested.presCount(), 2);
    EXPECT_EQ(tested.stepCount(), 1);
}

TEST_F(OpenPlaylist, HasTheTimesOfAHundredAndFiftySteps) {
    open(nacht, steps(150));
    EXPECT_EQ(tested.intro(0), 0);
    EXPECT_EQ(tested.outtro(0), 0);
    EXPECT_EQ(tested.intro(1), 1);
    EXPECT_EQ(tested.outtro(1), 1001);
    EXPECT_EQ(tested.intro(150), 150);
    EXPECT_EQ(tested.outtro(150), 1150);
    for (const int outside : {-1, 151}) {
        EXPECT_EQ(errorOf([&] { static_cast<void>(tested.intro(outside)); }), ErrorNumber::SubscriptOutOfRange);
        EXPECT_EQ(errorOf([&] { static_cast<void>(tested.outtro(outside)); }), ErrorNumber::SubscriptOutOfRange);
    }
}

TEST_F(OpenPlaylist, OneStepMoreIsRefused) {
    put(nacht, steps(151));
    EXPECT_EQ(errorOfOpening(nacht), ErrorNumber::SubscriptOutOfRange);
    EXPECT_FALSE(tested.isOpen());
}

TEST_F(OpenPlaylist, TimesAreKeptByPlaceAndAskedByNumber) {
    open(nacht, {timed(5, 50, 51), timed(9, 90, 91)});
    EXPECT_EQ(tested.intro(1), 50);
    EXPECT_EQ(tested.outtro(2), 91);
    EXPECT_EQ(tested.intro(5), 0);
}

TEST_F(OpenPlaylist, AStepWithoutItsTimesIsRefused) {
    put(nacht, {timed(1, 1, 1), timed(2, QVariant(), 1)});
    EXPECT_EQ(errorOfOpening(nacht), ErrorNumber::TypeMismatch);
    EXPECT_FALSE(tested.isOpen());
    put(nacht, {timed(1, 1, 1), timed(2, 1, QVariant())});
    EXPECT_EQ(errorOfOpening(nacht), ErrorNumber::TypeMismatch);
    EXPECT_FALSE(tested.isOpen());
    EXPECT_EQ(tested.stepCount(), 0);
}

TEST_F(OpenPlaylist, WhatCannotBeOpenedLeavesNoneOpen) {
    put(QStringLiteral("goed.mdb"), {music(1)});
    databases.setTable(file(QStringLiteral("tabel.mdb")), QStringLiteral("Anders"), header(), {music(1)});
    put(QStringLiteral("veld.mdb"), {music(1).mid(1)}, header().mid(1));
    const std::vector<std::pair<QString, ErrorNumber>> bad = {
        {QStringLiteral("weg.mdb"), ErrorNumber::FileNotFound},
        {QStringLiteral("tabel.mdb"), ErrorNumber::NoSuchTable},
        {QStringLiteral("veld.mdb"), ErrorNumber::ItemNotFound},
    };
    for (const auto &[broken, number] : bad) {
        ASSERT_EQ(errorOfOpening(QStringLiteral("goed.mdb")), ErrorNumber{});
        EXPECT_EQ(errorOfOpening(broken), number);
        EXPECT_FALSE(tested.isOpen()) << broken.toStdString();
        EXPECT_EQ(tested.stepCount(), 0);
    }
    for (const Call call : {Call::Open, Call::Query, Call::Value}) {
        ASSERT_EQ(errorOfOpening(QStringLiteral("goed.mdb")), ErrorNumber{});
        databases.fail(call, ErrorNumber::DatabaseDamaged);
        EXPECT_EQ(errorOfOpening(QStringLiteral("goed.mdb")), ErrorNumber::DatabaseDamaged);
        EXPECT_FALSE(tested.isOpen());
        databases.clearFailure(call);
    }
}

TEST_F(OpenPlaylist, NothingIsReadOrWrittenWithoutOne) {
    open(nacht, {music(1)});
    tested.close();
    EXPECT_FALSE(tested.isOpen());
    EXPECT_EQ(tested.stepCount(), 0);
    EXPECT_EQ(tested.firstUnfinished(), -1);
    EXPECT_EQ(errorOf([&] { static_cast<void>(tested.value(0, StapColumn)); }), ErrorNumber::NoCurrentRecord);
    EXPECT_EQ(errorOf([&] { tested.setValue(0, ImportedColumn, true); }), ErrorNumber::NoCurrentRecord);
    EXPECT_NO_THROW(tested.refresh());
    EXPECT_TRUE(kept.isEmpty());
}

TEST_F(OpenPlaylist, TheFirstUnfinishedStepIsOfAnyType) {
    open(nacht, {slot(1, QStringLiteral("A")), music(2), slot(3, QStringLiteral("B"))});
    EXPECT_EQ(tested.firstUnfinished(), 0);
    tested.setValue(0, ImportedColumn, true);
    EXPECT_EQ(tested.firstUnfinished(), 2);
    tested.setValue(2, ImportedColumn, true);
    EXPECT_EQ(tested.firstUnfinished(), -1);
    tested.setValue(1, ImportedColumn, false);
    EXPECT_EQ(tested.firstUnfinished(), 1);
}

TEST_F(OpenPlaylist, AValueIsInTheFileAtOnceAndNothingElse) {
    open(nacht, {music(3), slot(1, QStringLiteral("A"))});
    tested.setValue(0, ImportedColumn, true);
    tested.setValue(1, MixtypeColumn, 3);
    const QString table = QStringLiteral("Steps");
    EXPECT_EQ(databases.updates(),
              (QList<FakeDatabaseEngine::Update>{{file(nacht), table, 1, QStringLiteral("Imported"), true},
                                                 {file(nacht), table, 0, QStringLiteral("mixtype"), 3}}));
    EXPECT_EQ(tested.value(0, ImportedColumn), true);
}

TEST_F(OpenPlaylist, IsKeptBeforeItIsChangedForTheFirstTime) {
    open(nacht, {slot(1, QStringLiteral("A"))});
    EXPECT_TRUE(kept.isEmpty()) << "opening changes nothing";
    tested.setValue(0, ImportedColumn, true);
    tested.setValue(0, ImportedColumn, false);
    EXPECT_EQ(kept, QStringList{file(nacht)});
    tested.open(places.newFolder(), nacht);
    tested.setValue(0, ImportedColumn, true);
    EXPECT_EQ(kept.size(), 2) << "another opening is another beginning";
}

TEST_F(OpenPlaylist, WhatIsKeptIsWhatWasThereBefore) {
    put(nacht, {slot(1, QStringLiteral("A"))});
    QVariant before;
    Playlist watching(databases, [&](const QString &path) {
        before = databases.rows(path, QStringLiteral("Steps")).first().at(ImportedColumn);
    });
    watching.open(places.newFolder(), nacht);
    watching.setValue(0, ImportedColumn, true);
    EXPECT_EQ(before, false);
}

TEST_F(OpenPlaylist, WhatCannotBeStoredIsAsBefore) {
    open(nacht, {slot(1, QStringLiteral("A"))});
    for (const ErrorNumber number : {ErrorNumber::DiskFull, ErrorNumber::PermissionDenied}) {
        databases.fail(Call::Update, number);
        EXPECT_EQ(errorOf([&] { tested.setValue(0, ImportedColumn, true); }), number);
        EXPECT_EQ(tested.value(0, ImportedColumn), false);
    }
    databases.clearFailure(Call::Update);
    EXPECT_EQ(errorOf([&] { tested.setValue(0, AtrackColumn, QStringLiteral("B")); }), ErrorNumber::FieldNotUpdatable);
    EXPECT_EQ(errorOf([&] { tested.setValue(1, ImportedColumn, true); }), ErrorNumber::NoCurrentRecord);
    EXPECT_TRUE(databases.updates().isEmpty());
}

TEST_F(OpenPlaylist, AStepThatAnotherProgramTookAwayIsToldOf) {
    open(nacht, {slot(1, QStringLiteral("A")), slot(2, QStringLiteral("B"))});
    databases.fail(Call::Update, ErrorNumber::DatabaseLocked);
    put(nacht, {slot(1, QStringLiteral("A"))});
    try {
        tested.setValue(1, ImportedColumn, true);
        ADD_FAILURE() << "there is no such step";
    } catch (const RuntimeError &error) {
        EXPECT_EQ(error.number(), ErrorNumber::DatabaseLocked);
        EXPECT_TRUE(error.description().contains(QStringLiteral("een ander programma heeft stap 2 weggehaald")));
    }
    EXPECT_EQ(tested.stepCount(), 1) << "the list shows what there is";
    EXPECT_TRUE(databases.updates().isEmpty());
}

TEST_F(OpenPlaylist, AFileThatStaysLockedIsToldOf) {
    open(nacht, {slot(1, QStringLiteral("A"))});
    databases.fail(Call::Update, ErrorNumber::DatabaseLocked);
    EXPECT_EQ(errorOf([&] { tested.setValue(0, ImportedColumn, true); }), ErrorNumber::DatabaseLocked);
    EXPECT_EQ(tested.value(0, ImportedColumn), false);
}

TEST_F(OpenPlaylist, ReadsAgainWhatAnotherProgramChanged) {
    open(nacht, {slot(1, QStringLiteral("A")), music(2)});
    put(nacht, {slot(1, QStringLiteral("A")), slot(2, QStringLiteral("NIEUW")), music(3)});
    EXPECT_EQ(tested.stepCount(), 2);
    tested.refresh();
    ASSERT_EQ(tested.stepCount(), 3);
    EXPECT_EQ(tested.value(1, AtrackColumn), QStringLiteral("NIEUW"));
}

TEST_F(OpenPlaylist, StaysReadableWhenItsFileIsGone) {
    open(nacht, {slot(1, QStringLiteral("A"))});
    databases.removeFile(file(nacht));
    EXPECT_EQ(errorOf([&] { tested.refresh(); }), ErrorNumber::FileNotFound);
    EXPECT_TRUE(tested.isOpen());
    EXPECT_EQ(tested.value(0, AtrackColumn), QStringLiteral("A"));
}

// A file that was replaced by one with its fields in another order was read by the places of the old ones.
TEST_F(OpenPlaylist, FindsItsFieldsAgainInAFileThatWasReplaced) {
    open(nacht, {slot(1, QStringLiteral("A"))});
    QStringList fields = header();
    QVariantList row = slot(1, QStringLiteral("A"));
    fields.move(AtrackColumn, 0);
    row.move(AtrackColumn, 0);
    put(nacht, {row}, fields);
    tested.refresh();
    EXPECT_EQ(tested.value(0, AtrackColumn), QStringLiteral("A"));
    EXPECT_EQ(tested.value(0, ImportedColumn), false);
    tested.setValue(0, ImportedColumn, true);
    EXPECT_EQ(databases.updates().last().field, QStringLiteral("Imported"));
}

} // namespace orvel
