#include "platform/fake/fake_database.h"

#include "platform/query.h"
#include "platform/record_set_base.h"

#include <algorithm>

namespace orvel {

/// A query's rows, copied from the table as they were at the query or the last refresh.
class FakeRecordSet : public RecordSetBase {
  public:
    FakeRecordSet(FakeDatabaseEngine &engine, QString path, Query query)
        : engine_(engine), path_(std::move(path)), query_(std::move(query)) {
        read();
    }

    [[nodiscard]] int fieldCount() const override { return static_cast<int>(table_.header.size()); }
    [[nodiscard]] QString fieldName(int column) const override { return table_.header.value(column); }
    [[nodiscard]] int recordCount() const override { return static_cast<int>(rows_.size()); }

    [[nodiscard]] QVariant value(int row, int column) const override {
        checkPlace(row, column);
        engine_.failWhereAsked(FakeDatabaseEngine::Call::Value, path_);
        return table_.rows.at(tableRow(row)).at(column);
    }

    void refresh() override {
        engine_.failWhereAsked(FakeDatabaseEngine::Call::Refresh, path_);
        read();
        reset();
    }

  protected:
    [[nodiscard]] QVariant storable(int column, const QVariant &value) const override {
        const int type = columnType(column);
        if ((type != QMetaType::Bool && type != QMetaType::Int && type != QMetaType::Double) || value.isNull()) {
            throw RuntimeError(ErrorNumber::FieldNotUpdatable, path_, fieldName(column));
        }
        QVariant stored = storableNumber(value);
        if (type == QMetaType::Bool) {
            return stored.toDouble() != 0;
        }
        stored.convert(QMetaType(type));
        return stored;
    }

    void store(int row, const Changes &changes) override {
        engine_.failWhereAsked(FakeDatabaseEngine::Call::Update, path_);
        for (const auto &[column, value] : changes) {
            engine_.store({.path = path_,
                           .table = table_.name,
                           .row = tableRow(row),
                           .field = fieldName(column),
                           .value = value});
            table_.rows[tableRow(row)][column] = value;
        }
    }

  private:
    [[nodiscard]] int tableRow(int row) const { return rows_.at(static_cast<std::size_t>(row)); }

    [[nodiscard]] int columnType(int column) const {
        const auto known = std::ranges::find_if(table_.rows, [&](const auto &row) { return !row.at(column).isNull(); });
        return known == table_.rows.end() ? QMetaType::Int : known->at(column).metaType().id();
    }

    void read() {
        table_ = engine_.table(path_, query_.table);
        rows_.clear();
        const int wanted = query_.where ? fieldIndex(query_.where->field) : -1;
        for (int row = 0; row < table_.rows.size(); ++row) {
            if (wanted < 0 || criterionNumber(table_.rows.at(row).at(wanted)) == query_.where->value) {
                rows_.push_back(row);
            }
        }
        if (!query_.orderBy.isEmpty()) {
            sort(fieldIndex(query_.orderBy));
        }
    }

    void sort(int column) {
        std::vector<QVariant> values;
        for (const int row : rows_) {
            values.push_back(table_.rows.at(row).at(column));
        }
        std::vector<int> sorted;
        for (const int position : sortedOrder(values)) {
            sorted.push_back(rows_[static_cast<std::size_t>(position)]);
        }
        rows_ = std::move(sorted);
    }

    FakeDatabaseEngine &engine_;
    QString path_;
    Query query_;
    FakeDatabaseEngine::Table table_;
    std::vector<int> rows_;
};

class FakeDatabase : public Database {
  public:
    FakeDatabase(FakeDatabaseEngine &engine, QString path) : engine_(engine), path_(std::move(path)) {}

    [[nodiscard]] std::unique_ptr<RecordSet> query(const QString &statement) override {
        engine_.statements_ += statement;
        engine_.failWhereAsked(FakeDatabaseEngine::Call::Query, path_);
        return std::make_unique<FakeRecordSet>(engine_, path_, Query::parse(statement));
    }

  private:
    FakeDatabaseEngine &engine_;
    QString path_;
};

void FakeDatabaseEngine::setTable(const QString &path, const QString &table, const QStringList &header,
                                  const QList<QVariantList> &rows) {
    QList<Table> &tables = files_[path];
    tables.removeIf([&](const Table &other) { return other.name.compare(table, Qt::CaseInsensitive) == 0; });
    tables.append({.name = table, .header = header, .rows = rows});
}

void FakeDatabaseEngine::removeFile(const QString &path) {
    files_.remove(path);
}

void FakeDatabaseEngine::fail(Call call, ErrorNumber number, int afterCalls) {
    failures_[call] = {.number = number, .afterCalls = afterCalls};
}

void FakeDatabaseEngine::clearFailure(Call call) {
    failures_.remove(call);
}

void FakeDatabaseEngine::failWhereAsked(Call call, const QString &path) {
    const auto failure = failures_.find(call);
    if (failure != failures_.end() && failure->afterCalls-- <= 0) {
        throw RuntimeError(failure->number, path);
    }
}

const FakeDatabaseEngine::Table &FakeDatabaseEngine::table(const QString &path, const QString &name) const {
    const auto file = files_.find(path);
    if (file == files_.end()) {
        throw RuntimeError(ErrorNumber::FileNotFound, path);
    }
    for (const Table &table : *file) {
        if (table.name.compare(name, Qt::CaseInsensitive) == 0) {
            return table;
        }
    }
    throw RuntimeError(ErrorNumber::NoSuchTable, path, name);
}

QList<QVariantList> FakeDatabaseEngine::rows(const QString &path, const QString &table) const {
    return this->table(path, table).rows;
}

void FakeDatabaseEngine::store(const Update &update) {
    for (Table &table : files_[update.path]) {
        if (table.name == update.table) {
            table.rows[update.row][table.header.indexOf(update.field)] = update.value;
        }
    }
    updates_.append(update);
}

std::unique_ptr<Database> FakeDatabaseEngine::open(const QString &path) {
    opened_ += path;
    failWhereAsked(Call::Open, path);
    if (!files_.contains(path)) {
        throw RuntimeError(ErrorNumber::FileNotFound, path);
    }
    return std::make_unique<FakeDatabase>(*this, path);
}

} // namespace orvel
