#include "platform/jet/data_page.h"

namespace orvel::jet {

namespace {

constexpr std::uint16_t movedFlag = 0x4000;
constexpr std::uint16_t hiddenFlag = 0x8000;
constexpr std::uint16_t startMask = 0x1fff;
constexpr std::uint32_t longValueOwner = 0x4c41564c; // "LVAL"

} // namespace

DataPage::DataPage(const Format &format, const ByteView &page)
    : page_(page), table_(format.jet3 ? 10 : 14), count_(page.u16(table_ - 2)) {
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
            .start = start,
            .bytes = page_.sub(start, end - start)};
}

Slot readSlot(PageStore &store, RowPointer pointer) {
    return DataPage(store.format(), store.page(pointer.page)).slot(pointer.slot);
}

} // namespace orvel::jet
