#include "production/mix_down.h"

#include <algorithm>
#include <cmath>
#include <span>

namespace orvel {

namespace {

constexpr int stereo = 2;
constexpr double middleLevel = 0.5;

std::int16_t toSample(double value) {
    return static_cast<std::int16_t>(std::lrint(value));
}

} // namespace

int StereoReader::channels() const {
    return std::min(source_.channels(), stereo);
}

int StereoReader::bytesPerFrame() const {
    return channels() * static_cast<int>(sizeof(std::int16_t));
}

QByteArray StereoReader::readBlock() {
    QByteArray block = source_.readBlock();
    const auto channels = static_cast<std::size_t>(std::max(source_.channels(), 1));
    if (channels <= stereo) {
        return block;
    }
    const auto count = static_cast<std::size_t>(block.size()) / sizeof(std::int16_t);
    const std::span samples(reinterpret_cast<const std::int16_t *>(block.constData()), count);
    const double scale = 1 / (1 + middleLevel * static_cast<double>(channels - stereo));
    QByteArray mixed(static_cast<qsizetype>(count / channels * stereo * sizeof(std::int16_t)), Qt::Uninitialized);
    auto *out = reinterpret_cast<std::int16_t *>(mixed.data());
    for (std::size_t at = 0; at + channels <= count; at += channels) {
        double middle = 0;
        for (const std::int16_t sample : samples.subspan(at + stereo, channels - stereo)) {
            middle += middleLevel * sample;
        }
        *out++ = toSample((samples[at] + middle) * scale);
        *out++ = toSample((samples[at + 1] + middle) * scale);
    }
    return mixed;
}

} // namespace orvel
