#pragma once

#include "platform/audio_file.h"
#include "platform/storage/storage.h"

namespace orvel {

/// Writes MP3 with LAME 3.100 at an exact constant bit rate, at the quality that the `lame` command has by itself
/// (-q 3). Two channels are joint stereo, into which a mono input is fed twice; an input of another rate is resampled.
/// The first frame is a LAME tag: players learn from it the exact length and what the encoder put around the sound.
class LameWriter : public AudioFileWriter {
  public:
    /// storage: outlives this.
    explicit LameWriter(Storage &storage = systemStorage());
    /// A file that was not closed stays behind without its end and its tag.
    ~LameWriter() override;
    LameWriter(const LameWriter &) = delete;
    LameWriter(LameWriter &&) = delete;
    LameWriter &operator=(const LameWriter &) = delete;
    LameWriter &operator=(LameWriter &&) = delete;

    void setFormat(const Mp3Format &format) override { format_ = format; }
    [[nodiscard]] Mp3Format format() const override { return format_; }
    void setInput(int sampleRate, int channels) override;
    void create(const QString &path) override;
    /// 0 created or never tried, -1 no format was set, -2 the file cannot be made, -3 the encoder does not take the
    /// format or the input.
    [[nodiscard]] int errorState() const override { return errorState_; }
    /// Whole frames of the input.
    void write(const QByteArray &block) override;
    /// After a write() that threw, closes the file as it is: the failure was told.
    void close() override;

  private:
    class Impl;
    Storage &storage_;
    std::unique_ptr<Impl> impl_;
    Mp3Format format_;
    int inputRate_ = 0;
    int inputChannels_ = 0;
    int errorState_ = 0;
};

} // namespace orvel
