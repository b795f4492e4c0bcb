#include "platform/sndfile/mpeg_stream.h"

#include <QByteArray>
#include <QFile>

#include <mpg123.h>

namespace orvel {
namespace {

constexpr auto kSampleBytes = sizeof(float);

ssize_t readFile(void *file, void *to, std::size_t count) {
    return static_cast<QFile *>(file)->read(static_cast<char *>(to), static_cast<qint64>(count));
}

off_t seekFile(void *user, off_t offset, int whence) {
    auto *file = static_cast<QFile *>(user);
    const off_t base = whence == SEEK_CUR ? file->pos() : whence == SEEK_END ? file->size() : 0;
    return file->seek(base + offset) ? file->pos() : -1;
}

/// Where the sound begins: behind an ID3v2 tag, whose header ends in its size in four times seven bits.
qint64 beginOfSound(QFile &file) {
    file.seek(0);
    const QByteArray head = file.read(10);
    if (head.size() < 10 || !head.startsWith("ID3")) {
        return 0;
    }
    qint64 size = 0;
    for (int i = 6; i < 10; ++i) {
        size = size << 7 | (head.at(i) & 0x7f);
    }
    return size + 10;
}

/// Whether the first frame is one of those that hold numbers in place of sound (Xing, its Info kind, VBRI).
bool hasLengthTag(QFile &file) {
    constexpr qint64 kLongestFrame = 2881;
    file.seek(beginOfSound(file));
    const QByteArray first = file.read(kLongestFrame);
    return first.contains("Xing") || first.contains("Info") || first.contains("VBRI");
}

} // namespace

struct MpegStream::Decoder {
    Decoder() : handle(mpg123_new(nullptr, nullptr)) {}
    ~Decoder() { mpg123_delete(handle); }
    Decoder(const Decoder &) = delete;
    Decoder(Decoder &&) = delete;
    Decoder &operator=(const Decoder &) = delete;
    Decoder &operator=(Decoder &&) = delete;

    mpg123_handle *handle;
};

MpegStream::MpegStream() = default;
MpegStream::~MpegStream() = default;

bool MpegStream::open(QFile &file) {
    decoder_ = std::make_unique<Decoder>();
    mpg123_handle *handle = decoder_->handle;
    const bool isTagged = hasLengthTag(file);
    file.seek(0);
    int encoding = 0;
    if (handle == nullptr ||
        mpg123_param(handle, MPG123_ADD_FLAGS, MPG123_QUIET | MPG123_FORCE_FLOAT, 0) != MPG123_OK ||
        mpg123_replace_reader_handle(handle, readFile, seekFile, nullptr) != MPG123_OK ||
        mpg123_open_handle(handle, &file) != MPG123_OK ||
        mpg123_getformat(handle, &rate_, &channels_, &encoding) != MPG123_OK) {
        return false;
    }
    // What begins as stereo stays stereo, whatever frames come further on.
    mpg123_format_none(handle);
    mpg123_format(handle, rate_, channels_, MPG123_ENC_FLOAT_32);
    if (!isTagged && mpg123_scan(handle) != MPG123_OK) {
        return false;
    }
    frames_ = mpg123_length(handle);
    return frames_ >= 0;
}

std::int64_t MpegStream::read(float *to, std::int64_t frames) {
    const std::size_t frameBytes = kSampleBytes * static_cast<std::size_t>(channels_);
    const std::size_t wanted = static_cast<std::size_t>(frames) * frameBytes;
    std::size_t done = 0;
    int result = MPG123_NEW_FORMAT;
    while (result == MPG123_NEW_FORMAT && done < wanted) {
        std::size_t got = 0;
        result = mpg123_read(decoder_->handle, reinterpret_cast<unsigned char *>(to) + done, wanted - done, &got);
        done += got;
    }
    const bool isFine = result == MPG123_OK || result == MPG123_DONE || done > 0;
    return isFine ? static_cast<std::int64_t>(done / frameBytes) : -1;
}

bool MpegStream::seek(std::int64_t frame) {
    return mpg123_seek(decoder_->handle, frame, SEEK_SET) >= 0;
}

} // namespace orvel
