#include "platform/code_page_1252.h"
#include "platform/jet/code_page.h"

#include <bit>
#include <iconv.h>

namespace orvel::jet {

namespace {

constexpr std::uint16_t western = 1252;

/// None where the system does not know the code page.
void *openConverter(std::uint16_t number) {
    const char *const utf16 = std::endian::native == std::endian::little ? "UTF-16LE" : "UTF-16BE";
    iconv_t converter = iconv_open(utf16, ("CP" + std::to_string(number)).c_str());
    // NOLINTNEXTLINE(performance-no-int-to-ptr): how iconv_open says no
    return converter == reinterpret_cast<iconv_t>(-1) ? nullptr : converter;
}

} // namespace

CodePage::CodePage(std::uint16_t number)
    : converter_(number == western ? nullptr : openConverter(number), iconv_close) {}

std::u16string CodePage::decode(const ByteView &bytes) {
    const auto raw = bytes.bytes();
    if (converter_) {
        return convert({raw.begin(), raw.end()});
    }
    return fromCodePage1252(QByteArray(reinterpret_cast<const char *>(raw.data()), static_cast<qsizetype>(raw.size())))
        .toStdU16String();
}

std::u16string CodePage::convert(std::string bytes) {
    std::u16string text(2 * bytes.size() + 2, u'\0');
    char *in = bytes.data();
    std::size_t inLeft = bytes.size();
    char *out = reinterpret_cast<char *>(text.data());
    std::size_t outLeft = text.size() * sizeof(char16_t);
    // Some code pages hold a letter back until they know that no accent follows.
    const auto release = [&] { (void)iconv(converter_.get(), nullptr, nullptr, &out, &outLeft); };
    while (iconv(converter_.get(), &in, &inLeft, &out, &outLeft) == static_cast<std::size_t>(-1) && inLeft > 0) {
        release();
        if (outLeft < sizeof(char16_t)) {
            break;
        }
        text[text.size() - outLeft / sizeof(char16_t)] = static_cast<unsigned char>(*in);
        ++in;
        --inLeft;
        out += sizeof(char16_t);
        outLeft -= sizeof(char16_t);
    }
    release();
    text.resize(text.size() - outLeft / sizeof(char16_t));
    return text;
}

} // namespace orvel::jet
