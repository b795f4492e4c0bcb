#include "platform/jet/row.h"

#include <algorithm>

namespace orvel::jet {

namespace {

void append(std::vector<std::uint8_t> &bytes, std::span<const std::uint8_t> more) {
    bytes.insert(bytes.end(), more.begin(), more.end());
}

void append(std::vector<std::uint8_t> &bytes, std::size_t number, std::size_t size) {
    for (std::size_t i = 0; i < size; ++i) {
        bytes.push_back(static_cast<std::uint8_t>(number >> (8 * i)));
    }
}

} // namespace

Row::Row(const Format &format, const TableDefinition &table, const ByteView &bytes)
    : bytes_(bytes), jet3_(format.jet3), hasVariables_(table.varColumns > 0), head_(jet3_ ? 1 : 2),
      columns_(jet3_ ? bytes.u8(0) : bytes.u16(0)) {
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

std::size_t Row::fixedEnd() const {
    const std::size_t end = hasVariables_ ? variableOffset(0) : mask_;
    if (end < head_ || end > (hasVariables_ ? offsetTable() : mask_)) {
        damaged(bytes_.page(), "een waarde valt buiten haar rij");
    }
    return end;
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
    const std::size_t jumps = jumpCount();
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

/// Where the offsets, or the jump table before them, start.
std::size_t Row::offsetTable() const {
    const std::size_t entrySize = jet3_ ? 1 : 2;
    const std::size_t size = entrySize * (variableCount() + 1) + jumpCount();
    if (size > tail_) {
        damaged(bytes_.page(), "een rij heeft minder kolommen dan zij zegt");
    }
    return tail_ - size;
}

std::vector<std::uint8_t> Row::extended(std::size_t columnCount, std::size_t fixedEnd) const {
    const std::size_t columns = std::max(columns_, columnCount);
    const std::size_t oldEnd = this->fixedEnd();
    const auto bytes = bytes_.bytes();
    Bytes row;
    append(row, columns, head_);
    append(row, bytes.subspan(head_, oldEnd - head_));
    row.resize(std::max(oldEnd, fixedEnd));
    const Bytes mask = extendedMask(columns);
    if (hasVariables_) {
        const std::size_t shift = row.size() - oldEnd;
        append(row, bytes.subspan(oldEnd, offsetTable() - oldEnd));
        appendOffsets(row, shift, mask.size());
    }
    append(row, mask);
    return row;
}

/// Appends the table of offsets, in Jet 3 with its jump table, whose size depends on that of the whole row, and the
/// number of variable columns.
void Row::appendOffsets(Bytes &row, std::size_t shift, std::size_t maskSize) const {
    const std::size_t entrySize = jet3_ ? 1 : 2;
    std::vector<std::size_t> offsets;
    for (std::size_t entry = 0; entry <= variableCount(); ++entry) {
        offsets.push_back(variableOffset(entry) + shift);
    }
    for (std::size_t entry = offsets.size(); entry-- > 0;) {
        append(row, offsets[entry], entrySize);
    }
    const std::size_t bare = row.size() + entrySize + maskSize;
    std::size_t jumps = 0;
    while (jet3_ && (bare + jumps - 1) / 256 > jumps) {
        ++jumps;
    }
    for (std::size_t jump = jumps; jump-- > 0;) {
        const auto first =
            std::ranges::find_if(offsets, [&](std::size_t offset) { return offset >= 256 * (jump + 1); });
        append(row, first == offsets.end() ? 0xff : static_cast<std::size_t>(first - offsets.begin()), 1);
    }
    append(row, variableCount(), entrySize);
}

/// Bits that no column has had so far may have any value; a new column starts with 0.
std::vector<std::uint8_t> Row::extendedMask(std::size_t columnCount) const {
    Bytes mask;
    append(mask, bytes_.bytes().subspan(mask_));
    if (columnCount > columns_ && columns_ % 8 != 0) {
        mask.back() = static_cast<std::uint8_t>(mask.back() & ((1U << (columns_ % 8)) - 1));
    }
    mask.resize((columnCount + 7) / 8);
    return mask;
}

} // namespace orvel::jet
