#include "recording/talk_along.h"

#include "platform/audio.h"
#include "platform/guarded.h"
#include "platform/platform.h"
#include "platform/runtime_error.h"
#include "playlist/current_step.h"
#include "recording/allowed.h"
#include "settings/settings.h"

namespace orvel {

namespace {

using namespace std::chrono_literals;

/// A take never begins further away from its count-down's end than this, whatever is heard.
constexpr auto kFarthest = 300ms;

} // namespace

TalkAlong::TalkAlong(TalkAlongContext context)
    : context_(std::move(context)), player_(context_.platform.sound.makeJoinPlayer()) {
    player_->setVolume(volume_);
    player_->setEndHandler([this] { guarded([this] { ended(); }); });
}

void TalkAlong::setOn(bool on) {
    isOn_ = on;
    if (!on) {
        takeOver();
    }
    stepSelected();
}

void TalkAlong::setVolume(int volume) {
    volume_ = volume;
    player_->setVolume(volume);
}

bool TalkAlong::isPossible() const {
    return !context_.settings.Mute && !context_.mode.RecorderOnly;
}

QString TalkAlong::remark() const {
    if (context_.settings.Mute) {
        return tr("Uit: de uitgang gaat dicht bij de opname (instellingen).");
    }
    return isOn_ ? remark_ : QString();
}

void TalkAlong::stepSelected() {
    if (context_.step.PlaylistTakeRunning) {
        return; // nothing is looked for on a share while a take runs
    }
    QStringList problems;
    if (isOn_ && isPossible() && context_.step.times.visible && context_.step.row >= 0) {
        try {
            problems = alongTake(context_.files.around(context_.step.row), joinLeadMs).problems;
        } catch (const RuntimeError &error) {
            problems << error.description();
        }
    }
    say(problems.join(u' '));
}

void TalkAlong::countDownBegan(Moment takeBegins) {
    if (!isOn_ || !isPossible() || context_.step.row < 0) {
        return;
    }
    try {
        const JoinSchedule schedule = alongTake(context_.files.around(context_.step.row), joinLeadMs);
        say(schedule.problems.join(u' '));
        // Looking for files may have let the window's events in, and one of them may have cancelled it all.
        if (!schedule.clips.empty() && context_.step.PlaylistTakeRunning) {
            takeBegins_ = takeBegins;
            player_->play(schedule.clips, takeBegins);
        }
    } catch (const RuntimeError &error) {
        say(tr("Meeluisteren lukt nu niet: %1.").arg(error.description()));
    }
}

std::optional<TalkAlong::Moment> TalkAlong::outroBegins() {
    const auto isNow = [](Moment moment) { return std::chrono::abs(moment - JoinPlayer::Clock::now()) <= kFarthest; };
    const std::optional<Moment> heard = player_->zeroHeardAt();
    if (!heard && player_->isPlaying() && isNow(takeBegins_)) {
        return takeBegins_ + context_.cardDelay(); // files that come late are laid where they belong
    }
    if (heard && !isNow(*heard)) {
        player_->stop();
        context_.tell(tr("Meeluisteren is gestopt: de computer liep achter. De opname loopt gewoon."));
        return {};
    }
    return heard ? std::optional(*heard + context_.cardDelay()) : std::nullopt;
}

void TalkAlong::ended() {
    if (player_->brokeOff()) {
        say(tr("Meeluisteren is gestopt: de uitgang is weg. De opname gaat gewoon door."));
    } else if (!player_->unreadable().isEmpty()) {
        say(tr("Niet leesbaar: %1").arg(player_->unreadable().join(QStringLiteral(", "))));
    }
}

void TalkAlong::say(const QString &remark) {
    // The whole sentence: beside the switch there is little room.
    if (!remark.isEmpty() && remark_ != remark) {
        context_.tell(remark);
    }
    remark_ = remark;
    context_.changed();
}

} // namespace orvel
