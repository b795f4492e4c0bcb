#pragma once

#include "platform/audio_file.h"

#include <QString>

#include <functional>

namespace orvel {

/// The format that the settings key "BitRate" stands for: 0 to 4 give 128, 192, 256, 320 and 350 kbit/s, 44100 Hz, 2
/// channels; another index gives no format. 350 is written as 320, the highest rate that every decoder reads, unless
/// freeFormat.
Mp3Format mp3Format(int bitRateIndex, bool freeFormat);

/// Converts a WAV file to an MP3 file in the writer's format.
/// progress: called after every block with 0..100; may run window events.
/// False when a file could not be opened, created, read or written; nothing is left of the MP3 then.
bool convert(AudioFileReader &reader, AudioFileWriter &writer, const QString &wavPath, const QString &mp3Path,
             const std::function<void(int percent)> &progress);

} // namespace orvel
