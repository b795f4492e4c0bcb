#include "production/stage_run.h"

#include <QCoreApplication>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <utility>

namespace orvel {

namespace {

/// Whether there is anything louder than so many steps.
bool isLouder(const StageRun::Samples &samples, int steps) {
    return std::any_of(samples.begin(), samples.end(), [steps](int sample) { return std::abs(sample) > steps; });
}

constexpr int audible = 32;   ///< steps: -60 dB below full scale
constexpr int inaudible = 10; ///< -70 dB

} // namespace

void StageRun::run(Samples &samples, int sampleRate, const Around &around) {
    transform_.setSampleRate(sampleRate);
    transform_.setChannels(1);
    for (const Stage *one : stagesToRun(wishes_.settings)) {
        stage(QString::fromUtf8(one->caption), samples, around,
              [&] { one->run(transform_, samples, knobValues(*one, wishes_.settings)); });
    }
    bringToGoal(samples, sampleRate, around);
}

void StageRun::stage(const QString &caption, Samples &samples, const Around &around,
                     const std::function<void()> &work) {
    around([&] {
        if (std::exchange(isFirst_, false)) {
            wasAudible_ = isLouder(samples, audible);
        }
        transform_.setEnabled(true);
        work();
        transform_.setEnabled(false);
    });
    if (isLouder(samples, inaudible)) {
        silencer_.clear();
    } else if (wasAudible_ && silencer_.isEmpty()) {
        silencer_ = caption;
    }
}

void StageRun::bringToGoal(Samples &samples, int sampleRate, const Around &around) {
    const LoudnessGoal &goal = wishes_.goal;
    if (const QString problem = goal.problem(); !problem.isEmpty()) {
        notes_ << problem;
        return;
    }
    if (!goal.isSet()) {
        return;
    }
    std::optional<Loudness> reached;
    stage(QCoreApplication::translate("ProcessingChain", "Luidheid"), samples, around,
          [&] { reached = bringToLoudness(transform_, samples, sampleRate, goal, meter_); });
    constexpr double audibleDifference = 0.5; // LU
    if (reached && std::abs(reached->lufs - goal.target) > audibleDifference) {
        notes_ << QCoreApplication::translate("ProcessingChain", "De opname is te zacht om op %1 LUFS te brengen.")
                      .arg(goal.target);
    }
}

} // namespace orvel
