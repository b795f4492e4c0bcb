#pragma once

#include <QByteArray>
#include <QDir>
#include <QFile>
#include <QString>
#include <QTemporaryDir>

#include <cstdint>
#include <cstring>
#include <span>
#include <vector>

namespace orvel::test {

/// A folder that is gone after the test.
class TempFolder {
  public:
    [[nodiscard]] QString path(const QString &name) const { return dir_.filePath(name); }
    [[nodiscard]] QString path(const char *name) const { return path(QString::fromUtf8(name)); }
    [[nodiscard]] QString path() const { return dir_.path(); }

  private:
    QTemporaryDir dir_;
};

inline QByteArray contentOf(const QString &path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

inline void writeContent(const QString &path, const QByteArray &content) {
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size()) {
        qFatal("no test file");
    }
}

inline std::uint32_t little32(const QByteArray &bytes, qsizetype at) {
    std::uint32_t value = 0;
    for (qsizetype i = 3; i >= 0; --i) {
        value = value << 8 | static_cast<unsigned char>(bytes.at(at + i));
    }
    return value;
}

/// Samples of a WAV file whose header has 44 bytes, checked against its sizes: empty when the header does not tell the
/// truth about a mono 16-bit 44100 Hz file or promises more than there is.
inline std::vector<std::int16_t> samplesOf(const QString &path) {
    const QByteArray bytes = contentOf(path);
    const QByteArray format = QByteArray::fromHex("100000000100010044ac00008858010002001000");
    if (bytes.size() < 44 || !bytes.startsWith("RIFF") || bytes.mid(8, 8) != "WAVEfmt " ||
        bytes.mid(16, 20) != format || bytes.mid(36, 4) != "data") {
        return {};
    }
    const qsizetype size = little32(bytes, 40);
    if (size % 2 != 0 || 44 + size > bytes.size() || little32(bytes, 4) + 8 != 44 + size) {
        return {};
    }
    std::vector<std::int16_t> samples(static_cast<std::size_t>(size) / 2);
    if (size > 0) { // nothing may not be copied to nowhere
        std::memcpy(samples.data(), bytes.constData() + 44, static_cast<std::size_t>(size));
    }
    return samples;
}

/// A number, low byte first.
inline QByteArray littleEndian(std::uint32_t value, int bytes) {
    QByteArray result;
    for (int i = 0; i < bytes; ++i, value >>= 8) {
        result.append(static_cast<char>(value & 0xff));
    }
    return result;
}

/// A whole 16-bit WAV file of one kilobyte of silence that claims this rate and these channels.
inline QByteArray wavThatClaims(std::uint32_t rate, std::uint32_t channels) {
    const QByteArray samples(1024, '\0');
    return "RIFF" + littleEndian(36 + 1024, 4) + "WAVEfmt " + littleEndian(16, 4) + littleEndian(1, 2) +
           littleEndian(channels, 2) + littleEndian(rate, 4) + littleEndian(rate * channels * 2, 4) +
           littleEndian(channels * 2, 2) + littleEndian(16, 2) + "data" + littleEndian(1024, 4) + samples;
}

/// Samples that tell where they belong: a gap, a double or a change shows.
inline std::vector<std::int16_t> counting(std::size_t count, std::size_t from = 0) {
    std::vector<std::int16_t> samples(count);
    for (std::size_t i = 0; i < count; ++i) {
        samples[i] = static_cast<std::int16_t>((from + i) * 7919 % 65521 - 32760);
    }
    return samples;
}

} // namespace orvel::test
