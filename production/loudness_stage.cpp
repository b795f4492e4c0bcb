#include "production/loudness_stage.h"

#include <QCoreApplication>

#include <algorithm>
#include <cmath>

namespace orvel {

namespace {

constexpr double mostGain = 30; ///< dB
constexpr int mostTries = 8;
/// Full scale is 0 dBTP, and what ends below -12 has no need of a limiter.
constexpr int highestPeak = 0;
constexpr int lowestPeak = -12;
/// What stations use lies between -31 and -14 LUFS.
constexpr int loudestTarget = -8;
constexpr int softestTarget = -40;

} // namespace

QString LoudnessGoal::problem() const {
    if (!isSet()) {
        return {};
    }
    const bool isPossible =
        target >= softestTarget && target <= loudestTarget && truePeak >= lowestPeak && truePeak <= highestPeak;
    return isPossible ? QString()
                      : QCoreApplication::translate("LoudnessGoal",
                                                    "Luidheid staat uit: %1 LUFS met een piek van %2 dBTP kan niet "
                                                    "([Loudness] in orvel.ini).")
                            .arg(target)
                            .arg(truePeak);
}

std::optional<Loudness> bringToLoudness(AudioTransform &transform, std::vector<std::int16_t> &samples, int sampleRate,
                                        const LoudnessGoal &goal, LoudnessMeter &meter) {
    return bringToLoudness(transform, samples, sampleRate, goal.target, goal.truePeak, meter);
}

std::optional<Loudness> bringToLoudness(AudioTransform &transform, std::vector<std::int16_t> &samples, int sampleRate,
                                        double target, double truePeak, LoudnessMeter &meter) {
    const std::optional<Loudness> before = meter.measure(samples, sampleRate);
    if (!before) {
        return std::nullopt;
    }
    const std::vector<std::int16_t> original = samples;
    std::optional<Loudness> reached;
    double gain = std::min(target - before->lufs, mostGain);
    double ceiling = truePeak;
    for (int tries = 0; tries < mostTries; ++tries) {
        samples = original;
        transform.limit(samples, {static_cast<float>(gain), static_cast<float>(ceiling)});
        reached = meter.measure(samples, sampleRate);
        if (!reached) {
            break;
        }
        const double missing = target - reached->lufs;
        const double above = std::max(reached->truePeak - truePeak, 0.0);
        const bool canBeLouder = missing < 0 || gain < mostGain;
        if (above == 0 && (std::abs(missing) <= loudnessTolerance || !canBeLouder)) {
            break;
        }
        gain = std::min(gain + missing, mostGain);
        ceiling -= above;
    }
    return reached;
}

} // namespace orvel
