#include "platform/lame/system_audio_files.h"

#include "platform/lame/lame_writer.h"
#include "platform/sndfile/sndfile_reader.h"
#include "platform/sndfile/sndfile_wav_writer.h"
#include "platform/sndfile/wav_repair.h"
#include "platform/storage/storage.h"

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

bool SystemAudioFiles::repairWav(const QString &path) {
    return orvel::repairWav(systemStorage(), path);
}

} // namespace orvel
