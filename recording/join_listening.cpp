#include "recording/join_listening.h"

#include "platform/audio.h"
#include "platform/guarded.h"
#include "platform/platform.h"
#include "platform/runtime_error.h"
#include "playlist/current_step.h"
#include "playlist/playlist.h"
#include "playlist/step_types.h"
#include "recording/take_session.h"

namespace orvel {

JoinListening::JoinListening(JoinListeningContext context)
    : context_(std::move(context)), player_(context_.platform.sound.makeJoinPlayer()) {
    player_->setEndHandler([this] { guarded([this] { ended(); }); });
}

bool JoinListening::isPlaying() const {
    return context_.session.state() == SessionState::Joining;
}

QString JoinListening::contextCaption() const {
    return isPlaying() && !hour_ ? tr("Stop") : tr("In verband");
}

QString JoinListening::hourCaption() const {
    return isPlaying() && hour_ ? tr("Stop") : tr("Hele uur");
}

void JoinListening::cmdInVerband_Click() {
    if (isPlaying()) {
        stop();
        return;
    }
    if (!context_.session.allowed().cmdInVerband) {
        return;
    }
    if (!play(context_.step.row)) {
        context_.tell(tr("Van deze link is nog geen opname te vinden."));
    }
}

void JoinListening::cmdHeleUur_Click() {
    if (isPlaying()) {
        stop();
        return;
    }
    if (!context_.session.allowed().cmdHeleUur) {
        return;
    }
    hour_ = Hour{context_.playlist.fullPath(), -1, 0};
    playNext(0);
}

/// False, and nothing changed, where there is no take. Throws what the player throws.
bool JoinListening::play(int row) {
    const JoinParts parts = context_.files.around(row);
    if (parts.take.isEmpty()) {
        return false;
    }
    const JoinSchedule schedule = inContext(parts);
    try {
        player_->play(schedule.clips, {});
    } catch (const RuntimeError &) {
        stop();
        throw;
    }
    if (!isPlaying()) {
        context_.session.joiningBegan();
    }
    if (!schedule.problems.isEmpty()) {
        context_.tell(schedule.problems.join(u' '));
    }
    return true;
}

/// The first take from this row on.
void JoinListening::playNext(int row) {
    for (; row < context_.playlist.stepCount(); ++row) {
        if (context_.playlist.value(row, TypeColumn) != PresStep) {
            continue;
        }
        if (context_.files.takeOf(row).isEmpty()) {
            ++hour_->skipped;
            continue;
        }
        hour_->row = row;
        context_.showRow(row);
        if (play(row)) {
            return;
        }
    }
    endHour();
}

void JoinListening::endHour() {
    const int skipped = hour_->skipped;
    const bool heard = hour_->row >= 0;
    stop();
    if (!heard) {
        context_.tell(tr("Er is nog geen opname om te horen."));
    } else if (skipped > 0) {
        context_.tell(skipped == 1 ? tr("1 link zonder opname werd overgeslagen.")
                                   : tr("%1 links zonder opname werden overgeslagen.").arg(skipped));
    }
}

void JoinListening::ended() {
    const bool brokeOff = player_->brokeOff();
    const QStringList unreadable = player_->unreadable();
    // Not where another playlist stands on the desk by now.
    const bool goesOn =
        !brokeOff && hour_ && context_.playlist.isOpen() && hour_->playlist == context_.playlist.fullPath();
    if (goesOn) {
        playNext(hour_->row + 1);
    } else {
        stop();
    }
    if (brokeOff) {
        context_.tell(tr("De weergave werd afgebroken: de uitgang is weg."));
    } else if (!unreadable.isEmpty()) {
        context_.tell(tr("Niet leesbaar: %1").arg(unreadable.join(QStringLiteral(", "))));
    }
}

void JoinListening::stop() {
    player_->stop();
    hour_.reset();
    if (isPlaying()) {
        context_.session.joiningEnded();
    }
}

} // namespace orvel
