#pragma once

#include "platform/join_player.h"
#include "platform/wave_player.h"

#include <QString>
#include <QStringList>
#include <QVariant>

#include <chrono>
#include <cstdint>
#include <memory>

namespace orvel {

/// One advanced property of an input line: a yes/no (bool) or a whole number (int) with its limits.
struct LineProperty {
    QString name;
    QVariant value;
    int minimum = 0;
    int maximum = 0;
};

/// The sound cards as a recording mixer sees them: real inputs first, then what records an output (a monitor). Cards
/// are numbered from 1; number 0 and numbers past the last card are not valid, but they may be asked about (false,
/// empty, 0) and even be made current. The list stands still until refresh(); without a sound server it is empty. Until
/// one is made current the first real input is; a monitor never is by itself.
class AudioRecord {
  public:
    virtual ~AudioRecord() = default;

    /// Takes over which cards came and went since the last time, and looks for a sound server when there is none; true
    /// when the list changed. Cheap and without waiting, meant for a timer. The current card stays current under its
    /// new number; one that is gone leaves number 0 as current, and is current again when it comes back.
    virtual bool refresh() = 0;
    [[nodiscard]] virtual int deviceCount() const = 0;
    /// How many of them are real inputs that can record: without any there is no microphone to speak into.
    [[nodiscard]] virtual int inputCount() const = 0;
    [[nodiscard]] virtual bool canRecord(int device) const = 0;
    [[nodiscard]] virtual QString deviceName(int device) const = 0;
    [[nodiscard]] virtual int currentDevice() const = 0;
    virtual void setCurrentDevice(int device) = 0;

    /// Input lines of the current card, 0 without a valid card.
    [[nodiscard]] virtual int lineCount() const = 0;
    /// The line, from 1, that the line's properties address.
    [[nodiscard]] virtual int currentLine() const = 0;
    virtual void setCurrentLine(int line) = 0;
    // Of the current line. What the card accepted is what the next look gives; setting throws DeviceError when the card
    // or the sound server is gone. Without a valid line: empty, 0, false, and setting does nothing.

    [[nodiscard]] virtual QString lineName() const = 0;
    [[nodiscard]] virtual bool lineHasVolume() const = 0;
    [[nodiscard]] virtual bool lineHasBalance() const = 0;
    [[nodiscard]] virtual bool lineHasSelect() const = 0;
    /// 0 .. 65535.
    [[nodiscard]] virtual int lineVolume() const = 0;
    virtual void setLineVolume(int volume) = 0;
    /// -100 (left) .. 0 (both alike) .. 100 (right).
    [[nodiscard]] virtual int lineBalance() const = 0;
    virtual void setLineBalance(int balance) = 0;
    /// Whether the card records from this line. A card with one source unselects the others.
    [[nodiscard]] virtual bool lineSelected() const = 0;
    virtual void setLineSelected(bool selected) = 0;

    [[nodiscard]] virtual int propertyCount() const = 0;
    /// index from 0; throws SubscriptOutOfRange.
    [[nodiscard]] virtual LineProperty lineProperty(int index) const = 0;
    /// Throws SubscriptOutOfRange, TypeMismatch.
    virtual void setLineProperty(int index, const QVariant &value) = 0;
};

/// What a running or finished recording tells, and what a card that was opened ahead brings meanwhile. Frames are
/// sample frames at 44100 Hz.
struct RecorderStatus {
    std::int64_t frames = 0;     ///< frames written to the take
    int overruns = 0;            ///< buffers lost because the disk was too slow, and gaps that the sound server told of
    bool deviceLost = false;     ///< the card or the sound server vanished while recording
    bool diskFull = false;       ///< the take could not be written to its end: there is no room for more
    bool diskFailed = false;     ///< the take could not be written to its end, for another reason of the disk's
    float peak = 0.0F;           ///< highest sample since the last look, 0..1; also of a card that is only open
    bool isHeard = false;        ///< samples came in since the last look, for a take or not: the peak is a level
    std::int64_t clippedAt = -1; ///< frame of the take's first sample at full scale since the last look; -1: none
    /// Frames of the take between which somebody spoke last, or still does; -1 as long as nobody did.
    std::int64_t speechFrom = -1;
    std::int64_t speechTo = -1;
};

/// Records mono 16-bit 44100 Hz into a WAV file, on threads of its own. The take on disk is a valid WAV file at any
/// moment up to the last second; what was lost is silence in it, so that it keeps its time. Calls come from the window
/// thread. After a failure the recording goes on (writing nothing) until stop(), and what was recorded before stays.
class WaveRecorder {
  public:
    virtual ~WaveRecorder() = default;

    /// The card, counted from 0 as AudioRecord lists them now. Takes effect at the next start(). AudioRecord's current
    /// card when never set.
    virtual void setDevice(int device) = 0;
    virtual void setFileName(const QString &path) = 0;
    /// Opens the card ahead of start(), which then begins at once: a card that sleeps takes a while to wake up, and
    /// would lose the first syllable. Until then nothing is kept of what it brings but the level, which status() tells.
    /// Never waits and never fails; start() tells what is wrong. Called again it opens the card that is chosen now, or
    /// one that has come back; it costs next to nothing where that is open. The card stays open until stop().
    virtual void prepare() = 0;
    /// Overwrites an existing file, but not before samples come from the card: one that brings none is refused, after
    /// 0.3 s when it is switched off or was opened ahead, 2.3 s otherwise. Throws DeviceError (the card, or it records
    /// already), PathNotFound, PathAccess, PermissionDenied, DiskFull (the file).
    virtual void start() = 0;
    /// Like start(), but the take's first frame is the one that came into the card at this moment, by what the sound
    /// server says of its delay: of what came before start() the last second is kept for that, and what comes before a
    /// moment ahead is left out. A moment that is further away than a second is as good as none.
    virtual void startAt(std::chrono::steady_clock::time_point moment) = 0;
    /// Takes what the sound server still holds, closes the file; without a recording a card that was opened ahead is
    /// let go. Throws DiskFull or DeviceError when the take's end could not be written; the file is closed all the
    /// same.
    virtual void stop() = 0;
    /// Of the running or else the latest recording. Reading resets what is told since the last look.
    virtual RecorderStatus status() = 0;
};

/// The output side of the sound card. A mute that is on is taken back at destruction.
class AudioPlayer {
  public:
    virtual ~AudioPlayer() = default;

    /// The card, counted from 0 like the recorder's. Muted are the default output, where everything plays that was not
    /// sent elsewhere, and the outputs of this card, if it has any.
    virtual void setDevice(int device) = 0;
    /// Throws DeviceError when the sound server is gone. Without any output nothing happens.
    virtual void setOutputMute(bool mute) = 0;
};

/// One sound server with what hangs on it.
class SoundCard {
  public:
    virtual ~SoundCard() = default;

    [[nodiscard]] virtual AudioRecord &audioRecord() = 0;
    [[nodiscard]] virtual WaveRecorder &recorder() = 0;
    [[nodiscard]] virtual AudioPlayer &audioPlayer() = 0;
    /// A player of files; must not outlive the sound card.
    [[nodiscard]] virtual std::unique_ptr<WavePlayer> makePlayer() = 0;
    /// A player of several files at once; must not outlive the sound card.
    [[nodiscard]] virtual std::unique_ptr<JoinPlayer> makeJoinPlayer() = 0;
    /// What the outputs are called, in the order of their numbers.
    [[nodiscard]] virtual QStringList outputNames() const = 0;
};

} // namespace orvel
