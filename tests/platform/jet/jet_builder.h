#pragma once

#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

namespace orvel::test {

using Bytes = std::vector<std::uint8_t>;

/// A number's bytes, lowest first.
Bytes little(std::uint64_t number, std::size_t size);
Bytes real64(double number);
/// A decimal: its sign, then four words, the highest first.
Bytes decimal(bool negative, std::uint64_t high, std::uint64_t low);
Bytes real32(float number);
Bytes utf16(const std::u16string &text);
Bytes plain(const std::string &text);
Bytes operator+(Bytes a, const Bytes &b);

/// Makes small databases from the description of the format, so that kinds of values, rows and files can be tested of
/// which there is no sample: Access itself would open them with a repair at most. One table "Proef".
class JetBuilder {
  public:
    struct Column {
        std::string name;
        std::uint8_t type = 0;
        std::uint16_t number = 0;
        bool fixed = true;
        std::uint16_t place = 0; ///< offset of a fixed column, index of a variable one
        std::uint16_t length = 0;
        std::uint8_t flags = 0x02;
        std::uint8_t extraFlags = 0;
        std::uint16_t position = 0xffff; ///< place among the fields; 0xffff: its number
        std::uint8_t precision = 0;      ///< digits of a decimal
        std::uint8_t scale = 0;          ///< those behind its point
    };
    /// Values by column number; a yes/no column that is there is true, and has no bytes.
    using Values = std::map<std::uint16_t, Bytes>;

    explicit JetBuilder(bool jet3) : jet3_(jet3) {}

    std::vector<Column> columns;
    std::vector<std::uint16_t> indexed; ///< numbers of the columns of an index
    std::uint16_t columnCount = 0;      ///< deleted ones counted; 0: those that there are
    std::uint32_t key = 0;              ///< encodes all pages when not 0
    std::uint16_t codePage = 1252;
    bool mapOfMaps = false; ///< the table's usage map points to map pages

    [[nodiscard]] bool jet3() const { return jet3_; }
    [[nodiscard]] std::size_t pageSize() const { return jet3_ ? 2048 : 4096; }

    /// A row's bytes; columnCount 0: the builder's.
    [[nodiscard]] Bytes row(const Values &values, std::uint16_t count = 0) const;
    /// Puts a row, with flags for its slot, on the table's newest data page, or on a new one; gives its pointer.
    std::uint32_t addRow(const Bytes &row, std::uint16_t flags = 0);
    void startPage() { dataPages_.emplace_back(); }
    /// Puts bytes into a page for long values; gives their pointer.
    std::uint32_t addLongValue(const Bytes &bytes);
    /// A memo's head in the row. kind: 0x80 in the row, 0x40 one slot, 0 a chain.
    static Bytes memo(std::size_t length, std::uint8_t kind, std::uint32_t pointer = 0, const Bytes &inRow = {});

    [[nodiscard]] Bytes build() const;

  private:
    struct Slot {
        Bytes bytes;
        std::uint16_t flags = 0;
    };

    [[nodiscard]] Bytes text(const std::string &name) const {
        return jet3_ ? plain(name) : utf16({name.begin(), name.end()});
    }
    [[nodiscard]] Bytes name(const std::string &name) const;
    [[nodiscard]] Bytes encodeRow(const std::vector<Column> &all, const Values &values, std::uint16_t count) const;
    [[nodiscard]] Bytes dataPage(std::uint32_t owner, const std::vector<Slot> &slots) const;
    [[nodiscard]] Bytes definition(const std::vector<Column> &all, std::uint16_t count, std::uint32_t rows,
                                   std::uint8_t mapSlot, const std::vector<std::uint16_t> &index) const;
    [[nodiscard]] Bytes header() const;
    [[nodiscard]] Bytes usageMap(const std::vector<std::uint32_t> &pages) const;

    bool jet3_;
    std::vector<std::vector<Slot>> dataPages_;
    std::vector<Slot> longValues_;
};

} // namespace orvel::test
