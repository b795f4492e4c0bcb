#include "platform/sndfile/clip_reader.h"

#include "platform/runtime_error.h"

#include <algorithm>

namespace orvel {

void ClipReader::open(const QString &path) {
    file_.open(path);
    seek(0);
}

std::int64_t ClipReader::frames() const {
    return file_.sampleRate() > 0 ? file_.frames() * sampleRate / file_.sampleRate() : 0;
}

void ClipReader::seek(std::int64_t frame) {
    file_.seek(std::min(frame * file_.sampleRate() / sampleRate, file_.frames()));
    resampler_ = std::make_unique<Resampler>(file_.sampleRate(), sampleRate);
    ready_.clear();
    given_ = 0;
    hasEnded_ = false;
}

std::size_t ClipReader::read(std::span<float> stereo) {
    while (given_ == ready_.size() && !hasEnded_) {
        ready_.clear();
        given_ = 0;
        decode();
    }
    const std::size_t count = std::min(ready_.size() - given_, stereo.size() / 2 * 2);
    std::copy_n(ready_.begin() + static_cast<std::ptrdiff_t>(given_), count, stereo.begin());
    given_ += count;
    return count / 2;
}

/// One block more.
void ClipReader::decode() {
    QByteArray bytes;
    try {
        bytes = file_.readBlock();
    } catch (const RuntimeError &) { // NOLINT(bugprone-empty-catch): what was read before is still heard
    }
    if (bytes.isEmpty()) {
        hasEnded_ = true;
        resampler_->finish(ready_);
        return;
    }
    const auto channels = static_cast<std::size_t>(file_.channels());
    const auto *samples = reinterpret_cast<const std::int16_t *>(bytes.constData());
    const std::size_t frames = static_cast<std::size_t>(bytes.size()) / sizeof(std::int16_t) / channels;
    block_.clear();
    for (std::size_t frame = 0; frame < frames; ++frame) {
        const std::int16_t *at = samples + frame * channels;
        block_.push_back(static_cast<float>(at[0]) / 32768);
        block_.push_back(static_cast<float>(at[channels > 1 ? 1 : 0]) / 32768);
    }
    resampler_->push(block_, ready_);
}

} // namespace orvel
