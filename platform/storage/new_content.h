#pragma once

#include "platform/storage/storage.h"

namespace orvel {

class Leftovers;

/// A new, empty file beside another, under a name that nobody lists or plays. Its errors name the other.
struct TemporaryFile {
    QString path;
    std::unique_ptr<StorageFile> file;
};
TemporaryFile makeTemporaryBeside(Storage &storage, const QString &target);

/// New content of a file: written under a temporary name in the file's folder and gone again unless it replaces the
/// file. What fails throws RuntimeError with the file's path.
class NewContent {
  public:
    /// leftovers: takes what cannot be removed again. Both outlive this.
    NewContent(Storage &storage, const QString &target, Leftovers &leftovers);
    NewContent(const NewContent &) = delete;
    NewContent &operator=(const NewContent &) = delete;
    NewContent(NewContent &&) = delete;
    NewContent &operator=(NewContent &&) = delete;
    ~NewContent();

    void append(std::span<const std::byte> bytes);
    /// Waits until everything is on the disk. Nothing is appended after that.
    void finish();
    /// Finishes where that was not done, then makes it the file's content as one step. The file keeps its permissions;
    /// a new one gets those of any new file.
    void replaceTarget();

  private:
    Storage &storage_;     // NOLINT(cppcoreguidelines-avoid-const-or-ref-data-members): never copied
    Leftovers &leftovers_; // NOLINT(cppcoreguidelines-avoid-const-or-ref-data-members)
    QString target_;
    TemporaryFile temporary_;
    qint64 size_ = 0;
};

} // namespace orvel
