#pragma once

#include "platform/join_player.h"
#include "recording/join_files.h"

#include <QCoreApplication>

#include <chrono>
#include <functional>
#include <memory>
#include <optional>

namespace orvel {

struct CurrentStep;
struct DeskMode;
struct Platform;

/// What listening along needs of the rest of the program; all of it outlives it.
struct TalkAlongContext {
    Platform &platform;
    const Settings &settings;
    const CurrentStep &step;
    const DeskMode &mode;
    const JoinFiles &files;
    std::function<void(const QString &sentence)> tell;
    /// Whether it is on, possible, or what it says is something else now.
    std::function<void()> changed;
    /// How much later than the sound server says the card hears what the output plays.
    std::function<std::chrono::microseconds()> cardDelay = [] { return std::chrono::microseconds(0); };
};

/// Meeluisteren: during the count-down the presenter hears the run-up to the previous item's outro, which begins with
/// the take; when the item ends the next one starts. The take holds the microphone alone, and nothing that fails here
/// touches it.
class TalkAlong {
    Q_DECLARE_TR_FUNCTIONS(TalkAlong)

  public:
    using Moment = JoinPlayer::Clock::time_point;

    explicit TalkAlong(TalkAlongContext context);

    void setOutput(const PlayerSettings &output) { player_->setOutput(output); }
    [[nodiscard]] bool isOn() const { return isOn_; }
    void setOn(bool on);
    /// 0 .. 65535
    [[nodiscard]] int volume() const { return volume_; }
    void setVolume(int volume);
    /// Whether the presenter can switch it on.
    [[nodiscard]] bool isPossible() const;
    /// Why nothing, or not everything, will be heard; empty when all is.
    [[nodiscard]] QString remark() const;

    /// The selected step is another one: looks for its neighbours, if it is on.
    void stepSelected();
    /// A count-down runs; the take begins at that moment.
    void countDownBegan(Moment takeBegins);
    /// When the take has to begin to hold what is spoken from the outro's begin on, by the figures that the recorder
    /// goes by. Nothing where nothing is heard.
    [[nodiscard]] std::optional<Moment> outroBegins();
    /// Count-down or take is over: silent at once.
    void takeOver() { player_->stop(); }

  private:
    void ended();
    void say(const QString &remark);

    TalkAlongContext context_;
    std::unique_ptr<JoinPlayer> player_;
    bool isOn_ = false;
    int volume_ = 32768;
    Moment takeBegins_; ///< of the count-down that runs, or the latest
    QString remark_;
};

} // namespace orvel
