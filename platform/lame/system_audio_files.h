#pragma once

#include "platform/audio_file.h"

namespace orvel {

/// The real readers and writers: libsndfile reads and writes WAV, LAME writes MP3.
class SystemAudioFiles : public AudioFiles {
  public:
    [[nodiscard]] std::unique_ptr<AudioFileReader> reader() override;
    [[nodiscard]] std::unique_ptr<AudioFileWriter> mp3Writer() override;
    [[nodiscard]] std::unique_ptr<WavFileWriter> wavWriter() override;
    bool repairWav(const QString &path) override;
};

} // namespace orvel
