#pragma once

#include "platform/audio_file.h"

namespace orvel {

/// Another reader with at most two channels: of a file with more, the first two keep their side, the others stand in
/// the middle at half their level, and everything together keeps within full scale.
class StereoReader : public AudioFileReader {
  public:
    explicit StereoReader(AudioFileReader &source) : source_(source) {}

    void open(const QString &path) override { source_.open(path); }
    [[nodiscard]] int errorState() const override { return source_.errorState(); }
    [[nodiscard]] int sampleRate() const override { return source_.sampleRate(); }
    [[nodiscard]] int channels() const override;
    [[nodiscard]] std::int64_t frames() const override { return source_.frames(); }
    [[nodiscard]] int bytesPerFrame() const override;
    [[nodiscard]] QByteArray readBlock() override;
    void close() override { source_.close(); }

  private:
    AudioFileReader &source_;
};

} // namespace orvel
