#pragma once

#include <QString>

namespace orvel {

class FileSystem;

/// The folder "herstel" in the program folder: what was recorded but not filed, and playlists as they were before they
/// were changed. The newest fifty of each kind stay.
class Recovery {
  public:
    static constexpr int keptFiles = 50;

    Recovery(FileSystem &files, const QString &programFolder);

    /// Moves a file there under its name and the present time; gives its new path. Throws what the disk throws; the
    /// file then stays where it is.
    QString keep(const QString &path);
    /// Copies a file there; a failure is not reported: it must not keep the presenter from working.
    void keepCopy(const QString &path);
    /// Drops a kept file that was filed after all.
    void discard(const QString &kept);

  private:
    [[nodiscard]] QString newPlace(const QString &path) const;
    void dropOldest(const QString &extension);

    FileSystem &files_;
    QString folder_;
};

} // namespace orvel
