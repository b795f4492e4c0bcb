#include "recording/delay_measurement.h"

#include "dsp/loopback.h"
#include "platform/audio.h"
#include "platform/audio_file.h"
#include "platform/file_system.h"
#include "platform/guarded.h"
#include "platform/platform.h"
#include "platform/runtime_error.h"
#include "platform/samples.h"
#include "recording/take_session.h"
#include "settings/card_delays.h"
#include "station/ignore_errors.h"
#include "station/places.h"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace orvel {

namespace {

using namespace std::chrono_literals;

constexpr int measureTickMs = 20;
constexpr double framesPerMs = 44.1;
/// Where on the axis the probe is played: as far as it can be found before that.
constexpr std::int64_t probeAtMs = DelayMeasurement::farthestMs;
/// What is recorded: the probe as late as it can be found, and a little more.
constexpr std::int64_t recordedFrames = (probeAtMs + DelayMeasurement::farthestMs + 250) * 441 / 10;
/// Until the axis begins: outputs may hold two seconds.
constexpr auto lead = 2500ms;
/// For a card to bring its first sample, and for an output to play.
constexpr int patienceTicks = 6000 / measureTickMs;
/// Below this nothing was heard: -60 dB.
constexpr int heardPeak = 33;

QString inWords(double milliseconds) {
    return QString::number(std::lround(milliseconds));
}

std::vector<std::int16_t> samplesOf(AudioFiles &files, const QString &path) {
    const auto reader = files.reader();
    reader->open(path);
    if (reader->errorState() < 0) {
        throw RuntimeError(ErrorNumber::FileNotFound, path);
    }
    std::vector<std::int16_t> samples;
    for (QByteArray block = reader->readBlock(); !block.isEmpty(); block = reader->readBlock()) {
        const std::size_t before = samples.size();
        samples.resize(before + static_cast<std::size_t>(block.size()) / sizeof(std::int16_t));
        std::memcpy(samples.data() + before, block.constData(), static_cast<std::size_t>(block.size()));
    }
    return samples;
}

} // namespace

DelayMeasurement::DelayMeasurement(DelayContext context)
    : context_(std::move(context)), player_(context_.platform.sound.makeJoinPlayer()),
      tmrMeasure_(context_.platform.timers.create(measureTickMs, MissedTicks::Drop, [this] { tick(); })) {
    player_->setEndHandler([this] { guarded([this] { playerEnded(); }); });
}

bool DelayMeasurement::isRunning() const {
    return context_.session.state() == SessionState::Measuring;
}

QString DelayMeasurement::card() const {
    const AudioRecord &audioRecord = context_.platform.sound.audioRecord();
    return audioRecord.deviceName(audioRecord.currentDevice());
}

QString DelayMeasurement::caption() const {
    const std::optional<double> known = context_.delays.of(card());
    return known ? tr("vertraging %1 ms, gemeten").arg(inWords(*known)) : tr("vertraging niet gemeten");
}

std::chrono::microseconds DelayMeasurement::ofCard() const {
    return std::chrono::microseconds(std::llround(context_.delays.of(card()).value_or(0) * 1000));
}

void DelayMeasurement::start() {
    if (!context_.session.allowed().cmdDelay) {
        return;
    }
    card_ = card();
    delays_.clear();
    sentence_ = tr("Luisteren naar de opnamekaart...");
    context_.session.measuringBegan();
    try {
        const auto writer = context_.platform.audioFiles.wavWriter();
        writer->create(context_.places.delayProbe(), static_cast<int>(framesPerMs * 1000));
        writer->write(loopbackProbe());
        writer->close();
        open();
    } catch (const RuntimeError &error) {
        end(tr("Meten lukt nu niet: %1.").arg(error.description()));
    }
}

void DelayMeasurement::cancel() {
    if (isRunning()) {
        end(tr("Het meten is gestopt. Er is niets veranderd."));
    }
}

void DelayMeasurement::enter(Phase phase) {
    phase_ = phase;
    ticks_ = 0;
}

/// A card that was just opened brings nothing for a while.
void DelayMeasurement::open() {
    context_.platform.sound.recorder().prepare();
    enter(Phase::Opening);
    tmrMeasure_->setEnabled(true);
    context_.changed();
}

void DelayMeasurement::play() {
    player_->setVolume(65535);
    player_->play({{context_.places.delayProbe(), JoinClip::Anchor::Begin, probeAtMs, probeAtMs, JoinClip::wholeFile}},
                  JoinPlayer::Clock::now() + lead);
    sentence_ = tr("Meting %1 van %2...").arg(found() + 1).arg(times);
    enter(Phase::Waiting);
    context_.changed();
}

void DelayMeasurement::record(JoinPlayer::Clock::time_point zero) {
    WaveRecorder &recorder = context_.platform.sound.recorder();
    recorder.setFileName(context_.places.delayRecording());
    recorder.startAt(zero);
    enter(Phase::Recording);
}

void DelayMeasurement::tick() {
    if (!isRunning()) {
        tmrMeasure_->setEnabled(false); // the program ends
        return;
    }
    ++ticks_;
    const RecorderStatus status = context_.platform.sound.recorder().status();
    if (const QString problem = problemOf(status); !problem.isEmpty()) {
        end(problem);
        return;
    }
    try {
        const auto zero = player_->zeroHeardAt();
        if (phase_ == Phase::Opening && status.isHeard) {
            play();
        } else if (phase_ == Phase::Waiting && zero && JoinPlayer::Clock::now() >= *zero) {
            record(*zero);
        } else if (phase_ == Phase::Recording && status.frames >= recordedFrames) {
            judge();
        }
    } catch (const RuntimeError &error) {
        end(tr("Meten lukt nu niet: %1.").arg(error.description()));
    }
}

QString DelayMeasurement::problemOf(const RecorderStatus &status) const {
    if (card() != card_ || status.deviceLost) {
        return tr("De opnamekaart is losgekoppeld. Er is niets veranderd.");
    }
    if (phase_ == Phase::Recording && (status.diskFull || status.diskFailed)) {
        return tr("De schijf is vol of geeft een fout. Er is niets veranderd.");
    }
    if (ticks_ < patienceTicks) {
        return {};
    }
    return phase_ == Phase::Waiting ? tr("De uitgang speelt niets. Er is niets veranderd.")
                                    : tr("De opnamekaart geeft geen geluid. Er is niets veranderd.");
}

/// Of one recording: where the probe lies in it.
void DelayMeasurement::judge() {
    player_->stop();
    context_.platform.sound.recorder().stop();
    std::vector<std::int16_t> recorded = samplesOf(context_.platform.audioFiles, context_.places.delayRecording());
    recorded.resize(std::min(recorded.size(), static_cast<std::size_t>(recordedFrames)));
    const ProbeSearch search = findProbe(recorded);
    if (highestOf(recorded) < heardPeak) {
        end(tr("De opnamekaart hoorde niets. Staan het volume van de uitgang en dat van de ingang open? Er is niets "
               "veranderd."));
    } else if (!search.isSure()) {
        end(tr("Het signaal is niet zeker genoeg herkend (%1 %). Verbind de uitgang met de ingang, of houd de "
               "microfoon "
               "tegen de koptelefoon, en maak het stil. Er is niets veranderd.")
                .arg(inWords(search.likeness * 100)));
    } else {
        delays_.push_back(static_cast<double>(search.at) / framesPerMs - static_cast<double>(probeAtMs));
        if (found() < times) {
            open();
        } else {
            keep();
        }
    }
}

void DelayMeasurement::keep() {
    std::sort(delays_.begin(), delays_.end());
    const QString spread =
        tr("%1 metingen, %2 tot %3 ms").arg(times).arg(inWords(delays_.front()), inWords(delays_.back()));
    if (delays_.back() - delays_.front() > mostSpreadMs) {
        end(tr("De metingen lopen te ver uiteen (%1). Er is niets veranderd.").arg(spread));
        return;
    }
    const double median = delays_.at(delays_.size() / 2);
    context_.delays.keep(card_, median);
    end(tr("De vertraging is %1 ms (%2). Meeluisteren rekent daar nu mee.").arg(inWords(median), spread));
}

void DelayMeasurement::playerEnded() {
    if (isRunning() && player_->brokeOff()) {
        end(tr("De uitgang is weg. Er is niets veranderd."));
    }
}

void DelayMeasurement::end(const QString &sentence) {
    tmrMeasure_->setEnabled(false);
    player_->stop();
    sentence_ = sentence;
    ignoringErrors([this] { context_.platform.sound.recorder().stop(); });
    for (const QString &file : {context_.places.delayProbe(), context_.places.delayRecording()}) {
        ignoringErrors([&] { context_.platform.files.remove(file); });
    }
    context_.session.measuringEnded();
    context_.changed();
}

} // namespace orvel
