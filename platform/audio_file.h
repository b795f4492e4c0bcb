#pragma once

#include <QByteArray>
#include <QString>

#include <cstdint>
#include <memory>
#include <span>

namespace orvel {

/// A sound file on disk.
class AudioFile {
  public:
    virtual ~AudioFile() = default;

    /// Negative after a failed open or create.
    [[nodiscard]] virtual int errorState() const = 0;
    virtual void close() = 0;
};

/// Reads a WAV or MP3 file as interleaved signed 16-bit samples, whatever the file holds.
class AudioFileReader : public AudioFile {
  public:
    /// Opens a file; errorState() tells how it went.
    virtual void open(const QString &path) = 0;
    [[nodiscard]] virtual int sampleRate() const = 0;
    [[nodiscard]] virtual int channels() const = 0;
    /// Length in sample frames.
    [[nodiscard]] virtual std::int64_t frames() const = 0;
    /// Of the blocks that read() gives: channels * 2.
    [[nodiscard]] virtual int bytesPerFrame() const = 0;
    /// The next block; empty at the end. Throws DeviceError when the file cannot be read on.
    [[nodiscard]] virtual QByteArray readBlock() = 0;
};

/// How an MP3 file is written.
struct Mp3Format {
    int sampleRate = 0; ///< of the file, Hz; 0 means that no format was set
    int channels = 0;   ///< of the file; a mono input is written as two equal channels where this is 2
    int kbitPerSecond = 0;
    bool freeFormat = false; ///< true for rates above 320 kbit/s, which few decoders play
};

/// Writes an MP3 file at a constant bit rate, with a LAME tag that tells players the exact length.
class AudioFileWriter : public AudioFile {
  public:
    virtual void setFormat(const Mp3Format &format) = 0;
    [[nodiscard]] virtual Mp3Format format() const = 0;
    /// The samples that write() will get: interleaved signed 16-bit. Before create().
    virtual void setInput(int sampleRate, int channels) = 0;
    /// Creates the file; errorState() tells how it went (negative: no format set, or no such folder).
    virtual void create(const QString &path) = 0;
    /// Throws DiskFull, DeviceError.
    virtual void write(const QByteArray &block) = 0;
    /// Ends the stream, writes the tag, syncs. Throws DiskFull, DeviceError; the file is closed all the same.
    void close() override = 0;
};

/// Writes a WAV file of signed 16-bit mono samples.
class WavFileWriter {
  public:
    virtual ~WavFileWriter() = default;

    /// Creates the file, or empties an existing one. Throws PathNotFound, PathAccess, PermissionDenied, DiskFull.
    virtual void create(const QString &path, int sampleRate) = 0;
    /// Throws DiskFull, DeviceError.
    virtual void write(std::span<const std::int16_t> samples) = 0;
    /// Completes the header and syncs. Throws DiskFull, DeviceError; the file is closed all the same.
    virtual void close() = 0;
};

/// Makes readers and writers.
class AudioFiles {
  public:
    virtual ~AudioFiles() = default;

    [[nodiscard]] virtual std::unique_ptr<AudioFileReader> reader() = 0;
    [[nodiscard]] virtual std::unique_ptr<AudioFileWriter> mp3Writer() = 0;
    [[nodiscard]] virtual std::unique_ptr<WavFileWriter> wavWriter() = 0;
    /// Half the size, and every sample exact: FLAC.
    [[nodiscard]] virtual std::unique_ptr<WavFileWriter> flacWriter() = 0;
    /// A take whose recording was killed has a header that hides up to about a second of what is in the file: has the
    /// header tell of every whole frame, and syncs. Whether anything was changed: a file that is no such WAV (mono,
    /// 16-bit, nothing behind the samples), or tells the truth, is left as it is. Not while the take is being written.
    /// Throws FileNotFound, PathAccess (no file), PermissionDenied, DeviceError.
    virtual bool repairWav(const QString &path) = 0;
};

} // namespace orvel
