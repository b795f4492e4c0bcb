#include "production/transcode.h"

#include "platform/runtime_error.h"

#include <algorithm>
#include <array>

namespace orvel {

Mp3Format mp3Format(int bitRateIndex, bool freeFormat) {
    constexpr std::array rates = {128, 192, 256, 320, 350};
    constexpr int highestCommonRate = 320;
    if (bitRateIndex < 0 || bitRateIndex >= static_cast<int>(rates.size())) {
        return {};
    }
    Mp3Format format;
    format.sampleRate = 44100;
    format.channels = 2;
    const int rate = rates.at(static_cast<std::size_t>(bitRateIndex));
    format.freeFormat = freeFormat && rate > highestCommonRate;
    format.kbitPerSecond = format.freeFormat ? rate : std::min(rate, highestCommonRate);
    return format;
}

namespace {

void copyBlocks(AudioFileReader &reader, AudioFileWriter &writer, const std::function<void(int)> &progress) {
    const std::int64_t length = reader.frames();
    std::int64_t done = 0;
    for (QByteArray block = reader.readBlock(); !block.isEmpty(); block = reader.readBlock()) {
        writer.write(block);
        done = std::min<std::int64_t>(done + block.size() / reader.bytesPerFrame(), length);
        progress(length > 0 ? static_cast<int>(done * 100 / length) : 100);
    }
    progress(100);
}

} // namespace

bool convert(AudioFileReader &reader, AudioFileWriter &writer, const QString &wavPath, const QString &mp3Path,
             const std::function<void(int)> &progress) {
    reader.open(wavPath);
    if (reader.errorState() < 0) {
        return false;
    }
    writer.setInput(reader.sampleRate(), reader.channels());
    writer.create(mp3Path);
    bool converted = writer.errorState() >= 0;
    if (converted) {
        try {
            copyBlocks(reader, writer, progress);
            writer.close();
        } catch (const RuntimeError &) {
            converted = false;
        }
    }
    reader.close();
    return converted;
}

} // namespace orvel
