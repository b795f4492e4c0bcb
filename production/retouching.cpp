#include "production/retouching.h"

#include "platform/audio_file.h"
#include "platform/file_system.h"
#include "platform/platform.h"
#include "platform/runtime_error.h"
#include "playlist/current_step.h"
#include "production/fitting.h"
#include "production/take_findings.h"
#include "production/take_samples.h"
#include "recording/take_session.h"
#include "recording/take_store.h"
#include "station/ignore_errors.h"
#include "station/places.h"

#include <QScopeGuard>

#include <new>

namespace orvel {

/// Nothing else happens to the take meanwhile, and the window shows that it is worked on.
template <class Action>
void Retouching::whileEditing(Action action) {
    const QString take = context_.step.VoiceTrackName;
    context_.session.editingBegan();
    const auto end = qScopeGuard([this] { context_.session.editingEnded(); });
    context_.showProcess(true);
    const auto hide = qScopeGuard([this] { context_.showProcess(false); });
    try {
        action(take);
    } catch (const std::bad_alloc &) {
        context_.tell(tr("De opname is te lang om te bewerken; ze is zoals ze was."));
    }
    recorded(take);
}

QString Retouching::dry() const {
    return context_.takes.shelf().dry(context_.session.currentTake());
}

bool Retouching::edit(const TakeEdit &edit) {
    bool changed = false;
    if (context_.session.allowed().cmdSave) {
        whileEditing([&](const QString &take) { changed = context_.editing.apply(take, edit); });
    }
    return changed;
}

void Retouching::cmdFit_Click() {
    const auto post = postOf(context_.step, context_.session.mode);
    if (!context_.session.allowed().cmdFit || !post) {
        return;
    }
    QString done;
    edit({tr("Past op de intro"), [&](TakeEdit::Samples samples, int sampleRate) {
              Fitted fitted = fitToPost(std::move(samples), sampleRate, *post);
              done = fitted.sentence;
              return std::move(fitted.samples);
          }});
    if (!done.isEmpty()) {
        context_.tell(done);
    }
}

void Retouching::cmdOpnieuw_Click() {
    if (!context_.session.allowed().cmdOpnieuw) {
        return;
    }
    const QString original = dry();
    const QString before = undoable();
    const auto reader = openMono(context_.platform, original);
    const auto meter = context_.platform.loudness.another();
    AudioTransform transform;
    StageRun run(context_.wishes(), transform, *meter);
    bool isWhole = false;
    const bool changed = edit({reworked(), [&](TakeEdit::Samples samples, int sampleRate) {
                                   if (reader->sampleRate() != sampleRate) {
                                       throw RuntimeError(ErrorNumber::DeviceError, original);
                                   }
                                   readSamples(*reader, original, samples);
                                   run.run(samples, sampleRate, [](const auto &work) { work(); });
                                   isWhole = true;
                                   return samples;
                               }});
    if (changed) {
        tellReworked(run, before);
    } else if (isWhole) {
        context_.tell(tr("De bewerking geeft hetzelfde: de opname is zoals ze was."));
    }
}

QString Retouching::reworked() {
    return tr("Opnieuw bewerkt");
}

/// before: the edit that could be undone before.
void Retouching::tellReworked(const StageRun &run, const QString &before) {
    const bool hadEdits = !before.isEmpty() && before != reworked();
    QStringList sentences{hadEdits ? tr("Opnieuw bewerkt vanaf de droge opname. Wat u zelf deed (%1) is daarmee "
                                        "vervangen; ongedaan maken brengt het terug.")
                                         .arg(before)
                                   : tr("Opnieuw bewerkt vanaf de droge opname.")};
    if (!run.silencer().isEmpty()) {
        sentences << tr("%1 heeft de opname onhoorbaar gemaakt.").arg(run.silencer());
    }
    context_.tell((sentences + run.notes()).join(u' '));
}

void Retouching::cmdUndo_Click() {
    if (context_.session.allowed().cmdUndo) {
        const QString what = undoable();
        whileEditing([&](const QString &take) { context_.editing.undo(take); });
        context_.tell(tr("Ongedaan gemaakt: %1.").arg(what));
    }
}

void Retouching::cmdRedo_Click() {
    if (context_.session.allowed().cmdRedo) {
        const QString what = redoable();
        whileEditing([&](const QString &take) { context_.editing.redo(take); });
        context_.tell(tr("Opnieuw gedaan: %1.").arg(what));
    }
}

void Retouching::recorded(const QString &take) {
    context_.findings.forget(take);
    ignoringErrors([&] { context_.findings.want(take, dry()); });
}

void Retouching::look() {
    if (isAtRest() && context_.session.facts().canSave) {
        ignoringErrors([&] { context_.findings.want(context_.step.VoiceTrackName, dry()); });
    }
}

void Retouching::ended(const QString &take) {
    context_.editing.forget(take);
    context_.findings.forget(take);
}

bool Retouching::isAtRest() const {
    const SessionState state = context_.session.state();
    return state == SessionState::Idle || state == SessionState::Listening;
}

QString Retouching::sentence() const {
    const Findings *found = context_.findings.of(context_.step.VoiceTrackName);
    if (found == nullptr || !isAtRest() || !context_.session.facts().canSave) {
        return {};
    }
    return speechSentence(wholeOf(found->marks.speech), postOf(context_.step, context_.session.mode));
}

EditFacts Retouching::facts(const QString &take) const {
    bool isThere = false;
    ignoringErrors([&] { isThere = context_.platform.files.fileExists(context_.places.take(take)); });
    return {isThere && postOf(context_.step, context_.session.mode).has_value(),
            isThere && !context_.editing.undoable(take).isEmpty(),
            isThere && !context_.editing.redoable(take).isEmpty(), isThere && !dry().isEmpty()};
}

QString Retouching::undoable() const {
    return context_.editing.undoable(context_.step.VoiceTrackName);
}

QString Retouching::redoable() const {
    return context_.editing.redoable(context_.step.VoiceTrackName);
}

} // namespace orvel
