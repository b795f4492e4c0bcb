#pragma once

#include <QByteArray>
#include <QString>

namespace orvel {

// The operating system's part of DiskFileSystem; one source a system. What fails throws RuntimeError.

class Leftovers;

/// New content of a file: written under a temporary name in the file's folder and gone again unless it replaces the
/// file.
class NewContent {
  public:
    /// leftovers: takes what cannot be removed again; outlives this.
    NewContent(const QString &target, Leftovers &leftovers);
    NewContent(const NewContent &) = delete;
    NewContent &operator=(const NewContent &) = delete;
    NewContent(NewContent &&) = delete;
    NewContent &operator=(NewContent &&) = delete;
    ~NewContent();

    void append(const QByteArray &bytes);
    /// Waits until everything is on the disk. Nothing is appended after that.
    void finish();
    /// Finishes where that was not done, then makes it the file's content as one step. The file keeps its permissions;
    /// a new one gets those of any new file.
    void replaceTarget();

  private:
    void close();

    QString target_;
    Leftovers &leftovers_; // NOLINT(cppcoreguidelines-avoid-const-or-ref-data-members): never copied
    QByteArray temporary_;
    int handle_ = -1;
};

/// Renames over an existing file as one step; false when the two are on different disks.
bool renameFile(const QString &source, const QString &target);
void removeFile(const QString &path);
/// Makes a folder; one that is there already is fine.
void makeOneFolder(const QString &path);

} // namespace orvel
