#include "tests/platform/jet/built_file.h"
#include "tests/platform/jet/memory_disk.h"

namespace orvel::test {
namespace {

using Columns = std::vector<JetBuilder::Column>;

/// A playlist whose rows are older than some of its columns. What a change must leave in the file is built anew, row by
/// row: whole files are compared.
class OlderRows : public BuiltDatabase {
  protected:
    static constexpr std::uint16_t textNumber = 1;

    /// The first columns of the table, as they were when the rows were stored.
    static Columns oldColumns(std::uint16_t count) {
        Columns columns = {
            {.name = "Stap", .type = 4, .number = 0, .place = 0, .length = 4},
            {.name = "Titel", .type = 10, .number = textNumber, .fixed = false, .place = 0, .length = 255},
        };
        for (std::uint16_t number = 2; number < count; ++number) {
            columns.push_back({.name = "Oud" + std::to_string(number), .type = 1, .number = number, .length = 1});
        }
        return columns;
    }

    void SetUp() override { giveColumns(2); }

    /// This many old columns, and behind them a new flag and a new number.
    void giveColumns(std::uint16_t count) {
        flag_ = count;
        number_ = static_cast<std::uint16_t>(count + 1);
        old_ = JetBuilder(GetParam());
        old_.columns = oldColumns(count);
        new_ = JetBuilder(GetParam());
        new_.columns = old_.columns;
        new_.columns.push_back({.name = "Imported", .type = 1, .number = flag_, .length = 1});
        new_.columns.push_back({.name = "mixtype", .type = 3, .number = number_, .place = 4, .length = 2});
        start();
    }
    void start() {
        before_ = JetBuilder(GetParam());
        before_.columns = new_.columns;
        after_ = before_;
    }

    [[nodiscard]] JetBuilder::Values values(unsigned step, const std::u16string &title) const {
        return {{0, little(step, 4)}, {textNumber, text(title)}};
    }
    [[nodiscard]] Bytes oldRow(unsigned step, const std::u16string &title) const {
        return old_.row(values(step, title));
    }
    /// The row when its flag has been set: one column longer, and not a byte more than that needs.
    [[nodiscard]] Bytes markedRow(unsigned step, const std::u16string &title) const {
        JetBuilder marked = old_;
        marked.columns.push_back(new_.columns[flag_]);
        JetBuilder::Values all = values(step, title);
        all[flag_] = {};
        return marked.row(all);
    }
    [[nodiscard]] Bytes mixedRow(unsigned step, const std::u16string &title, std::uint16_t mixtype) const {
        JetBuilder::Values all = values(step, title);
        all[number_] = little(mixtype, 2);
        return new_.row(all);
    }
    void addToBoth(const Bytes &row, std::uint16_t flags = 0) {
        before_.addRow(row, flags);
        after_.addRow(row, flags);
    }
    void addChanging(const Bytes &was, const Bytes &becomes, std::uint16_t flags = 0) {
        before_.addRow(was, flags);
        after_.addRow(becomes, flags);
    }

    void change(RecordSet &rows, int row, int column, const QVariant &value) {
        rows.moveTo(row);
        rows.edit();
        rows.setField(column, value);
        rows.update();
    }
    /// Changes one value; the file must then be the other one, for us and for others.
    void expectChange(int row, int column, const QVariant &value) {
        const BuiltFile file(before_);
        const QStringList theirsBefore = file.exportedRows();
        const auto rows = file.rows();
        const QStringList oursBefore = exportLines(*rows);
        change(*rows, row, column, value);
        EXPECT_EQ(file.content(), BuiltFile(after_).content());
        const QStringList ours = exportLines(*file.rows());
        EXPECT_EQ(exportLines(*rows), ours);
        expectOneLineChanged(oursBefore, ours, row, column, value);
        expectOneLineChanged(theirsBefore, file.exportedRows(), row, column, value);
    }
    static void expectOneLineChanged(const QStringList &before, const QStringList &after, int row, int column,
                                     const QVariant &value) {
        ASSERT_EQ(after.size(), before.size());
        for (qsizetype line = 0; line < after.size(); ++line) {
            QStringList fields = before.at(line).split(QLatin1Char(','));
            if (line == row + 1) {
                fields[column] = QString::number(value.toInt());
            }
            EXPECT_EQ(after.at(line), fields.join(QLatin1Char(',')));
        }
    }

    std::uint16_t flag_ = 0;
    std::uint16_t number_ = 0;
    JetBuilder old_{GetParam()};
    JetBuilder new_{GetParam()};
    JetBuilder before_{GetParam()};
    JetBuilder after_{GetParam()};
};

INSTANTIATE_TEST_SUITE_P(Formats, OlderRows, ::testing::Bool(), formatName);

TEST_P(OlderRows, AMarkThatTheMaskHasABitForChangesTwoBytes) {
    // A playlist whose mark was added after its rows could not be marked at all.
    addToBoth(oldRow(1, u"een"));
    addChanging(oldRow(2, u"twee"), markedRow(2, u"twee"));
    addToBoth(oldRow(3, u"drie"));
    expectChange(1, flag_, true);
    const QByteArray before = BuiltFile(before_).content();
    const QByteArray after = BuiltFile(after_).content();
    qsizetype changed = 0;
    for (qsizetype i = 0; i < before.size(); ++i) {
        changed += before.at(i) != after.at(i) ? 1 : 0;
    }
    EXPECT_EQ(changed, 2);
}

TEST_P(OlderRows, AMarkThatIsTakenBackStaysKnown) {
    addToBoth(oldRow(1, u"een"));
    const BuiltFile file(before_);
    const auto rows = file.rows();
    change(*rows, 0, flag_, true);
    change(*rows, 0, flag_, false);
    EXPECT_EQ(rows->value(0, flag_), QVariant(false));
    EXPECT_EQ(file.exportedRows(), exportLines(*rows));
}

TEST_P(OlderRows, AMarkThatNeedsAByteMakesTheRowGrowWithinItsPage) {
    giveColumns(8);
    addToBoth(oldRow(1, u"een"));
    addChanging(oldRow(2, u"twee"), markedRow(2, u"twee"));
    addToBoth(oldRow(3, u"drie"));
    addToBoth(oldRow(4, u"vier"));
    expectChange(1, flag_, true);
}

TEST_P(OlderRows, ANumberMakesTheRowGrowWithinItsPage) {
    addToBoth(oldRow(1, u"een"));
    addToBoth(oldRow(2, u"twee"));
    addChanging(oldRow(3, u"drie"), mixedRow(3, u"drie", 7));
    expectChange(2, number_, 7);
}

TEST_P(OlderRows, GrowAcrossABorderOf256Bytes) {
    // Jet 3 then needs a table of jumps; every length about the border is tried.
    giveColumns(8);
    for (std::size_t length = 225; length < 250; ++length) {
        start();
        const std::u16string title(length, u'x');
        addToBoth(oldRow(1, u"een"));
        addChanging(oldRow(2, title), markedRow(2, title));
        expectChange(1, flag_, true);
        start();
        addToBoth(oldRow(1, u"een"));
        addChanging(oldRow(2, title), mixedRow(2, title, 2));
        expectChange(1, number_, 2);
    }
}

TEST_P(OlderRows, RowsOfManyTextsGrow) {
    // The places of all texts move, in Jet 3 over several borders of 256 bytes.
    Columns columns = {{.name = "Stap", .type = 4, .number = 0, .place = 0, .length = 4},
                       {.name = "Vlag", .type = 1, .number = 7, .length = 1}};
    for (std::uint16_t i = 0; i < 6; ++i) {
        columns.push_back({.name = "T" + std::to_string(i),
                           .type = 10,
                           .number = static_cast<std::uint16_t>(i + 1),
                           .fixed = false,
                           .place = i,
                           .length = 255});
    }
    old_.columns = columns;
    before_.columns = columns;
    before_.columns.push_back({.name = "Later", .type = 5, .number = 8, .place = 4, .length = 8});
    after_.columns = before_.columns;
    std::vector<JetBuilder::Values> values;
    for (std::size_t length = 0; length < 256; length += 9) {
        JetBuilder::Values all{{0, little(length, 4)}};
        for (std::uint16_t number = 1; number <= 6; ++number) {
            const std::size_t size = number == 1 ? length : 100U + number;
            all[number] = text(std::u16string(size / (GetParam() ? 1 : 2), u'a'));
        }
        values.push_back(all);
    }
    for (JetBuilder::Values &all : values) {
        before_.startPage();
        before_.addRow(old_.row(all));
        all[8] = little(70000, 8);
        after_.startPage();
        after_.addRow(after_.row(all));
    }
    const BuiltFile file(before_);
    const auto rows = file.rows();
    ASSERT_EQ(rows->recordCount(), static_cast<int>(values.size()));
    const int later = rows->fieldIndex(QStringLiteral("Later"));
    for (int row = 0; row < rows->recordCount(); ++row) {
        change(*rows, row, later, 7);
    }
    EXPECT_EQ(file.content(), BuiltFile(after_).content());
    EXPECT_EQ(exportLines(*file.rows()), exportLines(*rows));
}

TEST_P(OlderRows, AllRowsOfAPageAreMarkedOneAfterAnother) {
    giveColumns(8);
    for (unsigned step = 1; step <= 20; ++step) {
        addChanging(oldRow(step, u"titel"), markedRow(step, u"titel"));
    }
    const BuiltFile file(before_);
    const auto rows = file.rows();
    // Not in the file's order, and through one record set, which must know where the rows have gone.
    for (int i = 0; i < 20; ++i) {
        change(*rows, i * 7 % 20, flag_, true);
    }
    EXPECT_EQ(file.content(), BuiltFile(after_).content());
    for (int row = 0; row < 20; ++row) {
        EXPECT_EQ(rows->value(row, 0), QVariant(row + 1));
        EXPECT_EQ(rows->value(row, flag_), QVariant(true));
    }
    EXPECT_EQ(file.exportedRows(), exportLines(*rows));
}

TEST_P(OlderRows, RowsThatMovedGrowWhereTheyLiveNow) {
    giveColumns(8);
    addToBoth(oldRow(1, u"een"));
    // The target is the second row of the next page: page 8, slot 1.
    addToBoth(little((8U << 8) | 1U, 4), movedFlag);
    before_.startPage();
    after_.startPage();
    addToBoth(oldRow(3, u"drie"), hiddenFlag); // deleted
    addChanging(oldRow(2, u"twee"), markedRow(2, u"twee"), hiddenFlag);
    addToBoth(oldRow(4, u"vier"));
    const BuiltFile file(before_);
    const auto rows = file.rows();
    ASSERT_EQ(rows->recordCount(), 3);
    change(*rows, 1, flag_, true);
    EXPECT_EQ(file.content(), BuiltFile(after_).content());
    EXPECT_EQ(rows->value(1, 0), QVariant(2));
    EXPECT_EQ(rows->value(1, flag_), QVariant(true));
    EXPECT_EQ(rows->value(2, 0), QVariant(4));
    EXPECT_EQ(exportLines(*file.rows()), exportLines(*rows));
    EXPECT_TRUE(file.exportedRows().contains(exportLines(*rows).at(2)));
}

TEST_P(OlderRows, BitsThatNobodyHadAUseForAreNotTakenForValues) {
    giveColumns(2);
    Bytes row = oldRow(1, u"een");
    row.back() |= 0xfc;
    before_.addRow(row);
    const BuiltFile file(before_);
    const auto rows = file.rows();
    EXPECT_EQ(rows->value(0, flag_), QVariant(false));
    change(*rows, 0, number_, 5);
    EXPECT_EQ(rows->value(0, flag_), QVariant(false));
    EXPECT_EQ(rows->value(0, number_), QVariant(5));
    EXPECT_EQ(file.exportedRows(), exportLines(*rows));
}

TEST_P(OlderRows, BothNewValuesAreStoredAsOne) {
    giveColumns(8);
    JetBuilder::Values all = values(2, u"twee");
    all[flag_] = {};
    all[number_] = little(3, 2);
    addToBoth(oldRow(1, u"een"));
    addChanging(oldRow(2, u"twee"), new_.row(all));
    const BuiltFile file(before_);
    const auto rows = file.rows();
    rows->moveTo(1);
    rows->edit();
    rows->setField(number_, 3);
    rows->setField(flag_, true);
    rows->update();
    EXPECT_EQ(file.content(), BuiltFile(after_).content());
}

TEST_P(OlderRows, WithoutRoomOnThePageThePresenterIsToldWhatToDo) {
    giveColumns(8);
    addToBoth(oldRow(1, u"een"));
    const std::size_t slots = 2;
    const std::size_t head = (GetParam() ? 10 : 14) + 2 * slots;
    addToBoth(Bytes(builder.pageSize() - head - oldRow(1, u"een").size()), hiddenFlag);
    const BuiltFile file(before_);
    const QByteArray before = file.content();
    const auto rows = file.rows();
    try {
        change(*rows, 0, flag_, true);
        ADD_FAILURE();
    } catch (const RuntimeError &error) {
        EXPECT_EQ(error.number(), ErrorNumber::FieldNotUpdatable);
        EXPECT_EQ(error.description(),
                  QStringLiteral("Dit veld kan niet worden gewijzigd: de regel is ouder dan het veld en er is geen "
                                 "ruimte om hem te vergroten; comprimeer de database in Access of laat haar opnieuw "
                                 "aanmaken, en probeer het dan opnieuw"));
    }
    EXPECT_EQ(file.content(), before);
    EXPECT_EQ(rows->value(0, flag_), QVariant(false));
}

TEST_P(OlderRows, AColumnNumberThatNoRowCanHaveIsDamage) {
    new_.columns[flag_].number = 256;
    start();
    before_.addRow(oldRow(1, u"een"));
    const BuiltFile file(before_);
    const QByteArray before = file.content();
    const auto rows = file.rows();
    EXPECT_EQ(errorOf([&] { change(*rows, 0, rows->fieldIndex(QStringLiteral("Imported")), true); }), 3343);
    EXPECT_EQ(file.content(), before);
}

TEST_P(OlderRows, APageThatSaysItIsFullIsBelieved) {
    giveColumns(8);
    addToBoth(oldRow(1, u"een"));
    const BuiltFile file(before_);
    QByteArray content = file.content();
    constexpr qsizetype dataPage = 7;
    const auto free = dataPage * static_cast<qsizetype>(builder.pageSize()) + 2;
    content[free] = 0;
    content[free + 1] = 0;
    writeAll(file.path(), content);
    EXPECT_EQ(errorOf([&] { change(*file.rows(), 0, flag_, true); }), 3164);
    EXPECT_EQ(file.content(), content);
}

TEST_P(OlderRows, AGrowingRowThatCannotBeWrittenLeavesThePageAsItWas) {
    giveColumns(8);
    addChanging(oldRow(1, u"een"), markedRow(1, u"een"));
    const std::vector<std::uint8_t> original = before_.build();
    MemoryDisk disk(original);
    const auto rows =
        JetEngine(disk.opener()).open(QStringLiteral("x.mdb"))->query(QStringLiteral("SELECT * FROM Proef"));
    disk.writeFailsAfter = builder.pageSize() - 10;
    EXPECT_EQ(errorOf([&] { change(*rows, 0, flag_, true); }), 61);
    EXPECT_TRUE(disk.content == original);
    EXPECT_EQ(rows->value(0, 0), QVariant(1));
    disk.forgetsWrites = true;
    EXPECT_EQ(errorOf([&] { change(*rows, 0, flag_, true); }), 75);
    EXPECT_TRUE(disk.content == original);
    change(*rows, 0, flag_, true);
    EXPECT_TRUE(disk.content == after_.build());
}

} // namespace
} // namespace orvel::test
