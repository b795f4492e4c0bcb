#pragma once

#include <QByteArray>
#include <QString>

namespace orvel {

/// Who uses a station, or the name of a take: written into the file that is locked, for people to read.
struct Holder {
    QString user;
    QString machine;
    QString since; ///< local time, "dd-MM-yyyy HH:mm"

    bool operator==(const Holder &) const = default;
};

/// Whoever runs this program, now.
Holder presentHolder();

/// JSON.
QByteArray toText(const Holder &holder);

/// What cannot be read is empty.
Holder holderIn(const QByteArray &text);

} // namespace orvel
