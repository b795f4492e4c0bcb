#pragma once

#include "station/holder.h"

#include <memory>

namespace orvel {

class FileLock;
class FileSystem;
class Places;

/// One program works on a station's playlists and voice tracks; the plain recorder may run beside it.
class StationLock {
  public:
    StationLock(FileSystem &files, const Places &places);
    ~StationLock();
    StationLock(const StationLock &) = delete;
    StationLock &operator=(const StationLock &) = delete;
    StationLock(StationLock &&) = delete;
    StationLock &operator=(StationLock &&) = delete;

    /// True when this program has it, now or already. A folder that cannot be written has nobody to keep out, but
    /// nobody is kept out of it either: that is told elsewhere.
    bool get();
    /// Whoever has it, when get() gave false.
    [[nodiscard]] Holder holder() const;
    /// What to tell the presenter of the holder.
    [[nodiscard]] QString sentence() const;

  private:
    FileSystem &files_;
    const Places &places_;
    std::unique_ptr<FileLock> lock_;
};

} // namespace orvel
