#include "recording/take.h"

#include "settings/settings.h"
#include "station/places.h"

namespace orvel {

QString Take::version() const {
    const bool isGeneral = stationCode == QStringLiteral("000") || stationCode == QStringLiteral("999");
    return isGeneral ? step.name : stationCode + step.name;
}

TakeFiles filesOf(const Take &take, const Places &places, const Settings &settings) {
    const QString filed = settings.ServerMode ? Places::filedOnServer(settings.VoicetrackPath, take.version())
                                              : places.filed(take.version());
    return {places.take(take.name()), places.encoded(take.version()), filed};
}

} // namespace orvel
