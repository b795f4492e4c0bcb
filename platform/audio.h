#pragma once

#include <QString>

#include <cstdint>
#include <functional>

namespace orvel {

/// The sound cards as a recording mixer sees them. Cards are numbered from 1; number 0 and numbers past the last card
/// are not valid, asking about them is fine. Calls throw DeviceError when the sound server is gone.
class AudioRecord {
  public:
    virtual ~AudioRecord() = default;

    [[nodiscard]] virtual int deviceCount() const = 0;
    [[nodiscard]] virtual bool canRecord(int device) const = 0;
    [[nodiscard]] virtual QString deviceName(int device) const = 0;
    [[nodiscard]] virtual int currentDevice() const = 0;
    virtual void setCurrentDevice(int device) = 0;

    /// Input lines of the current card, 0 without a valid card.
    [[nodiscard]] virtual int lineCount() const = 0;
    /// The line, from 1, that the line's properties address.
    [[nodiscard]] virtual int currentLine() const = 0;
    virtual void setCurrentLine(int line) = 0;
    [[nodiscard]] virtual QString lineName() const = 0;
};

/// What a running or finished recording tells. Frames are sample frames at 44100 Hz.
struct RecorderStatus {
    std::int64_t frames = 0;   ///< frames written to the take
    int overruns = 0;          ///< buffers lost because the disk was too slow, and gaps that the sound server told of
    bool deviceLost = false;   ///< the card vanished while recording
    bool diskFull = false;     ///< the take could not be written to its end
    float peak = 0.0F;         ///< highest sample since the last look, 0..1
};

/// Records mono 16-bit 44100 Hz into a WAV file, on threads of its own. The take on disk is a valid WAV file at any
/// moment up to the last second. Calls come from the window thread.
class WaveRecorder {
  public:
    virtual ~WaveRecorder() = default;

    /// The card, counted from 0. Takes effect at the next start().
    virtual void setDevice(int device) = 0;
    virtual void setFileName(const QString &path) = 0;
    /// Overwrites an existing file. Throws DeviceError (the card), PathNotFound, PermissionDenied, DiskFull (the file).
    virtual void start() = 0;
    /// Takes what the sound server still holds, closes the file; nothing happens when it does not record. Throws
    /// DiskFull when the take's end could not be written; the file is closed all the same.
    virtual void stop() = 0;
    [[nodiscard]] virtual bool isRecording() const = 0;
    /// Reading resets the peak.
    virtual RecorderStatus status() = 0;
};

/// The output side of the sound card.
class AudioPlayer {
  public:
    virtual ~AudioPlayer() = default;

    virtual void setDevice(int device) = 0;
    virtual void setOutputMute(bool mute) = 0;
};

/// One sound server with what hangs on it.
class SoundCard {
  public:
    virtual ~SoundCard() = default;

    [[nodiscard]] virtual AudioRecord &audioRecord() = 0;
    [[nodiscard]] virtual WaveRecorder &recorder() = 0;
    [[nodiscard]] virtual AudioPlayer &audioPlayer() = 0;
};

} // namespace orvel
