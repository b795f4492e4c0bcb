#include "tests/platform/jet/exercise.h"

#include "platform/jet/catalogue.h"
#include "platform/jet/jet_engine.h"
#include "platform/query.h"
#include "platform/runtime_error.h"
#include "tests/platform/jet/memory_disk.h"

#include <algorithm>

namespace orvel::test {

namespace {

constexpr int mostTables = 12;
constexpr int mostValues = 4000;

template <typename Work>
void ignoringErrors(const Work &work) {
    try {
        work();
    } catch (const RuntimeError &error) {
        (void)error;
    } catch (const jet::Error &error) {
        (void)error;
    }
}

int readValues(RecordSet &rows) {
    int values = 0;
    for (int row = 0; row < rows.recordCount() && values < mostValues; ++row) {
        for (int column = 0; column < rows.fieldCount(); ++column) {
            ignoringErrors([&] { (void)rows.value(row, column); });
            ++values;
        }
    }
    return values;
}

void changeValues(RecordSet &rows) {
    for (int column = 0; column < rows.fieldCount(); ++column) {
        ignoringErrors([&] {
            rows.moveLast();
            rows.edit();
            rows.setField(column, 1);
            rows.update();
        });
    }
}

int exerciseTable(Database &database, const QString &table) {
    int values = 0;
    ignoringErrors([&] {
        const QString statement = QStringLiteral("SELECT * FROM [%1]").arg(table);
        const auto rows = database.query(statement);
        values = readValues(*rows);
        const QString field = rows->fieldCount() > 0 ? rows->fieldName(0) : QString();
        ignoringErrors([&] { (void)rows->findFirst(QStringLiteral("[%1]=1").arg(field)); });
        ignoringErrors([&] { (void)database.query(statement + QStringLiteral(" ORDER BY [%1]").arg(field)); });
        changeValues(*rows);
        rows->refresh();
    });
    return values;
}

} // namespace

int exerciseDatabase(std::span<const std::uint8_t> bytes) {
    MemoryDisk disk({bytes.begin(), bytes.end()});
    int values = 0;
    ignoringErrors([&] {
        JetEngine engine(disk.opener());
        const auto database = engine.open(QStringLiteral("x.mdb"));
        jet::PageStore store(disk.opener(), "x.mdb", jet::RawFile::Mode::Read);
        const auto tables = jet::readCatalogue(store);
        for (std::size_t i = 0; i < std::min<std::size_t>(tables.size(), mostTables); ++i) {
            values += exerciseTable(*database, QString::fromStdU16String(tables[tables.size() - 1 - i].name));
        }
    });
    return values;
}

void exerciseStatement(std::span<const std::uint8_t> bytes) {
    const QString text =
        QString::fromUtf8(reinterpret_cast<const char *>(bytes.data()), static_cast<qsizetype>(bytes.size()));
    ignoringErrors([&] { (void)Query::parse(text); });
    ignoringErrors([&] { (void)parseCriterion(text); });
}

} // namespace orvel::test
