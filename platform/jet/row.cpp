#include "platform/jet/row.h"

#include <algorithm>

namespace orvel::jet {

Row::Row(const Format &format, const TableDefinition &table, const ByteView &bytes)
    : bytes_(bytes), jet3_(format.jet3), hasVariables_(table.varColumns > 0), head_(jet3_ ? 1 : 2),
      columns_(jet3_ ? bytes.u8(0) : bytes.u16(0)), mask_(0), tail_(0) {
    const std::size_t needed = (columns_ + 7) / 8 + (hasVariables_ ? head_ : 0);
    if (head_ + needed > bytes.size()) {
        damaged(bytes.page(), "een rij is korter dan haar kolommen");
    }
    tail_ = bytes.size() - needed;
    mask_ = tail_ + (hasVariables_ ? head_ : 0);
}

bool Row::bit(const Column &column) const {
    return knows(column) && (bytes_.u8(maskByte(column)) & maskBit(column)) != 0;
}

std::optional<std::size_t> Row::fixedPlace(const Column &column) const {
    const std::size_t end = hasVariables_ ? variableOffset(0) : mask_;
    const std::size_t at = head_ + column.offset;
    return at + storedSize(column.type) <= std::min(end, tail_) ? std::optional(at) : std::nullopt;
}

std::optional<ByteView> Row::field(const Column &column) const {
    if (!bit(column)) {
        return std::nullopt;
    }
    if (!column.fixed) {
        return variableField(column);
    }
    const std::size_t size = storedSize(column.type) != 0 ? storedSize(column.type) : column.length;
    return bytes_.sub(0, tail_).sub(head_ + column.offset, size);
}

std::optional<ByteView> Row::variableField(const Column &column) const {
    if (!hasVariables_ || column.varIndex >= variableCount()) {
        return std::nullopt;
    }
    const std::size_t start = variableOffset(column.varIndex);
    const std::size_t end = variableOffset(column.varIndex + std::size_t{1});
    if (start > end || start < head_ || end > tail_) {
        damaged(bytes_.page(), "een waarde valt buiten haar rij");
    }
    return bytes_.sub(start, end - start);
}

std::size_t Row::variableCount() const {
    return jet3_ ? bytes_.u8(tail_) : bytes_.u16(tail_);
}

/// The offsets stand in reverse order before the count; the one behind the last is the end of the data.
std::size_t Row::variableOffset(std::size_t entry) const {
    if (jet3_) {
        return jet3Offset(entry);
    }
    const std::size_t back = 2 * (entry + 1);
    if (back > tail_) {
        damaged(bytes_.page(), "een rij heeft minder kolommen dan zij zegt");
    }
    return bytes_.u16(tail_ - back);
}

/// Jet 3 has one byte an offset. Between the offsets and the count stands a jump table, one byte for each whole 256
/// bytes of the row: the first entry from which 256 more is to be added; 0xff is a place that was not needed.
std::size_t Row::jet3Offset(std::size_t entry) const {
    const std::size_t jumps = (bytes_.size() - 1) / 256;
    if (jumps + entry + 1 > tail_) {
        damaged(bytes_.page(), "een rij heeft minder kolommen dan zij zegt");
    }
    std::size_t offset = bytes_.u8(tail_ - jumps - entry - 1);
    for (std::size_t i = 0; i < jumps; ++i) {
        const std::uint8_t from = bytes_.u8(tail_ - i - 1);
        offset += from != 0xff && entry >= from ? 256U : 0U;
    }
    return offset;
}

} // namespace orvel::jet
