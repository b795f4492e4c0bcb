#include "platform/jet/row_walk.h"

#include "platform/jet/usage_map.h"

#include <algorithm>

namespace orvel::jet {

namespace {

/// A row moves again each time that it outgrows its page, so chains are short.
constexpr int mostMoves = 64;

RowPlace placeOf(const Slot &slot, std::uint32_t headPage, std::uint16_t headSlot) {
    return {.headPage = headPage,
            .page = slot.bytes.page(),
            .headSlot = headSlot,
            .slot = slot.number,
            .start = slot.start,
            .length = static_cast<std::uint16_t>(slot.bytes.size())};
}

Slot follow(PageStore &store, const TableDefinition &table, Slot slot) {
    for (int moves = 0; slot.moved; ++moves) {
        if (moves == mostMoves) {
            damaged(slot.bytes.page(), "een verplaatste rij is niet te vinden");
        }
        const RowPointer target = toRowPointer(slot.bytes.u32(0));
        const DataPage page(store.format(), store.page(target.page));
        if (page.owner() != table.page) {
            damaged(target.page, "een verplaatste rij is van een andere tabel");
        }
        slot = page.slot(target.slot);
    }
    return slot;
}

/// Pages that a table has set aside but never written are all zero.
bool isBlank(const ByteView &page) {
    return std::ranges::all_of(page.bytes(), [](std::uint8_t byte) { return byte == 0; });
}

void walkPage(PageStore &store, const TableDefinition &table, std::uint32_t number, std::vector<RowPlace> &rows) {
    const DataPage page(store.format(), store.page(number));
    if (page.holdsLongValues()) {
        return;
    }
    if (page.owner() != table.page) {
        damaged(number, "deze pagina is van een andere tabel");
    }
    for (std::uint16_t i = 0; i < page.slotCount(); ++i) {
        const Slot slot = page.slot(i);
        if (!slot.hidden) {
            rows.push_back(placeOf(slot.moved ? follow(store, table, slot) : slot, number, i));
        }
    }
}

} // namespace

RowPlace locateRow(PageStore &store, const TableDefinition &table, std::uint32_t page, std::uint16_t slot) {
    const DataPage data(store.format(), store.page(page));
    const Slot head = data.slot(slot);
    if (head.hidden || data.owner() != table.page) {
        damaged(page, "rij " + std::to_string(slot) + " is er niet meer");
    }
    return placeOf(follow(store, table, head), page, slot);
}

std::vector<RowPlace> walkRows(PageStore &store, const TableDefinition &table) {
    std::vector<RowPlace> rows;
    for (const std::uint32_t number : readUsageMap(store, table.usageMap)) {
        const ByteView page = store.page(number);
        if (page.u8(0) != 0 || !isBlank(page)) {
            walkPage(store, table, number, rows);
        }
    }
    return rows;
}

} // namespace orvel::jet
