#pragma once

#include "platform/jet/error.h"

#include <bit>
#include <cstddef>
#include <cstdint>
#include <span>

namespace orvel::jet {

/// Little-endian reading of bytes that may lie: every access is checked, and a bad one throws Error (Damaged) that
/// names the page the bytes came from. Does not own the bytes.
class ByteView {
  public:
    ByteView(std::span<const std::uint8_t> bytes, std::uint32_t page) : bytes_(bytes), page_(page) {}

    [[nodiscard]] std::size_t size() const { return bytes_.size(); }
    [[nodiscard]] std::uint32_t page() const { return page_; }
    [[nodiscard]] std::span<const std::uint8_t> bytes() const { return bytes_; }

    [[nodiscard]] ByteView sub(std::size_t at, std::size_t length) const {
        check(at, length);
        return {bytes_.subspan(at, length), page_};
    }
    [[nodiscard]] std::uint8_t u8(std::size_t at) const { return read<std::uint8_t, 1>(at); }
    [[nodiscard]] std::uint16_t u16(std::size_t at) const { return read<std::uint16_t, 2>(at); }
    [[nodiscard]] std::uint32_t u32(std::size_t at) const { return read<std::uint32_t, 4>(at); }
    [[nodiscard]] std::uint64_t u64(std::size_t at) const { return read<std::uint64_t, 8>(at); }
    [[nodiscard]] float f32(std::size_t at) const { return std::bit_cast<float>(u32(at)); }
    [[nodiscard]] double f64(std::size_t at) const { return std::bit_cast<double>(u64(at)); }

  private:
    void check(std::size_t at, std::size_t length) const {
        if (length > bytes_.size() || at > bytes_.size() - length) {
            damaged(page_, "een verwijzing valt buiten de gegevens");
        }
    }

    template <typename Number, std::size_t Length>
    [[nodiscard]] Number read(std::size_t at) const {
        check(at, Length);
        std::uint64_t value = 0;
        for (std::size_t i = 0; i < Length; ++i) {
            value |= static_cast<std::uint64_t>(bytes_[at + i]) << (8 * i);
        }
        return static_cast<Number>(value);
    }

    std::span<const std::uint8_t> bytes_;
    std::uint32_t page_;
};

} // namespace orvel::jet
