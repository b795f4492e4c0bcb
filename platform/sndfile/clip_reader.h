#pragma once

#include "dsp/resampler.h"
#include "platform/sndfile/patient_reader.h"

#include <QString>

#include <cstdint>
#include <memory>
#include <span>
#include <vector>

namespace orvel {

/// Reads a sound file of any rate and channels as stereo at 44100 Hz. One thread reads; another may interrupt it.
class ClipReader {
  public:
    static constexpr int sampleRate = 44100;

    /// Throws DeviceError when it is no sound file, or does not answer and was interrupted.
    void open(const QString &path);
    /// Length in frames at 44100 Hz.
    [[nodiscard]] std::int64_t frames() const;
    /// The next frame that read() gives, at 44100 Hz. Throws like open().
    void seek(std::int64_t frame);
    /// As many frames as fit; fewer and finally 0 at the end, also when the file cannot be read on.
    std::size_t read(std::span<float> stereo);
    /// Whoever waits for the file waits only a moment longer, for good.
    void interrupt() { file_.interrupt(); }

  private:
    void decode();

    PatientReader file_;
    std::unique_ptr<Resampler> resampler_;
    std::vector<float> block_; ///< stereo at the file's rate
    std::vector<float> ready_; ///< stereo at 44100 Hz
    std::size_t given_ = 0;    ///< samples of ready_
    bool hasEnded_ = false;
};

} // namespace orvel
