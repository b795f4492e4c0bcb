#include "platform/jet/memo.h"

#include "platform/jet/data_page.h"

namespace orvel::jet {

namespace {

constexpr std::size_t headSize = 12;
constexpr std::uint32_t lengthMask = 0x3fffffff;
constexpr std::uint32_t inRowFlag = 0x80000000;
constexpr std::uint32_t oneSlotFlag = 0x40000000;

std::vector<std::uint8_t> copy(const ByteView &bytes) {
    return {bytes.bytes().begin(), bytes.bytes().end()};
}

/// Each link starts with the pointer to the next one; the last one's is zero. As each must bring the memo further, a
/// chain that runs in circles ends at the memo's length.
std::vector<std::uint8_t> readChain(PageStore &store, std::uint32_t first, std::size_t length) {
    std::vector<std::uint8_t> memo;
    std::uint32_t next = first;
    while (memo.size() < length) {
        const ByteView bytes = readSlot(store, toRowPointer(next)).bytes;
        next = bytes.u32(0);
        if (bytes.size() == 4) {
            damaged(bytes.page(), "een memo heeft geen einde");
        }
        const auto part = bytes.bytes().subspan(4);
        memo.insert(memo.end(), part.begin(), part.end());
    }
    memo.resize(length);
    return memo;
}

} // namespace

std::vector<std::uint8_t> readMemo(PageStore &store, const ByteView &field) {
    if (field.size() == 0) {
        return {};
    }
    const std::uint32_t head = field.u32(0);
    const std::size_t length = head & lengthMask;
    if ((head & inRowFlag) != 0) {
        return copy(field.sub(headSize, length));
    }
    if (length > std::uint64_t{store.pageCount()} * store.format().pageSize) {
        damaged(field.page(), "een memo is langer dan het bestand");
    }
    if ((head & oneSlotFlag) != 0) {
        const ByteView bytes = readSlot(store, toRowPointer(field.u32(4))).bytes;
        return copy(bytes.sub(0, length));
    }
    return readChain(store, field.u32(4), length);
}

} // namespace orvel::jet
