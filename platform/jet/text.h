#pragma once

#include "platform/jet/byte_view.h"

#include <string>

namespace orvel::jet {

/// Names of Jet 4: UTF-16, never compressed.
std::u16string fromUtf16(const ByteView &bytes);
/// Values of Jet 4: UTF-16, or behind the mark ff fe its compressed form (HACKING document, "Text Data Type").
std::u16string fromJet4Text(const ByteView &bytes);

} // namespace orvel::jet
