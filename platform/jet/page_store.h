#pragma once

#include "platform/jet/byte_view.h"
#include "platform/jet/code_page.h"
#include "platform/jet/raw_file.h"

#include <filesystem>
#include <memory>
#include <vector>

namespace orvel::jet {

/// What differs between the generations of the file format.
struct Format {
    bool jet3 = false;          ///< Jet 3 (Access 97); otherwise Jet 4 or the .accdb kin
    std::uint32_t pageSize = 0; ///< bytes
    std::uint32_t key = 0;      ///< page key of an encoded file, 0 when pages lie open
    std::uint16_t codePage = 0; ///< of the text in a Jet 3 file; Jet 4 has Unicode
    auto operator<=>(const Format &) const = default;
};

constexpr std::uint8_t dataPage = 0x01;
constexpr std::uint8_t definitionPage = 0x02;
constexpr std::uint8_t usagePage = 0x05;

/// An open database file as numbered pages. A page is read when it is first asked for and then kept, so that everything
/// read through one store shows the file as it was; views stay valid as long as the store.
class PageStore {
  public:
    /// Throws Error: NotFound, AccessDenied, InOut, NotADatabase, Damaged, Protected.
    PageStore(const FileOpener &open, const std::filesystem::path &path, RawFile::Mode mode);

    [[nodiscard]] const Format &format() const { return format_; }
    [[nodiscard]] CodePage &codePage() { return codePage_; }
    [[nodiscard]] std::uint32_t pageCount() const { return static_cast<std::uint32_t>(pages_.size()); }
    [[nodiscard]] RawFile &file() { return *file_; }

    /// A page's bytes, decoded. Throws Damaged for a number that the file does not have.
    [[nodiscard]] ByteView page(std::uint32_t number);
    /// Writes a page's decoded bytes to the file.
    void write(std::uint32_t number, std::span<const std::uint8_t> decoded);
    /// Makes these the bytes of a page from here on, without touching the file.
    void replace(std::uint32_t number, std::span<const std::uint8_t> decoded);

  private:
    [[nodiscard]] std::uint64_t position(std::uint32_t number) const;
    void code(std::uint32_t number, std::span<std::uint8_t> bytes) const;

    std::unique_ptr<RawFile> file_;
    Format format_;
    CodePage codePage_;
    std::vector<std::unique_ptr<std::uint8_t[]>> pages_;
};

} // namespace orvel::jet
