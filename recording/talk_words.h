#pragma once

#include <QString>

#include <cstdint>

namespace orvel {

class Playlist;
struct CurrentStep;

/// What a take has to fit between, as the presenter reads it.
struct Neighbours {
    QString previous; ///< "← Trio Waterland, De laatste tram, outro 3,4"; empty without one
    QString talk;     ///< "jij 9,6 s"
    QString next;     ///< "intro 6,2, Morgen misschien →"; empty without one

    bool operator==(const Neighbours &) const = default;
};

/// Of the selected step; nothing of any other row than a presentation step. What cannot be read is left out.
Neighbours neighboursOf(const Playlist &playlist, const CurrentStep &step);

/// Where a take stands that has taken so many milliseconds.
struct TalkPhase {
    enum class Part { None, Outro, Intro, TooLong };

    Part part = Part::None;
    QString words; ///< "◀ outro, nog 4,2 s", "▶ intro, nog 1,3 s", "■ 1,3 s te lang": a symbol and words for each part

    bool operator==(const TalkPhase &) const = default;
};

/// None where there is nothing to talk over.
TalkPhase phaseOf(const CurrentStep &step, std::int32_t elapsedMs);

/// Seconds with one decimal and the language's comma, halves away from zero: 12345 gives "12,3".
QString inSeconds(std::int64_t milliseconds);

} // namespace orvel
