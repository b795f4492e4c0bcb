#include "playlist/voice_tracks.h"

#include "platform/file_system.h"
#include "playlist/playlist.h"
#include "playlist/step_types.h"
#include "settings/settings.h"
#include "station/ignore_errors.h"
#include "station/paths.h"

namespace orvel {

namespace {

const QString mp3 = QStringLiteral(".mp3");
const QString generalCode = QStringLiteral("999");

} // namespace

FiledTracks::FiledTracks(const QStringList &files) {
    for (const QString &name : files) {
        names_.insert(name.toLower());
    }
}

bool FiledTracks::lack(const QVariant &type, const QVariant &Imported, const QVariant &Atrack) const {
    const QString name = Atrack.toString();
    const bool isMarkedSlot = type.toInt() == PresStep && Imported.toBool();
    return isMarkedSlot && !name.isEmpty() && name != QStringLiteral("NONE") && !has(name);
}

bool FiledTracks::has(const QString &name) const {
    return names_.contains((name + mp3).toLower());
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

/// A step counts as voiced per station as soon as one of them has a version of its own. What is general serves all.
StationCount VoiceTracks::count(const FiledTracks &there, const QString &Atrack) const {
    if (stations_ == nullptr) {
        return {};
    }
    StationCount count;
    bool hasOwn = false;
    for (const NetworkStation &station : *stations_) {
        if (station.code.isEmpty() || station.code == generalCode) {
            continue; // no version of its own
        }
        const QString version = versionName(Atrack, station.code);
        const bool isThere = there.has(version);
        hasOwn = hasOwn || (isThere && version != Atrack);
        ++count.all;
        count.there += isThere ? 1 : 0;
        if (!isThere) {
            count.lacking << station.name;
        }
    }
    if (there.has(Atrack)) {
        count.lacking.clear();
    }
    return hasOwn ? count : StationCount();
}

StepTrack VoiceTracks::look(const FiledTracks &there, const QVariant &type, const QVariant &Imported,
                            const QVariant &Atrack) const {
    const StationCount stations = type.toInt() == PresStep ? count(there, Atrack.toString()) : StationCount();
    return {stations, stations.there == 0 && there.lack(type, Imported, Atrack)};
}

TrackLook VoiceTracks::look(const Playlist &playlist) const {
    const std::optional<FiledTracks> there = filed();
    TrackLook seen;
    for (int row = 0; there && row < playlist.stepCount(); ++row) {
        // A row that cannot be read is told elsewhere.
        ignoringErrors([&] {
            const StepTrack step = look(*there, playlist.value(row, TypeColumn), playlist.value(row, ImportedColumn),
                                        playlist.value(row, AtrackColumn));
            if (step.stations.there > 0) {
                seen.stations.insert(row, step.stations);
            }
            if (step.isMissing) {
                seen.missing.insert(row);
            }
        });
    }
    return seen;
}

QSet<int> VoiceTracks::missing(const Playlist &playlist) const {
    return look(playlist).missing;
}

std::vector<StationVersion> VoiceTracks::versions(const QString &Atrack) const {
    const std::optional<FiledTracks> there = filed();
    std::vector<StationVersion> all;
    if (there && stations_) {
        for (const NetworkStation &station : *stations_) {
            const QString version = versionName(Atrack, station.code);
            all.push_back({station, inFolder(folder(), version + mp3), !station.code.isEmpty() && there->has(version)});
        }
    }
    return all;
}

QStringList VoiceTracks::lacking(const QString &Atrack) const {
    const std::optional<FiledTracks> there = filed();
    return there ? count(*there, Atrack).lacking : QStringList();
}

} // namespace orvel
