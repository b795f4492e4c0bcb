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

/// A mono 16-bit WAV file while it is written. Calls throw DiskFull or DeviceError. One thread.
class WavOutput {
  public:
    /// Throws like OutputFile::create().
    explicit WavOutput(const QString &path, int sampleRate = 44100);
    ~WavOutput() = default;
    WavOutput(const WavOutput &) = delete;
    WavOutput(WavOutput &&) = delete;
    WavOutput &operator=(const WavOutput &) = delete;
    WavOutput &operator=(WavOutput &&) = delete;

    void write(std::span<const std::int16_t> samples);
    /// The header tells the length that the file has now.
    void updateHeader();
    /// As above, and the disk has all of it.
    void updateHeaderAndSync();
    /// Takes what a failed write left of a sample off the end; returns the frames in the file. Throws nothing.
    std::int64_t cutToWholeFrames() noexcept;
    /// Header, sync, close.
    void close();

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
