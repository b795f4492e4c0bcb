#pragma once

#include "platform/jet/table_definition.h"

#include <cstdint>
#include <vector>

namespace orvel::jet {

/// The pages that a usage map names, rising (HACKING document, "Page Usage Maps"). Throws Error (Damaged) for pages
/// that the file does not have.
std::vector<std::uint32_t> readUsageMap(PageStore &store, RowPointer map);

} // namespace orvel::jet
