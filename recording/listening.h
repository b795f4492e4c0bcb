#pragma once

#include "platform/timers.h"
#include "platform/wave_player.h"

#include <QString>

#include <functional>
#include <memory>

namespace orvel {

class Places;
class Playlist;
class TakeSession;
struct CurrentStep;
struct Platform;
struct Settings;

/// What listening to a take needs of the rest of the program; all of it outlives it.
struct ListeningContext {
    Platform &platform;
    const Settings &settings;
    const Playlist &playlist;
    const CurrentStep &step;
    const Places &places;
    TakeSession &session;
    /// A hundred times a second while something plays.
    std::function<void()> ticked;
    /// Highest samples since the last look, 0..1.
    std::function<void(float left, float right)> levels;
};

/// Plays the selected step's take: the recorded file, or the filed voice track of a step that is done.
class Listening {
  public:
    explicit Listening(ListeningContext context);

    /// The card, the buffers and the callback mode of the settings.
    void setOutput(const PlayerSettings &output) {
        output_ = output;
        player_->setOutput(output);
    }
    /// Caption of cmdPlay: "Beluister Opname", or "Stop Weergave" while a take plays.
    [[nodiscard]] QString caption() const;
    /// Starts or stops. Throws what the player throws.
    void cmdPlay_Click();
    /// Plays from this moment of the take on, milliseconds, whether it plays already or not. Throws what the player
    /// throws.
    void listenFrom(std::int32_t milliseconds);
    void tmrPlay_Timer();
    /// A sound with the take's own time axis, that can be heard in its place while it plays. Throws what the player
    /// throws.
    void setOther(const QString &path);
    /// Which of the two is heard: at once, or as soon as both play the same moment. Nothing happens while no take
    /// plays, or without another sound.
    void hearOther(bool other);
    /// There is one; not any more when it broke off.
    [[nodiscard]] bool hasOther() const { return hasOther_; }
    /// Ends listening, when something else begins that needs the take.
    void interrupt();
    /// The clock that shows the position stands still.
    void stopClock() { tmrPlay->setEnabled(false); }

    /// The file that can be listened to; empty where there is none. Throws BadFileName.
    [[nodiscard]] QString file() const;
    /// Milliseconds from the start.
    [[nodiscard]] std::int32_t position() const { return player_->position(); }

  private:
    [[nodiscard]] QString takeToPlay() const;
    void backToIdle();
    void closeOther();
    [[nodiscard]] WavePlayer &heard() { return hearsOther_ ? *other_ : *player_; }
    void aim(WavePlayer &next, std::int32_t at);
    void begin(WavePlayer &next);
    void settle();

    ListeningContext context_;
    PlayerSettings output_;
    std::unique_ptr<WavePlayer> player_;
    std::unique_ptr<WavePlayer> other_; ///< made when it is needed
    bool hasOther_ = false;
    bool hearsOther_ = false;
    bool wantsOther_ = false;
    std::int32_t lead_ = 0;    ///< milliseconds that the one that is not heard yet is sent ahead
    std::int32_t aimedAt_ = 0; ///< where it began
    int tries_ = 0;
    std::unique_ptr<Timer> tmrPlay;
    std::unique_ptr<Timer> tmrLevels_;
};

} // namespace orvel
