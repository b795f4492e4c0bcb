#include "platform/sndfile/sndfile_wav_writer.h"

namespace orvel {

void SndfileWavWriter::create(const QString &path, int sampleRate) {
    output_.emplace(storage_, path, sampleRate, packing_);
}

void SndfileWavWriter::write(std::span<const std::int16_t> samples) {
    if (output_) {
        output_->write(samples);
    }
}

void SndfileWavWriter::close() {
    if (!output_) {
        return;
    }
    try {
        output_->close();
    } catch (...) {
        output_.reset();
        throw;
    }
    output_.reset();
}

} // namespace orvel
