#pragma once

#include "platform/join_player.h"

#include <QString>
#include <QStringList>

#include <cstdint>
#include <optional>
#include <vector>

namespace orvel {

/// An item beside a slot, as a join needs it.
struct JoinItem {
    QString title;
    QString path;            ///< empty where there is nothing to play
    QString problem;         ///< why, in words
    std::int32_t talkMs = 0; ///< of the previous item its outro, of the next one its intro: what may be talked over

    bool operator==(const JoinItem &) const = default;
};

/// What meets in a slot. The time axis of a join begins where the previous item's outro and the take begin.
struct JoinParts {
    std::optional<JoinItem> previous; ///< nothing before the first step
    QString take;                     ///< empty where there is none
    std::optional<JoinItem> next;     ///< nothing after the last step
};

/// What plays when, and what does not.
struct JoinSchedule {
    std::vector<JoinClip> clips;
    QStringList problems; ///< one sentence for each item that is missing

    bool operator==(const JoinSchedule &) const = default;
};

/// How much is heard of the items around the talk.
inline constexpr std::int32_t joinLeadMs = 5000; ///< before the outro
inline constexpr std::int32_t joinTailMs = 5000; ///< past the post

/// Meeluisteren: the previous item for so long before its outro and over it, then the next item until somebody stops.
/// The take itself is being spoken.
[[nodiscard]] JoinSchedule alongTake(const JoinParts &parts, std::int32_t runUpMs);

/// In verband: the end of the previous item, the take over outro and intro, the next item until a little past the post.
/// A take that is longer is heard to its end.
[[nodiscard]] JoinSchedule inContext(const JoinParts &parts);

} // namespace orvel
