#pragma once

#include "platform/jet/raw_file.h"

#include <cstdint>
#include <optional>
#include <vector>

namespace orvel::test {

/// A disk with one file, which fails where it is told to.
class MemoryDisk {
  public:
    explicit MemoryDisk(std::vector<std::uint8_t> bytes) : content(std::move(bytes)) {}

    /// Must not outlive the disk.
    [[nodiscard]] jet::FileOpener opener();

    std::vector<std::uint8_t> content;
    std::optional<std::size_t> writeFailsAfter; ///< bytes of the next write that still reach the disk
    bool syncFails = false;                     ///< the next sync
    bool forgetsWrites = false;                 ///< the next write seems to succeed
    int syncs = 0;
};

} // namespace orvel::test
