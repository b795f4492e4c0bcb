#pragma once

#include "production/filing.h"
#include "recording/take_session.h"
#include "station/station_list.h"

#include <QCoreApplication>

#include <functional>
#include <vector>

namespace orvel {

class Completion;
class Listening;

/// What saving needs of the rest of the program; all of it outlives it.
struct SavingContext {
    Platform &platform;
    const Settings &settings;
    const Places &places;
    TakeSession &session;
    Listening &listening;
    Filing &filing;
    Completion &completion;
    /// One sentence for the status line.
    std::function<void(const QString &sentence)> tell;
    /// Opens the station chooser.
    std::function<void()> showStations;
    /// Multivoice went on or off.
    std::function<void()> changed;
    const std::vector<NetworkStation> *stations = nullptr; ///< of the network, where there are any
};

/// The save button: mark, encode, file, go on to the next step; in multivoice mode once a station.
class Saving {
    Q_DECLARE_TR_FUNCTIONS(Saving)

  public:
    explicit Saving(SavingContext context) : context_(std::move(context)) {}

    [[nodiscard]] bool isMultivoice() const { return isMultivoice_; }
    void cmdMultivoice_Click();
    void cmdSave_Click();
    /// Saves the take as the version of a station (three characters) and asks whether it was the last one. False when
    /// nothing can be saved now: a take is running, or another one is being saved.
    bool ExternalSave(const QString &StationCode);
    /// Files a take of an earlier run for the step that it was recorded for; one of the plain recorder goes where the
    /// presenter wants. False when it is still waiting.
    bool saveUnfiled(const Take &take);
    /// The name of the take that the station chooser is open for.
    [[nodiscard]] QString chooserTake() const;
    /// The station chooser was closed without a choice: what was marked for it and has no version is as before.
    void stationsClosed();

  private:
    using Offer = TakeSession::SaveOffer;

    [[nodiscard]] Offer save(const Take &take, bool markBefore);
    [[nodiscard]] Offer saveAs(const Take &take);
    /// The take's name in the folder that was chosen last, as long as that answers.
    [[nodiscard]] QString proposal(const Take &take) const;
    void tellLacking(const Take &take) const;
    [[nodiscard]] Offer saveVersion(const Take &take);
    /// Runs a save in the session's filing state, however it ends.
    template <class Action>
    void whileFiling(Action action);

    SavingContext context_;
    bool isMultivoice_ = false;
    std::optional<Take> chosen_; ///< the take that the station chooser is open for
    QString lastFolder_;         ///< that the presenter chose
    Take versionsOf_;            ///< the take that versions were asked for last
    bool markBefore_ = false;    ///< of its step, before the first of them
    bool hasVersions_ = false;   ///< one of them was filed
};

} // namespace orvel
