#pragma once

#include "platform/jet/page_store.h"

#include <cstdint>
#include <string>
#include <vector>

namespace orvel::jet {

struct TableEntry {
    std::u16string name;
    std::uint32_t page = 0; ///< first page of its definition
};

/// The tables that the file itself holds: no linked tables, no queries. Throws Error (Damaged).
std::vector<TableEntry> readCatalogue(PageStore &store);

} // namespace orvel::jet
