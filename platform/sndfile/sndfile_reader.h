#pragma once

#include "platform/audio_file.h"

namespace orvel {

/// Reads everything that libsndfile knows: WAV of any depth and rate, MP3, and more. Samples of more than 16 bits are
/// rounded, floating-point samples beyond full scale are limited.
class SndfileReader : public AudioFileReader {
  public:
    SndfileReader();
    ~SndfileReader() override;
    SndfileReader(const SndfileReader &) = delete;
    SndfileReader(SndfileReader &&) = delete;
    SndfileReader &operator=(const SndfileReader &) = delete;
    SndfileReader &operator=(SndfileReader &&) = delete;

    void open(const QString &path) override;
    /// 0 open or never opened, -1 no file that can be read, -2 not a sound file, or one that claims what no sound file
    /// has: rates outside 4 .. 384 kHz, more than 32 channels, more sound than so many bytes can hold.
    [[nodiscard]] int errorState() const override;
    [[nodiscard]] int sampleRate() const override;
    [[nodiscard]] int channels() const override;
    [[nodiscard]] std::int64_t frames() const override;
    [[nodiscard]] int bytesPerFrame() const override;
    [[nodiscard]] QByteArray readBlock() override;
    /// The next block begins with this sample frame. Throws DeviceError when the file has no such place.
    void seek(std::int64_t frame);
    void close() override;

  private:
    class Impl;
    std::unique_ptr<Impl> impl_;
    int errorState_ = 0;
};

} // namespace orvel
