#include "production/take_samples.h"

#include "platform/audio_file.h"
#include "platform/file_system.h"
#include "platform/platform.h"
#include "platform/runtime_error.h"

#include <cstring>

namespace orvel {

std::unique_ptr<AudioFileReader> openMono(Platform &platform, const QString &path) {
    std::unique_ptr<AudioFileReader> reader = platform.audioFiles.reader();
    reader->open(path);
    if (reader->errorState() < 0 || reader->channels() != 1) {
        throw RuntimeError(platform.files.fileExists(path) ? ErrorNumber::DeviceError : ErrorNumber::FileNotFound,
                           path);
    }
    return reader;
}

void readSamples(AudioFileReader &reader, const QString &path, std::vector<std::int16_t> &samples) {
    samples.clear();
    samples.reserve(static_cast<std::size_t>(reader.frames()));
    for (QByteArray block = reader.readBlock(); !block.isEmpty(); block = reader.readBlock()) {
        const std::size_t before = samples.size();
        samples.resize(before + static_cast<std::size_t>(block.size()) / sizeof(std::int16_t));
        std::memcpy(samples.data() + before, block.constData(), static_cast<std::size_t>(block.size()));
    }
    if (static_cast<std::int64_t>(samples.size()) < reader.frames()) {
        throw RuntimeError(ErrorNumber::DeviceError, path);
    }
}

} // namespace orvel
