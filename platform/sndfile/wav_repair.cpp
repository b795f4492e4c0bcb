#include "platform/sndfile/wav_repair.h"

#include "platform/sndfile/wav_output.h"
#include "platform/storage/storage.h"

#include <QtEndian>

#include <algorithm>
#include <array>
#include <cstring>
#include <limits>

namespace orvel {

namespace {

constexpr qint64 kFrameBytes = 2;
/// What the size of the whole counts beside the samples.
constexpr quint32 kBesideSamples = wavHeaderSize - 8;
/// The most samples of which both sizes can be told.
constexpr qint64 kMostBytes = std::numeric_limits<quint32>::max() - kBesideSamples - 1;

/// The header of a WAV file as a take has it: "RIFF", size, "WAVE", "fmt " of 16 bytes, "data", size, samples.
class Header {
  public:
    explicit Header(const StorageFile &file) {
        isWhole_ = file.read(0, std::as_writable_bytes(std::span(bytes_))) == bytes_.size();
    }

    /// Mono 16-bit PCM, and nothing behind the samples: other files have chunks there, which are no sound.
    [[nodiscard]] bool isOfTake() const {
        const bool isPcm = number<quint16>(20) == 1 && number<quint16>(22) == 1 && number<quint16>(32) == kFrameBytes &&
                           number<quint16>(34) == 16;
        const quint32 rest = number<quint32>(4) - number<quint32>(40);
        return isWhole_ && has(0, "RIFF") && has(8, "WAVE") && has(12, "fmt ") && number<quint32>(16) == 16 && isPcm &&
               has(36, "data") && (rest == kBesideSamples || rest == kBesideSamples + 1);
    }

    [[nodiscard]] qint64 soundBytes() const { return number<quint32>(40); }

    void setSoundBytes(qint64 count) {
        qToLittleEndian(static_cast<quint32>(count) + kBesideSamples, bytes_.data() + 4);
        qToLittleEndian(static_cast<quint32>(count), bytes_.data() + 40);
    }

    [[nodiscard]] std::span<const std::byte> bytes() const { return std::as_bytes(std::span(bytes_)); }

  private:
    template <class Number>
    [[nodiscard]] Number number(std::size_t at) const {
        return qFromLittleEndian<Number>(bytes_.data() + at);
    }
    [[nodiscard]] bool has(std::size_t at, const char *name) const {
        return std::memcmp(bytes_.data() + at, name, 4) == 0;
    }

    std::array<char, wavHeaderSize> bytes_{};
    bool isWhole_ = false;
};

} // namespace

bool repairWav(Storage &storage, const QString &path) {
    auto file = storage.open(path, Storage::Access::Read);
    Header header(*file);
    const qint64 inFile = (file->size() - wavHeaderSize) / kFrameBytes * kFrameBytes;
    if (!header.isOfTake() || header.soundBytes() == inFile || inFile > kMostBytes) {
        return false;
    }
    file = storage.open(path, Storage::Access::Change);
    header.setSoundBytes(inFile);
    file->write(0, header.bytes()); // in one piece: a header is never half old
    file->sync();
    file->close();
    return true;
}

} // namespace orvel
