#pragma once

#include "platform/join_player.h"
#include "platform/timers.h"

#include <QCoreApplication>

#include <functional>
#include <memory>
#include <vector>

namespace orvel {

class CardDelays;
class Places;
class TakeSession;
struct Platform;
struct RecorderStatus;

/// What measuring needs of the rest of the program; all of it outlives it.
struct DelayContext {
    Platform &platform;
    const Places &places;
    TakeSession &session;
    CardDelays &delays;
    /// How far it is, or what there is to say, is something else now.
    std::function<void()> changed;
};

/// How much later than the sound server says the recording card hears what the output plays: a known sound is played
/// and recorded exactly as the items of a join and their take are, several times, each time through an output and a
/// card that were opened anew. Only what was found without doubt, and alike each time, is kept. The session is in a
/// state of its own meanwhile, so that nothing else uses the card.
class DelayMeasurement {
    Q_DECLARE_TR_FUNCTIONS(DelayMeasurement)

  public:
    static constexpr int times = 5;
    /// Further off than this a card is not found.
    static constexpr int farthestMs = 500;
    /// Between the smallest and the largest figure that are still alike: the middle one is kept, and a busy computer's
    /// figures are off by so much now and then.
    static constexpr double mostSpreadMs = 25;

    explicit DelayMeasurement(DelayContext context);

    void setOutput(const PlayerSettings &output) { player_->setOutput(output); }
    [[nodiscard]] bool isRunning() const;
    /// How often it was found by now.
    [[nodiscard]] int found() const { return static_cast<int>(delays_.size()); }
    /// How it goes, or how the latest measurement ended.
    [[nodiscard]] const QString &sentence() const { return sentence_; }
    /// The card that records.
    [[nodiscard]] QString card() const;
    /// What stands beside the card: what was measured of it.
    [[nodiscard]] QString caption() const;
    /// How far the take lies behind what is heard with the present card, by what was measured; 0 where nothing was.
    [[nodiscard]] std::chrono::microseconds ofCard() const;

    /// Nothing happens where it is not allowed.
    void start();
    /// What was kept before stays. Nothing happens where it does not run.
    void cancel();
    /// What is shown is out of date: the window opens anew.
    void forgetSentence() { sentence_.clear(); }

  private:
    enum class Phase { Opening, Waiting, Recording };

    void tick();
    void open();
    void play();
    void record(JoinPlayer::Clock::time_point zero);
    void judge();
    void keep();
    void playerEnded();
    void enter(Phase phase);
    void end(const QString &sentence);
    [[nodiscard]] QString problemOf(const RecorderStatus &status) const;

    DelayContext context_;
    std::unique_ptr<JoinPlayer> player_;
    std::unique_ptr<Timer> tmrMeasure_;
    Phase phase_ = Phase::Opening;
    int ticks_ = 0;              ///< in this phase
    QString card_;               ///< that is measured
    std::vector<double> delays_; ///< milliseconds
    QString sentence_;
};

} // namespace orvel
