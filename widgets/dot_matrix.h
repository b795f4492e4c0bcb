#pragma once

#include <QString>

#include <vector>

namespace orvel {

/// Text as LED dots. A character is six columns wide (the last one blank); a column is eleven dots high, bit 0 at the
/// top: two rows for accents on capitals, seven for the letter, two for descenders.
inline constexpr int dotRows = 11;
inline constexpr int dotColumnsPerCharacter = 6;

/// The columns of `text`, from left to right. Accented Latin letters are their letter with the accent above it;
/// characters that the built-in letters lack are taken from the system's fonts.
std::vector<quint16> dotColumns(const QString &text);

} // namespace orvel
