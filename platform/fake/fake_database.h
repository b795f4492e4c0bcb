#pragma once

#include "platform/database.h"
#include "platform/runtime_error.h"

#include <QList>
#include <QMap>
#include <QVariantList>

#include <optional>

namespace orvel {

/// Databases in memory for tests of rooms: tables by path, what was changed, and failures on demand. Statements, order,
/// finding and the current record work as in the real engine. Fields of which the first value that is not null is a
/// truth value or a number can be changed; fields without any value take whole numbers. Databases and record sets must
/// not outlive the engine.
class FakeDatabaseEngine : public DatabaseEngine {
  public:
    /// A value that update() has stored.
    struct Update {
        QString path;
        QString table;
        int row = 0; ///< row of the table as given to setTable()
        QString field;
        QVariant value;
        bool operator==(const Update &) const = default;
    };

    enum class Call { Open, Query, Refresh, Value, Update };

    /// Puts a table into the database of this path, which then exists; a table of that name is replaced. Each row has a
    /// value for each name of the header.
    void setTable(const QString &path, const QString &table, const QStringList &header,
                  const QList<QVariantList> &rows);
    /// As if somebody had deleted the file: opening, querying and refreshing throw FileNotFound.
    void removeFile(const QString &path);
    /// Calls of this kind throw, until clearFailure(). With afterCalls, that many of them still work.
    void fail(Call call, ErrorNumber number, int afterCalls = 0);
    void clearFailure(Call call);

    /// What the table holds now. Throws FileNotFound, NoSuchTable.
    [[nodiscard]] QList<QVariantList> rows(const QString &path, const QString &table) const;
    /// All values stored so far, oldest first.
    [[nodiscard]] const QList<Update> &updates() const { return updates_; }
    /// Paths given to open(), oldest first, those that failed too.
    [[nodiscard]] const QStringList &opened() const { return opened_; }
    /// Statements given to query(), oldest first.
    [[nodiscard]] const QStringList &statements() const { return statements_; }

    [[nodiscard]] std::unique_ptr<Database> open(const QString &path) override;

  private:
    friend class FakeDatabase;
    friend class FakeRecordSet;

    struct Table {
        QString name;
        QStringList header;
        QList<QVariantList> rows;
    };
    struct Failure {
        ErrorNumber number = ErrorNumber::InternalError;
        int afterCalls = 0;
    };

    void failWhereAsked(Call call, const QString &path);
    [[nodiscard]] const Table &table(const QString &path, const QString &name) const;
    void store(const Update &update);

    QMap<QString, QList<Table>> files_;
    QMap<Call, Failure> failures_;
    QList<Update> updates_;
    QStringList opened_;
    QStringList statements_;
};

} // namespace orvel
