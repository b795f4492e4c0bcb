#include "platform/jet/text.h"

#include <array>

namespace orvel::jet {

namespace {

/// The bytes 80 to 9f of code page 1252; the five that it does not define keep their number, as Windows does.
constexpr std::array<char16_t, 32> codePage{u'\u20ac', 0x81,      u'\u201a', u'\u0192', u'\u201e', u'\u2026', u'\u2020',
                                            u'\u2021', u'\u02c6', u'\u2030', u'\u0160', u'\u2039', u'\u0152', 0x8d,
                                            u'\u017d', 0x8f,      0x90,      u'\u2018', u'\u2019', u'\u201c', u'\u201d',
                                            u'\u2022', u'\u2013', u'\u2014', u'\u02dc', u'\u2122', u'\u0161', u'\u203a',
                                            u'\u0153', 0x9d,      u'\u017e', u'\u0178'};

char16_t unit(std::span<const std::uint8_t> bytes, std::size_t at) {
    return static_cast<char16_t>(bytes[at] | (bytes[at + 1] << 8));
}

} // namespace

std::u16string fromCodePage(const ByteView &bytes) {
    std::u16string text;
    text.reserve(bytes.size());
    for (const std::uint8_t byte : bytes.bytes()) {
        text.push_back(byte >= 0x80 && byte <= 0x9f ? codePage[byte - 0x80U] : char16_t{byte});
    }
    return text;
}

std::u16string fromUtf16(const ByteView &bytes) {
    const auto raw = bytes.bytes();
    std::u16string text;
    text.reserve(raw.size() / 2);
    for (std::size_t at = 0; at + 1 < raw.size(); at += 2) {
        text.push_back(unit(raw, at));
    }
    return text;
}

std::u16string fromJet4Text(const ByteView &bytes) {
    const auto raw = bytes.bytes();
    if (raw.size() < 2 || raw[0] != 0xff || raw[1] != 0xfe) {
        return fromUtf16(bytes);
    }
    std::u16string text;
    text.reserve(raw.size());
    bool compressed = true;
    for (std::size_t at = 2; at < raw.size();) {
        if (raw[at] == 0) {
            compressed = !compressed;
            ++at;
        } else if (compressed) {
            text.push_back(char16_t{raw[at]});
            ++at;
        } else {
            if (at + 1 == raw.size()) {
                break;
            }
            text.push_back(unit(raw, at));
            at += 2;
        }
    }
    return text;
}

} // namespace orvel::jet
