#include "platform/query.h"

#include "platform/runtime_error.h"

#include <QDateTime>

#include <algorithm>
#include <cmath>
#include <numeric>
#include <tuple>

namespace orvel {

namespace {

/// Reads a statement piece by piece; a piece that is not there as expected throws QueryNotSupported.
class Scanner {
  public:
    explicit Scanner(QString text) : text_(std::move(text)) {}

    [[nodiscard]] bool atEnd() {
        skipSpace();
        return at_ == text_.size();
    }

    bool takeWord(QLatin1String word) {
        const qsizetype start = at_;
        if (takeBareWord().compare(word, Qt::CaseInsensitive) == 0) {
            return true;
        }
        at_ = start;
        return false;
    }

    bool takeSymbol(QLatin1Char symbol) {
        if (atEnd() || text_.at(at_) != symbol) {
            return false;
        }
        ++at_;
        return true;
    }

    void expect(bool taken) const {
        if (!taken) {
            throw RuntimeError(ErrorNumber::QueryNotSupported, {}, text_);
        }
    }

    QString takeName() {
        QString name;
        if (takeSymbol(QLatin1Char('['))) {
            const qsizetype end = text_.indexOf(QLatin1Char(']'), at_);
            expect(end >= 0);
            name = text_.mid(at_, end - at_);
            at_ = end + 1;
        } else {
            name = takeBareWord();
        }
        expect(!name.isEmpty());
        return name;
    }

    qint64 takeNumber() {
        skipSpace();
        const qsizetype start = at_;
        while (at_ < text_.size() && (text_.at(at_).isDigit() || (at_ == start && text_.at(at_) == QLatin1Char('-')))) {
            ++at_;
        }
        bool valid = false;
        const qint64 number = QStringView(text_).mid(start, at_ - start).toLongLong(&valid);
        expect(valid);
        return number;
    }

  private:
    void skipSpace() {
        while (at_ < text_.size() && text_.at(at_).isSpace()) {
            ++at_;
        }
    }

    QString takeBareWord() {
        skipSpace();
        const qsizetype start = at_;
        while (at_ < text_.size() && (text_.at(at_).isLetterOrNumber() || text_.at(at_) == QLatin1Char('_'))) {
            ++at_;
        }
        return text_.mid(start, at_ - start);
    }

    QString text_;
    qsizetype at_ = 0;
};

Query::Condition takeCondition(Scanner &scanner) {
    Query::Condition condition;
    condition.field = scanner.takeName();
    scanner.expect(scanner.takeSymbol(QLatin1Char('=')));
    condition.value = scanner.takeNumber();
    return condition;
}

/// What a value is sorted by, worked out once a value.
struct SortKey {
    int kind = 0; // null, number, text
    double number = 0;
    qint64 whole = 0; // tells whole numbers apart that are one double
    QString text;
};

/// Letters without accents and case come first, so that accents and spelling decide only between equal words.
QString textKey(const QString &text) {
    const QString folded = text.toCaseFolded();
    QString letters = folded.normalized(QString::NormalizationForm_D);
    letters.removeIf([](QChar c) { return c.category() == QChar::Mark_NonSpacing; });
    return letters + QChar(QChar::Null) + folded;
}

double toNumber(const QVariant &value) {
    switch (value.metaType().id()) {
    case QMetaType::Bool:
        return value.toBool() ? -1 : 0;
    case QMetaType::QDateTime: {
        constexpr double msecsPerDay = 86400000;
        const QDateTime time = value.toDateTime();
        return static_cast<double>(QDate(1899, 12, 30).daysTo(time.date())) +
               time.time().msecsSinceStartOfDay() / msecsPerDay;
    }
    default:
        return value.toDouble();
    }
}

std::optional<qint64> wholeNumber(double number) {
    constexpr double end = 9223372036854775808.0; // the first one that does not fit
    const bool whole = number >= -end && number < end && number == std::trunc(number);
    return whole ? std::optional(static_cast<qint64>(number)) : std::nullopt;
}

SortKey sortKey(const QVariant &value) {
    if (value.isNull()) {
        return {};
    }
    if (value.metaType().id() == QMetaType::QString) {
        return {.kind = 2, .number = 0, .whole = 0, .text = textKey(value.toString())};
    }
    const double number = toNumber(value);
    return {.kind = 1,
            .number = std::isnan(number) ? -HUGE_VAL : number,
            .whole = criterionNumber(value).value_or(0),
            .text = {}};
}

bool isLess(const SortKey &a, const SortKey &b) {
    return std::tie(a.kind, a.number, a.whole, a.text) < std::tie(b.kind, b.number, b.whole, b.text);
}

} // namespace

Query Query::parse(const QString &statement) {
    Scanner scanner(statement);
    Query query;
    scanner.expect(scanner.takeWord(QLatin1String("SELECT")));
    scanner.expect(scanner.takeSymbol(QLatin1Char('*')));
    scanner.expect(scanner.takeWord(QLatin1String("FROM")));
    query.table = scanner.takeName();
    if (scanner.takeWord(QLatin1String("WHERE"))) {
        query.where = takeCondition(scanner);
    }
    if (scanner.takeWord(QLatin1String("ORDER"))) {
        scanner.expect(scanner.takeWord(QLatin1String("BY")));
        query.orderBy = scanner.takeName();
    }
    scanner.takeSymbol(QLatin1Char(';'));
    scanner.expect(scanner.atEnd());
    return query;
}

Query::Condition parseCriterion(const QString &criterion) {
    Scanner scanner(criterion);
    Query::Condition condition = takeCondition(scanner);
    scanner.expect(scanner.atEnd());
    return condition;
}

std::optional<qint64> criterionNumber(const QVariant &value) {
    if (value.isNull()) {
        return std::nullopt;
    }
    switch (value.metaType().id()) {
    case QMetaType::QString:
        throw RuntimeError(ErrorNumber::TypeMismatch);
    case QMetaType::LongLong:
        return value.toLongLong();
    default:
        return wholeNumber(toNumber(value));
    }
}

std::vector<int> sortedOrder(const std::vector<QVariant> &values) {
    std::vector<SortKey> keys;
    keys.reserve(values.size());
    std::ranges::transform(values, std::back_inserter(keys), sortKey);
    std::vector<int> order(values.size());
    std::iota(order.begin(), order.end(), 0);
    std::ranges::stable_sort(order, [&keys](int a, int b) {
        return isLess(keys[static_cast<std::size_t>(a)], keys[static_cast<std::size_t>(b)]);
    });
    return order;
}

} // namespace orvel
