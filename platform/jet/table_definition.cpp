#include "platform/jet/table_definition.h"

#include "platform/jet/text.h"

#include <algorithm>
#include <array>
#include <tuple>

namespace orvel::jet {

namespace {

/// Where things stand in a definition; in bytes (HACKING document, "TDEF Pages").
struct Layout {
    std::size_t varColumns, columns, indexes, usageMap, afterHead;
    std::size_t indexHead, column, indexColumns, index;
    std::size_t number, varIndex, position, scale, flags, offset, length;
};

constexpr Layout jet3Layout{.varColumns = 23,
                            .columns = 25,
                            .indexes = 31,
                            .usageMap = 35,
                            .afterHead = 43,
                            .indexHead = 8,
                            .column = 18,
                            .indexColumns = 0,
                            .index = 39,
                            .number = 1,
                            .varIndex = 3,
                            .position = 5,
                            .scale = 10,
                            .flags = 13,
                            .offset = 14,
                            .length = 16};
constexpr Layout jet4Layout{.varColumns = 43,
                            .columns = 45,
                            .indexes = 51,
                            .usageMap = 55,
                            .afterHead = 63,
                            .indexHead = 12,
                            .column = 25,
                            .indexColumns = 4,
                            .index = 52,
                            .number = 5,
                            .varIndex = 7,
                            .position = 9,
                            .scale = 12,
                            .flags = 15,
                            .offset = 21,
                            .length = 23};

constexpr std::size_t pageHead = 8;
constexpr std::size_t nextPageAt = 4;
constexpr std::size_t jet4ExtraFlagsAt = 16;
constexpr std::size_t columnsPerIndex = 10;
constexpr std::uint16_t noColumn = 0xffff;
/// More than 255 columns and 32 indexes with the longest names can fill.
constexpr int mostPages = 64;

std::vector<std::uint8_t> joinPages(PageStore &store, std::uint32_t first) {
    std::vector<std::uint8_t> joined;
    std::uint32_t number = first;
    for (int count = 0; count == 0 || number != 0; ++count) {
        const ByteView page = store.page(number);
        if (page.u8(0) != definitionPage) {
            damaged(number, "hier hoort een tabeldefinitie te staan");
        }
        if (count == mostPages) {
            damaged(number, "de tabeldefinitie heeft geen einde");
        }
        const auto bytes = count == 0 ? page.bytes() : page.bytes().subspan(pageHead);
        joined.insert(joined.end(), bytes.begin(), bytes.end());
        number = page.u32(nextPageAt);
    }
    return joined;
}

ColumnType columnType(std::uint8_t stored) {
    constexpr std::array known{ColumnType::YesNo, ColumnType::Byte,   ColumnType::Int16,   ColumnType::Int32,
                               ColumnType::Money, ColumnType::Single, ColumnType::Double,  ColumnType::Date,
                               ColumnType::Text,  ColumnType::Memo,   ColumnType::Decimal, ColumnType::BigInteger};
    const auto *const found =
        std::ranges::find_if(known, [stored](ColumnType type) { return static_cast<std::uint8_t>(type) == stored; });
    return found == known.end() ? ColumnType::Other : *found;
}

Column readColumn(const ByteView &bytes, const Layout &layout, bool jet3) {
    const std::uint8_t flags = bytes.u8(layout.flags);
    Column column;
    column.type = columnType(bytes.u8(0));
    column.number = bytes.u16(layout.number);
    column.varIndex = bytes.u16(layout.varIndex);
    column.position = bytes.u16(layout.position);
    column.offset = bytes.u16(layout.offset);
    column.length = bytes.u16(layout.length);
    column.scale = bytes.u8(layout.scale);
    column.fixed = (flags & 0x01U) != 0;
    column.automatic = (flags & (0x04U | 0x40U)) != 0;
    if (!jet3 && (bytes.u8(jet4ExtraFlagsAt) & 0xc0U) != 0) {
        // A calculated column (Access 2010): its value is wrapped in a way of its own.
        column.type = ColumnType::Other;
        column.automatic = true;
    }
    return column;
}

/// Reads the names behind the columns; gives the position behind the names.
std::size_t readNames(PageStore &store, const ByteView &all, std::size_t at, std::vector<Column> &columns) {
    const bool jet3 = store.format().jet3;
    for (Column &column : columns) {
        const std::size_t length = jet3 ? all.u8(at) : all.u16(at);
        at += jet3 ? 1 : 2;
        column.name = jet3 ? store.codePage().decode(all.sub(at, length)) : fromUtf16(all.sub(at, length));
        at += length;
    }
    return at;
}

void markIndexed(const ByteView &index, const Layout &layout, std::vector<Column> &columns) {
    for (std::size_t i = 0; i < columnsPerIndex; ++i) {
        const std::uint16_t number = index.u16(layout.indexColumns + 3 * i);
        for (Column &column : columns) {
            column.indexed = column.indexed || (number != noColumn && column.number == number);
        }
    }
}

} // namespace

std::size_t storedSize(ColumnType type) {
    switch (type) {
    case ColumnType::Byte:
        return 1;
    case ColumnType::Int16:
        return 2;
    case ColumnType::Int32:
    case ColumnType::Single:
        return 4;
    case ColumnType::Money:
    case ColumnType::Double:
    case ColumnType::Date:
    case ColumnType::BigInteger:
        return 8;
    case ColumnType::Decimal:
        return 17;
    default:
        return 0;
    }
}

TableDefinition readDefinition(PageStore &store, std::uint32_t page) {
    const bool jet3 = store.format().jet3;
    const Layout &layout = jet3 ? jet3Layout : jet4Layout;
    const std::vector<std::uint8_t> joined = joinPages(store, page);
    const ByteView all(joined, page);

    TableDefinition table;
    table.page = page;
    table.varColumns = all.u16(layout.varColumns);
    table.usageMap = toRowPointer(all.u32(layout.usageMap));
    const std::size_t columnCount = all.u16(layout.columns);
    const std::size_t indexCount = all.u32(layout.indexes);
    if (columnCount > mostColumns) {
        damaged(page, "het aantal velden kan niet kloppen");
    }
    const ByteView heads = all.sub(layout.afterHead, all.size() - layout.afterHead);
    if (indexCount > heads.size() / layout.indexHead) {
        damaged(page, "het aantal indexen kan niet kloppen");
    }
    std::size_t at = layout.afterHead + indexCount * layout.indexHead;
    for (std::size_t i = 0; i < columnCount; ++i, at += layout.column) {
        table.columns.push_back(readColumn(all.sub(at, layout.column), layout, jet3));
    }
    at = readNames(store, all, at, table.columns);
    for (std::size_t i = 0; i < indexCount; ++i, at += layout.index) {
        markIndexed(all.sub(at, layout.index), layout, table.columns);
    }
    std::ranges::stable_sort(table.columns, {}, [](const Column &c) { return std::tuple(c.position, c.number); });
    return table;
}

} // namespace orvel::jet
