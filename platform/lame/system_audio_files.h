#pragma once

#include "platform/audio_file.h"

namespace orvel {

/// The real readers and writers: libsndfile reads, LAME writes.
class SystemAudioFiles : public AudioFiles {
  public:
    [[nodiscard]] std::unique_ptr<AudioFileReader> reader() override;
    [[nodiscard]] std::unique_ptr<AudioFileWriter> mp3Writer() override;
};

} // namespace orvel
