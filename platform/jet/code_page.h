#pragma once

#include "platform/jet/byte_view.h"

#include <memory>
#include <string>

namespace orvel::jet {

/// Text in one of the Windows code pages, by its number; an unknown one is taken for 1252. Not thread-safe.
class CodePage {
  public:
    explicit CodePage(std::uint16_t number);

    /// Bytes that the code page does not define keep their number.
    [[nodiscard]] std::u16string decode(const ByteView &bytes);

  private:
    [[nodiscard]] std::u16string convert(std::string bytes);

    /// The system's converter; none for 1252.
    std::unique_ptr<void, int (*)(void *)> converter_;
};

} // namespace orvel::jet
