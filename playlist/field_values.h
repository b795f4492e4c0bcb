#pragma once

#include <QString>
#include <QVariant>

#include <cstdint>

namespace orvel {

/// A field as a 32-bit whole number: halves round to the even neighbour, texts are taken where they are numbers.
/// Throws TypeMismatch (null or no number), Overflow.
std::int32_t toWholeNumber(const QVariant &value);

/// A field as text. Throws TypeMismatch for null.
QString toText(const QVariant &value);

/// A field as the presenter reads it: as it is stored, nothing for null. A moment has its date only when it is not the
/// database's day zero, on which times of day are stored, and its seconds only when there are any.
QString asStored(const QVariant &value);

/// Milliseconds as seconds with one decimal, leading zero and digit grouping of the user's locale; halves round away
/// from zero: 12345 gives 12.3.
QString secondsOneDecimal(std::int32_t milliseconds);

/// A field that holds milliseconds as the presenter reads it: seconds with one decimal; what is no number as it is
/// stored, nothing for null.
QString secondsAsRead(const QVariant &value);

/// Milliseconds as seconds with as many decimals as needed, without grouping: 12345 gives 12.345, 2000 gives 2.
QString secondsGeneral(std::int32_t milliseconds);

} // namespace orvel
