#pragma once

#include "platform/audio_file.h"
#include "platform/storage/storage.h"

namespace orvel {

/// The real readers and writers: libsndfile reads, and writes WAV and FLAC, LAME writes MP3.
class SystemAudioFiles : public AudioFiles {
  public:
    /// storage: what is written through; outlives this and what it makes.
    explicit SystemAudioFiles(Storage &storage = systemStorage()) : storage_(storage) {}

    [[nodiscard]] std::unique_ptr<AudioFileReader> reader() override;
    [[nodiscard]] std::unique_ptr<AudioFileWriter> mp3Writer() override;
    [[nodiscard]] std::unique_ptr<WavFileWriter> wavWriter() override;
    [[nodiscard]] std::unique_ptr<WavFileWriter> flacWriter() override;
    bool repairWav(const QString &path) override;

  private:
    Storage &storage_;
};

} // namespace orvel
