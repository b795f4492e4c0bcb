#pragma once

#include <QFile>
#include <QString>

namespace orvel {

/// A file that is being written, without a buffer of its own: what write() has taken survives the death of the process.
/// Failures are RuntimeError with the file's path. Not thread-safe.
class OutputFile {
  public:
    OutputFile() = default;
    /// Creates the file anew: under another name in its folder, then in the place of what stood there, so that nothing
    /// is written through a link and an earlier file stays when this fails. Throws PathNotFound (no such folder),
    /// PathAccess (it is a folder or a device), PermissionDenied, DiskFull, DeviceError.
    void create(const QString &path);

    /// All or nothing told: throws DiskFull (also at a quota or a size limit) or DeviceError; some bytes may have been
    /// written then.
    void write(const char *data, qint64 size);
    /// Throws DeviceError.
    void seek(qint64 position);
    /// Cuts the file to a size; throws DeviceError.
    void resize(qint64 size);
    /// Waits until the disk has what was written. Throws DiskFull, DeviceError.
    void sync();
    void close() { file_.close(); }

    [[nodiscard]] bool isOpen() const { return file_.isOpen(); }
    [[nodiscard]] qint64 size() const { return file_.size(); }
    [[nodiscard]] qint64 position() const { return file_.pos(); }

  private:
    [[noreturn]] void fail(int error) const;

    QString path_;
    QFile file_;
};

} // namespace orvel
