#include "production/saving.h"

#include "platform/file_system.h"
#include "platform/platform.h"
#include "platform/prompts.h"
#include "playlist/completion.h"
#include "playlist/voice_tracks.h"
#include "recording/listening.h"
#include "settings/settings.h"
#include "station/ignore_errors.h"
#include "station/paths.h"
#include "station/places.h"

#include <QFileInfo>
#include <QScopeGuard>

#include <utility>

namespace orvel {

void Saving::cmdMultivoice_Click() {
    isMultivoice_ = !isMultivoice_;
    context_.changed();
}

template <class Action>
void Saving::whileFiling(Action action) {
    Offer offer = Offer::ByTake;
    context_.session.filingBegan();
    const auto ended = qScopeGuard([&] { context_.session.filingEnded(offer); });
    offer = action();
}

void Saving::cmdSave_Click() {
    context_.listening.interrupt();
    // Window events run during the conversion: a second click must not file the take twice.
    if (!context_.session.isIdle()) {
        return;
    }
    whileFiling([this] {
        const Take take = context_.session.currentTake();
        // The chooser may still be open for a save before this one: its mark is not the step's own.
        if (chosen_ && (isMultivoice_ || *chosen_ == take)) {
            stationsClosed();
        }
        const bool markBefore = context_.filing.mark(take);
        return save(take, markBefore);
    });
}

Saving::Offer Saving::save(const Take &take, bool markBefore) {
    if (take.kind == Take::Kind::Recorder) {
        return saveAs(take);
    }
    if (!context_.settings.UseProcessor) {
        context_.filing.fileEncoded(take);
        context_.completion.CheckLijst();
        return Offer::Off;
    }
    if (isMultivoice_) {
        if (!(take == versionsOf_ && hasVersions_)) {
            markBefore_ = markBefore;
            hasVersions_ = false;
        }
        versionsOf_ = take;
        chosen_ = take;
        context_.showStations();
        return Offer::Stays;
    }
    if (!context_.platform.files.fileExists(context_.places.take(take.name()))) {
        context_.tell(tr("Er is geen opname voor %1.").arg(take.name()));
        return Offer::Stays;
    }
    if (context_.filing.file(take, markBefore) != Filing::Outcome::Filed) {
        return Offer::Stays;
    }
    context_.completion.CheckLijst();
    return Offer::ByTake;
}

QString Saving::proposal(const Take &take) const {
    const QString name = take.name() + QStringLiteral(".mp3");
    const bool isThere = !lastFolder_.isEmpty() && context_.platform.files.folderExists(lastFolder_);
    return isThere ? inFolder(lastFolder_, name) : name;
}

Saving::Offer Saving::saveAs(const Take &take) {
    if (!context_.platform.files.fileExists(context_.places.take(take.name()))) {
        context_.tell(tr("Er is geen opname voor %1.").arg(take.name()));
        return Offer::Stays;
    }
    const QString chosen = context_.platform.prompts.saveFileName(
        QStringLiteral("Geef naam en locatie waarmee U het bestand wenst te bewaren"), proposal(take));
    if (chosen.isEmpty()) {
        return Offer::Off;
    }
    lastFolder_ = QFileInfo(chosen).path();
    return context_.filing.saveAs(take, chosen) == Filing::Outcome::Filed ? Offer::Off : Offer::Stays;
}

bool Saving::ExternalSave(const QString &StationCode) {
    if (!context_.session.isIdle()) {
        context_.tell(tr("Deze opname kan nog niet bewaard worden."));
        return false;
    }
    Take version = chosen_.value_or(context_.session.currentTake());
    version.stationCode = StationCode;
    whileFiling([&] { return saveVersion(version); });
    return true;
}

Saving::Offer Saving::saveVersion(const Take &take) {
    const Filing::Outcome outcome = context_.filing.file(take, hasVersions_ || markBefore_);
    if (outcome == Filing::Outcome::AsBefore) {
        return Offer::Stays;
    }
    hasVersions_ = hasVersions_ || outcome == Filing::Outcome::Filed;
    if (!context_.platform.prompts.ask(QStringLiteral("Bent U klaar met deze inteksting ?"),
                                       QStringLiteral("Multivoice inteksting"))) {
        return Offer::Stays;
    }
    context_.completion.CheckLijst();
    tellLacking(take);
    isMultivoice_ = false;
    hasVersions_ = false;
    chosen_.reset();
    context_.changed();
    return Offer::ByTake;
}

void Saving::tellLacking(const Take &take) const {
    const QStringList lacking =
        VoiceTracks(context_.platform.files, context_.settings, context_.stations).lacking(take.name());
    if (!lacking.isEmpty()) {
        context_.tell(
            tr("Van %1 is er nog geen versie voor: %2.").arg(take.name(), lacking.join(QStringLiteral(", "))));
    }
}

QString Saving::chooserTake() const {
    return chosen_.value_or(context_.session.currentTake()).name();
}

bool Saving::saveUnfiled(const Take &take) {
    context_.listening.interrupt();
    if (!context_.session.isIdle()) {
        context_.tell(tr("Deze opname kan nog niet bewaard worden."));
        return false;
    }
    bool filed = false;
    whileFiling([&] {
        if (take.kind == Take::Kind::Recorder) {
            const Offer offer = saveAs(take);
            filed = !context_.platform.files.fileExists(context_.places.take(take.name()));
            return offer;
        }
        filed = context_.filing.file(take, context_.filing.mark(take)) == Filing::Outcome::Filed;
        return Offer::ByTake;
    });
    return filed;
}

void Saving::stationsClosed() {
    if (chosen_ && !hasVersions_) {
        ignoringErrors([&] { context_.filing.takeBackMark(*chosen_, markBefore_); });
    }
    chosen_.reset();
}

} // namespace orvel
