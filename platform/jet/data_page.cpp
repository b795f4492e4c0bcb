#include "platform/jet/data_page.h"

#include <algorithm>

namespace orvel::jet {

namespace {

constexpr std::uint16_t movedFlag = 0x4000;
constexpr std::uint16_t hiddenFlag = 0x8000;
constexpr std::uint16_t startMask = 0x1fff;
constexpr std::uint32_t longValueOwner = 0x4c41564c; // "LVAL"
constexpr std::size_t freeSpaceAt = 2;

std::size_t slotTable(const Format &format) {
    return format.jet3 ? 10 : 14;
}

/// Takes this much from a number of two bytes; flags above it stay.
void shrink(std::span<std::uint8_t> page, std::size_t at, std::size_t by) {
    const std::size_t number = page[at] + (std::size_t{page[at + 1]} << 8) - by;
    page[at] = static_cast<std::uint8_t>(number);
    page[at + 1] = static_cast<std::uint8_t>(number >> 8);
}

} // namespace

DataPage::DataPage(const Format &format, const ByteView &page)
    : page_(page), table_(slotTable(format)), count_(page.u16(table_ - 2)) {
    if (page.u8(0) != dataPage) {
        damaged(page.page(), "hier horen gegevens te staan");
    }
    if (count_ > (page.size() - table_) / 2) {
        damaged(page.page(), "het aantal rijen kan niet kloppen");
    }
}

bool DataPage::holdsLongValues() const {
    return owner() == longValueOwner;
}

std::uint16_t DataPage::startOf(std::uint16_t number) const {
    return page_.u16(table_ + std::size_t{2} * number) & startMask;
}

Slot DataPage::slot(std::uint16_t number) const {
    if (number >= count_) {
        damaged(page_.page(), "rij " + std::to_string(number) + " is er niet");
    }
    const std::uint16_t flags = page_.u16(table_ + std::size_t{2} * number);
    const std::uint16_t start = startOf(number);
    const std::size_t end = number == 0 ? page_.size() : startOf(static_cast<std::uint16_t>(number - 1));
    if (start < table_ + std::size_t{2} * count_ || start > end || end > page_.size()) {
        damaged(page_.page(), "rij " + std::to_string(number) + " valt buiten de pagina");
    }
    return {.moved = (flags & movedFlag) != 0,
            .hidden = (flags & hiddenFlag) != 0,
            .number = number,
            .start = start,
            .bytes = page_.sub(start, end - start)};
}

bool growRow(const Format &format, std::span<std::uint8_t> page, std::uint32_t pageNumber, std::uint16_t slot,
             std::span<const std::uint8_t> row) {
    const ByteView view(page, pageNumber);
    const DataPage data(format, view);
    // Each slot ends where the one before starts, so the last one is the lowest.
    for (std::uint16_t i = 0; i < data.slotCount(); ++i) {
        (void)data.slot(i);
    }
    const Slot old = data.slot(slot);
    const std::size_t lowest = data.slot(static_cast<std::uint16_t>(data.slotCount() - 1)).start;
    const std::size_t table = slotTable(format);
    const std::size_t room = lowest - table - std::size_t{2} * data.slotCount();
    const std::size_t growth = row.size() - old.bytes.size();
    if (row.size() < old.bytes.size() || growth > std::min<std::size_t>(room, view.u16(freeSpaceAt))) {
        return false;
    }
    std::ranges::copy(page.subspan(lowest, old.start - lowest), page.subspan(lowest - growth).begin());
    std::ranges::copy(row, page.subspan(old.start - growth).begin());
    for (std::size_t i = slot; i < data.slotCount(); ++i) {
        shrink(page, table + 2 * i, growth);
    }
    shrink(page, freeSpaceAt, growth);
    return true;
}

Slot readSlot(PageStore &store, RowPointer pointer) {
    return DataPage(store.format(), store.page(pointer.page)).slot(pointer.slot);
}

} // namespace orvel::jet
