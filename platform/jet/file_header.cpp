#include "platform/jet/file_header.h"

#include "platform/jet/rc4.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <string_view>

namespace orvel::jet {

namespace {

constexpr std::size_t kindAt = 0x04;
constexpr std::size_t versionAt = 0x14;
constexpr std::size_t codedAt = 0x18;
constexpr std::size_t codePageAt = 0x3c;
constexpr std::size_t keyAt = 0x3e;
constexpr std::size_t passwordAt = 0x42;
constexpr std::size_t createdAt = 0x72;
constexpr std::uint32_t headerKey = 0x6b39dac7;
/// 0 Jet 3, 1 Jet 4, 2 to 6 Access 2007, 2010, 2013, 2016 and 2019.
constexpr std::uint8_t newestVersion = 6;

bool hasKind(std::span<const std::uint8_t> start, std::string_view kind) {
    return std::ranges::equal(start.subspan(kindAt, kind.size()), kind,
                              [](std::uint8_t a, char b) { return a == static_cast<std::uint8_t>(b); });
}

/// Jet 4 hides the password under the whole days of the creation date; Jet 3 does not.
bool hasPassword(const ByteView &header, bool jet3) {
    const std::size_t length = jet3 ? 20 : 40;
    std::uint32_t mask = 0;
    const double created = jet3 ? 0 : header.f64(createdAt);
    if (std::isfinite(created) && std::abs(created) < 1e9) {
        mask = static_cast<std::uint32_t>(static_cast<std::int32_t>(created));
    }
    for (std::size_t i = 0; i < length; i += 4) {
        if ((header.u32(passwordAt + i) ^ mask) != 0) {
            return true;
        }
    }
    return false;
}

} // namespace

Format readFormat(std::span<const std::uint8_t> start) {
    if (start.size() < headerSize || !std::ranges::equal(start.first(4), std::array<std::uint8_t, 4>{0, 1, 0, 0}) ||
        !(hasKind(start, "Standard Jet DB") || hasKind(start, "Standard ACE DB"))) {
        throw Error(Fault::NotADatabase, "");
    }
    std::array<std::uint8_t, headerSize> bytes{};
    std::ranges::copy(start.first(headerSize), bytes.begin());
    const std::uint8_t version = bytes[versionAt];
    if (version > newestVersion) {
        throw Error(Fault::NotADatabase, "onbekende versie " + std::to_string(version));
    }
    const bool jet3 = version == 0;
    rc4(headerKey, std::span(bytes).subspan(codedAt, jet3 ? 126 : 128));
    const ByteView header(bytes, 0);
    const Format format{
        .jet3 = jet3, .pageSize = jet3 ? 2048U : 4096U, .key = header.u32(keyAt), .codePage = header.u16(codePageAt)};
    // From Access 2007 on, a key means one of the system's encryption providers instead of the page key.
    if (version > 1 && format.key != 0) {
        throw Error(Fault::Protected, "de database is versleuteld");
    }
    if (hasPassword(header, jet3)) {
        throw Error(Fault::Protected, "de database is beveiligd met een wachtwoord");
    }
    return format;
}

} // namespace orvel::jet
