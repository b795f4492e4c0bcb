#include "playlist/voice_tracks.h"

#include "platform/file_system.h"
#include "playlist/playlist.h"
#include "playlist/step_types.h"
#include "settings/settings.h"
#include "station/ignore_errors.h"

namespace orvel {

namespace {

const QString mp3 = QStringLiteral(".mp3");

} // namespace

FiledTracks::FiledTracks(const QStringList &files) {
    for (const QString &name : files) {
        names_.insert(name.toLower());
    }
}

bool FiledTracks::lack(const QVariant &type, const QVariant &Imported, const QVariant &Atrack) const {
    const QString name = Atrack.toString();
    const bool isMarkedSlot = type.toInt() == PresStep && Imported.toBool();
    return isMarkedSlot && !name.isEmpty() && name != QStringLiteral("NONE") &&
           !names_.contains((name + mp3).toLower());
}

QString VoiceTracks::folder() const {
    return settings_.ServerMode ? settings_.VoicetrackPath : settings_.OkPath;
}

bool VoiceTracks::isServerThere() const {
    return !settings_.ServerMode || files_.folderExists(settings_.VoicetrackPath);
}

std::optional<FiledTracks> VoiceTracks::filed() const {
    std::optional<FiledTracks> found;
    ignoringErrors([&] {
        if (files_.folderExists(folder())) {
            found.emplace(files_.list(folder(), u'*' + mp3));
        }
    });
    return found;
}

QSet<int> VoiceTracks::missing(const Playlist &playlist) const {
    const std::optional<FiledTracks> there = filed();
    QSet<int> rows;
    for (int row = 0; there && row < playlist.stepCount(); ++row) {
        // A row that cannot be read is told elsewhere.
        ignoringErrors([&] {
            if (there->lack(playlist.value(row, TypeColumn), playlist.value(row, ImportedColumn),
                            playlist.value(row, AtrackColumn))) {
                rows.insert(row);
            }
        });
    }
    return rows;
}

} // namespace orvel
