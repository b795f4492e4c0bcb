#pragma once

#include "platform/wave_player.h"

#include <QString>
#include <QStringList>

#include <chrono>
#include <cstdint>
#include <functional>
#include <limits>
#include <optional>
#include <vector>

namespace orvel {

/// A piece of a sound file on the time axis of a join, in milliseconds. A file lies on the axis by its begin or by its
/// end, so that nobody must know its length.
struct JoinClip {
    enum class Anchor { Begin, End };
    static constexpr std::int64_t wholeFile = std::numeric_limits<std::int64_t>::max();

    QString path;
    Anchor anchor = Anchor::Begin;
    std::int64_t anchorMs = 0;     ///< where on the axis the file's begin, or its end, lies
    std::int64_t fromMs = 0;       ///< where on the axis it is first heard, if the file is there already
    std::int64_t toMs = wholeFile; ///< where on the axis it is silent again, if the file goes that far

    bool operator==(const JoinClip &) const = default;
};

/// Plays several files on one time axis through one output. Calls come from the window thread and wait for no file:
/// files are opened, decoded and mixed on threads of the player's. What it cannot read it leaves out, and tells.
class JoinPlayer {
  public:
    using Clock = std::chrono::steady_clock;

    virtual ~JoinPlayer() = default;

    /// Takes effect at the next play().
    virtual void setOutput(const PlayerSettings &settings) = 0;
    /// Stops what played, and plays these. zeroAt: the moment at which the axis' 0 is heard; what lies before the
    /// moment when the files are open and the output runs is left out. Without it the axis begins now, with the clip
    /// that comes first. Throws DeviceError when there is no output.
    virtual void play(std::vector<JoinClip> clips, std::optional<Clock::time_point> zeroAt) = 0;
    /// Silent at once, within what the card has taken already. Nothing happens when it does not play.
    virtual void stop() = 0;
    [[nodiscard]] virtual bool isPlaying() const = 0;
    /// When the axis' 0 is or was heard, by what the output says of its own delay; nothing where that is not known:
    /// nothing plays, or it has not begun.
    [[nodiscard]] virtual std::optional<Clock::time_point> zeroHeardAt() const = 0;
    /// 0 (silent) .. 65535 (as recorded), with a curve that follows the ear.
    virtual void setVolume(int volume) = 0;
    /// Called on the window thread when everything has been heard, or when playing failed on the way. Not after stop().
    virtual void setEndHandler(std::function<void()> handler) = 0;
    /// Whether the last playing that ended by itself failed: the output is gone.
    [[nodiscard]] virtual bool brokeOff() const = 0;
    /// Files of the running or latest playing that could not be read.
    [[nodiscard]] virtual QStringList unreadable() const = 0;
};

} // namespace orvel
