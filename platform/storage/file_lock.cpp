#include "platform/storage/file_lock.h"

#include "platform/runtime_error.h"

namespace orvel {

namespace {

/// Whether a name still means the file that was opened by it.
bool isStillNamed(Storage &storage, const QString &path, const StorageFile &file) {
    try {
        return storage.open(path, Storage::Access::Read)->identity() == file.identity();
    } catch (const RuntimeError &) {
        return false;
    }
}

class StorageLock : public FileLock {
  public:
    StorageLock(Storage &storage, QString path, std::unique_ptr<StorageFile> file)
        : storage_(storage), path_(std::move(path)), file_(std::move(file)) {}
    StorageLock(const StorageLock &) = delete;
    StorageLock(StorageLock &&) = delete;
    StorageLock &operator=(const StorageLock &) = delete;
    StorageLock &operator=(StorageLock &&) = delete;
    ~StorageLock() override {
        // While it is still locked: whoever gets the lock next must not lose the file to us.
        try {
            if (isStillNamed(storage_, path_, *file_)) {
                storage_.remove(path_);
            }
        } catch (const RuntimeError &) {
            // A file that stays is locked by nobody.
        }
    }

    void tell(const QByteArray &content) {
        file_->resize(0);
        file_->write(0, std::as_bytes(std::span(content)));
    }

  private:
    Storage &storage_;
    QString path_;
    std::unique_ptr<StorageFile> file_;
};

} // namespace

std::unique_ptr<FileLock> lockFile(Storage &storage, const QString &path, const QByteArray &content) {
    // Whoever gives the lock back removes the file, perhaps after it was opened here: that lock would lock nobody out.
    constexpr int mostTries = 20;
    for (int i = 0; i < mostTries; ++i) {
        std::unique_ptr<StorageFile> file = storage.open(path, Storage::Access::ChangeOrNew);
        if (!file->tryLockMark()) {
            return {};
        }
        if (isStillNamed(storage, path, *file)) {
            auto lock = std::make_unique<StorageLock>(storage, path, std::move(file));
            lock->tell(content);
            return lock;
        }
    }
    return {}; // others are at it all the time
}

} // namespace orvel
