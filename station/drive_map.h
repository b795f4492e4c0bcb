#pragma once

#include <QMap>
#include <QString>

namespace orvel {

class FileSystem;

/// Turns the Windows paths of catalogues into paths of this machine: section [Drives] of the settings file gives a
/// folder for a drive letter, relative to the program folder if it is not absolute.
class DriveMap {
  public:
    DriveMap(FileSystem &files, QString programFolder) : files_(&files), programFolder_(std::move(programFolder)) {}

    /// A letter without a folder is not mapped.
    void set(QChar letter, const QString &folder) {
        if (!folder.isEmpty()) {
            folders_.insert(letter.toUpper(), folder);
        }
    }
    /// A path without a mapped drive letter is given back with this machine's separators. Folders and names are found
    /// without regard to case.
    [[nodiscard]] QString resolve(const QString &cataloguePath) const;

  private:
    FileSystem *files_;
    QString programFolder_;
    QMap<QChar, QString> folders_;
};

} // namespace orvel
