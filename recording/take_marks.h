#pragma once

#include "recording/speech_words.h"

#include <QString>

#include <cstdint>
#include <vector>

namespace orvel {

/// What is marked in a take's outline, in milliseconds from its beginning, in order.
struct TakeMarks {
    std::vector<SpeechTimes> speech;
    std::vector<std::int32_t> clips; ///< where it was too loud

    bool operator==(const TakeMarks &) const = default;
};

/// The marks and what they mean: "⊔ gesproken: 0,4 tot 9,1 s. ▼ te luid bij: 1,2 s, 3,4 s"; of many clips the first
/// five. Empty without any.
[[nodiscard]] QString marksInWords(const TakeMarks &marks);

} // namespace orvel
