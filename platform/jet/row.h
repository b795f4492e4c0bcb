#pragma once

#include "platform/jet/table_definition.h"

#include <optional>

namespace orvel::jet {

/// Where the values stand in a row's bytes (HACKING document, "Row Definition").
class Row {
  public:
    /// Throws Error (Damaged) for a row too short for its own null mask.
    Row(const Format &format, const TableDefinition &table, const ByteView &bytes);

    /// How many columns there were when the row was stored; those from this number on are younger.
    [[nodiscard]] std::size_t columnCount() const { return columns_; }
    /// Position in the row of the byte with the column's bit of the null mask; the row knows the column.
    [[nodiscard]] std::size_t maskByte(const Column &column) const { return mask_ + column.number / 8U; }
    /// The column's bit there.
    [[nodiscard]] static std::uint8_t maskBit(const Column &column) {
        return static_cast<std::uint8_t>(1U << (column.number % 8U));
    }
    /// A yes/no value, or for other types whether there is a value.
    [[nodiscard]] bool bit(const Column &column) const;
    /// Position in the row of a fixed column's value, which may lie beyond fixedEnd().
    [[nodiscard]] std::size_t fixedPlace(const Column &column) const { return head_ + column.offset; }
    /// Position behind the row's fixed values; it need not have places for all of them. Throws Error (Damaged).
    [[nodiscard]] std::size_t fixedEnd() const;
    /// A value's bytes, none for null. Throws Error (Damaged).
    [[nodiscard]] std::optional<ByteView> field(const Column &column) const;

    /// The row's bytes as they are when it has been stored with at least this many columns and its fixed values end at
    /// fixedEnd or later; what comes in addition is null. Throws Error (Damaged).
    [[nodiscard]] std::vector<std::uint8_t> extended(std::size_t columnCount, std::size_t fixedEnd) const;

  private:
    using Bytes = std::vector<std::uint8_t>;

    [[nodiscard]] std::size_t variableCount() const;
    [[nodiscard]] std::size_t variableOffset(std::size_t entry) const;
    [[nodiscard]] std::size_t jet3Offset(std::size_t entry) const;
    [[nodiscard]] std::optional<ByteView> variableField(const Column &column) const;
    [[nodiscard]] bool knows(const Column &column) const { return column.number < columns_; }
    [[nodiscard]] std::size_t jumpCount() const { return jet3_ ? (bytes_.size() - 1) / 256 : 0; }
    [[nodiscard]] std::size_t offsetTable() const;
    void appendOffsets(Bytes &row, std::size_t shift, std::size_t maskSize) const;
    [[nodiscard]] Bytes extendedMask(std::size_t columnCount) const;

    ByteView bytes_;
    bool jet3_;
    bool hasVariables_;
    std::size_t head_;
    std::size_t columns_;
    std::size_t mask_ = 0;
    std::size_t tail_ = 0; ///< where the count of variable columns stands
};

} // namespace orvel::jet
