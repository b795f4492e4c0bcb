#include "production/processing_chain.h"

#include "platform/file_system.h"
#include "platform/runtime_error.h"
#include "production/take_samples.h"
#include "station/ignore_errors.h"
#include "station/places.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QScopeGuard>

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

} // namespace

ProcessingChain::ProcessingChain(ProcessingContext context)
    : context_(std::move(context)), AudioFile2(context_.platform.audioFiles.reader()),
      AudioFile3(context_.platform.audioFiles.wavWriter()) {}

void ProcessingChain::AudioProcessing(const QString &wavPath) {
    context_.showProcess(true);
    const auto hide = qScopeGuard([this] { context_.showProcess(false); });
    take_ = wavPath;
    AudioFile2->open(take_);
    const int sampleRate = AudioFile2->sampleRate();
    AudioFile2->close();
    raw_.clear();
    isChanged_ = false;
    StageRun run(wishes(), AudioTransform1, context_.platform.loudness);
    try {
        run.run(samples_, sampleRate, [this](const auto &work) { stage(work); });
    } catch (const FatalError &) {
        abandonStage();
        settleRaw(run.silencer());
        throw;
    } catch (const RuntimeError &) {
        giveUp();
    } catch (const std::bad_alloc &) {
        giveUp(); // a take of many hours
    }
    for (const QString &note : run.notes()) {
        context_.tell(note);
    }
    settleRaw(run.silencer());
}

StageWishes ProcessingChain::wishes() const {
    return {context_.settings(), context_.loudness()};
}

void ProcessingChain::giveUp() {
    abandonStage();
    dropOutput();
    context_.tell(QCoreApplication::translate("ProcessingChain",
                                              "De geluidsbewerking is niet voltooid; de opname zelf is bewaard."));
}

void ProcessingChain::settleRaw(const QString &silencer) {
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
    if (!silencer.isEmpty()) {
        context_.tell(QCoreApplication::translate("ProcessingChain",
                                                  "%1 heeft de opname onhoorbaar gemaakt; de ruwe opname ligt in %2.")
                          .arg(silencer, place));
    }
}

/// A stage from the take's file into it.
void ProcessingChain::stage(const std::function<void()> &work) {
    StartOperation();
    if (raw_.isEmpty()) {
        keepRaw();
    }
    work();
    EndOperation();
}

void ProcessingChain::keepRaw() {
    const QString path = Places(context_.programFolder).rawTake(QFileInfo(take_).completeBaseName());
    // An earlier run was broken off.
    if (context_.platform.files.fileExists(path)) {
        context_.recovery.keep(path);
    }
    context_.platform.files.link(take_, path);
    raw_ = path;
}

void ProcessingChain::StartOperation() {
    openTake();
    stageOutput_ = Places(context_.programFolder).stageOutput(QFileInfo(take_).completeBaseName());
    createOutput();
    readTake();
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
