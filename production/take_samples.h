#pragma once

#include <QString>

#include <cstdint>
#include <vector>

namespace orvel {

class AudioFileReader;

/// Reads an open mono file from its present place to its end. Throws DeviceError when it holds less than it says.
/// path: for the report.
void readSamples(AudioFileReader &reader, const QString &path, std::vector<std::int16_t> &samples);

} // namespace orvel
