#include "production/retouching.h"

#include "platform/audio_file.h"
#include "platform/file_system.h"
#include "platform/platform.h"
#include "platform/runtime_error.h"
#include "playlist/current_step.h"
#include "production/fitting.h"
#include "recording/take_session.h"
#include "station/ignore_errors.h"
#include "station/places.h"

#include <QScopeGuard>

#include <cstring>
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
    speech_.remove(take);
    ignoringErrors([&] { look(take); });
}

void Retouching::look(const QString &take) {
    const auto reader = context_.platform.audioFiles.reader();
    reader->open(context_.places.take(take));
    if (reader->errorState() < 0 || reader->channels() != 1) {
        return;
    }
    SpeechSearch search(reader->sampleRate());
    for (QByteArray block = reader->readBlock(); !block.isEmpty(); block = reader->readBlock()) {
        std::vector<std::int16_t> samples(static_cast<std::size_t>(block.size()) / sizeof(std::int16_t));
        std::memcpy(samples.data(), block.constData(), samples.size() * sizeof(std::int16_t));
        search.add(samples);
    }
    speech_.insert(take, speechTimes(search.found(), reader->sampleRate()));
}

void Retouching::ended(const QString &take) {
    context_.editing.forget(take);
    speech_.remove(take);
}

QString Retouching::sentence() const {
    const auto found = speech_.constFind(context_.step.VoiceTrackName);
    const SessionState state = context_.session.state();
    const bool isAtRest = state == SessionState::Idle || state == SessionState::Listening;
    if (found == speech_.constEnd() || !isAtRest || !context_.session.facts().canSave) {
        return {};
    }
    return speechSentence(*found, postOf(context_.step, context_.session.mode));
}

EditFacts Retouching::facts(const QString &take) const {
    bool isThere = false;
    ignoringErrors([&] { isThere = context_.platform.files.fileExists(context_.places.take(take)); });
    return {isThere && postOf(context_.step, context_.session.mode).has_value(),
            isThere && !context_.editing.undoable(take).isEmpty(),
            isThere && !context_.editing.redoable(take).isEmpty()};
}

QString Retouching::undoable() const {
    return context_.editing.undoable(context_.step.VoiceTrackName);
}

QString Retouching::redoable() const {
    return context_.editing.redoable(context_.step.VoiceTrackName);
}

} // namespace orvel
