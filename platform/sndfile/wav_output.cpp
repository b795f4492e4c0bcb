#include "platform/sndfile/wav_output.h"

#include "platform/runtime_error.h"

#include <algorithm>
#include <sndfile.h>

namespace orvel {

/// What libsndfile calls. Exceptions must not cross its C code: the first one waits in failure_.
struct WavOutputCalls {
    static WavOutput &output(void *user) { return *static_cast<WavOutput *>(user); }

    template <typename Action>
    static bool succeeds(WavOutput &output, Action action) {
        try {
            action();
            return true;
        } catch (const RuntimeError &error) {
            if (!output.failure_) {
                output.failure_ = error;
            }
            return false;
        }
    }

    static sf_count_t length(void *user) { return output(user).file_.size(); }
    static sf_count_t tell(void *user) { return output(user).file_.position(); }
    static sf_count_t read(void * /*to*/, sf_count_t /*count*/, void * /*user*/) { return 0; }

    static sf_count_t seek(sf_count_t offset, int whence, void *user) {
        OutputFile &file = output(user).file_;
        const sf_count_t base = whence == SF_SEEK_CUR ? file.position() : whence == SF_SEEK_END ? file.size() : 0;
        file.seek(base + offset);
        return file.position();
    }

    static sf_count_t write(const void *from, sf_count_t count, void *user) {
        OutputFile &file = output(user).file_;
        const sf_count_t start = file.position();
        // libsndfile's header counts what this says: a write that failed half-way counts by half.
        return succeeds(output(user),
                        [&] {
                            file.write({static_cast<const std::byte *>(from), static_cast<std::size_t>(count)});
                        })
                   ? count
                   : file.position() - start;
    }
};

WavOutput::WavOutput(Storage &storage, const QString &path, int sampleRate, SoundPacking packing)
    : path_(path), file_(storage, path) {
    SF_INFO info{};
    info.samplerate = sampleRate;
    info.channels = 1;
    info.format = (packing == SoundPacking::Flac ? SF_FORMAT_FLAC : SF_FORMAT_WAV) | SF_FORMAT_PCM_16;
    SF_VIRTUAL_IO io{WavOutputCalls::length, WavOutputCalls::seek, WavOutputCalls::read, WavOutputCalls::write,
                     WavOutputCalls::tell};
    sound_.reset(sf_open_virtual(&io, SFM_WRITE, &info, this));
    if (packing == SoundPacking::None) {
        updateHeader(); // an empty take is a valid file too, and a full disk shows at once
    } else if (!sound_) {
        throwFailure();
        throw RuntimeError(ErrorNumber::DeviceError, path_);
    }
}

void WavOutput::Closer::operator()(sf_private_tag *sound) const {
    sf_close(sound);
}

void WavOutput::throwFailure() {
    if (failure_) {
        const RuntimeError error = *failure_;
        failure_.reset();
        throw RuntimeError(error);
    }
}

void WavOutput::write(std::span<const std::int16_t> samples) {
    frames_ += sf_write_short(sound_.get(), samples.data(), static_cast<sf_count_t>(samples.size()));
    throwFailure();
}

void WavOutput::updateHeader() {
    if (!sound_ || sf_command(sound_.get(), SFC_UPDATE_HEADER_NOW, nullptr, 0) != 0) {
        throwFailure();
        throw RuntimeError(ErrorNumber::DeviceError, path_);
    }
    throwFailure();
}

std::int64_t WavOutput::cutToWholeFrames() noexcept {
    try {
        frames_ = std::max<qint64>(file_.size() - wavHeaderSize, 0) / 2;
        file_.resize(wavHeaderSize + frames_ * 2);
        updateHeader();
    } catch (const RuntimeError &) {
        // The disk is worse than full. The header written a second ago still stands.
        failure_.reset();
    }
    return frames_;
}

void WavOutput::finish() {
    sound_.reset();
    throwFailure();
}

void WavOutput::close() {
    finish();
    file_.sync();
    file_.close();
}

} // namespace orvel
