#pragma once

#include "platform/runtime_error.h"
#include "platform/sndfile/output_file.h"

#include <QString>

#include <cstdint>
#include <memory>
#include <optional>
#include <span>

// NOLINTNEXTLINE(bugprone-reserved-identifier, readability-identifier-naming): libsndfile's own name
struct sf_private_tag;

namespace orvel {

/// Where the samples of a take's WAV file begin (bytes).
inline constexpr qint64 wavHeaderSize = 44;

/// What a sound file is: plain, or packed without loss (FLAC).
enum class SoundPacking { None, Flac };

/// A mono 16-bit WAV or FLAC file while it is written. Calls throw what a storage says of its disk (DiskFull,
/// DeviceError ...). One thread.
class WavOutput {
  public:
    /// storage: outlives this. Throws like OutputFile.
    WavOutput(Storage &storage, const QString &path, int sampleRate = 44100, SoundPacking packing = SoundPacking::None);
    ~WavOutput() = default;
    WavOutput(const WavOutput &) = delete;
    WavOutput(WavOutput &&) = delete;
    WavOutput &operator=(const WavOutput &) = delete;
    WavOutput &operator=(WavOutput &&) = delete;

    void write(std::span<const std::int16_t> samples);
    /// The header of a WAV file tells the length that the file has now.
    void updateHeader();
    /// Takes what a failed write left of a sample off the end; returns the frames in the file. Throws nothing.
    std::int64_t cutToWholeFrames() noexcept;
    /// The header is whole, and nothing is written after that.
    void finish();
    /// Finishes, syncs, closes.
    void close();
    /// What the samples are in: to be synced on another thread, and after finish() to be closed.
    [[nodiscard]] const std::shared_ptr<StorageFile> &file() const { return file_.file(); }

    [[nodiscard]] std::int64_t frames() const { return frames_; }
    [[nodiscard]] const QString &path() const { return path_; }

  private:
    friend struct WavOutputCalls;
    struct Closer {
        void operator()(sf_private_tag *sound) const;
    };
    void throwFailure();

    QString path_;
    OutputFile file_;
    std::optional<RuntimeError> failure_; ///< of the latest call through libsndfile
    std::unique_ptr<sf_private_tag, Closer> sound_;
    std::int64_t frames_ = 0;
};

} // namespace orvel
