#include "production/processing_chain.h"

#include "platform/file_system.h"
#include "platform/runtime_error.h"
#include "production/take_samples.h"
#include "station/ignore_errors.h"
#include "station/places.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QScopeGuard>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <new>
#include <utility>

namespace orvel {

namespace {

/// What goes wrong with the work files ends the program.
template <typename Action>
void fatally(Action action) {
    try {
        action();
    } catch (const RuntimeError &error) {
        throw FatalError(error);
    }
}

/// Whether there is anything louder than so many steps.
bool isLouder(const std::vector<std::int16_t> &samples, int steps) {
    return std::any_of(samples.begin(), samples.end(), [steps](int sample) { return std::abs(sample) > steps; });
}

constexpr int audible = 32;   ///< steps: -60 dB below full scale
constexpr int inaudible = 10; ///< -70 dB

} // namespace

ProcessingChain::ProcessingChain(ProcessingContext context)
    : context_(std::move(context)), AudioFile2(context_.platform.audioFiles.reader()),
      AudioFile3(context_.platform.audioFiles.wavWriter()) {}

void ProcessingChain::AudioProcessing(const QString &wavPath) {
    context_.showProcess(true);
    const auto hide = qScopeGuard([this] { context_.showProcess(false); });
    take_ = wavPath;
    AudioFile2->open(take_);
    sampleRate_ = AudioFile2->sampleRate();
    AudioTransform1.setSampleRate(sampleRate_);
    AudioTransform1.setChannels(1);
    AudioFile2->close();
    raw_.clear();
    silencer_.clear();
    isChanged_ = false;
    try {
        runStages();
        bringToGoal();
    } catch (const FatalError &) {
        abandonStage();
        settleRaw();
        throw;
    } catch (const RuntimeError &) {
        giveUp();
    } catch (const std::bad_alloc &) {
        giveUp(); // a take of many hours
    }
    settleRaw();
}

void ProcessingChain::giveUp() {
    abandonStage();
    dropOutput();
    context_.tell(QCoreApplication::translate("ProcessingChain",
                                              "De geluidsbewerking is niet voltooid; de opname zelf is bewaard."));
}

void ProcessingChain::settleRaw() {
    if (raw_.isEmpty()) {
        return;
    }
    if (!isChanged_) {
        ignoringErrors([&] { context_.platform.files.remove(raw_); });
        return;
    }
    QString place = QStringLiteral("temp2");
    ignoringErrors([&] {
        context_.recovery.keep(raw_);
        place = QStringLiteral("herstel");
    });
    if (!silencer_.isEmpty()) {
        context_.tell(QCoreApplication::translate("ProcessingChain",
                                                  "%1 heeft de opname onhoorbaar gemaakt; de ruwe opname ligt in %2.")
                          .arg(silencer_, place));
    }
}

void ProcessingChain::runStages() {
    const ProcessorSettings settings = context_.settings();
    for (const Stage *stage : stagesToRun(settings)) {
        run(QString::fromUtf8(stage->caption),
            [&] { stage->run(AudioTransform1, samples_, knobValues(*stage, settings)); });
    }
}

void ProcessingChain::bringToGoal() {
    const LoudnessGoal goal = context_.loudness();
    if (const QString problem = goal.problem(); !problem.isEmpty()) {
        context_.tell(problem);
        return;
    }
    if (!goal.isSet()) {
        return;
    }
    std::optional<Loudness> reached;
    run(QCoreApplication::translate("ProcessingChain", "Luidheid"),
        [&] { reached = bringToLoudness(AudioTransform1, samples_, sampleRate_, goal, context_.platform.loudness); });
    constexpr double audibleDifference = 0.5; // LU
    if (reached && std::abs(reached->lufs - goal.target) > audibleDifference) {
        context_.tell(QCoreApplication::translate("ProcessingChain", "De opname is te zacht om op %1 LUFS te brengen.")
                          .arg(goal.target));
    }
}

void ProcessingChain::run(const QString &caption, const std::function<void()> &work) {
    StartOperation();
    if (raw_.isEmpty()) {
        keepRaw();
    }
    work();
    EndOperation();
    if (isLouder(samples_, inaudible)) {
        silencer_.clear();
    } else if (rawIsAudible_ && silencer_.isEmpty()) {
        silencer_ = caption;
    }
}

void ProcessingChain::keepRaw() {
    const QString path = Places(context_.programFolder).rawTake(QFileInfo(take_).completeBaseName());
    // An earlier run was broken off.
    if (context_.platform.files.fileExists(path)) {
        context_.recovery.keep(path);
    }
    context_.platform.files.link(take_, path);
    raw_ = path;
    rawIsAudible_ = isLouder(samples_, audible);
}

void ProcessingChain::StartOperation() {
    openTake();
    AudioTransform1.setEnabled(false);
    stageOutput_ = Places(context_.programFolder).stageOutput(QFileInfo(take_).completeBaseName());
    createOutput();
    readTake();
    AudioTransform1.setEnabled(true);
}

void ProcessingChain::openTake() {
    AudioFile2->open(take_);
    if (AudioFile2->errorState() >= 0 && AudioFile2->channels() == 1) {
        return;
    }
    if (!context_.platform.files.fileExists(take_)) {
        throw FatalError(RuntimeError(ErrorNumber::FileNotFound, take_));
    }
    throw RuntimeError(ErrorNumber::DeviceError, take_);
}

void ProcessingChain::createOutput() {
    // An earlier run was broken off where this file was all there was of a take.
    if (context_.platform.files.fileExists(stageOutput_)) {
        context_.recovery.keep(stageOutput_);
    }
    outputIsPartial_ = true;
    try {
        AudioFile3->create(stageOutput_, AudioFile2->sampleRate());
    } catch (const RuntimeError &error) {
        if (error.number() == ErrorNumber::DiskFull) {
            throw;
        }
        throw FatalError(error);
    }
}

void ProcessingChain::readTake() {
    readSamples(*AudioFile2, take_, samples_);
}

void ProcessingChain::EndOperation() {
    AudioTransform1.setEnabled(false);
    AudioFile3->write(samples_);
    AudioFile2->close();
    AudioFile3->close();
    outputIsPartial_ = false;
    // The stage's output is safe on the disk: it takes the take's place, in one step.
    fatally([&] { context_.platform.files.move(stageOutput_, take_); });
    isChanged_ = true;
}

void ProcessingChain::abandonStage() {
    AudioTransform1.setEnabled(false);
    AudioFile2->close();
    ignoringErrors([&] { AudioFile3->close(); });
}

void ProcessingChain::dropOutput() {
    if (std::exchange(outputIsPartial_, false)) {
        ignoringErrors([&] { context_.platform.files.remove(stageOutput_); });
    }
}

} // namespace orvel
