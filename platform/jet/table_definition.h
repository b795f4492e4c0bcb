#pragma once

#include "platform/jet/page_store.h"

#include <compare>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace orvel::jet {

enum class ColumnType : std::uint8_t {
    YesNo = 0x01,
    Byte = 0x02,
    Int16 = 0x03,
    Int32 = 0x04,
    Money = 0x05,
    Single = 0x06,
    Double = 0x07,
    Date = 0x08,
    Text = 0x0a,
    Memo = 0x0c,
    Decimal = 0x10,
    BigInteger = 0x13, ///< Access 2016
    Other = 0xff,      ///< anything else
};

/// Of a table, deleted ones counted.
constexpr std::size_t mostColumns = 255;

struct Column {
    std::u16string name;
    ColumnType type = ColumnType::Other;
    std::uint16_t number = 0;   ///< bit in the null mask; deleted columns keep theirs
    std::uint16_t position = 0; ///< place among the fields that the user sees
    std::uint16_t varIndex = 0; ///< entry in the row's table of variable columns
    std::uint16_t offset = 0;   ///< of a fixed column, in bytes behind the row's column count
    std::uint16_t length = 0;   ///< in bytes; 0 for a memo
    std::uint8_t scale = 0;     ///< of a decimal: digits behind the point
    bool fixed = false;
    bool automatic = false; ///< the engine fills it in: a counter or a calculated column
    bool indexed = false;   ///< part of an index
    bool operator==(const Column &) const = default;
};

/// Points at a slot of a page.
struct RowPointer {
    std::uint32_t page = 0;
    std::uint8_t slot = 0;
    bool operator==(const RowPointer &) const = default;
};

/// A pointer as stored: one byte slot, three bytes page.
inline RowPointer toRowPointer(std::uint32_t stored) {
    return {.page = stored >> 8, .slot = static_cast<std::uint8_t>(stored & 0xff)};
}

struct TableDefinition {
    std::uint32_t page = 0;       ///< its first page, by which data pages name their table
    std::vector<Column> columns;  ///< in the order that the user sees
    std::uint16_t varColumns = 0; ///< variable columns, deleted ones counted; 0: rows have no table of them
    RowPointer usageMap;          ///< names the data pages
    bool operator==(const TableDefinition &) const = default;
};

/// Bytes that a value of a fixed-size type takes in the row; 0 for the others.
std::size_t storedSize(ColumnType type);

/// Reads a definition, over all of its pages. Throws Error (Damaged).
TableDefinition readDefinition(PageStore &store, std::uint32_t page);

} // namespace orvel::jet
