#include "recording/take_file.h"

#include "playlist/playlist.h"
#include "settings/settings.h"
#include "station/places.h"

namespace orvel {

QString audibleTake(const Playlist &playlist, int row, const QString &name, const Places &places,
                    const Settings &settings) {
    const bool isDone = playlist.isOpen() && row >= 0 && playlist.value(row, ImportedColumn).toBool();
    if (!isDone) {
        return places.take(name);
    }
    return settings.ServerMode ? Places::filedOnServer(settings.VoicetrackPath, name) : places.filed(name);
}

} // namespace orvel
