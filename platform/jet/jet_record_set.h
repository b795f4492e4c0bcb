#pragma once

#include "platform/jet/jet_source.h"
#include "platform/jet/row_walk.h"
#include "platform/query.h"
#include "platform/record_set_base.h"

#include <vector>

namespace orvel {

/// The rows of a query on a Jet file, read from the file as it was at the query or the last refresh. A refresh that
/// fails leaves the record set as it was.
class JetRecordSet : public RecordSetBase {
  public:
    JetRecordSet(JetSource source, Query query);

    [[nodiscard]] int fieldCount() const override { return static_cast<int>(snapshot_.table.columns.size()); }
    [[nodiscard]] QString fieldName(int column) const override;
    [[nodiscard]] int recordCount() const override { return static_cast<int>(snapshot_.rows.size()); }
    [[nodiscard]] QVariant value(int row, int column) const override;
    void refresh() override;

  protected:
    [[nodiscard]] QVariant storable(int column, const QVariant &value) const override;
    void store(int row, const Changes &changes) override;

  private:
    struct Snapshot {
        std::unique_ptr<jet::PageStore> pages;
        jet::TableDefinition table;
        std::vector<jet::RowPlace> rows;
    };

    [[nodiscard]] static Snapshot read(const JetSource &source, const Query &query);
    static void keepSelected(Snapshot &snapshot, const jet::Column &column, qint64 wanted);
    static void sort(Snapshot &snapshot, const jet::Column &column);
    /// Rows give way to one of their page that has grown.
    void locateAgain(std::uint32_t page);

    JetSource source_;
    Query query_;
    Snapshot snapshot_;
};

} // namespace orvel
