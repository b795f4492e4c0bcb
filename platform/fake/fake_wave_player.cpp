#include "platform/fake/fake_wave_player.h"

#include "platform/runtime_error.h"
#include "platform/sndfile/sndfile_reader.h"

#include <QFileInfo>

#include <algorithm>

namespace orvel {

namespace {

constexpr int stoppedState = 1;
constexpr int pausedState = 7;

} // namespace

void FakeWavePlayer::setFileName(const QString &path) {
    close();
    if (!QFileInfo::exists(path)) {
        throw RuntimeError(ErrorNumber::FileNotFound, path);
    }
    SndfileReader reader;
    reader.open(path);
    if (reader.errorState() < 0) {
        throw RuntimeError(ErrorNumber::DeviceError, path);
    }
    length_ = static_cast<std::int32_t>(reader.frames() * 1000 / reader.sampleRate());
    file_ = path;
    state_ = stoppedState;
}

void FakeWavePlayer::start() {
    if (failsNextStart_) {
        failsNextStart_ = false;
        throw RuntimeError(ErrorNumber::DeviceError, file_);
    }
    if (file_.isEmpty()) {
        return;
    }
    ++starts_;
    brokeOff_ = false;
    state_ = playing;
    position_ = position_ >= length_ ? 0 : position_;
}

void FakeWavePlayer::pause() {
    state_ = state_ == playing ? pausedState : state_;
}

void FakeWavePlayer::resume() {
    state_ = state_ == pausedState ? playing : state_;
}

void FakeWavePlayer::stop() {
    state_ = stoppedState;
    position_ = 0;
}

void FakeWavePlayer::close() {
    stop();
    file_.clear();
    length_ = 0;
}

void FakeWavePlayer::setPosition(std::int32_t milliseconds) {
    position_ = std::clamp(milliseconds, 0, length_);
}

void FakeWavePlayer::play(std::int32_t milliseconds) {
    if (state_ != playing) {
        return;
    }
    position_ = std::min(position_ + milliseconds, length_);
    if (position_ == length_) {
        state_ = stoppedState;
        if (ended_) {
            ended_();
        }
    }
}

void FakeWavePlayer::breakOff() {
    brokeOff_ = true;
    state_ = stoppedState;
    if (ended_) {
        ended_();
    }
}

void FakeWavePlayer::reachEndSilently() {
    position_ = length_;
    state_ = stoppedState;
}

} // namespace orvel
