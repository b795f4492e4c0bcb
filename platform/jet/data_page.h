#pragma once

#include "platform/jet/table_definition.h"

#include <cstdint>

namespace orvel::jet {

/// What a slot of a data page says of its row (HACKING document, "Data Pages").
struct Slot {
    bool moved = false;  ///< the bytes are a pointer to where the row lives now
    bool hidden = false; ///< deleted, or the target of a moved row: not a row by itself
    std::uint16_t number = 0;
    std::uint16_t start = 0;
    ByteView bytes;
};

/// A data page, its slots checked one by one as they are asked for.
class DataPage {
  public:
    /// Throws Error (Damaged) for a page of another kind and for a slot table that does not fit.
    DataPage(const Format &format, const ByteView &page);

    /// The first page of the definition of the table that the page belongs to.
    [[nodiscard]] std::uint32_t owner() const { return page_.u32(4); }
    [[nodiscard]] bool holdsLongValues() const;
    [[nodiscard]] std::uint16_t slotCount() const { return count_; }
    [[nodiscard]] Slot slot(std::uint16_t number) const;

  private:
    [[nodiscard]] std::uint16_t startOf(std::uint16_t number) const;

    ByteView page_;
    std::size_t table_;
    std::uint16_t count_;
};

/// Gives a row of a data page other bytes, at least as many as it has: the rows behind it give way to the front, and
/// the page's free space shrinks; slots keep their numbers. False, with the page as it was, when there is no room for
/// that. Throws Error (Damaged), also for a slot table that contradicts itself.
bool growRow(const Format &format, std::span<std::uint8_t> page, std::uint32_t pageNumber, std::uint16_t slot,
             std::span<const std::uint8_t> row);

/// A slot by its pointer, whatever its flags.
Slot readSlot(PageStore &store, RowPointer pointer);

} // namespace orvel::jet
