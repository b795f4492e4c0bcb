#pragma once

#include <QString>

#include <cstdint>
#include <functional>

namespace orvel {

/// Where and how a player plays, as the settings file holds it. A value that makes no sense is as good as the default.
struct PlayerSettings {
    int device = -1;       ///< output, counted from 0 as SoundCard::outputNames() lists them; -1 the system's default
    int bufferSize = 2048; ///< frames of one buffer
    int buffers = 10;      ///< how many of them wait for the card
    int callBackMode = 0;  ///< kept for the settings file; buffers are always filled on a thread of the player's
};

/// Runs work on a file so that the window does not stand still however long the file takes; throws what the work
/// throws, and DiskNotReady when nobody waited for it. The work owns all that it touches.
using FileWork = std::function<void(const QString &path, const std::function<void()> &work)>;

/// The highest samples since the last look, 0..1.
struct StereoPeaks {
    float left = 0.0F;
    float right = 0.0F;
};

/// Plays one WAV or MP3 file. Calls come from the window thread; reading and decoding happen on threads of its own.
class WavePlayer {
  public:
    /// The number that state() gives while it plays; paused is not playing.
    static constexpr int playing = 6;

    virtual ~WavePlayer() = default;

    /// Takes effect at the next start().
    virtual void setOutput(const PlayerSettings &settings) = 0;
    /// Stops, and opens the file. Throws FileNotFound, PermissionDenied, DeviceError (not a sound file); no file is
    /// open then.
    virtual void setFileName(const QString &path) = 0;
    /// Plays from the current position; from the start when the end was reached. Nothing happens without a file.
    /// Throws DeviceError when there is no output.
    virtual void start() = 0;
    virtual void pause() = 0;
    /// Goes on after pause(); nothing happens when it was not paused.
    virtual void resume() = 0;
    /// Stops and goes back to the start; the file stays open. Nothing happens when it does not play.
    virtual void stop() = 0;
    /// Lets the file go; length and position are 0.
    virtual void close() = 0;

    [[nodiscard]] virtual int state() const = 0;
    /// What is heard at this moment, milliseconds from the start of the file.
    [[nodiscard]] virtual std::int32_t position() const = 0;
    /// Limited to the file's length.
    virtual void setPosition(std::int32_t milliseconds) = 0;
    [[nodiscard]] virtual std::int32_t length() const = 0;
    /// 0 (silent) .. 65535 (as recorded), with a curve that follows the ear.
    virtual void setVolume(int volume) = 0;
    /// Reading resets them.
    [[nodiscard]] virtual StereoPeaks peaks() = 0;
    /// Called on the window thread when the end of the file has been heard, or when playing failed on the way (the card
    /// vanished, the file broke off). Not after stop().
    virtual void setEndHandler(std::function<void()> handler) = 0;
    /// Whether the last playing that ended by itself failed on the way.
    [[nodiscard]] virtual bool brokeOff() const = 0;
};

} // namespace orvel
