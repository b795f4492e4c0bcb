#pragma once

#include "platform/away/away_work.h"
#include "platform/file_system.h"

#include <memory>

namespace orvel {

/// A file system that never blocks the window: what lies in the station's own folder is asked for directly, everything
/// else through AwayWork. A folder that gives no answer is one that is not there; every other call throws DiskNotReady.
class AwayFileSystem : public FileSystem {
  public:
    /// real: may be called from several threads at once; it is kept alive by calls that hang. station: its folder.
    AwayFileSystem(std::shared_ptr<FileSystem> real, AwayWork &work, const QString &station);

    [[nodiscard]] bool fileExists(const QString &path) const override;
    [[nodiscard]] qint64 fileSize(const QString &path) const override;
    [[nodiscard]] bool folderExists(const QString &path) const override;
    [[nodiscard]] bool isSameFolder(const QString &one, const QString &other) const override;
    [[nodiscard]] QStringList list(const QString &folder, const QString &pattern) const override;
    [[nodiscard]] QStringList folders(const QString &folder) const override;
    [[nodiscard]] QStringList drives() const override;
    [[nodiscard]] qint64 freeBytes(const QString &folder) const override;
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
    /// Whether a path lies outside the station.
    [[nodiscard]] bool isAway(const QString &path) const;
    template <class Job>
    auto in(const QString &place, const QString &path, Job job) const;
    template <class Job>
    auto look(const QString &place, const QString &path, Job job) const;

    std::shared_ptr<FileSystem> real_;
    AwayWork &work_;
    QString station_;
};

} // namespace orvel
