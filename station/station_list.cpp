#include "station/station_list.h"

#include "platform/database.h"
#include "station/places.h"

#include <QObject>
#include <QVariant>

namespace orvel {

namespace {

/// A digit may be stored as a number or as text.
QString text(const RecordSet &stations, const char *field) {
    const QVariant value = stations.field(QString::fromLatin1(field));
    return value.isNull() ? QString() : value.toString().trimmed();
}

} // namespace

std::vector<NetworkStation> stationList(DatabaseEngine &databases, const Places &places) {
    std::vector<NetworkStation> list{{QStringLiteral("Algemeen"), QStringLiteral("999")}};
    const auto datSync =
        databases.open(places.stationList())->query(QStringLiteral("SELECT * FROM Stations ORDER BY [Stationname]"));
    if (datSync->recordCount() != 0) {
        for (datSync->moveFirst(); !datSync->endOfFile(); datSync->moveNext()) {
            list.push_back({text(*datSync, "stationname"),
                            text(*datSync, "digit1") + text(*datSync, "digit2") + text(*datSync, "digit3")});
        }
    }
    return list;
}

QString versionName(const QString &name, const QString &code) {
    const bool isGeneral = code == QStringLiteral("000") || code == QStringLiteral("999");
    return isGeneral ? name : code + name;
}

QString stationProblem(const NetworkStation &station) {
    if (station.name.isEmpty()) {
        return QStringLiteral("Kies eerst een station !");
    }
    // Its version would be filed under the name of the general one.
    return station.code.isEmpty()
               ? QObject::tr("Het station %1 heeft geen code in de stationslijst. Kies een ander station.")
                     .arg(station.name)
               : QString();
}

} // namespace orvel
