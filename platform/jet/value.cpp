#include "platform/jet/value.h"

#include "platform/jet/decimal.h"
#include "platform/jet/memo.h"
#include "platform/jet/text.h"

namespace orvel::jet {

namespace {

std::u16string readText(PageStore &store, const ByteView &bytes) {
    return store.format().jet3 ? store.codePage().decode(bytes) : fromJet4Text(bytes);
}

} // namespace

Value readValue(PageStore &store, const Column &column, const Row &row) {
    if (column.type == ColumnType::YesNo) {
        return row.bit(column);
    }
    if (column.type == ColumnType::Other) {
        return row.bit(column) ? Value(Unreadable()) : Value();
    }
    const std::optional<ByteView> bytes = row.field(column);
    if (!bytes) {
        return std::monostate();
    }
    switch (column.type) {
    case ColumnType::Byte:
        return std::int32_t{bytes->u8(0)};
    case ColumnType::Int16:
        return std::int32_t{static_cast<std::int16_t>(bytes->u16(0))};
    case ColumnType::Int32:
        return static_cast<std::int32_t>(bytes->u32(0));
    case ColumnType::Money:
        return static_cast<double>(static_cast<std::int64_t>(bytes->u64(0))) / moneyScale;
    case ColumnType::BigInteger:
        return static_cast<std::int64_t>(bytes->u64(0));
    case ColumnType::Decimal:
        return readDecimal(*bytes, column.scale);
    case ColumnType::Single:
        return static_cast<double>(bytes->f32(0));
    case ColumnType::Double:
        return bytes->f64(0);
    case ColumnType::Date:
        return Date{bytes->f64(0)};
    case ColumnType::Memo: {
        const std::vector<std::uint8_t> memo = readMemo(store, *bytes);
        return readText(store, ByteView(memo, bytes->page()));
    }
    default:
        return readText(store, *bytes);
    }
}

} // namespace orvel::jet
