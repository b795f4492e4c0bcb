#include "playlist/voice_tracks.h"

#include "platform/file_system.h"
#include "playlist/playlist.h"
#include "playlist/step_types.h"
#include "settings/settings.h"
#include "station/ignore_errors.h"

namespace orvel {

namespace {

const QString mp3 = QStringLiteral(".mp3");

bool isMarkedSlot(const Playlist &playlist, int row) {
    return playlist.value(row, TypeColumn).toInt() == PresStep && playlist.value(row, ImportedColumn).toBool();
}

} // namespace

QString VoiceTracks::folder() const {
    return settings_.ServerMode ? settings_.VoicetrackPath : settings_.OkPath;
}

bool VoiceTracks::isServerThere() const {
    return !settings_.ServerMode || files_.folderExists(settings_.VoicetrackPath);
}

QSet<int> VoiceTracks::missing(const Playlist &playlist) const {
    QSet<QString> there;
    bool isKnown = false;
    ignoringErrors([&] {
        if (!files_.folderExists(folder())) {
            return;
        }
        for (const QString &name : files_.list(folder(), u'*' + mp3)) {
            there.insert(name.toLower());
        }
        isKnown = true;
    });
    QSet<int> rows;
    for (int row = 0; isKnown && row < playlist.stepCount(); ++row) {
        // A row that cannot be read is told elsewhere.
        ignoringErrors([&] {
            const QString name = playlist.value(row, AtrackColumn).toString();
            const bool hasName = !name.isEmpty() && name != QStringLiteral("NONE");
            if (isMarkedSlot(playlist, row) && hasName && !there.contains((name + mp3).toLower())) {
                rows.insert(row);
            }
        });
    }
    return rows;
}

} // namespace orvel
