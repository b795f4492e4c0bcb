#pragma once

#include "platform/audio_file.h"
#include "platform/sndfile/wav_output.h"

#include <optional>

namespace orvel {

/// Writes WAV or FLAC files with libsndfile. Before create() and after close() the other calls do nothing.
class SndfileWavWriter : public WavFileWriter {
  public:
    /// storage: outlives this.
    explicit SndfileWavWriter(Storage &storage = systemStorage(), SoundPacking packing = SoundPacking::None)
        : storage_(storage), packing_(packing) {}

    void create(const QString &path, int sampleRate) override;
    void write(std::span<const std::int16_t> samples) override;
    void close() override;

  private:
    Storage &storage_;
    SoundPacking packing_;
    std::optional<WavOutput> output_;
};

} // namespace orvel
