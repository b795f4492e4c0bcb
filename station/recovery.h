#pragma once

#include <QDateTime>
#include <QString>

#include <vector>

namespace orvel {

class FileSystem;

enum class KeptKind { Take, VoiceTrack, Playlist };

/// A file in the recovery folder.
struct KeptFile {
    QString path;
    QString name; ///< that it had, with its extension
    KeptKind kind = KeptKind::Take;
    QDateTime when; ///< by the clock of that moment
};

/// The folder "herstel" in the program folder: what was recorded but not filed, and playlists that were deleted,
/// replaced or changed. The fifty of each kind (by extension) that were kept last stay, of playlists the last five
/// hundred; files that somebody else put there are never touched. Kept files are called
/// name.yyyyMMdd-HHmmss-zzz-NNNNNN.extension, where the last number counts up over the whole folder.
class Recovery {
  public:
    static constexpr int keptFiles = 50;
    static constexpr int keptPlaylists = 500;                       ///< small, and deleted by whole folders at once
    static constexpr qint64 largestCopy = qint64{16} * 1024 * 1024; ///< bytes; playlists have less than a million

    Recovery(FileSystem &files, const QString &programFolder);

    /// Moves a file there under its name and the present time; gives its new path. Throws what the disk throws; the
    /// file then stays where it is.
    QString keep(const QString &path);
    /// Keeps the present content of a file that is going to be changed or replaced. What fails must not keep the
    /// presenter from working: gives a sentence that tells it, else nothing. Takes and voice tracks, which are replaced
    /// as a whole, get a second name there, whatever their size. Playlists are changed in place and are copied; one
    /// beyond any playlist's size is not: it would take the room that takes need.
    QString keepCopy(const QString &path);
    /// What is kept, the last one first. A folder that cannot be read is empty.
    [[nodiscard]] std::vector<KeptFile> kept() const;
    /// Moves a kept file into a folder under the name that it had. What stands there is kept first, and is back in its
    /// place when the move fails. Throws what the disk throws.
    void putBack(const KeptFile &kept, const QString &folder);
    /// Drops a kept file that was filed after all.
    void discard(const QString &kept);

  private:
    [[nodiscard]] QString newPlace(const QString &path) const;
    QString keepSparing(const QString &path, const QString &spared);
    /// Of the kind of the newest file; the newest and the spared one always stay.
    void dropOldest(const QString &newest, const QString &spared = {});

    FileSystem &files_;
    QString folder_;
};

} // namespace orvel
