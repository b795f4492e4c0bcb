#pragma once

#include "platform/storage/storage.h"

#include <functional>
#include <memory>

namespace orvel {

/// Another storage with faults, told as the system's own error codes (errno): they come out as those of a real disk
/// would. pathPart: the faults are those of paths that contain it; of a new file and a rename that is the target's.
/// Thread-safe.
class FaultyStorage : public Storage {
  public:
    enum class Call { Open, Create, Read, Write, Resize, Sync, Close, Rename, Link, Remove, MakeFolder };

    /// real: outlives this and all its files. A file may outlive this.
    explicit FaultyStorage(Storage &real = systemStorage());

    /// From now on, beginning with the n-th call of this kind on such paths (1 is the next one).
    void fail(Call call, int code, const QString &pathPart = {}, int from = 1);
    /// From now on no file of such a path grows beyond so many bytes: what fits is written, the rest fails.
    void fillUpAt(qint64 bytes, const QString &pathPart = {}, int code = defaultFullCode());
    /// From now on: runs in every sync() before it happens.
    void onSync(std::function<void()> action);
    void heal();

    [[nodiscard]] std::unique_ptr<StorageFile> open(const QString &path, Access access) override;
    [[nodiscard]] std::unique_ptr<StorageFile> create(const QString &path, const QString &toldAs) override;
    [[nodiscard]] bool rename(const QString &source, const QString &target) override;
    [[nodiscard]] bool link(const QString &source, const QString &target) override;
    void remove(const QString &path) override;
    void makeFolder(const QString &path) override;

    class Faults;

  private:
    static int defaultFullCode();

    Storage &real_;
    std::shared_ptr<Faults> faults_;
};

} // namespace orvel
