#pragma once

#include <cstdint>
#include <memory>

class QFile;

namespace orvel {

/// Decodes MP3. libsndfile does that too, but takes its guess at the length for the truth: of a file with a variable
/// bit rate and no tag that tells its length, everything behind the guess is lost.
class MpegStream {
  public:
    MpegStream();
    ~MpegStream();
    MpegStream(const MpegStream &) = delete;
    MpegStream(MpegStream &&) = delete;
    MpegStream &operator=(const MpegStream &) = delete;
    MpegStream &operator=(MpegStream &&) = delete;

    /// Takes an open file, which must outlive this. Walks through the whole file (about 30 ms for ten minutes) where no
    /// tag tells its length. False when it is not MP3.
    bool open(QFile &file);
    [[nodiscard]] int sampleRate() const { return static_cast<int>(rate_); }
    [[nodiscard]] int channels() const { return channels_; }
    /// Length in sample frames.
    [[nodiscard]] std::int64_t frames() const { return frames_; }
    /// Interleaved samples, full scale is 1; returns how many frames, 0 at the end, -1 when the file cannot be read on.
    std::int64_t read(float *to, std::int64_t frames);
    /// False when there is no such place.
    bool seek(std::int64_t frame);

  private:
    struct Decoder;
    std::unique_ptr<Decoder> decoder_;
    long rate_ = 0;
    int channels_ = 0;
    std::int64_t frames_ = 0;
};

} // namespace orvel
