#include "recording/join.h"

#include <algorithm>

namespace orvel {

namespace {

/// A playlist can say anything.
std::int64_t talkOf(const std::optional<JoinItem> &item) {
    return item ? std::max<std::int64_t>(item->talkMs, 0) : 0;
}

void add(JoinSchedule &schedule, const std::optional<JoinItem> &item, JoinClip clip) {
    if (!item) {
        return;
    }
    if (item->path.isEmpty()) {
        schedule.problems << item->problem;
        return;
    }
    clip.path = item->path;
    schedule.clips.push_back(std::move(clip));
}

} // namespace

JoinSchedule alongTake(const JoinParts &parts, std::int32_t runUpMs) {
    const std::int64_t outro = talkOf(parts.previous);
    JoinSchedule schedule;
    add(schedule, parts.previous, {{}, JoinClip::Anchor::End, outro, -std::int64_t{runUpMs}, outro});
    add(schedule, parts.next, {{}, JoinClip::Anchor::Begin, outro, outro, JoinClip::wholeFile});
    return schedule;
}

JoinSchedule inContext(const JoinParts &parts) {
    const std::int64_t outro = talkOf(parts.previous);
    const std::int64_t post = outro + talkOf(parts.next);
    JoinSchedule schedule;
    add(schedule, parts.previous, {{}, JoinClip::Anchor::End, outro, -std::int64_t{joinLeadMs}, outro});
    if (!parts.take.isEmpty()) {
        schedule.clips.push_back({parts.take, JoinClip::Anchor::Begin, 0, 0, JoinClip::wholeFile});
    }
    add(schedule, parts.next, {{}, JoinClip::Anchor::Begin, outro, outro, post + joinTailMs});
    return schedule;
}

} // namespace orvel
