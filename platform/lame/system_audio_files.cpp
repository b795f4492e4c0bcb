#include "platform/lame/system_audio_files.h"

#include "platform/lame/lame_writer.h"
#include "platform/sndfile/sndfile_reader.h"
#include "platform/sndfile/sndfile_wav_writer.h"

namespace orvel {

std::unique_ptr<AudioFileReader> SystemAudioFiles::reader() {
    return std::make_unique<SndfileReader>();
}

std::unique_ptr<AudioFileWriter> SystemAudioFiles::mp3Writer() {
    return std::make_unique<LameWriter>();
}

std::unique_ptr<WavFileWriter> SystemAudioFiles::wavWriter() {
    return std::make_unique<SndfileWavWriter>();
}

} // namespace orvel
