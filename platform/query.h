#pragma once

#include <QString>
#include <QVariant>

#include <optional>
#include <utility>
#include <vector>

namespace orvel {

/// One of the statements that the system uses: all fields of a table, a selection by number and an order being
/// optional.
struct Query {
    struct Condition {
        QString field;
        qint64 value = 0;
    };

    QString table;
    std::optional<Condition> where; ///< WHERE [f] = n
    QString orderBy;                ///< ORDER BY [f]; empty: the table's own order

    /// Keywords without regard to case, brackets round names optional. Throws QueryNotSupported.
    static Query parse(const QString &statement);
};

/// Reads a search criterion "field=number". Throws QueryNotSupported.
Query::Condition parseCriterion(const QString &criterion);

/// A value as criteria compare it, to the last digit: true is -1, a date is its days since 30 December 1899; none for
/// null and for what is no whole number. Throws TypeMismatch for text.
std::optional<qint64> criterionNumber(const QVariant &value);

/// The order in which ORDER BY puts values: null first, numbers by size, text without regard to case (then to accents);
/// equal values stay as they were. Gives positions in values.
std::vector<int> sortedOrder(const std::vector<QVariant> &values);

} // namespace orvel
