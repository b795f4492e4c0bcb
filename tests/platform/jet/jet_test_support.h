#pragma once

#include "platform/database.h"
#include "platform/runtime_error.h"

#include <QByteArray>
#include <QStringList>
#include <QTemporaryDir>

#include <gtest/gtest.h>
#include <ostream>

/// Failed comparisons show text instead of code units.
inline void PrintTo(const QString &text, std::ostream *out) {
    *out << '\n' << text.toStdString();
}

namespace orvel::test {

/// A database that the tests keep.
QString fixture(const QString &name);
/// The Access 97 playlist, which is not kept here; a test that needs it skips when it is absent.
QString access97();

QByteArray readAll(const QString &path);
void writeAll(const QString &path, const QByteArray &content);

/// A copy of a database in a folder of its own, to be changed.
class WorkCopy {
  public:
    explicit WorkCopy(const QString &original, const QString &name = QString());
    [[nodiscard]] QString path() const { return path_; }
    [[nodiscard]] QString folder() const { return folder_.path(); }
    [[nodiscard]] QByteArray content() const { return readAll(path_); }

  private:
    QTemporaryDir folder_;
    QString path_;
};

/// The lines of a table description beside a fixture: names and types first, then the rows in no order that matters.
QStringList describedRows(const QString &tsv);
/// A record set's rows in the same form, sorted.
QStringList rowLines(RecordSet &rows);

/// What mdb-export prints of a table, line by line; empty with a failed test when it does not run.
QStringList exported(const QString &path, const QString &table);
/// A record set as mdb-export prints it: names first, in the record set's order.
QStringList exportLines(RecordSet &rows);

/// Runs code and gives the number of the RuntimeError that it throws; 0 with a failed test when it throws nothing.
template <typename Code>
int errorOf(const Code &code) {
    try {
        code();
    } catch (const RuntimeError &error) {
        return static_cast<int>(error.number());
    }
    ADD_FAILURE() << "no error";
    return 0;
}

} // namespace orvel::test
