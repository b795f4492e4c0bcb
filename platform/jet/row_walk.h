#pragma once

#include "platform/jet/data_page.h"

#include <cstdint>
#include <vector>

namespace orvel::jet {

/// A row of a table: the slot by which the table knows it, and where its bytes live.
struct RowPlace {
    std::uint32_t headPage = 0;
    std::uint32_t page = 0;
    std::uint16_t headSlot = 0;
    std::uint16_t slot = 0; ///< on page
    std::uint16_t start = 0;
    std::uint16_t length = 0;
    bool operator==(const RowPlace &) const = default;
};

/// Follows a row's slot to where its bytes live now. Throws Error (Damaged), also for a slot that is not a row.
RowPlace locateRow(PageStore &store, const TableDefinition &table, std::uint32_t page, std::uint16_t slot);

/// All rows of a table, in the order of its pages. Throws Error (Damaged).
std::vector<RowPlace> walkRows(PageStore &store, const TableDefinition &table);

/// The bytes of a row.
inline ByteView rowBytes(PageStore &store, const RowPlace &place) {
    return store.page(place.page).sub(place.start, place.length);
}

} // namespace orvel::jet
