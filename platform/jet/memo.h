#pragma once

#include "platform/jet/page_store.h"

#include <cstdint>
#include <vector>

namespace orvel::jet {

/// The bytes of a memo, which stand behind its head in the row, in one slot elsewhere, or in a chain of slots (HACKING
/// document, "Memo Field Definition"). Throws Error (Damaged).
std::vector<std::uint8_t> readMemo(PageStore &store, const ByteView &field);

} // namespace orvel::jet
