#pragma once

#include <QSet>
#include <QString>
#include <QStringList>
#include <QVariant>

#include <optional>

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

  private:
    QSet<QString> names_;
};

/// Where the voice tracks of a playlist must be: which steps are marked as done while their MP3 is not where the
/// play-out system finds it. The folder is listed once; one that gives no answer tells nothing about any step.
class VoiceTracks {
  public:
    VoiceTracks(FileSystem &files, const Settings &settings) : files_(files), settings_(settings) {}

    /// The folder of this station's voice tracks: the server's, or the finished folder.
    [[nodiscard]] QString folder() const;
    /// Whether there is a folder for the server's voice tracks where one is used.
    [[nodiscard]] bool isServerThere() const;
    /// What there is in the folder; nothing when it gives no answer.
    [[nodiscard]] std::optional<FiledTracks> filed() const;
    /// Rows of marked presentation steps without their MP3.
    [[nodiscard]] QSet<int> missing(const Playlist &playlist) const;

  private:
    FileSystem &files_;
    const Settings &settings_;
};

} // namespace orvel
