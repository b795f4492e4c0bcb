#include "platform/jet/catalogue.h"

#include "platform/jet/row_walk.h"
#include "platform/jet/value.h"

#include <algorithm>

namespace orvel::jet {

namespace {

/// MSysObjects, the table of all objects, always starts here.
constexpr std::uint32_t cataloguePage = 2;
constexpr std::int32_t localTable = 1;
constexpr std::int32_t pageMask = 0x00ffffff;

const Column &find(const TableDefinition &table, std::u16string_view name) {
    const auto found = std::ranges::find(table.columns, name, &Column::name);
    if (found == table.columns.end()) {
        damaged(table.page, "de lijst van tabellen mist een kolom");
    }
    return *found;
}

} // namespace

std::vector<TableEntry> readCatalogue(PageStore &store) {
    const TableDefinition table = readDefinition(store, cataloguePage);
    const Column &id = find(table, u"Id");
    const Column &name = find(table, u"Name");
    const Column &type = find(table, u"Type");
    std::vector<TableEntry> entries;
    for (const RowPlace &place : walkRows(store, table)) {
        const Row row(store.format(), table, rowBytes(store, place));
        if (readValue(store, type, row) != Value(localTable)) {
            continue;
        }
        const Value number = readValue(store, id, row);
        const Value text = readValue(store, name, row);
        if (!std::holds_alternative<std::int32_t>(number) || !std::holds_alternative<std::u16string>(text)) {
            damaged(place.page, "een tabel zonder naam of plaats");
        }
        entries.push_back({.name = std::get<std::u16string>(text),
                           .page = static_cast<std::uint32_t>(std::get<std::int32_t>(number) & pageMask)});
    }
    return entries;
}

} // namespace orvel::jet
