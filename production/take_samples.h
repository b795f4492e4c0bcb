#pragma once

#include <QString>

#include <cstdint>
#include <memory>
#include <vector>

namespace orvel {

class AudioFileReader;
struct Platform;

/// Opens a mono file. It can be read to its end, whatever becomes of its name. Throws FileNotFound, DeviceError (no
/// sound file, or not mono).
[[nodiscard]] std::unique_ptr<AudioFileReader> openMono(Platform &platform, const QString &path);

/// Reads an open mono file from its present place to its end. Throws DeviceError when it holds less than it says.
/// path: for the report.
void readSamples(AudioFileReader &reader, const QString &path, std::vector<std::int16_t> &samples);

} // namespace orvel
