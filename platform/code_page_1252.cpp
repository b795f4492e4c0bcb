#include "platform/code_page_1252.h"

#include <algorithm>
#include <array>

namespace orvel {

namespace {

/// What stands between 0x80 and 0x9F; the rest is Latin-1.
constexpr std::array<char16_t, 32> codePage1252 = {0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021,
                                                   0x02C6, 0x2030, 0x0160, 0x2039, 0x0152, 0x008D, 0x017D, 0x008F,
                                                   0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022, 0x2013, 0x2014,
                                                   0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

} // namespace

QString fromCodePage1252(const QByteArray &bytes) {
    QString text = QString::fromLatin1(bytes);
    for (QChar &character : text) {
        if (character.unicode() >= 0x80 && character.unicode() < 0xA0) {
            character = QChar(codePage1252.at(character.unicode() - 0x80U));
        }
    }
    return text;
}

QByteArray toCodePage1252(const QString &text) {
    QByteArray bytes;
    for (const QChar character : text) {
        const auto *const place = std::find(codePage1252.begin(), codePage1252.end(), character.unicode());
        if (place != codePage1252.end()) {
            bytes.append(static_cast<char>(0x80 + (place - codePage1252.begin())));
        } else {
            bytes.append(character.unicode() < 0x100 ? static_cast<char>(character.unicode()) : '?');
        }
    }
    return bytes;
}

} // namespace orvel
