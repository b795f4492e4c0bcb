#include "platform/pulse/pulse_wave_player.h"

#include "platform/pulse/pulse_gain.h"
#include "platform/runtime_error.h"

#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <limits>

namespace orvel {
namespace {

constexpr int kStopped = 1;
constexpr int kPaused = 7;
constexpr std::int64_t kLeastAheadMs = 20;
constexpr std::int64_t kMostAheadMs = 2000;

[[noreturn]] void throwCannotOpen(const QString &path) {
    const QFileInfo file(path);
    if (!file.exists()) {
        throw RuntimeError(ErrorNumber::FileNotFound, path);
    }
    const bool isForbidden = file.isFile() && !QFile(path).open(QIODevice::ReadOnly);
    throw RuntimeError(isForbidden ? ErrorNumber::PermissionDenied : ErrorNumber::DeviceError, path);
}

} // namespace

PulseWavePlayer::~PulseWavePlayer() {
    endRun();
}

void PulseWavePlayer::setFileName(const QString &path) {
    close();
    const auto file = std::make_shared<SndfileReader>();
    // A name of its own: the file goes on another thread.
    openFile_(path, [file, own = QString(path.constData(), path.size())] {
        file->open(own);
        if (file->errorState() < 0) {
            throwCannotOpen(own);
        }
    });
    reader_ = std::make_unique<PatientReader>(file);
}

void PulseWavePlayer::start() {
    if (!reader_ || state() == playing) {
        return;
    }
    if (mode_ == Mode::Paused) {
        resume();
        return;
    }
    endRun();
    if (isAtEnd_ || from_ >= reader_->frames()) {
        from_ = 0;
    }
    begin();
}

/// Opens a stream and plays into it from from_ on.
void PulseWavePlayer::begin() {
    mode_ = Mode::Stopped; // should there be no output
    isAtEnd_ = false;
    stream_ = std::make_unique<PulsePlayStream>(server_, outputName(), format(), gain_);
    mode_ = Mode::Playing;
    state_.store(Run::Playing, std::memory_order_relaxed);
    thread_ = std::thread([this, run = ++run_, from = from_] { feed(run, from); });
}

/// Where the file is heard now becomes the place where the next stream begins.
void PulseWavePlayer::endRun() {
    if (!stream_) {
        return;
    }
    stream_->abort();
    reader_->interrupt();
    thread_.join();
    reader_->resume();
    from_ = heard();
    isAtEnd_ = state_.load(std::memory_order_relaxed) == Run::Heard;
    stream_.reset();
}

void PulseWavePlayer::feed(std::uint64_t run, std::int64_t from) {
    const bool isWhole = decode(from);
    const bool isHeard = stream_->drain();
    if (stream_->isAborted()) {
        return; // the window's thread knows
    }
    state_.store(isWhole && isHeard ? Run::Heard : Run::Broken, std::memory_order_release);
    QMetaObject::invokeMethod(
        &window_, [this, run] { tellEnd(run); }, Qt::QueuedConnection);
}

/// False when the stream or the file broke off; what was read of the file before is still heard.
bool PulseWavePlayer::decode(std::int64_t from) {
    try {
        if (from > 0) {
            reader_->seek(from);
        } else if (hasBeenRead_) {
            reader_->seek(0);
        }
        hasBeenRead_ = true;
        for (QByteArray block = reader_->readBlock(); !block.isEmpty(); block = reader_->readBlock()) {
            const auto *samples = reinterpret_cast<const std::int16_t *>(block.constData());
            if (!stream_->write({samples, static_cast<std::size_t>(block.size()) / sizeof(std::int16_t)})) {
                return false;
            }
        }
        return true;
    } catch (const RuntimeError &) {
        return false;
    }
}

void PulseWavePlayer::tellEnd(std::uint64_t run) {
    if (run != run_) {
        return;
    }
    endRun();
    mode_ = Mode::Stopped;
    if (const auto handler = ended_) { // a copy: the handler may set another one
        handler();
    }
}

void PulseWavePlayer::pause() {
    if (state() == playing) {
        stream_->pause(true);
        mode_ = Mode::Paused;
    }
}

void PulseWavePlayer::resume() {
    if (state() != kPaused) {
        return;
    }
    if (stream_) {
        stream_->pause(false);
        mode_ = Mode::Playing;
    } else {
        begin();
    }
}

void PulseWavePlayer::stop() {
    ++run_;
    endRun();
    mode_ = Mode::Stopped;
    isAtEnd_ = false;
    from_ = 0;
}

void PulseWavePlayer::close() {
    stop();
    reader_.reset();
    hasBeenRead_ = false;
}

int PulseWavePlayer::state() const {
    if (mode_ == Mode::Stopped || state_.load(std::memory_order_acquire) != Run::Playing) {
        return kStopped;
    }
    return mode_ == Mode::Playing ? playing : kPaused;
}

void PulseWavePlayer::setPosition(std::int32_t milliseconds) {
    if (!reader_) {
        return;
    }
    const int before = state();
    endRun();
    const std::int64_t frame = std::max<std::int64_t>(milliseconds, 0) * reader_->sampleRate() / 1000;
    from_ = std::min(frame, reader_->frames());
    isAtEnd_ = false;
    mode_ = before == kPaused ? Mode::Paused : Mode::Stopped;
    if (before == playing) {
        begin();
    }
}

std::int32_t PulseWavePlayer::position() const {
    return inMilliseconds(heard());
}

std::int32_t PulseWavePlayer::length() const {
    return reader_ ? inMilliseconds(reader_->frames()) : 0;
}

std::int64_t PulseWavePlayer::heard() const {
    if (!stream_) {
        return from_;
    }
    return std::min(from_ + stream_->heard(), reader_->frames());
}

std::int32_t PulseWavePlayer::inMilliseconds(std::int64_t frames) const {
    const std::int64_t milliseconds = reader_ ? frames * 1000 / reader_->sampleRate() : 0;
    return static_cast<std::int32_t>(std::min<std::int64_t>(milliseconds, std::numeric_limits<std::int32_t>::max()));
}

void PulseWavePlayer::setVolume(int volume) {
    gain_ = gainOfVolume(volume);
    if (stream_) {
        stream_->setGain(gain_);
    }
}

StereoPeaks PulseWavePlayer::peaks() {
    return stream_ ? stream_->peaks() : StereoPeaks();
}

QByteArray PulseWavePlayer::outputName() const {
    const std::vector<PulseSink> sinks = server_.devices().sinks;
    const bool isThere = settings_.device >= 0 && static_cast<std::size_t>(settings_.device) < sinks.size();
    return isThere ? sinks[static_cast<std::size_t>(settings_.device)].name : QByteArray();
}

PlayFormat PulseWavePlayer::format() const {
    const bool makesSense = settings_.bufferSize > 0 && settings_.buffers > 0;
    const PlayerSettings buffers = makesSense ? settings_ : PlayerSettings();
    const std::int64_t rate = reader_->sampleRate();
    const std::int64_t ahead = std::clamp(std::int64_t{buffers.bufferSize} * buffers.buffers,
                                          rate * kLeastAheadMs / 1000, rate * kMostAheadMs / 1000);
    return {reader_->sampleRate(), reader_->channels(), ahead};
}

} // namespace orvel
