#pragma once

#include "production/take_editing.h"
#include "recording/allowed.h"
#include "recording/speech_words.h"

#include <QCoreApplication>

namespace orvel {

class TakeSession;

/// What retouching needs of the rest of the program; all of it outlives it.
struct RetouchingContext {
    Platform &platform;
    const Places &places;
    const CurrentStep &step;
    TakeSession &session;
    TakeEditing &editing;
    /// Shows that the take is being worked on, or takes that away.
    std::function<void(bool visible)> showProcess;
    /// One sentence for the status line.
    std::function<void(const QString &sentence)> tell;
};

/// What the presenter does to the selected step's recorded take: making it fit the intro, undoing, doing again; and the
/// sentence that tells where speech is in it.
class Retouching {
    Q_DECLARE_TR_FUNCTIONS(Retouching)

  public:
    explicit Retouching(RetouchingContext context) : context_(std::move(context)) {}

    /// Each ignores a call that allowed() does not allow. What the disk refuses leaves the take as it was and is
    /// thrown.
    void cmdFit_Click();
    void cmdUndo_Click();
    void cmdRedo_Click();
    /// Any other edit of the selected step's take, while it can be saved. False when nothing changed.
    bool edit(const TakeEdit &edit);

    /// Looks where speech is in a take that was recorded. A file that cannot be read has no sentence.
    void recorded(const QString &take);
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
    void look(const QString &take);

    RetouchingContext context_;
    QHash<QString, std::optional<SpeechTimes>> speech_; ///< of the takes that were looked at
};

} // namespace orvel
