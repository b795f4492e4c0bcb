#include "platform/sndfile/sndfile_reader.h"

#include "platform/runtime_error.h"
#include "platform/samples.h"
#include "platform/sndfile/mpeg_stream.h"

#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <sndfile.h>
#include <vector>

namespace orvel {
namespace {

/// Frames a block: 4 frames of MP3, 0.1 s, so that a window that handles events between blocks stays lively.
constexpr sf_count_t kBlockFrames = 4L * 1152;

// What a file may claim. A damaged header must not make anybody take memory for it, or divide by it.

/// Hz: from the worst telephone to the highest rate of any converter.
constexpr int kLowestRate = 4000;
constexpr int kHighestRate = 384'000;
/// As many as a sound server takes.
constexpr int kMostChannels = 32;
/// Frames in a byte of the file at most: silence in FLAC, 65535 frames in a dozen bytes; MP3 (24 kHz, 8 kbit/s) has 24.
constexpr sf_count_t kMostFramesPerByte = 8192;
constexpr sf_count_t kMostMpegFramesPerByte = 64;

// libsndfile reads through these from a QFile: paths with any character work on every system, and no file name tempts
// the library to guess a format from an extension.

QFile &fileOf(void *user) {
    return *static_cast<QFile *>(user);
}

sf_count_t fileLength(void *user) {
    return fileOf(user).size();
}

sf_count_t fileSeek(sf_count_t offset, int whence, void *user) {
    QFile &file = fileOf(user);
    const sf_count_t base = whence == SF_SEEK_CUR ? file.pos() : whence == SF_SEEK_END ? file.size() : 0;
    return file.seek(base + offset) ? file.pos() : -1;
}

sf_count_t fileRead(void *to, sf_count_t count, void *user) {
    return std::max<sf_count_t>(fileOf(user).read(static_cast<char *>(to), count), 0);
}

sf_count_t fileWrite(const void * /*from*/, sf_count_t /*count*/, void * /*user*/) {
    return 0;
}

sf_count_t fileTell(void *user) {
    return fileOf(user).pos();
}

} // namespace

class SndfileReader::Impl {
  public:
    explicit Impl(const QString &path) : file_(path) {}
    ~Impl() { sf_close(sound_); }
    Impl(const Impl &) = delete;
    Impl(Impl &&) = delete;
    Impl &operator=(const Impl &) = delete;
    Impl &operator=(Impl &&) = delete;

    int open() {
        // A pipe would block, and cannot be searched for its length.
        if (!QFileInfo(file_.fileName()).isFile() || !file_.open(QIODevice::ReadOnly)) {
            return -1;
        }
        SF_VIRTUAL_IO io{fileLength, fileSeek, fileRead, fileWrite, fileTell};
        sound_ = sf_open_virtual(&io, SFM_READ, &info_, &file_);
        if (sound_ == nullptr || info_.seekable == 0) {
            return -2;
        }
        const bool isMpeg = (info_.format & SF_FORMAT_TYPEMASK) == SF_FORMAT_MPEG;
        return (!isMpeg || openMpeg()) && isCredible(isMpeg ? kMostMpegFramesPerByte : kMostFramesPerByte) ? 0 : -2;
    }

    QByteArray readBlock() {
        QByteArray block(kBlockFrames * bytesPerFrame(), Qt::Uninitialized);
        auto *samples = reinterpret_cast<std::int16_t *>(block.data());
        const sf_count_t count = (info_.format & SF_FORMAT_SUBMASK) == SF_FORMAT_PCM_16
                                     ? sf_readf_short(sound_, samples, kBlockFrames)
                                     : readRounded(samples);
        if (count < 0 || (count == 0 && hasFailed())) {
            throw RuntimeError(ErrorNumber::DeviceError, file_.fileName());
        }
        block.truncate(count * bytesPerFrame());
        return block;
    }

    void seek(std::int64_t frame) {
        if (mpeg_ ? !mpeg_->seek(frame) : sf_seek(sound_, frame, SEEK_SET) < 0) {
            throw RuntimeError(ErrorNumber::DeviceError, file_.fileName());
        }
    }

    [[nodiscard]] int bytesPerFrame() const { return info_.channels * static_cast<int>(sizeof(std::int16_t)); }
    [[nodiscard]] const SF_INFO &info() const { return info_; }

  private:
    /// libsndfile says that it is MP3; from here on it is not asked any more.
    bool openMpeg() {
        sf_close(sound_);
        sound_ = nullptr;
        mpeg_ = std::make_unique<MpegStream>();
        const bool isOpen = mpeg_->open(file_);
        info_.samplerate = mpeg_->sampleRate();
        info_.channels = mpeg_->channels();
        info_.frames = mpeg_->frames();
        return isOpen;
    }

    [[nodiscard]] bool isCredible(sf_count_t framesPerByte) const {
        return info_.samplerate >= kLowestRate && info_.samplerate <= kHighestRate && info_.channels >= 1 &&
               info_.channels <= kMostChannels && info_.frames / framesPerByte <= file_.size();
    }

    [[nodiscard]] bool hasFailed() const {
        return (!mpeg_ && sf_error(sound_) != SF_ERR_NO_ERROR) || file_.error() != QFileDevice::NoError;
    }

    /// libsndfile's own way to 16 bits takes floating-point samples as they are (-1..1 becomes 0) and cuts 24 bits off.
    sf_count_t readRounded(std::int16_t *to) {
        wide_.resize(static_cast<std::size_t>(kBlockFrames * info_.channels));
        const sf_count_t count =
            mpeg_ ? mpeg_->read(wide_.data(), kBlockFrames) : sf_readf_float(sound_, wide_.data(), kBlockFrames);
        std::transform(wide_.begin(), wide_.begin() + std::max<sf_count_t>(count, 0) * info_.channels, to, toInt16);
        return count;
    }

    QFile file_;
    SNDFILE *sound_ = nullptr;
    SF_INFO info_{};
    std::unique_ptr<MpegStream> mpeg_; ///< of an MP3 file, in place of sound_
    std::vector<float> wide_;
};

SndfileReader::SndfileReader() = default;
SndfileReader::~SndfileReader() = default;

void SndfileReader::open(const QString &path) {
    impl_ = std::make_unique<Impl>(path);
    errorState_ = impl_->open();
    if (errorState_ < 0) {
        impl_.reset();
    }
}

int SndfileReader::errorState() const {
    return errorState_;
}
int SndfileReader::sampleRate() const {
    return impl_ ? impl_->info().samplerate : 0;
}
int SndfileReader::channels() const {
    return impl_ ? impl_->info().channels : 0;
}
std::int64_t SndfileReader::frames() const {
    return impl_ ? impl_->info().frames : 0;
}
int SndfileReader::bytesPerFrame() const {
    return impl_ ? impl_->bytesPerFrame() : 0;
}
QByteArray SndfileReader::readBlock() {
    return impl_ ? impl_->readBlock() : QByteArray();
}
void SndfileReader::seek(std::int64_t frame) {
    if (impl_) {
        impl_->seek(frame);
    }
}
void SndfileReader::close() {
    impl_.reset();
}

} // namespace orvel
