#pragma once

#include "platform/audio.h"
#include "platform/storage/storage.h"

#include <QString>

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>

namespace orvel {

/// Frames per second of every take.
inline constexpr int kTakeRate = 44100;

/// How a take is written.
struct TakeLimits {
    /// Samples that wait for the disk at most: 2^19 are 11.9 s, 1 MiB.
    std::size_t ringSamples = std::size_t{1} << 19;
    /// Where a take ends as on a full disk. A WAV file has 32-bit sizes: this is 13.5 hours, 4 GiB less a little.
    std::int64_t maxFrames = (INT64_C(0xFFFFFFFF) - 4096) / 2;
    /// How long finish() waits for a disk that takes its time.
    std::chrono::milliseconds longestSync = std::chrono::seconds(20);
};

/// Writes a take: mono 16-bit 44100 Hz WAV. One thread (the sound card's) pushes samples, a thread of the writer's own
/// puts them on disk, the owner's thread calls everything else. The file is a valid WAV file at any moment, up to the
/// last second even when the process is killed, or the power fails: a third thread has the disk take what is written
/// (sync), and a disk that is slow in that holds nobody up. Used by every recorder, whatever delivers the
/// samples.
class TakeWriter {
  public:
    /// Creates or overwrites the file and starts the writer's thread. storage: outlives this. Throws PathNotFound,
    /// PathAccess, PermissionDenied, DiskFull.
    explicit TakeWriter(const QString &path, TakeLimits limits = {}, Storage &storage = systemStorage());
    /// Finishes, if nobody did, and keeps quiet about failures.
    ~TakeWriter();
    TakeWriter(const TakeWriter &) = delete;
    TakeWriter(TakeWriter &&) = delete;
    TakeWriter &operator=(const TakeWriter &) = delete;
    TakeWriter &operator=(TakeWriter &&) = delete;

    /// Sound card's thread: never blocks, allocates, logs or throws. What does not fit is counted as an overrun, and
    /// as much silence comes in its place once there is room, so that the take keeps its time.
    void push(std::span<const std::int16_t> samples) noexcept;
    /// Sound card's thread: the card lost `frames`; counted as an overrun, silence comes in their place.
    void pushHole(std::int64_t frames) noexcept;
    /// Any thread: something was lost, nobody knows how much; counted as an overrun.
    void countOverrun() noexcept;
    /// Sound card's thread: samples that push() would take now without loss.
    [[nodiscard]] std::size_t space() const noexcept;

    /// Waits until everything that was pushed before is in the file and its header says so.
    void flush();
    /// Like flush(), waits until the disk has the take, then closes the file; nothing happens the second time. No
    /// push() may run or follow. Throws DiskFull, DeviceError and what else a storage says when the take could not be
    /// written to its end, DiskNotReady when the disk does not answer; the file is closed and valid all the same.
    void finish();
    /// Reading resets the peak and where it was clipped. deviceLost and isHeard are never set: those are for the
    /// recorder to know.
    [[nodiscard]] RecorderStatus status() noexcept;

  private:
    class Impl;
    std::unique_ptr<Impl> impl_;
};

} // namespace orvel
