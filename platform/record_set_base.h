#pragma once

#include "platform/database.h"

#include <map>
#include <unordered_map>

namespace orvel {

/// What every record set does alike, wherever the rows come from: the current record, names of fields, finding, and
/// keeping the changes of an edit together until update().
/// moveFirst() and moveLast() without records and moveNext() at end of file throw NoCurrentRecord. Moving gives up the
/// changes of an edit. setField() and update() without edit() throw FieldNotUpdatable.
class RecordSetBase : public RecordSet {
  public:
    [[nodiscard]] int fieldIndex(const QString &name) const override;
    void moveFirst() override;
    void moveLast() override;
    void moveNext() override;
    void moveTo(int row) override;
    [[nodiscard]] bool endOfFile() const override { return current_ >= recordCount(); }
    [[nodiscard]] int currentRow() const override { return current_; }
    bool findFirst(const QString &criterion) override;
    [[nodiscard]] QVariant field(int column) const override;
    void edit() override;
    void setField(int column, const QVariant &value) override;
    void update() override;

  protected:
    using Changes = std::map<int, QVariant>;

    /// The value as it will be stored in the field. Throws FieldNotUpdatable, TypeMismatch, Overflow.
    [[nodiscard]] virtual QVariant storable(int column, const QVariant &value) const = 0;
    /// Stores values that storable() gave.
    virtual void store(int row, const Changes &changes) = 0;

    /// For a refresh: back to the first record, and nothing remembered.
    void reset();
    /// Throws NoCurrentRecord, ItemNotFound.
    void checkPlace(int row, int column) const;

  private:
    /// First row of each number of a column.
    using NumberIndex = std::unordered_map<qint64, int>;

    const NumberIndex &numberIndex(int column);
    void makeCurrent(int row);

    int current_ = 0;
    bool editing_ = false;
    Changes changes_;
    std::map<int, NumberIndex> indexes_;
};

/// A number or truth value (a text that is a number, too) as a number: true is -1. Throws TypeMismatch.
double storableNumber(const QVariant &value);

} // namespace orvel
