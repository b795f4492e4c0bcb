#pragma once

#include "dsp/speech.h"

#include <QString>

#include <cstdint>
#include <optional>
#include <vector>

namespace orvel {

struct CurrentStep;
struct DeskMode;

/// Milliseconds from a take's beginning, which lies where the outro begins, to the moment at which the next item's
/// vocals do. Nothing where there is no intro to talk over: for a plain recorder's take, and before an item without
/// one.
[[nodiscard]] std::optional<std::int32_t> postOf(const CurrentStep &step, const DeskMode &mode);

/// Where speech is, in milliseconds from the take's beginning.
struct SpeechTimes {
    std::int32_t begin = 0;
    std::int32_t end = 0;

    bool operator==(const SpeechTimes &) const = default;
};

/// Every stretch, in order.
[[nodiscard]] std::vector<SpeechTimes> speechTimes(const std::vector<SpeechSegment> &segments, int sampleRate);
/// From the first stretch's beginning to the last one's end; nothing without any.
[[nodiscard]] std::optional<SpeechTimes> wholeOf(const std::vector<SpeechTimes> &stretches);

/// One sentence about a take: "Spraak 0,4 tot 9,1 s, 0,5 s vóór de zang", "Spraak 0,4 tot 10,9 s, 1,3 s over de intro",
/// "... precies op de zang" for less than 50 ms, only the times without a post, "Geen spraak gevonden".
[[nodiscard]] QString speechSentence(const std::optional<SpeechTimes> &speech, std::optional<std::int32_t> post);

} // namespace orvel
