#pragma once

#include "dsp/audio_transform.h"
#include "settings/settings.h"

#include <QString>

#include <cstdint>
#include <span>
#include <vector>

namespace orvel {

/// A number that a stage works with, and the display on the processor panel that sets it.
struct StageKnob {
    const char *name; ///< of the display
    const char *label;
    const char *unit;
    int minimum;
    int maximum;
    int step;
    const char *key; ///< in the settings file's section [AudioProcessor]
    const char *toolTip;
};

/// A stage's knobs within their limits, in the order of its row.
using KnobValues = std::span<const float>;

/// A studio stage that a take may pass through.
struct Stage {
    const char *caption;
    const char *checkName; ///< of the check box that turns it on
    const char *key;       ///< of the check box in the settings file
    int turn;              ///< stages run by rising turns, wherever they stand on the panel
    std::vector<StageKnob> knobs;
    void (*run)(AudioTransform &transform, std::vector<std::int16_t> &samples, KnobValues knobs);
};

/// The stages in the order of the panel and of the settings file: the one list of them. Another stage is another row.
const std::vector<Stage> &stages();

/// The stages that are on, in the order in which they run.
std::vector<const Stage *> stagesToRun(const ProcessorSettings &settings);

/// Every key of the panel, in the settings file's order, with the value 0.
ProcessorSettings processorKeys();

/// What a stage works with: a value outside its knob's limits is the limit.
std::vector<float> knobValues(const Stage &stage, const ProcessorSettings &settings);

/// Makes what lies outside a knob's limits the limit, and gives a sentence that tells it, or nothing. 0 is what the
/// settings file gives where it says nothing: it stays, also where a knob begins at 1.
QString bringWithinLimits(ProcessorSettings &settings);

} // namespace orvel
