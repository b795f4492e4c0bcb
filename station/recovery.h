#pragma once

#include <QString>

namespace orvel {

class FileSystem;

/// The folder "herstel" in the program folder: what was recorded but not filed, and playlists as they were before they
/// were changed. The fifty of each kind (by extension) that were kept last stay; files that somebody else put there are
/// never touched. Kept files are called name.yyyyMMdd-HHmmss-zzz-NNNNNN.extension, where the last number counts up over
/// the whole folder.
class Recovery {
  public:
    static constexpr int keptFiles = 50;
    static constexpr qint64 largestCopy = qint64{16} * 1024 * 1024; ///< bytes; playlists have less than a million

    Recovery(FileSystem &files, const QString &programFolder);

    /// Moves a file there under its name and the present time; gives its new path. Throws what the disk throws; the
    /// file then stays where it is.
    QString keep(const QString &path);
    /// Copies a file there. What fails must not keep the presenter from working: gives a sentence that tells it, else
    /// nothing. A file beyond any playlist's size is not copied: it would take the room that takes need.
    QString keepCopy(const QString &path);
    /// Drops a kept file that was filed after all.
    void discard(const QString &kept);

  private:
    [[nodiscard]] QString newPlace(const QString &path) const;
    void dropOldest(const QString &newest);

    FileSystem &files_;
    QString folder_;
};

} // namespace orvel
