#pragma once

#include "dsp/audio_transform.h"
#include "platform/loudness.h"

#include <QString>

#include <cstdint>
#include <vector>

namespace orvel {

/// What a station wants of every take: section [Loudness] of its settings file.
struct LoudnessGoal {
    int target = 0;    ///< LUFS; 0: the takes stay as loud as they are
    int truePeak = -1; ///< dBTP at the most

    [[nodiscard]] bool isSet() const { return target != 0; }
    /// Why the goal cannot be used, as a sentence; empty when it can.
    [[nodiscard]] QString problem() const;
};

/// How near the goal a take is brought, in LU.
inline constexpr double loudnessTolerance = 0.1;

/// Brings a take to its goal in place: so much gain and as much limiting as that needs. Where the limiter takes
/// loudness away, more gain makes up for it. Returns what came of it, measured; nothing, and the samples stay, where
/// there is nothing to measure. More than 30 dB is never added: beyond that there is more noise than voice.
std::optional<Loudness> bringToLoudness(AudioTransform &transform, std::vector<std::int16_t> &samples, int sampleRate,
                                        const LoudnessGoal &goal, LoudnessMeter &meter);
/// The same, to any loudness (LUFS) with true peaks up to any height (dBTP).
std::optional<Loudness> bringToLoudness(AudioTransform &transform, std::vector<std::int16_t> &samples, int sampleRate,
                                        double target, double truePeak, LoudnessMeter &meter);

} // namespace orvel
