#pragma once

#include "dsp/speech.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace orvel {

/// A stretch of a take that is heard in its original `shift` samples later, up to before `end`.
struct Placement {
    std::size_t begin = 0;
    std::size_t end = 0;
    std::size_t shift = 0;

    bool operator==(const Placement &) const = default;
};

/// Where what is said in a take stands in the original that it was made of, in order and without gaps: how loud they
/// are from moment to moment is compared, which gain, compression, reverberation and limiting leave as it was. What was
/// cut off in front is found within a few milliseconds. What went out of the pauses changes the shift in the middle of
/// what is left of a pause; where the tempo was raised it changes once a second or two, where it is quietest: the
/// nearest place, up to 4 % of that beside the word. Where nothing is said, or nothing alike is found, the shift before
/// it goes on. A take is never longer than its original: where it is, nothing is shifted. Both searches have seen the
/// whole of their sound, at one rate.
[[nodiscard]] std::vector<Placement> placeInOriginal(const SpeechSearch &take, const SpeechSearch &original);

/// Where a sample of the original stands in the take; nothing where it was cut out.
[[nodiscard]] std::optional<std::size_t> inTake(const std::vector<Placement> &placements, std::size_t original);

/// The original on the take's own time axis: what the take has cut is cut out of it, in cross-fades of 5 ms, and its
/// words stand where the take's are. As long as the take.
[[nodiscard]] std::vector<std::int16_t> layBeside(const std::vector<Placement> &placements,
                                                  std::span<const std::int16_t> original, int sampleRate);

} // namespace orvel
