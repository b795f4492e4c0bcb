#pragma once

#include <QString>
#include <QStringList>
#include <QVariant>

#include <memory>

namespace orvel {

/// The rows that a query gave, with a current record. Values are null (an invalid QVariant), bool, qint32, qint64 (big
/// integers, and decimals without a fraction), double, QDateTime or QString. A value of a field type that cannot be
/// read is the text "(niet leesbaar)". Rows keep their place until refresh(). Not thread-safe: the window thread only.
class RecordSet {
  public:
    virtual ~RecordSet() = default;

    /// Number of fields, in the order of the table's columns.
    [[nodiscard]] virtual int fieldCount() const = 0;
    [[nodiscard]] virtual QString fieldName(int column) const = 0;
    /// Position of a field; names match without regard to case. Throws ItemNotFound.
    [[nodiscard]] virtual int fieldIndex(const QString &name) const = 0;

    [[nodiscard]] virtual int recordCount() const = 0;
    virtual void moveFirst() = 0;
    virtual void moveLast() = 0;
    virtual void moveNext() = 0;
    /// Makes a row (0 .. recordCount()-1) the current record. Throws NoCurrentRecord.
    virtual void moveTo(int row) = 0;
    [[nodiscard]] virtual bool endOfFile() const = 0;
    /// Row number of the current record, recordCount() at end of file.
    [[nodiscard]] virtual int currentRow() const = 0;

    /// Makes the first record whose field equals value the current one; tells whether there is one. Without a match the
    /// current record stays. The criterion is the text "field=number". Throws QueryNotSupported, ItemNotFound.
    virtual bool findFirst(const QString &criterion) = 0;

    /// A value of the current record. Throws NoCurrentRecord, ItemNotFound, DatabaseDamaged.
    [[nodiscard]] virtual QVariant field(int column) const = 0;
    [[nodiscard]] QVariant field(const QString &name) const { return field(fieldIndex(name)); }
    /// A value of any record, for models. Throws like field().
    [[nodiscard]] virtual QVariant value(int row, int column) const = 0;

    /// edit(), set..., update() change values of the current record in the file, in place: only yes/no fields and
    /// numbers, everything else throws FieldNotUpdatable. Nothing is changed before update(); update() writes, syncs
    /// and reads back before it returns. Throws FieldNotUpdatable, DatabaseLocked, PermissionDenied, DiskFull,
    /// DatabaseDamaged; the file is then as it was.
    virtual void edit() = 0;
    virtual void setField(int column, const QVariant &value) = 0;
    virtual void update() = 0;

    /// Reads the file again; the current record becomes the first one.
    virtual void refresh() = 0;
};

/// An open database file. Record sets stay usable when it is destroyed; the file is free once all of them are gone.
class Database {
  public:
    virtual ~Database() = default;

    /// The statement shapes that the system uses: all fields of a table, optionally WHERE [f] = n, optionally
    /// ORDER BY [f]; keywords and names without regard to case, brackets optional.
    /// Throws QueryNotSupported, NoSuchTable, ItemNotFound, DatabaseDamaged.
    [[nodiscard]] virtual std::unique_ptr<RecordSet> query(const QString &statement) = 0;
};

/// Opens database files.
class DatabaseEngine {
  public:
    virtual ~DatabaseEngine() = default;

    /// Throws FileNotFound, PermissionDenied, DatabaseDamaged. The file's content decides its kind, not its name.
    [[nodiscard]] virtual std::unique_ptr<Database> open(const QString &path) = 0;
};

} // namespace orvel
