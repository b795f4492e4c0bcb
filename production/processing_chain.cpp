#include "production/processing_chain.h"

#include "platform/file_system.h"
#include "platform/runtime_error.h"
#include "station/ignore_errors.h"
#include "station/paths.h"

#include <QFileInfo>
#include <QGuiApplication>

#include <algorithm>
#include <cstdlib>
#include <cstring>
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

/// The settings file may hold anything, and 0 where it holds nothing.
float valueOf(const LedSpin *spin) {
    return static_cast<float>(std::clamp(spin->value(), spin->minimum(), spin->maximum()));
}

/// Whether there is anything louder than so many steps.
bool isLouder(const std::vector<std::int16_t> &samples, int steps) {
    return std::any_of(samples.begin(), samples.end(), [steps](int sample) { return std::abs(sample) > steps; });
}

constexpr int audible = 32;   ///< steps: -60 dB below full scale
constexpr int inaudible = 10; ///< -70 dB

/// The label and the cursor tell that the window is busy, however the work ends.
class BusySign {
  public:
    explicit BusySign(const std::function<void(bool)> &show) : show_(show) {
        QGuiApplication::setOverrideCursor(Qt::WaitCursor);
        show_(true);
    }
    BusySign(const BusySign &) = delete;
    BusySign(BusySign &&) = delete;
    BusySign &operator=(const BusySign &) = delete;
    BusySign &operator=(BusySign &&) = delete;
    ~BusySign() {
        show_(false);
        QGuiApplication::restoreOverrideCursor();
    }

  private:
    const std::function<void(bool)> &show_; // NOLINT(cppcoreguidelines-avoid-const-or-ref-data-members)
};

} // namespace

ProcessingChain::ProcessingChain(ProcessingContext context)
    : context_(std::move(context)), AudioFile2(context_.platform.audioFiles.reader()),
      AudioFile3(context_.platform.audioFiles.wavWriter()) {}

void ProcessingChain::AudioProcessing(const QString &wavPath) {
    const BusySign busy(context_.showProcess);
    take_ = wavPath;
    AudioFile2->open(take_);
    AudioTransform1.setSampleRate(AudioFile2->sampleRate());
    AudioTransform1.setChannels(1);
    AudioFile2->close();
    raw_.clear();
    silencer_.clear();
    try {
        runStages();
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
    if (silencer_.isEmpty()) {
        ignoringErrors([&] { context_.platform.files.remove(raw_); });
        return;
    }
    QString place = QStringLiteral("temp2");
    ignoringErrors([&] {
        context_.recovery.keep(raw_);
        place = QStringLiteral("herstel");
    });
    context_.tell(QCoreApplication::translate("ProcessingChain",
                                              "%1 heeft de opname onhoorbaar gemaakt; de ruwe opname ligt in %2.")
                      .arg(silencer_, place));
}

void ProcessingChain::runStages() {
    const ProcessorPanel &panel = context_.panel;
    if (panel.chkAmp->isChecked()) {
        stage(QStringLiteral("Versterking"), [&] {
            const float factor = AudioTransform::decibelsToFactor(valueOf(panel.ledAmp));
            AudioTransform1.amplify(samples_, factor);
        });
    }
    if (panel.chkNorm->isChecked()) {
        stage(QStringLiteral("Normalisatie"), [&] { AudioTransform1.normalise(samples_, valueOf(panel.ledNorm)); });
    }
    if (panel.chkComp->isChecked()) {
        // The panel's RMS time is kept with the settings, but the compressor works on peaks.
        constexpr float rmsTime = 0;
        stage(QStringLiteral("Compressor"), [&] {
            AudioTransform1.compress(samples_, valueOf(panel.ledCompTreshold), valueOf(panel.ledCompRate), rmsTime);
        });
    }
    if (panel.chkReverb->isChecked()) {
        stage(QStringLiteral("Reverb"), [this] { reverb(); });
    }
    if (panel.chkTrim->isChecked()) {
        stage(QStringLiteral("Trimmen"), [this] { trim(); });
    }
}

void ProcessingChain::reverb() {
    const ProcessorPanel &panel = context_.panel;
    AudioTransform1.reverb(samples_, {valueOf(panel.ledRevDelay), valueOf(panel.ledRevDepth),
                                      valueOf(panel.ledRevDecay), valueOf(panel.ledRevRate)});
}

void ProcessingChain::trim() {
    std::int32_t k = 0;
    AudioTransform1.trimStart(samples_, valueOf(context_.panel.ledTrim), k);
    AudioTransform1.trimEnd(samples_, valueOf(context_.panel.ledTrim), k);
}

void ProcessingChain::stage(const QString &name, const std::function<void()> &operation) {
    StartOperation();
    if (raw_.isEmpty()) {
        keepRaw();
    }
    operation();
    EndOperation();
    if (isLouder(samples_, inaudible)) {
        silencer_.clear();
    } else if (rawIsAudible_ && silencer_.isEmpty()) {
        silencer_ = name;
    }
}

void ProcessingChain::keepRaw() {
    const QString path = takeFile(context_.programFolder, QStringLiteral("\\temp2\\"),
                                  QFileInfo(take_).completeBaseName() + QStringLiteral(".ruw"), QStringLiteral(".wav"));
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
    stageOutput_ = takeFile(context_.programFolder, QStringLiteral("\\temp2\\"), QFileInfo(take_).completeBaseName(),
                            QStringLiteral(".wav"));
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
    samples_.clear();
    samples_.reserve(static_cast<std::size_t>(AudioFile2->frames()));
    for (QByteArray block = AudioFile2->readBlock(); !block.isEmpty(); block = AudioFile2->readBlock()) {
        const std::size_t before = samples_.size();
        samples_.resize(before + static_cast<std::size_t>(block.size()) / sizeof(std::int16_t));
        std::memcpy(samples_.data() + before, block.constData(), static_cast<std::size_t>(block.size()));
    }
    if (static_cast<std::int64_t>(samples_.size()) < AudioFile2->frames()) {
        throw RuntimeError(ErrorNumber::DeviceError, take_);
    }
}

void ProcessingChain::EndOperation() {
    AudioTransform1.setEnabled(false);
    AudioFile3->write(samples_);
    AudioFile2->close();
    AudioFile3->close();
    outputIsPartial_ = false;
    // The stage's output is safe on the disk: it takes the take's place, in one step.
    fatally([&] { context_.platform.files.move(stageOutput_, take_); });
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
