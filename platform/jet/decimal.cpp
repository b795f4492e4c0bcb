#include "platform/jet/decimal.h"

#include <algorithm>
#include <array>
#include <charconv>

namespace orvel::jet {

namespace {

constexpr std::uint8_t mostDigits = 28;
constexpr std::uint64_t base = 10;

using Words = std::array<std::uint32_t, 4>;

/// Divides by ten and gives the rest.
char takeDigit(Words &words) {
    std::uint64_t rest = 0;
    for (std::uint32_t &word : words) {
        const std::uint64_t part = rest << 32 | word;
        word = static_cast<std::uint32_t>(part / base);
        rest = part % base;
    }
    return static_cast<char>('0' + rest);
}

/// At least one digit stands before the point; zeros at the end of the fraction, and a point without one, are left out.
std::string toText(Words words, bool negative, std::uint8_t scale) {
    std::string reversed;
    for (std::uint8_t place = 0; place <= scale || words != Words{}; ++place) {
        if (place == scale && !reversed.empty()) {
            reversed.push_back('.');
        }
        const char digit = takeDigit(words);
        if (digit != '0' || place >= scale || !reversed.empty()) {
            reversed.push_back(digit);
        }
    }
    if (negative) {
        reversed.push_back('-');
    }
    std::ranges::reverse(reversed);
    return reversed;
}

template <typename Number>
bool parse(const std::string &text, Number &number) {
    const char *const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, number);
    return error == std::errc() && stop == end;
}

} // namespace

Value readDecimal(const ByteView &bytes, std::uint8_t scale) {
    if (scale > mostDigits) {
        damaged(bytes.page(), "een getal heeft te veel decimalen");
    }
    const std::string text = toText({bytes.u32(1), bytes.u32(5), bytes.u32(9), bytes.u32(13)}, bytes.u8(0) != 0, scale);
    std::int64_t whole = 0;
    if (parse(text, whole)) {
        return whole;
    }
    double number = 0;
    parse(text, number);
    return number;
}

} // namespace orvel::jet
