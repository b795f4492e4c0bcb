#include "platform/jet/jet_record_set.h"

#include "platform/jet/catalogue.h"
#include "platform/jet/value_writer.h"
#include "platform/runtime_error.h"

#include <QDateTime>

#include <algorithm>
#include <cmath>

namespace orvel {

namespace {

QString toQString(const std::u16string &text) {
    return QString::fromUtf16(text.data(), static_cast<qsizetype>(text.size()));
}

/// Null for what no calendar holds.
QVariant toDateTime(double days) {
    constexpr double msecsPerDay = 86400000;
    constexpr double firstDay = -657434; // the year 100
    constexpr double endDay = 2958466;   // the year 10000
    if (!(days >= firstDay && days < endDay)) {
        return {};
    }
    const double whole = std::trunc(days);
    const auto msecs = static_cast<qint64>(std::llrint(std::abs(days - whole) * msecsPerDay));
    const QDate date = QDate(1899, 12, 30).addDays(static_cast<qint64>(whole));
    return QDateTime(date, QTime(0, 0), Qt::UTC).addMSecs(msecs);
}

QVariant toVariant(const jet::Value &value) {
    struct Visitor {
        QVariant operator()(std::monostate) const { return {}; }
        QVariant operator()(bool truth) const { return truth; }
        QVariant operator()(std::int32_t number) const { return number; }
        QVariant operator()(std::int64_t number) const { return QVariant::fromValue<qint64>(number); }
        QVariant operator()(double number) const { return number; }
        QVariant operator()(jet::Date date) const { return toDateTime(date.days); }
        QVariant operator()(const std::u16string &text) const { return toQString(text); }
        QVariant operator()(jet::Unreadable) const { return QStringLiteral("(niet leesbaar)"); }
    };
    return std::visit(Visitor(), value);
}

QVariant readVariant(jet::PageStore &pages, const jet::TableDefinition &table, const jet::RowPlace &place,
                     const jet::Column &column) {
    const jet::Row row(pages.format(), table, jet::rowBytes(pages, place));
    return toVariant(jet::readValue(pages, column, row));
}

std::uint32_t findTable(jet::PageStore &pages, const QString &path, const QString &name) {
    for (const jet::TableEntry &entry : jet::readCatalogue(pages)) {
        if (toQString(entry.name).compare(name, Qt::CaseInsensitive) == 0) {
            return entry.page;
        }
    }
    throw RuntimeError(ErrorNumber::NoSuchTable, path, name);
}

const jet::Column &findColumn(const jet::TableDefinition &table, const QString &path, const QString &name) {
    for (const jet::Column &column : table.columns) {
        if (toQString(column.name).compare(name, Qt::CaseInsensitive) == 0) {
            return column;
        }
    }
    throw RuntimeError(ErrorNumber::ItemNotFound, path, name);
}

jet::Value toJetValue(const QVariant &value) {
    if (value.metaType().id() == QMetaType::Bool) {
        return value.toBool();
    }
    return value.toDouble();
}

} // namespace

JetRecordSet::JetRecordSet(JetSource source, Query query)
    : source_(std::move(source)), query_(std::move(query)), snapshot_(read(source_, query_)) {}

JetRecordSet::Snapshot JetRecordSet::read(const JetSource &source, const Query &query) {
    return withRuntimeErrors(source.path(), [&] {
        Snapshot snapshot;
        snapshot.pages = source.read();
        snapshot.table = jet::readDefinition(*snapshot.pages, findTable(*snapshot.pages, source.path(), query.table));
        snapshot.rows = jet::walkRows(*snapshot.pages, snapshot.table);
        if (query.where) {
            const jet::Column &column = findColumn(snapshot.table, source.path(), query.where->field);
            keepSelected(snapshot, column, query.where->value);
        }
        if (!query.orderBy.isEmpty()) {
            sort(snapshot, findColumn(snapshot.table, source.path(), query.orderBy));
        }
        return snapshot;
    });
}

void JetRecordSet::keepSelected(Snapshot &snapshot, const jet::Column &column, qint64 wanted) {
    std::erase_if(snapshot.rows, [&](const jet::RowPlace &place) {
        return criterionNumber(readVariant(*snapshot.pages, snapshot.table, place, column)) != wanted;
    });
}

void JetRecordSet::sort(Snapshot &snapshot, const jet::Column &column) {
    std::vector<QVariant> values;
    values.reserve(snapshot.rows.size());
    for (const jet::RowPlace &place : snapshot.rows) {
        values.push_back(readVariant(*snapshot.pages, snapshot.table, place, column));
    }
    std::vector<jet::RowPlace> sorted;
    sorted.reserve(snapshot.rows.size());
    for (const int row : sortedOrder(values)) {
        sorted.push_back(snapshot.rows[static_cast<std::size_t>(row)]);
    }
    snapshot.rows = std::move(sorted);
}

void JetRecordSet::refresh() {
    snapshot_ = read(source_, query_);
    reset();
}

QString JetRecordSet::fieldName(int column) const {
    if (column < 0 || column >= fieldCount()) {
        throw RuntimeError(ErrorNumber::ItemNotFound, source_.path(), QString::number(column));
    }
    return toQString(snapshot_.table.columns[static_cast<std::size_t>(column)].name);
}

QVariant JetRecordSet::value(int row, int column) const {
    checkPlace(row, column);
    return withRuntimeErrors(source_.path(), [&] {
        return readVariant(*snapshot_.pages, snapshot_.table, snapshot_.rows[static_cast<std::size_t>(row)],
                           snapshot_.table.columns[static_cast<std::size_t>(column)]);
    });
}

QVariant JetRecordSet::storable(int column, const QVariant &value) const {
    const jet::Column &target = snapshot_.table.columns[static_cast<std::size_t>(column)];
    if (!jet::isWritable(target) || value.isNull()) {
        const QString reason = target.indexed ? QStringLiteral("het veld hoort bij een index") : QString();
        throw RuntimeError(ErrorNumber::FieldNotUpdatable, source_.path(),
                           reason.isEmpty() ? fieldName(column) : fieldName(column) + QStringLiteral(", ") + reason);
    }
    const double number = storableNumber(value);
    if (target.type == jet::ColumnType::YesNo) {
        return number != 0;
    }
    if (!jet::fits(target.type, number)) {
        throw RuntimeError(ErrorNumber::Overflow, source_.path(), fieldName(column));
    }
    return number;
}

void JetRecordSet::store(int row, const Changes &changes) {
    std::vector<jet::Change> values;
    for (const auto &[column, value] : changes) {
        values.push_back(
            {.column = &snapshot_.table.columns[static_cast<std::size_t>(column)], .value = toJetValue(value)});
    }
    withRuntimeErrors(source_.path(), [&] {
        const jet::RowPlace place = snapshot_.rows[static_cast<std::size_t>(row)];
        jet::writeValues(source_.opener(), source_.nativePath(), *snapshot_.pages, snapshot_.table, place, values);
        locateAgain(place.page);
    });
}

void JetRecordSet::locateAgain(std::uint32_t page) {
    for (jet::RowPlace &place : snapshot_.rows) {
        if (place.page == page) {
            place = jet::locateRow(*snapshot_.pages, snapshot_.table, place.headPage, place.headSlot);
        }
    }
}

} // namespace orvel
