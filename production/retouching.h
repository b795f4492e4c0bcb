#pragma once

#include "production/stage_run.h"
#include "production/take_editing.h"
#include "recording/allowed.h"
#include "recording/speech_words.h"

#include <QCoreApplication>

namespace orvel {

class TakeFindings;
class TakeSession;
class TakeStore;

/// What retouching needs of the rest of the program; all of it outlives it.
struct RetouchingContext {
    Platform &platform;
    const Places &places;
    const CurrentStep &step;
    TakeSession &session;
    TakeEditing &editing;
    TakeFindings &findings;
    const TakeStore &takes;
    /// What the stages would do now.
    std::function<StageWishes()> wishes;
    /// Shows that the take is being worked on, or takes that away.
    std::function<void(bool visible)> showProcess;
    /// One sentence for the status line.
    std::function<void(const QString &sentence)> tell;
};

/// What the presenter does to the selected step's recorded take: making it fit the intro, having the stages work on it
/// anew, undoing, doing again; and the sentence that tells where speech is in it.
class Retouching {
    Q_DECLARE_TR_FUNCTIONS(Retouching)

  public:
    explicit Retouching(RetouchingContext context) : context_(std::move(context)) {}

    /// Each ignores a call that allowed() does not allow. What the disk refuses leaves the take as it was and is
    /// thrown.
    void cmdFit_Click();
    /// The stages again, as they are set now, on the take as it was recorded. What was done to it by hand goes, and
    /// comes back with undo.
    void cmdOpnieuw_Click();
    void cmdUndo_Click();
    void cmdRedo_Click();
    /// Any other edit of the selected step's take, while it can be saved. False when nothing changed.
    bool edit(const TakeEdit &edit);

    /// The selected step's take was recorded, or is another one: it is looked at.
    void recorded(const QString &take);
    /// Looks at the selected step's take where it can be saved, and nobody did.
    void look();
    /// The take was filed, deleted or recorded anew.
    void ended(const QString &take);
    /// About the selected step's take; empty where there is none, before it was looked at, and while something is done
    /// with it.
    [[nodiscard]] QString sentence() const;
    [[nodiscard]] EditFacts facts(const QString &take) const;
    /// Of what cmdUndo and cmdRedo would do; empty where there is nothing.
    [[nodiscard]] QString undoable() const;
    [[nodiscard]] QString redoable() const;

  private:
    template <class Action>
    void whileEditing(Action action);
    [[nodiscard]] QString dry() const;
    [[nodiscard]] static QString reworked(); ///< what that edit is called
    void tellReworked(const StageRun &run, const QString &before);
    [[nodiscard]] bool isAtRest() const;

    RetouchingContext context_;
};

} // namespace orvel
