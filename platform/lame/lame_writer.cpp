#include "platform/lame/lame_writer.h"

#include "platform/runtime_error.h"
#include "platform/sndfile/output_file.h"

#include <cstdarg>
#include <lame/lame.h>
#include <span>
#include <vector>

namespace orvel {
namespace {

struct LameCloser {
    void operator()(lame_global_flags *lame) const { lame_close(lame); }
};
using Lame = std::unique_ptr<lame_global_flags, LameCloser>;

/// The one that the `lame` command uses when it is not told another; 0 is best and slowest, 9 worst.
constexpr int kQuality = 3;

/// The most bytes that one call can give for so many frames of input, from LAME's own documentation; twice as many in
/// case the input is resampled to a higher rate.
std::size_t outputSize(int frames) {
    return 2 * static_cast<std::size_t>(frames) * 5 / 4 + 7200;
}

void keepQuiet(const char * /*format*/, va_list /*arguments*/) {}

/// Null when the encoder does not take this format or input.
Lame makeEncoder(const Mp3Format &format, int inputRate, int inputChannels) {
    if (format.channels < 1 || format.channels > 2 || inputChannels < 1 || inputChannels > 2 || inputRate <= 0) {
        return {};
    }
    Lame lame(lame_init());
    if (!lame) {
        return {};
    }
    lame_set_errorf(lame.get(), keepQuiet);
    lame_set_msgf(lame.get(), keepQuiet);
    lame_set_debugf(lame.get(), keepQuiet);
    lame_set_in_samplerate(lame.get(), inputRate);
    lame_set_out_samplerate(lame.get(), format.sampleRate);
    // Told of one channel, LAME writes one: a mono input is two equal channels where two are wanted.
    lame_set_num_channels(lame.get(), std::max(inputChannels, format.channels));
    lame_set_mode(lame.get(), format.channels == 2 ? JOINT_STEREO : MONO);
    lame_set_VBR(lame.get(), vbr_off);
    lame_set_brate(lame.get(), format.kbitPerSecond);
    lame_set_free_format(lame.get(), format.freeFormat ? 1 : 0);
    lame_set_quality(lame.get(), kQuality);
    lame_set_write_id3tag_automatic(lame.get(), 0);
    lame_set_bWriteVbrTag(lame.get(), 1);
    const bool taken = lame_init_params(lame.get()) >= 0 && lame_get_brate(lame.get()) == format.kbitPerSecond &&
                       lame_get_out_samplerate(lame.get()) == format.sampleRate;
    return taken ? std::move(lame) : Lame();
}

} // namespace

class LameWriter::Impl {
  public:
    Impl(Storage &storage, const QString &path, Lame lame, int inputChannels)
        : path_(path), lame_(std::move(lame)), inputChannels_(inputChannels), file_(storage, path) {}

    void write(const QByteArray &block) {
        failed_ = true; // until this call comes to its end
        const int frames = static_cast<int>(block.size()) / (2 * inputChannels_);
        output_.resize(std::max(output_.size(), outputSize(frames)));
        put(encode(reinterpret_cast<const std::int16_t *>(block.data()), frames));
        failed_ = false;
    }

    void close() {
        if (failed_) {
            return; // told already; the file closes by itself
        }
        output_.resize(std::max(output_.size(), outputSize(0)));
        put(lame_encode_flush(lame_.get(), output_.data(), static_cast<int>(output_.size())));
        writeTag();
        file_.sync();
        file_.close();
    }

  private:
    int encode(const std::int16_t *samples, int frames) {
        const auto size = static_cast<int>(output_.size());
        if (inputChannels_ == 1) {
            return lame_encode_buffer(lame_.get(), samples, samples, frames, output_.data(), size);
        }
        // LAME only reads the samples, although it does not say so.
        return lame_encode_buffer_interleaved(lame_.get(), const_cast<std::int16_t *>(samples), frames, output_.data(),
                                              size);
    }

    void put(int count) {
        if (count < 0) {
            throw RuntimeError(ErrorNumber::DeviceError, path_, QStringLiteral("de MP3-codering is mislukt"));
        }
        file_.write(std::as_bytes(std::span(output_).first(static_cast<std::size_t>(count))));
    }

    /// Over the empty frame that LAME has put at the start for it.
    void writeTag() {
        const std::size_t size = lame_get_lametag_frame(lame_.get(), nullptr, 0);
        output_.resize(std::max(output_.size(), size));
        const std::size_t written = lame_get_lametag_frame(lame_.get(), output_.data(), output_.size());
        if (written > 0 && written <= output_.size()) {
            file_.seek(0);
            put(static_cast<int>(written));
        }
    }

    QString path_;
    Lame lame_;
    int inputChannels_;
    OutputFile file_;
    std::vector<unsigned char> output_;
    bool failed_ = false;
};

LameWriter::LameWriter(Storage &storage) : storage_(storage) {}
LameWriter::~LameWriter() = default;

void LameWriter::setInput(int sampleRate, int channels) {
    inputRate_ = sampleRate;
    inputChannels_ = channels;
}

void LameWriter::create(const QString &path) {
    impl_.reset();
    if (format_.kbitPerSecond <= 0 || format_.sampleRate <= 0) {
        errorState_ = -1;
        return;
    }
    const bool inputKnown = inputRate_ > 0;
    const int inputChannels = inputKnown ? inputChannels_ : format_.channels;
    Lame lame = makeEncoder(format_, inputKnown ? inputRate_ : format_.sampleRate, inputChannels);
    if (!lame) {
        errorState_ = -3;
        return;
    }
    try {
        impl_ = std::make_unique<Impl>(storage_, path, std::move(lame), inputChannels);
        errorState_ = 0;
    } catch (const RuntimeError &) {
        errorState_ = -2;
    }
}

void LameWriter::write(const QByteArray &block) {
    if (!impl_) {
        throw RuntimeError(ErrorNumber::DeviceError);
    }
    impl_->write(block);
}

void LameWriter::close() {
    // Gone whatever happens: the file is closed also when its end could not be written.
    const std::unique_ptr<Impl> last = std::move(impl_);
    if (last) {
        last->close();
    }
}

} // namespace orvel
