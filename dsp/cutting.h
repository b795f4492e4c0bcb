#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace orvel {

/// Takes a piece out of signed 16-bit mono samples: `count` of them from `begin`. What stood behind it follows in a
/// cross-fade of equal power, of 5 ms or what there is behind the piece. What lies outside the take is no part of it.
void cutOut(std::vector<std::int16_t> &samples, std::size_t begin, std::size_t count, int sampleRate);

/// Keeps what lies from `begin` to before `end`, and fades an edge where something was cut off over 2 ms. An `end`
/// beyond the take is its end; with `begin` behind `end` nothing is left.
void keepOnly(std::vector<std::int16_t> &samples, std::size_t begin, std::size_t end, int sampleRate);

} // namespace orvel
