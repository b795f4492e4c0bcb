#include "platform/record_set_base.h"

#include "platform/query.h"
#include "platform/runtime_error.h"

namespace orvel {

int RecordSetBase::fieldIndex(const QString &name) const {
    for (int column = 0; column < fieldCount(); ++column) {
        if (fieldName(column).compare(name, Qt::CaseInsensitive) == 0) {
            return column;
        }
    }
    throw RuntimeError(ErrorNumber::ItemNotFound, {}, name);
}

void RecordSetBase::checkPlace(int row, int column) const {
    if (row < 0 || row >= recordCount()) {
        throw RuntimeError(ErrorNumber::NoCurrentRecord);
    }
    if (column < 0 || column >= fieldCount()) {
        throw RuntimeError(ErrorNumber::ItemNotFound, {}, QString::number(column));
    }
}

void RecordSetBase::makeCurrent(int row) {
    current_ = row;
    editing_ = false;
    changes_.clear();
}

void RecordSetBase::reset() {
    makeCurrent(0);
    indexes_.clear();
}

void RecordSetBase::moveFirst() {
    moveTo(0);
}

void RecordSetBase::moveLast() {
    moveTo(recordCount() - 1);
}

void RecordSetBase::moveNext() {
    checkPlace(current_, 0);
    makeCurrent(current_ + 1);
}

void RecordSetBase::moveTo(int row) {
    checkPlace(row, 0);
    makeCurrent(row);
}

const RecordSetBase::NumberIndex &RecordSetBase::numberIndex(int column) {
    const auto known = indexes_.find(column);
    if (known != indexes_.end()) {
        return known->second;
    }
    NumberIndex index;
    index.reserve(static_cast<std::size_t>(recordCount()));
    for (int row = 0; row < recordCount(); ++row) {
        const std::optional<qint64> number = criterionNumber(value(row, column));
        if (number) {
            index.try_emplace(*number, row);
        }
    }
    return indexes_.emplace(column, std::move(index)).first->second;
}

bool RecordSetBase::findFirst(const QString &criterion) {
    const Query::Condition condition = parseCriterion(criterion);
    const NumberIndex &index = numberIndex(fieldIndex(condition.field));
    const auto found = index.find(condition.value);
    if (found == index.end()) {
        return false;
    }
    makeCurrent(found->second);
    return true;
}

QVariant RecordSetBase::field(int column) const {
    return value(current_, column);
}

void RecordSetBase::edit() {
    checkPlace(current_, 0);
    changes_.clear();
    editing_ = true;
}

void RecordSetBase::setField(int column, const QVariant &value) {
    checkPlace(current_, column);
    if (!editing_) {
        throw RuntimeError(ErrorNumber::FieldNotUpdatable, {}, fieldName(column));
    }
    changes_[column] = storable(column, value);
}

void RecordSetBase::update() {
    if (!editing_) {
        throw RuntimeError(ErrorNumber::FieldNotUpdatable);
    }
    // The edit is over whatever comes of it; the next one starts from what the file holds.
    editing_ = false;
    const Changes changes = std::exchange(changes_, {});
    store(current_, changes);
    for (const auto &[column, value] : changes) {
        indexes_.erase(column);
    }
}

double storableNumber(const QVariant &value) {
    if (value.metaType().id() == QMetaType::Bool) {
        return value.toBool() ? -1 : 0;
    }
    bool valid = false;
    const double number = value.toDouble(&valid);
    if (!valid || value.isNull()) {
        throw RuntimeError(ErrorNumber::TypeMismatch);
    }
    return number;
}

} // namespace orvel
