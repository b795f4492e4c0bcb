#pragma once

#include "platform/timers.h"
#include "playlist/current_step.h"
#include "recording/allowed.h"
#include "recording/take.h"
#include "recording/take_shelf.h"

#include <QCoreApplication>
#include <QString>

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace orvel {

class AudioPlayer;
class Places;
class Playlist;
class TakeStore;
struct Platform;
struct RecorderStatus;
struct Settings;

/// What a session needs of the rest of the program; all of it outlives the session.
struct SessionContext {
    Platform &platform;
    const Settings &settings;
    Playlist &playlist;
    CurrentStep &step;
    StepMarks &marks;
    TakeStore &takes;
    const Places &places;
    /// Runs on a finished take's file.
    std::function<void(const QString &wavPath)> AudioProcessing;
    /// One sentence for the status line.
    std::function<void(const QString &sentence)> tell;
    /// State, take, step or what is allowed is another one now.
    std::function<void()> changed;
    /// The running take's times are others now; called a hundred times a second.
    std::function<void()> ticked;
    /// Highest samples since the last look, 0..1; 0 when nothing records any more.
    std::function<void(float left, float right)> levels;
    /// The view stands on another step than the one that the session stands on.
    std::function<void(int row)> showRow;
    /// What the running recording told, 25 times a second.
    std::function<void(const RecorderStatus &status)> heard = [](const RecorderStatus &) {};
    /// A take was recorded and is ready.
    std::function<void(const QString &name)> recorded = [](const QString &) {};
    /// What can be done to a take that was recorded and not filed.
    std::function<EditFacts(const QString &name)> edits = [](const QString &) { return EditFacts(); };

    // What may be heard along with a take.

    /// A count-down runs, at whose end the take begins at that moment.
    std::function<void(std::chrono::steady_clock::time_point takeBegins)> countDownBegan = [](auto /*moment*/) {};
    /// When the take has to begin, so that it lies where it is heard; nothing where nothing is heard.
    std::function<std::optional<std::chrono::steady_clock::time_point>()> takeBeginsAt = [] { return std::nullopt; };
    /// Neither count-down nor recording runs any more.
    std::function<void()> takeOver = [] {};
};

/// The desk's one session: in exactly one state, with one take from its count-down to its filing. Which step a take
/// belongs to is settled when it begins.
class TakeSession {
    Q_DECLARE_TR_FUNCTIONS(TakeSession)

  public:
    explicit TakeSession(SessionContext context);

    DeskMode mode;

    [[nodiscard]] SessionState state() const { return state_; }
    [[nodiscard]] Allowed allowed() const;
    [[nodiscard]] const TakeFacts &facts() const { return facts_; }
    /// Caption of cmdRec: "START OPNAME", or "STOP OPNAME" while a take is recorded.
    [[nodiscard]] QString caption() const;
    /// What lblBestand shows.
    [[nodiscard]] QString fileName() const;
    /// The take of the selected step, or of the name that was given in the plain recorder.
    [[nodiscard]] Take currentTake() const;

    std::int16_t CountdownLeft = 4; ///< seconds; the counter's value before the first count-down
    [[nodiscard]] bool countsDown() const { return tmrCountDown->isEnabled(); }
    [[nodiscard]] std::int32_t ElapsedMs() const { return ElapsedMs_; }

    /// Starts, stops or starts the count-down anew, by what the session is doing. Throws what marking the step throws.
    void cmdRec_Click();
    /// Every take of the selected step, in the order of recording.
    [[nodiscard]] std::vector<ShelvedTake> takes() const;
    /// Another one of them is listened to and saved; nothing happens where that is not allowed. Throws what the disk
    /// throws.
    void choose(int number);
    /// The one behind the current one, or the first.
    void chooseNext();
    /// Nothing will be recorded after all: the step is as it was before the count-down. Only while that runs.
    void cancelCountDown();
    void tmrCountDown_Timer();
    void tmrRec_Timer();
    /// Opens the take file and starts the recorder.
    void StartRecorder();
    void StartOpname();
    /// Closes a running take, for the end of the program. Throws what the recorder throws.
    void close();

    /// The grid's handlers ran: what there is of the selected step's take is looked up.
    void stepSelected();
    void listeningBegan() { enter(SessionState::Listening); }
    void listeningEnded();
    /// The take itself is worked on.
    void editingBegan() { enter(SessionState::Processing); }
    void editingEnded();
    void joiningBegan() { enter(SessionState::Joining); }
    void joiningEnded() { enter(SessionState::Idle); }
    /// Somebody else uses the card.
    void measuringBegan() { enter(SessionState::Measuring); }
    void measuringEnded() { enter(SessionState::Idle); }
    void filingBegan() { enter(SessionState::Filing); }
    /// What becomes of the save button when filing ends: by the selected step's take, or as the rules of a save say.
    enum class SaveOffer { ByTake, Stays, Off };
    void filingEnded(SaveOffer offer);
    /// Why no sound files can be imported now, as a sentence; empty when they can.
    [[nodiscard]] QString importProblem() const;
    [[nodiscard]] bool isIdle() const { return state_ == SessionState::Idle; }

  private:
    void enter(SessionState state);
    [[nodiscard]] bool chooseTake();
    [[nodiscard]] bool chooseName();
    [[nodiscard]] bool chooseStep();
    [[nodiscard]] bool reserve(const QString &name);
    void beginCountDown();
    void moveBar();
    void catchUp(std::chrono::steady_clock::time_point begin);
    void stop();
    void failedToStart();
    void giveStepBack();
    void backToIdle();
    void lookAtTake();
    void watchRecorder();

    SessionContext context_;
    AudioPlayer &AudioPlayer1;
    std::unique_ptr<Timer> tmrCountDown;
    std::unique_ptr<Timer> tmrRec;
    std::unique_ptr<Timer> tmrWatch_;
    SessionState state_ = SessionState::Idle;
    TakeFacts facts_;
    Take take_;               ///< that was started last
    bool markBefore_ = false; ///< of its step
    bool BarExhausted = false;
    bool PlayFlag = false;
    std::int32_t ElapsedMs_ = 0;
    int toldOverruns_ = 0;
};

} // namespace orvel
