#pragma once

#include "platform/storage/storage.h"

namespace orvel {

/// A sound file that is being written, from a position that moves on. Failures are RuntimeError with the file's path.
/// Not thread-safe; only what file() points to may be synced on another thread.
class OutputFile {
  public:
    /// Creates the file anew: under another name in its folder, then in the place of what stood there, so that nothing
    /// is written through a link and an earlier file stays when this fails. Throws PathNotFound (no such folder),
    /// PathAccess (it is a folder or a device), and what a storage says of a file that cannot be made.
    OutputFile(Storage &storage, const QString &path);

    /// All or nothing told; some bytes may have been written when it throws.
    void write(std::span<const std::byte> bytes);
    void seek(qint64 position) { position_ = position; }
    /// Cuts the file to a size.
    void resize(qint64 size) { file_->resize(size); }
    void sync() { file_->sync(); }
    /// Nothing is written after that.
    void close() { file_->close(); }

    [[nodiscard]] qint64 size() const { return file_->size(); }
    [[nodiscard]] qint64 position() const { return position_; }
    [[nodiscard]] const std::shared_ptr<StorageFile> &file() const { return file_; }

  private:
    std::shared_ptr<StorageFile> file_;
    qint64 position_ = 0;
};

} // namespace orvel
