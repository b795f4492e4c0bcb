#include "platform/jet/value_writer.h"

#include "platform/jet/lock_file.h"

#include <algorithm>
#include <cmath>
#include <exception>
#include <limits>

namespace orvel::jet {

namespace {

using Bytes = std::vector<std::uint8_t>;

/// Whole numbers up to here are doubles without a doubt.
constexpr double exactWhole = 9007199254740992.0;

template <typename Integer>
bool fitsInteger(double number) {
    return std::nearbyint(number) >= static_cast<double>(std::numeric_limits<Integer>::min()) &&
           std::nearbyint(number) <= static_cast<double>(std::numeric_limits<Integer>::max());
}

double toNumber(const Value &value) {
    if (const auto *integer = std::get_if<std::int32_t>(&value)) {
        return *integer;
    }
    if (const auto *number = std::get_if<double>(&value)) {
        return *number;
    }
    throw Error(Fault::NotUpdatable, "geen getal");
}

/// The stored form, in the low bytes.
std::uint64_t encode(ColumnType type, double number) {
    switch (type) {
    case ColumnType::Single:
        return std::bit_cast<std::uint32_t>(static_cast<float>(number));
    case ColumnType::Double:
        return std::bit_cast<std::uint64_t>(number);
    case ColumnType::Money:
        return static_cast<std::uint64_t>(std::llrint(number * moneyScale));
    default:
        return static_cast<std::uint64_t>(std::llrint(number));
    }
}

void setBit(Bytes &page, std::size_t at, std::uint8_t bit, bool on) {
    page[at] = static_cast<std::uint8_t>(on ? page[at] | bit : page[at] & ~bit);
}

/// Gives the row columns and places that it is too old or too short for, as far as these changes need them. Gives the
/// place that the row has then.
RowPlace makeRoom(const Format &format, const TableDefinition &table, Bytes &page, const RowPlace &place,
                  const std::vector<Change> &changes) {
    const Row row(format, table, ByteView(page, place.page).sub(place.start, place.length));
    std::size_t columns = row.columnCount();
    std::size_t end = 0;
    for (const Change &change : changes) {
        columns = std::max<std::size_t>(columns, change.column->number + 1U);
        if (change.column->type != ColumnType::YesNo) {
            end = std::max(end, row.fixedPlace(*change.column) + storedSize(change.column->type));
        }
    }
    if (columns == row.columnCount() && (end == 0 || end <= row.fixedEnd())) {
        return place;
    }
    if (columns > mostColumns) {
        damaged(table.page, "het nummer van een veld kan niet kloppen");
    }
    const Bytes extended = row.extended(columns, end);
    if (!growRow(format, page, place.page, place.slot, extended)) {
        throw Error(Fault::NotUpdatable, "de regel is ouder dan het veld en er is geen ruimte om hem te vergroten; "
                                         "comprimeer de database in Access of laat haar opnieuw aanmaken, en probeer "
                                         "het dan opnieuw");
    }
    RowPlace grown = place;
    grown.start = static_cast<std::uint16_t>(place.start + place.length - extended.size());
    grown.length = static_cast<std::uint16_t>(extended.size());
    return grown;
}

/// Changes one value in the page's bytes; the row starts at rowStart and has a place for the value.
void apply(Bytes &page, std::size_t rowStart, const Row &row, const Change &change) {
    const Column &column = *change.column;
    const std::size_t maskAt = rowStart + row.maskByte(column);
    if (column.type == ColumnType::YesNo) {
        setBit(page, maskAt, Row::maskBit(column), std::get<bool>(change.value));
        return;
    }
    const std::uint64_t stored = encode(column.type, toNumber(change.value));
    for (std::size_t i = 0; i < storedSize(column.type); ++i) {
        page[rowStart + row.fixedPlace(column) + i] = static_cast<std::uint8_t>(stored >> (8 * i));
    }
    setBit(page, maskAt, Row::maskBit(column), true);
}

bool sameBytes(const ByteView &a, const ByteView &b) {
    return std::ranges::equal(a.bytes(), b.bytes());
}

/// Whether the file still says of this row what was read.
bool isUnchanged(PageStore &read, PageStore &now, const TableDefinition &table, const RowPlace &place) {
    return now.format() == read.format() && now.file().identity() == read.file().identity() &&
           readDefinition(now, table.page) == table && sameBytes(now.page(place.headPage), read.page(place.headPage)) &&
           sameBytes(now.page(place.page), read.page(place.page)) &&
           locateRow(now, table, place.headPage, place.headSlot) == place;
}

void restore(PageStore &now, std::uint32_t number, const Bytes &before) {
    try {
        now.write(number, before);
        now.file().sync();
    } catch (const std::exception &) {
        // The caller tells what went wrong first; a disk that also refuses this cannot be helped from here.
    }
}

void writeAndCompare(const FileOpener &open, const std::filesystem::path &path, PageStore &now, std::uint32_t number,
                     const Bytes &page) {
    const Bytes before(now.page(number).bytes().begin(), now.page(number).bytes().end());
    try {
        now.write(number, page);
        now.file().sync();
        PageStore again(open, path, RawFile::Mode::Read);
        if (!std::ranges::equal(again.page(number).bytes(), page)) {
            throw Error(Fault::InOut, "de schijf gaf iets anders terug dan er geschreven is");
        }
    } catch (const std::exception &) {
        restore(now, number, before);
        throw;
    }
}

} // namespace

bool isWritable(const Column &column) {
    const bool number = column.fixed && storedSize(column.type) != 0 && column.type != ColumnType::Date &&
                        column.type != ColumnType::Decimal;
    return (number || column.type == ColumnType::YesNo) && !column.automatic && !column.indexed;
}

bool fits(ColumnType type, double number) {
    if (!std::isfinite(number)) {
        return false;
    }
    switch (type) {
    case ColumnType::Byte:
        return fitsInteger<std::uint8_t>(number);
    case ColumnType::Int16:
        return fitsInteger<std::int16_t>(number);
    case ColumnType::Int32:
        return fitsInteger<std::int32_t>(number);
    case ColumnType::Money:
        return std::abs(number) <= 922337203685477.0;
    case ColumnType::BigInteger:
        return std::abs(number) <= exactWhole;
    case ColumnType::Single:
        return std::abs(number) <= static_cast<double>(std::numeric_limits<float>::max());
    default:
        return type == ColumnType::Double;
    }
}

void writeValues(const FileOpener &open, const std::filesystem::path &path, PageStore &read,
                 const TableDefinition &table, const RowPlace &place, const std::vector<Change> &changes) {
    if (isDatabaseInUse(path)) {
        throw Error(Fault::Locked, "");
    }
    PageStore now(open, path, RawFile::Mode::Write);
    now.file().lock();
    if (!isUnchanged(read, now, table, place)) {
        throw Error(Fault::Locked, "het bestand is intussen gewijzigd");
    }
    for (const Change &change : changes) {
        if (!isWritable(*change.column)) {
            throw Error(Fault::NotUpdatable, change.column->indexed ? "het veld hoort bij een index" : "");
        }
    }
    const ByteView before = now.page(place.page);
    Bytes page(before.bytes().begin(), before.bytes().end());
    const RowPlace grown = makeRoom(now.format(), table, page, place, changes);
    const Row row(now.format(), table, ByteView(page, grown.page).sub(grown.start, grown.length));
    for (const Change &change : changes) {
        apply(page, grown.start, row, change);
    }
    if (!std::ranges::equal(before.bytes(), page)) {
        writeAndCompare(open, path, now, place.page, page);
    }
    read.replace(place.page, page);
}

} // namespace orvel::jet
