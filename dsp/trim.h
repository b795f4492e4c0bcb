#pragma once

#include "dsp/dither.h"

#include <cstdint>
#include <vector>

namespace orvel {

/// Removes what comes before the first sound from signed 16-bit mono samples, and fades the cut edge in over 2 ms.
///
/// Sound is where the RMS of 10 ms passes the threshold; DC and rumble (below 10 Hz) do not count. No pattern is asked
/// of it: a low voice is silent between two beats of the vocal cords, and a "t" is nothing but a burst. As noise can
/// take something off a sound, the level that counts lies lower by what the noise before it can do: next to nothing in
/// silence, half a decibel or one when the noise is 10 dB below the threshold. The cut lies 2.5 ms after those 10
/// ms begin, and the fade before their middle. One thing is left out: a click, that is up to 10 ms with at least 20 dB
/// less, and nothing above the threshold, in the 300 ms on both sides. No word has such a burst.
///
/// threshold: dB below full scale (RMS; a full-scale square wave has 0), -90..0. Where nothing is above it, and with
/// 0, the samples stay as they are: a take that is all too soft is not thrown away.
/// k: the number of removed samples is added to it.
void trimStart(std::vector<std::int16_t> &samples, float threshold, int sampleRate, Dither &dither, std::int32_t &k);
/// The same for the end, in the mirror.
void trimEnd(std::vector<std::int16_t> &samples, float threshold, int sampleRate, Dither &dither, std::int32_t &k);

} // namespace orvel
