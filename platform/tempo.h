#pragma once

#include <cstdint>
#include <span>
#include <vector>

namespace orvel {

/// Speech that is spoken faster, at the same pitch. samples: signed 16-bit mono. factor: 1 leaves the tempo as it is,
/// 1.04 is 4 % faster; what is no number between 0.5 and 2 throws std::invalid_argument. A sound at a moment t of what
/// goes in comes out at t / factor, give or take 20 ms; the length is samples.size() / factor, rounded.
[[nodiscard]] std::vector<std::int16_t> atTempo(std::span<const std::int16_t> samples, int sampleRate, double factor);

} // namespace orvel
