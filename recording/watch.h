#pragma once

#include "platform/file_system.h"
#include "platform/timers.h"
#include "recording/guard.h"
#include "recording/input_level.h"

#include <QString>

#include <functional>
#include <memory>

namespace orvel {

class Places;
class TakeSession;
struct Platform;
struct RecorderStatus;
struct Settings;

/// What the watch needs of the rest of the program; all of it outlives it.
struct WatchContext {
    Platform &platform;
    const Settings &settings;
    const Places &places;
    const TakeSession &session;
    /// Name of the card that the presenter chose, wherever it is; empty when none was ever stored.
    std::function<QString()> chosenCard;
    /// Highest samples since the last look, 0..1.
    std::function<void(float left, float right)> levels;
    /// Verdict, warnings or clips are others now.
    std::function<void()> changed;
};

/// Listens to the microphone where a recording can begin, with nothing kept, and looks after what may cost a take. It
/// never shows a box, never waits, and never touches a card that records: from the count-down on that is the session's.
class Watch {
  public:
    explicit Watch(WatchContext context);

    /// From now on; the settings and the card are known.
    void begin();
    /// The session's state, or what it allows, is another one.
    void sessionChanged();
    /// What the session saw of its running take.
    void recorded(const RecorderStatus &status);

    [[nodiscard]] InputVerdict verdict() const { return level_.verdict(); }
    [[nodiscard]] const Guard &guard() const { return guard_; }

  private:
    [[nodiscard]] bool wantsInput() const;
    void openCard();
    void letCardGo();
    void tmrLook_Timer();
    void tmrSurvey_Timer();
    void look(const RecorderStatus &status);
    void lookAtCard();
    void lookAtDisk();
    void lookAtServer();
    void tellChanges();

    WatchContext context_;
    std::unique_ptr<Timer> tmrLook_;
    std::unique_ptr<Timer> tmrSurvey_;
    InputLevel level_;
    Guard guard_;
    bool hasBegun_ = false;
    bool isOpen_ = false;  ///< a card, by this watch
    bool isFirst_ = true;  ///< look at a card
    QString used_;         ///< the card that was used at the last survey
    std::int64_t now_ = 0; ///< milliseconds, by the looks
    int surveys_ = 0;
    int unheard_ = 0; ///< looks in a row
    QString server_;  ///< that was asked last
    int askedAt_ = 0; ///< the survey
    std::shared_ptr<const std::atomic<Writable>> answer_;
    InputVerdict toldVerdict_ = InputVerdict::Unknown;
    std::vector<Warning> toldWarnings_;
    bool toldClipped_ = false;
};

} // namespace orvel
