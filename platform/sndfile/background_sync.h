#pragma once

#include "platform/away/away_worker.h"
#include "platform/storage/storage.h"

#include <chrono>
#include <memory>

namespace orvel {

/// Syncs an open file on a thread of its own, so that whoever writes it goes on meanwhile; one sync at a time. One
/// thread calls it. Destroying it waits for nothing: a sync that hangs keeps the file open until it comes back.
class BackgroundSync {
  public:
    BackgroundSync(std::shared_ptr<StorageFile> file, QString path) : file_(std::move(file)), path_(std::move(path)) {}

    /// Begins a sync, unless one is under way. Throws what the one before threw.
    void begin();
    /// Waits for the one under way and for another, which takes what was written last. Throws what one of them threw,
    /// and DiskNotReady when that takes longer.
    void finish(std::chrono::milliseconds longest);

  private:
    void post();

    std::shared_ptr<StorageFile> file_;
    QString path_;
    AwayWorker worker_;
    std::shared_ptr<AwayTask> task_; ///< the latest sync whose end nobody has looked at
};

} // namespace orvel
