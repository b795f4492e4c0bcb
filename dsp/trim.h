#pragma once

#include "dsp/dither.h"

#include <cstdint>
#include <vector>

namespace orvel {

/// Removes what comes before speech begins from signed 16-bit mono samples, and fades the cut edge in over 5 ms.
///
/// The level is the RMS of 1 ms with the mean of the 25 ms on either or both sides (DC, rumble) taken off. Speech is
/// where the level is above the threshold during half of some 40 ms; a click is too short for that. It begins with the
/// first sound above the threshold that reaches it with gaps of at most 100 ms (the burst before a vowel), or up to
/// 50 ms earlier as long as the level keeps coming back to 3 dB below the threshold. The cut lies 1 ms before that.
///
/// threshold: dB below full scale (RMS; a full-scale square wave has 0), -90..0. Where nothing is above it, and with
/// 0, the samples stay as they are: a take that is all too soft is not thrown away.
/// k: the number of removed samples is added to it.
void trimStart(std::vector<std::int16_t> &samples, float threshold, int sampleRate, Dither &dither, std::int32_t &k);
/// The same for the end, in the mirror.
void trimEnd(std::vector<std::int16_t> &samples, float threshold, int sampleRate, Dither &dither, std::int32_t &k);

} // namespace orvel
