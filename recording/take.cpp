#include "recording/take.h"

#include "settings/settings.h"
#include "station/places.h"
#include "station/station_list.h"

namespace orvel {

QString Take::version() const {
    return versionName(step.name, stationCode);
}

TakeFiles filesOf(const Take &take, const Places &places, const Settings &settings) {
    const QString filed = settings.ServerMode ? Places::filedOnServer(settings.VoicetrackPath, take.version())
                                              : places.filed(take.version());
    return {places.take(take.name()), places.encoded(take.version()), filed};
}

} // namespace orvel
