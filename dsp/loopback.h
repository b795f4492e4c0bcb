#pragma once

#include <cstdint>
#include <span>
#include <vector>

namespace orvel {

/// The sound by which the way from an output back to an input is measured, 44100 Hz: a fifth of a second that rises
/// from 300 to 3500 Hz, which headphones and microphones have alike, fades at its ends, and is a quarter of full scale.
[[nodiscard]] std::vector<std::int16_t> loopbackProbe();

/// Where the probe is in a recording.
struct ProbeSearch {
    std::int64_t at = 0; ///< its first sample, in steps of four
    double likeness = 0; ///< of what was recorded there to the probe, 0..1: 1 is the probe and nothing else
    double rival = 1;    ///< how strong the second best place is beside the best one, 0..1

    /// Whether there is no doubt about it.
    [[nodiscard]] bool isSure() const { return likeness >= leastLikeness && rival <= mostRival; }

    static constexpr double leastLikeness = 0.3;
    static constexpr double mostRival = 0.7;
};

/// Finds the probe in a recording at 44100 Hz by cross-correlation; a signal that is turned upside down on its way is
/// the same. An echo is no rival as long as it is weaker. One that is not wholly in the recording is not found.
[[nodiscard]] ProbeSearch findProbe(std::span<const std::int16_t> recorded);

} // namespace orvel
