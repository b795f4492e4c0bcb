#pragma once

#include "platform/away/away_worker.h"
#include "platform/sndfile/sndfile_reader.h"

#include <atomic>
#include <memory>

namespace orvel {

/// Reads an open sound file on a thread of its own, so that whoever waits for a block can be told not to: a file on a
/// server that gives no answer. One thread reads; interrupt() comes from any other.
class PatientReader {
  public:
    /// file: open, and from now on used by nobody else.
    explicit PatientReader(std::shared_ptr<SndfileReader> file);
    /// Without a file; open() comes first.
    PatientReader();
    ~PatientReader();
    PatientReader(const PatientReader &) = delete;
    PatientReader(PatientReader &&) = delete;
    PatientReader &operator=(const PatientReader &) = delete;
    PatientReader &operator=(PatientReader &&) = delete;

    /// Throws DeviceError when it is no sound file; otherwise like readBlock().
    void open(const QString &path);
    [[nodiscard]] int sampleRate() const { return sampleRate_; }
    [[nodiscard]] int channels() const { return channels_; }
    /// Length in sample frames.
    [[nodiscard]] std::int64_t frames() const { return frames_; }

    /// The next block, interleaved signed 16-bit; empty at the end. Throws DeviceError when the file cannot be read on,
    /// or does not answer and nobody waits any more; it is lost then.
    [[nodiscard]] QByteArray readBlock();
    /// Throws like readBlock().
    void seek(std::int64_t frame);

    /// Whoever waits for the file waits only a moment longer, until resume().
    void interrupt() { interrupted_ = true; }
    void resume() { interrupted_ = false; }

  private:
    void perform(std::function<void()> job);

    std::shared_ptr<SndfileReader> file_;
    int sampleRate_;
    int channels_;
    std::int64_t frames_;
    AwayWorker worker_;
    std::atomic<bool> interrupted_{false};
    bool isLost_ = false; ///< the reading thread's
};

} // namespace orvel
