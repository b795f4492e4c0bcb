#pragma once

#include "station/station_list.h"

#include <QHash>
#include <QSet>
#include <QString>
#include <QStringList>
#include <QVariant>

#include <optional>
#include <vector>

namespace orvel {

class FileSystem;
class Playlist;
struct Settings;

/// The MP3s in a folder.
class FiledTracks {
  public:
    explicit FiledTracks(const QStringList &files);

    /// Whether a step, by the values of its fields, is marked as done while its MP3 is not among them. Names are
    /// compared without regard to case.
    [[nodiscard]] bool lack(const QVariant &type, const QVariant &Imported, const QVariant &Atrack) const;

    /// Whether the voice track of this name, without extension, is there.
    [[nodiscard]] bool has(const QString &name) const;

  private:
    QSet<QString> names_;
};

/// A station and its version of a voice track.
struct StationVersion {
    NetworkStation station;
    QString file; ///< full path of where it is, or would be
    bool isThere = false;
};

/// Of a step that is voiced per station: how many have their version, and who has nothing to broadcast.
struct StationCount {
    int there = 0;
    int all = 0;
    QStringList lacking; ///< names of stations with neither a version of their own nor the general one

    bool operator==(const StationCount &) const = default;
};

/// What the folder tells of one step.
struct StepTrack {
    StationCount stations;
    bool isMissing = false; ///< done, and there is nothing to broadcast anywhere
};

/// What one look at the folder told about the steps of a playlist, by row.
struct TrackLook {
    QSet<int> missing;                 ///< marked presentation steps without their MP3
    QHash<int, StationCount> stations; ///< steps that are voiced per station
};

/// Where the voice tracks of a playlist must be: which steps are marked as done while their MP3 is not where the
/// play-out system finds it. The folder is listed once; one that gives no answer tells nothing about any step.
class VoiceTracks {
  public:
    /// stations: of the network, the general one among them; may be none. Outlives this.
    VoiceTracks(FileSystem &files, const Settings &settings, const std::vector<NetworkStation> *stations = nullptr)
        : files_(files), settings_(settings), stations_(stations) {}

    /// The folder of this station's voice tracks: the server's, or the finished folder.
    [[nodiscard]] QString folder() const;
    /// Whether there is a folder for the server's voice tracks where one is used.
    [[nodiscard]] bool isServerThere() const;
    /// What there is in the folder; nothing when it gives no answer.
    [[nodiscard]] std::optional<FiledTracks> filed() const;
    [[nodiscard]] TrackLook look(const Playlist &playlist) const;
    /// Of one step, by the values of its fields.
    [[nodiscard]] StepTrack look(const FiledTracks &there, const QVariant &type, const QVariant &Imported,
                                 const QVariant &Atrack) const;
    /// Every station with its version of a voice track, in the list's order; nothing when the folder gives no answer.
    [[nodiscard]] std::vector<StationVersion> versions(const QString &Atrack) const;
    /// Who has nothing to broadcast of a step that is voiced per station; empty for other steps.
    [[nodiscard]] QStringList lacking(const QString &Atrack) const;
    /// Rows of marked presentation steps without their MP3.
    [[nodiscard]] QSet<int> missing(const Playlist &playlist) const;

  private:
    [[nodiscard]] StationCount count(const FiledTracks &there, const QString &Atrack) const;

    FileSystem &files_;
    const Settings &settings_;
    const std::vector<NetworkStation> *stations_;
};

} // namespace orvel
