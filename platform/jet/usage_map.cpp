#include "platform/jet/usage_map.h"

#include "platform/jet/data_page.h"

#include <bit>

namespace orvel::jet {

namespace {

constexpr std::size_t mapPageHead = 4;

/// Adds the pages whose bits are set; the first bit is page first.
void addPages(const PageStore &store, const ByteView &bitmap, std::uint64_t first, std::vector<std::uint32_t> &pages) {
    const auto bytes = bitmap.bytes();
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        for (unsigned bits = bytes[i]; bits != 0; bits &= bits - 1) {
            const std::uint64_t page = first + 8 * i + static_cast<unsigned>(std::countr_zero(bits));
            if (page >= store.pageCount()) {
                damaged(bitmap.page(), "de tabel gebruikt pagina " + std::to_string(page) + " en die is er niet");
            }
            pages.push_back(static_cast<std::uint32_t>(page));
        }
    }
}

} // namespace

std::vector<std::uint32_t> readUsageMap(PageStore &store, RowPointer map) {
    const ByteView bytes = readSlot(store, map).bytes;
    std::vector<std::uint32_t> pages;
    const std::uint8_t kind = bytes.u8(0);
    if (kind == 0) {
        const std::uint32_t first = bytes.u32(1);
        addPages(store, bytes.sub(5, bytes.size() - 5), first, pages);
    } else if (kind == 1) {
        const std::uint64_t pagesPerMap = (store.format().pageSize - mapPageHead) * 8;
        for (std::size_t i = 0; 1 + 4 * i + 4 <= bytes.size(); ++i) {
            const std::uint32_t number = bytes.u32(1 + 4 * i);
            if (number == 0) {
                continue;
            }
            const ByteView page = store.page(number);
            if (page.u8(0) != usagePage) {
                damaged(number, "hier hoort een gebruikskaart te staan");
            }
            addPages(store, page.sub(mapPageHead, page.size() - mapPageHead), i * pagesPerMap, pages);
        }
    } else {
        damaged(bytes.page(), "onbekende soort gebruikskaart");
    }
    return pages;
}

} // namespace orvel::jet
