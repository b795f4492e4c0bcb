#pragma once

#include <QByteArray>
#include <QString>

namespace orvel {

/// Text in the Windows code page 1252. Its five unused bytes stand for the control characters of the same number, so
/// that any bytes survive a round trip. Source: the code page's public table.
QString fromCodePage1252(const QByteArray &bytes);
/// Characters that the code page does not have become question marks.
QByteArray toCodePage1252(const QString &text);

} // namespace orvel
