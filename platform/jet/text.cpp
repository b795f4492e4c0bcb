#include "platform/jet/text.h"

namespace orvel::jet {

namespace {

char16_t unit(std::span<const std::uint8_t> bytes, std::size_t at) {
    return static_cast<char16_t>(bytes[at] | (bytes[at + 1] << 8));
}

} // namespace

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
