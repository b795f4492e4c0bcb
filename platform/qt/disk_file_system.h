#pragma once

#include "platform/file_system.h"
#include "platform/storage/leftovers.h"
#include "platform/storage/storage.h"

namespace orvel {

/// The disks of this machine. Thread-safe.
class DiskFileSystem : public FileSystem {
  public:
    /// storage: outlives this.
    explicit DiskFileSystem(Storage &storage = systemStorage()) : storage_(storage) {}

    [[nodiscard]] bool fileExists(const QString &path) const override;
    [[nodiscard]] qint64 fileSize(const QString &path) const override;
    [[nodiscard]] bool folderExists(const QString &path) const override;
    [[nodiscard]] bool isSameFolder(const QString &one, const QString &other) const override;
    [[nodiscard]] QStringList list(const QString &folder, const QString &pattern) const override;
    [[nodiscard]] QStringList folders(const QString &folder) const override;
    [[nodiscard]] QStringList drives() const override;
    [[nodiscard]] qint64 freeBytes(const QString &folder) const override;
    /// Answers at once, after as long as the disk takes.
    [[nodiscard]] std::shared_ptr<const std::atomic<Writable>> askWritable(const QString &folder) override;
    [[nodiscard]] QByteArray read(const QString &path) const override;
    void write(const QString &path, const QByteArray &content) override;
    bool copy(const QString &source, const QString &target, const Progress &progress) override;
    void link(const QString &source, const QString &target) override;
    void move(const QString &source, const QString &target) override;
    void remove(const QString &path) override;
    void makeFolder(const QString &path) override;
    [[nodiscard]] std::unique_ptr<FileLock> tryLock(const QString &path, const QByteArray &content) override;

  private:
    [[nodiscard]] bool isWritable(const QString &folder);

    Storage &storage_;
    Leftovers leftovers_;
};

} // namespace orvel
