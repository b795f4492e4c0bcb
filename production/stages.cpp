#include "production/stages.h"

#include <QCoreApplication>
#include <QStringList>

#include <algorithm>

namespace orvel {

namespace {

using Samples = std::vector<std::int16_t>;

void versterking(AudioTransform &transform, Samples &samples, KnobValues knobs) {
    transform.amplify(samples, AudioTransform::decibelsToFactor(knobs[0]));
}

void normalisatie(AudioTransform &transform, Samples &samples, KnobValues knobs) {
    transform.normalise(samples, knobs[0]);
}

void compressor(AudioTransform &transform, Samples &samples, KnobValues knobs) {
    // The panel's RMS time is kept with the settings, but the compressor works on peaks.
    constexpr float rmsTime = 0;
    transform.compress(samples, knobs[0], knobs[1], rmsTime);
}

void reverbStage(AudioTransform &transform, Samples &samples, KnobValues knobs) {
    transform.reverb(samples, {knobs[0], knobs[1], knobs[2], knobs[3]});
}

void trimmen(AudioTransform &transform, Samples &samples, KnobValues knobs) {
    std::int32_t k = 0;
    transform.trimStart(samples, knobs[0], k);
    transform.trimEnd(samples, knobs[0], k);
}

} // namespace

const std::vector<Stage> &stages() {
    static const std::vector<Stage> table = {
        {"Versterking",
         "chkAmp",
         "UseAmp",
         1,
         {{"ledAmp", "Niveau", "dB", -15, 15, 1, "Amp", "Maakt de opname luider of zachter"}},
         versterking},
        {"Normalisatie",
         "chkNorm",
         "UseNorm",
         2,
         {{"ledNorm", "Niveau", "%", 0, 100, 1, "Norm", "Brengt de luidste piek op dit deel van het maximum"}},
         normalisatie},
        {"Trimmen",
         "chkTrim",
         "UseTrim",
         5,
         {{"ledTrim", "Drempel", "dB", -90, 0, 1, "Trim",
           "Stilte onder dit niveau wordt aan begin en einde weggeknipt"},
          {"ledAttack", "Attack", "ms", 0, 1000, 10, "Attack", "Wordt bewaard, maar nu niet gebruikt"}},
         trimmen},
        {"Compressor",
         "chkComp",
         "UseComp",
         3,
         {{"ledCompTreshold", "Treshold", "dB", -96, 0, 1, "CompTresh",
           "Vanaf dit niveau wordt het geluid samengedrukt"},
          {"ledCompRate", "Rate", "%", 1, 100, 1, "CompRate", "Hoe sterk er wordt samengedrukt: 100 is een begrenzer"},
          {"ledCompRMS", "RMStime", "ms", 0, 1000, 10, "CompRMS", "Wordt bewaard, maar nu niet gebruikt"}},
         compressor},
        {"Reverb",
         "chkReverb",
         "UseReverb",
         4,
         {{"ledRevDelay", "Delay", "ms", 0, 1000, 10, "RevDelay", "Tijd tot de eerste weerkaatsing"},
          {"ledRevDepth", "Depth", "%", 1, 100, 1, "RevDepth", "Aandeel van de galm in het geluid"},
          {"ledRevDecay", "Decay", "%", 1, 100, 1, "RevDecay", "Hoe lang de galm naklinkt"},
          {"ledRevRate", "Rate", "%", 1, 100, 1, "RevRate", "Hoe levendig de galm beweegt"}},
         reverbStage},
    };
    return table;
}

std::vector<const Stage *> stagesToRun(const ProcessorSettings &settings) {
    std::vector<const Stage *> on;
    for (const Stage &stage : stages()) {
        if (settings[stage.key] != 0) {
            on.push_back(&stage);
        }
    }
    std::stable_sort(on.begin(), on.end(), [](const Stage *a, const Stage *b) { return a->turn < b->turn; });
    return on;
}

ProcessorSettings processorKeys() {
    ProcessorSettings settings;
    for (const Stage &stage : stages()) {
        settings.addCheck(stage.key);
        for (const StageKnob &knob : stage.knobs) {
            settings.addNumber(knob.key);
        }
    }
    return settings;
}

std::vector<float> knobValues(const Stage &stage, const ProcessorSettings &settings) {
    std::vector<float> values;
    for (const StageKnob &knob : stage.knobs) {
        values.push_back(static_cast<float>(std::clamp(settings[knob.key], knob.minimum, knob.maximum)));
    }
    return values;
}

QString bringWithinLimits(ProcessorSettings &settings) {
    QStringList changed;
    for (const Stage &stage : stages()) {
        for (const StageKnob &knob : stage.knobs) {
            const std::int32_t wanted = settings[knob.key];
            const std::int32_t value = wanted == 0 ? 0 : std::clamp(wanted, knob.minimum, knob.maximum);
            if (value != wanted) {
                settings.set(knob.key, value);
                changed << QCoreApplication::translate("ProcessorPanel", "%1 %2 van %3 naar %4")
                               .arg(QString::fromUtf8(stage.caption), QString::fromUtf8(knob.label))
                               .arg(wanted)
                               .arg(value);
            }
        }
    }
    return changed.isEmpty() ? QString()
                             : QCoreApplication::translate("ProcessorPanel", "Buiten de grenzen in orvel.ini: %1.")
                                   .arg(changed.join(QStringLiteral(", ")));
}

} // namespace orvel
