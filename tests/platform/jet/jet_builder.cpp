#include "tests/platform/jet/jet_builder.h"

#include "platform/jet/rc4.h"

#include <algorithm>
#include <bit>
#include <span>

namespace orvel::test {

namespace {

// Where the pages of a built file stand.
constexpr std::uint32_t catalogueDefinition = 2;
constexpr std::uint32_t maps = 3;
constexpr std::uint32_t catalogueRows = 4;
constexpr std::uint32_t longValuePage = 5;
constexpr std::uint32_t mapPage = 6;
constexpr std::uint32_t firstDataPage = 7;
constexpr std::uint32_t mostDataPages = 40;
constexpr std::uint32_t tableDefinition = firstDataPage + mostDataPages;

void put(Bytes &page, std::size_t at, const Bytes &bytes) {
    std::ranges::copy(bytes, page.begin() + static_cast<std::ptrdiff_t>(at));
}

std::size_t sizeOf(const JetBuilder::Column &column) {
    constexpr std::size_t sizes[] = {0, 0, 1, 2, 4, 8, 4, 8, 8};
    return column.type < std::size(sizes) ? sizes[column.type] : column.length;
}

/// Puts a definition on its first page and, as far as it needs them, on new ones.
void putDefinition(std::vector<Bytes> &pages, std::uint32_t first, const Bytes &body) {
    const std::size_t pageSize = pages[0].size();
    const std::size_t room = pageSize - 8;
    std::size_t number = first;
    for (std::size_t at = 0; at < body.size(); at += room) {
        const std::size_t end = std::min(body.size(), at + room);
        const std::size_t next = end < body.size() ? pages.size() : 0;
        put(pages[number], 0, little(0x102, 4) + little(next, 4));
        put(pages[number], 8,
            {body.begin() + static_cast<std::ptrdiff_t>(at), body.begin() + static_cast<std::ptrdiff_t>(end)});
        if (next != 0) {
            pages.emplace_back(pageSize);
        }
        number = next;
    }
}

} // namespace

Bytes little(std::uint64_t number, std::size_t size) {
    Bytes bytes;
    for (std::size_t i = 0; i < size; ++i) {
        bytes.push_back(static_cast<std::uint8_t>(number >> (8 * i)));
    }
    return bytes;
}

Bytes real64(double number) {
    return little(std::bit_cast<std::uint64_t>(number), 8);
}

Bytes decimal(bool negative, std::uint64_t high, std::uint64_t low) {
    return little(negative ? 0x80 : 0, 1) + little(high >> 32, 4) + little(high & 0xffffffff, 4) +
           little(low >> 32, 4) + little(low & 0xffffffff, 4);
}

Bytes real32(float number) {
    return little(std::bit_cast<std::uint32_t>(number), 4);
}

Bytes utf16(const std::u16string &text) {
    Bytes bytes;
    for (const char16_t unit : text) {
        bytes = bytes + little(unit, 2);
    }
    return bytes;
}

Bytes plain(const std::string &text) {
    return {text.begin(), text.end()};
}

Bytes operator+(Bytes a, const Bytes &b) {
    a.insert(a.end(), b.begin(), b.end());
    return a;
}

Bytes JetBuilder::name(const std::string &name) const {
    const Bytes bytes = text(name);
    return little(bytes.size(), jet3_ ? 1 : 2) + bytes;
}

Bytes JetBuilder::encodeRow(const std::vector<Column> &all, const Values &values, std::uint16_t count) const {
    const std::size_t entry = jet3_ ? 1 : 2;
    Bytes fixed;
    std::map<std::uint16_t, Bytes> variable;
    std::size_t variables = 0;
    Bytes mask((count + 7U) / 8U);
    for (const Column &column : all) {
        const auto value = values.find(column.number);
        if (column.number < count && value != values.end()) {
            mask[column.number / 8U] |= static_cast<std::uint8_t>(1U << (column.number % 8U));
        }
        if (column.fixed) {
            fixed.resize(std::max(fixed.size(), column.place + sizeOf(column)));
            put(fixed, column.place, value == values.end() ? Bytes() : value->second);
        } else {
            variables = std::max<std::size_t>(variables, column.place + 1U);
            variable[column.place] = value == values.end() ? Bytes() : value->second;
        }
    }
    Bytes row = little(count, entry) + fixed;
    if (variables == 0) {
        return row + mask;
    }
    std::vector<std::size_t> offsets;
    for (std::uint16_t i = 0; i < variables; ++i) {
        offsets.push_back(row.size());
        row = row + variable[i];
    }
    offsets.push_back(row.size());
    Bytes tail;
    for (auto offset = offsets.rbegin(); offset != offsets.rend(); ++offset) {
        tail = tail + little(*offset, entry);
    }
    // The jump table is part of the row whose length says how many entries it has.
    const std::size_t bare = row.size() + tail.size() + entry + mask.size();
    std::size_t jumps = 0;
    while (jet3_ && (bare + jumps - 1) / 256 > jumps) {
        ++jumps;
    }
    for (std::size_t i = jumps; i-- > 0;) {
        const auto first = std::ranges::find_if(offsets, [&](std::size_t offset) { return offset >= 256 * (i + 1); });
        tail.push_back(first == offsets.end() ? 0xff : static_cast<std::uint8_t>(first - offsets.begin()));
    }
    return row + tail + little(variables, entry) + mask;
}

Bytes JetBuilder::row(const Values &values, std::uint16_t count) const {
    const auto all = static_cast<std::uint16_t>(columnCount != 0 ? columnCount : columns.size());
    return encodeRow(columns, values, count != 0 ? count : all);
}

std::uint32_t JetBuilder::addRow(const Bytes &row, std::uint16_t flags) {
    if (dataPages_.empty()) {
        startPage();
    }
    std::size_t used = (jet3_ ? 10U : 14U) + 2;
    for (const Slot &slot : dataPages_.back()) {
        used += slot.bytes.size() + 2;
    }
    if (used + row.size() > pageSize()) {
        startPage();
    }
    dataPages_.back().push_back({.bytes = row, .flags = flags});
    const auto page = firstDataPage + static_cast<std::uint32_t>(dataPages_.size()) - 1;
    return (page << 8) | static_cast<std::uint32_t>(dataPages_.back().size() - 1);
}

std::uint32_t JetBuilder::addLongValue(const Bytes &bytes) {
    longValues_.push_back({.bytes = bytes, .flags = 0});
    return (longValuePage << 8) | static_cast<std::uint32_t>(longValues_.size() - 1);
}

Bytes JetBuilder::memo(std::size_t length, std::uint8_t kind, std::uint32_t pointer, const Bytes &inRow) {
    return little(length | (std::uint64_t{kind} << 24), 4) + little(pointer, 4) + little(0, 4) + inRow;
}

Bytes JetBuilder::dataPage(std::uint32_t owner, const std::vector<Slot> &slots) const {
    const std::size_t table = jet3_ ? 10 : 14;
    Bytes page(pageSize());
    put(page, 0, {1, 1});
    put(page, 4, little(owner, 4));
    put(page, table - 2, little(slots.size(), 2));
    std::size_t start = pageSize();
    for (std::size_t i = 0; i < slots.size(); ++i) {
        start -= slots[i].bytes.size();
        put(page, table + 2 * i, little(start | slots[i].flags, 2));
        put(page, start, slots[i].bytes);
    }
    put(page, 2, little(start - table - 2 * slots.size(), 2));
    return page;
}

Bytes JetBuilder::definition(const std::vector<Column> &all, std::uint16_t count, std::uint32_t rows,
                             std::uint8_t mapSlot, const std::vector<std::uint16_t> &index) const {
    const auto variables =
        static_cast<std::uint64_t>(std::ranges::count_if(all, [](const Column &column) { return !column.fixed; }));
    const std::uint64_t indexes = index.empty() ? 0 : 1;
    Bytes body = jet3_ ? little(rows, 4) + little(0, 4) : little(0, 4) + little(rows, 4) + Bytes(20);
    body = body + plain("N") + little(count, 2) + little(variables, 2) + little(all.size(), 2) + little(indexes, 4) +
           little(indexes, 4) + little((maps << 8) | mapSlot, 4) + little((maps << 8) | 2U, 4);
    body = body + Bytes(indexes * (jet3_ ? 8 : 12));
    for (const Column &column : all) {
        const std::uint16_t position = column.position != 0xffff ? column.position : column.number;
        const std::uint16_t offset = column.fixed ? column.place : 0;
        const std::uint16_t varIndex = column.fixed ? 0 : column.place;
        const Bytes flags = little(column.flags | (column.fixed ? 1U : 0U), 1);
        const Bytes start = little(column.number, 2) + little(varIndex, 2) + little(position, 2);
        const Bytes end = little(offset, 2) + little(column.length, 2);
        constexpr std::uint8_t decimalType = 16;
        const Bytes digits{column.precision, column.scale};
        const Bytes jet3Kind = little(0x409, 2) + (column.type == decimalType ? digits : little(codePage, 2));
        const Bytes jet4Kind = column.type == decimalType ? digits + little(0, 2) : little(0x409, 4);
        body = body + little(column.type, 1);
        body = jet3_
                   ? body + start + jet3Kind + little(0, 2) + flags + end
                   : body + little(0, 4) + start + jet4Kind + flags + little(column.extraFlags, 1) + little(0, 4) + end;
    }
    for (const Column &column : all) {
        body = body + name(column.name);
    }
    if (!index.empty()) {
        body = body + Bytes(jet3_ ? 0 : 4);
        for (std::size_t i = 0; i < 10; ++i) {
            body = body + (i < index.size() ? little(index[i], 2) + little(1, 1) : little(0xffff, 2) + little(0, 1));
        }
        body = body + Bytes(jet3_ ? 9 : 18) + Bytes(jet3_ ? 20 : 28) + name("Index");
    }
    body = body + little(0xffff, 2);
    return little(body.size() + 12, 4) + body;
}

Bytes JetBuilder::header() const {
    Bytes page(pageSize());
    put(page, 0, little(0x100, 4));
    put(page, 4, plain("Standard Jet DB"));
    page[0x14] = jet3_ ? 0 : 1;
    put(page, 0x3c, little(codePage, 2));
    put(page, 0x3e, little(key, 4));
    jet::rc4(0x6b39dac7, std::span(page).subspan(0x18, jet3_ ? 126 : 128));
    return page;
}

Bytes JetBuilder::usageMap(const std::vector<std::uint32_t> &pages) const {
    Bytes bits(jet3_ ? 128 : 64);
    for (const std::uint32_t page : pages) {
        bits[page / 8] |= static_cast<std::uint8_t>(1U << (page % 8));
    }
    return bits;
}

Bytes JetBuilder::build() const {
    const std::vector<Column> catalogue{
        {.name = "Id", .type = 4, .number = 0, .place = 0, .length = 4},
        {.name = "ParentId", .type = 4, .number = 1, .place = 4, .length = 4},
        {.name = "Name", .type = 10, .number = 2, .fixed = false, .place = 0, .length = 255},
        {.name = "Type", .type = 3, .number = 3, .place = 8, .length = 2},
        {.name = "Flags", .type = 4, .number = 4, .place = 10, .length = 4},
        {.name = "LvProp", .type = 11, .number = 5, .fixed = false, .place = 1},
    };
    const auto entry = [&](std::uint32_t id, const char *name, std::uint32_t flags) {
        const Values values{
            {0, little(id, 4)}, {1, little(0, 4)}, {2, text(name)}, {3, little(1, 2)}, {4, little(flags, 4)}};
        return Slot{.bytes = encodeRow(catalogue, values, 6), .flags = 0};
    };
    std::vector<std::uint32_t> dataNumbers;
    std::uint32_t rows = 0;
    for (std::size_t i = 0; i < dataPages_.size(); ++i) {
        dataNumbers.push_back(firstDataPage + static_cast<std::uint32_t>(i));
        rows += static_cast<std::uint32_t>(dataPages_[i].size());
    }
    const Bytes inPlace = little(0, 5) + usageMap(dataNumbers);
    const Bytes ofMaps = little(1, 1) + little(mapPage, 4) + Bytes(jet3_ ? 128 : 64);

    std::vector<Bytes> pages(tableDefinition + 1, Bytes(pageSize()));
    pages[0] = header();
    pages[1] = dataPage(1, {});
    pages[maps] = dataPage(0, {{.bytes = little(0, 5) + usageMap({catalogueRows})},
                               {.bytes = mapOfMaps ? ofMaps : inPlace},
                               {.bytes = little(0, 5) + usageMap({})}});
    pages[catalogueRows] = dataPage(catalogueDefinition, {entry(catalogueDefinition, "MSysObjects", 0x80000000),
                                                          entry(tableDefinition, "Proef", 0)});
    pages[longValuePage] = dataPage(0x4c41564c, longValues_);
    pages[mapPage] = little(0x105, 4) + usageMap(dataNumbers);
    pages[mapPage].resize(pageSize());
    for (std::size_t i = 0; i < dataPages_.size(); ++i) {
        pages[firstDataPage + i] = dataPage(tableDefinition, dataPages_[i]);
    }
    putDefinition(pages, catalogueDefinition, definition(catalogue, 6, 2, 0, {}));
    putDefinition(pages, tableDefinition,
                  definition(columns, static_cast<std::uint16_t>(columnCount != 0 ? columnCount : columns.size()), rows,
                             1, indexed));
    Bytes file;
    for (std::size_t i = 0; i < pages.size(); ++i) {
        if (key != 0 && i != 0) {
            jet::rc4(key ^ static_cast<std::uint32_t>(i), pages[i]);
        }
        file = file + pages[i];
    }
    return file;
}

} // namespace orvel::test
