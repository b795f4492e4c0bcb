#include "platform/lame/system_audio_files.h"

#include "platform/lame/lame_writer.h"
#include "platform/sndfile/sndfile_reader.h"
#include "platform/sndfile/sndfile_wav_writer.h"
#include "platform/sndfile/wav_repair.h"

namespace orvel {

std::unique_ptr<AudioFileReader> SystemAudioFiles::reader() {
    return std::make_unique<SndfileReader>();
}

std::unique_ptr<AudioFileWriter> SystemAudioFiles::mp3Writer() {
    return std::make_unique<LameWriter>(storage_);
}

std::unique_ptr<WavFileWriter> SystemAudioFiles::wavWriter() {
    return std::make_unique<SndfileWavWriter>(storage_);
}

std::unique_ptr<WavFileWriter> SystemAudioFiles::flacWriter() {
    return std::make_unique<SndfileWavWriter>(storage_, SoundPacking::Flac);
}

bool SystemAudioFiles::repairWav(const QString &path) {
    return orvel::repairWav(storage_, path);
}

} // namespace orvel
