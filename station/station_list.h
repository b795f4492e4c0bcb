#pragma once

#include <QString>

#include <vector>

namespace orvel {

class DatabaseEngine;
class Places;

/// A station of the network, and the code that its versions of a take are filed under.
struct NetworkStation {
    QString name;
    QString code;

    bool operator==(const NetworkStation &) const = default;
};

/// "Algemeen", then the stations of the station list by name. Throws what opening and querying throw.
[[nodiscard]] std::vector<NetworkStation> stationList(DatabaseEngine &databases, const Places &places);

/// What a station's version of a voice track is called, without extension: its code comes first, but for "000" and
/// "999", which are the general one's.
[[nodiscard]] QString versionName(const QString &name, const QString &code);

/// Why no version can be saved for a station, as a sentence for the presenter; empty when it can.
[[nodiscard]] QString stationProblem(const NetworkStation &station);

} // namespace orvel
