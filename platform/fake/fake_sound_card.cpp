#include "platform/fake/fake_sound_card.h"

#include "platform/samples.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>
#include <utility>

namespace orvel {
namespace {

/// One second of the tone; 1000 Hz comes round after a whole second.
std::array<std::int16_t, kTakeRate> makeTone() {
    std::array<std::int16_t, kTakeRate> tone{};
    for (std::size_t i = 0; i < tone.size(); ++i) {
        tone[i] = static_cast<std::int16_t>(
            std::lrint(8192 * std::sin(2 * std::numbers::pi * 1000 * static_cast<double>(i) / kTakeRate)));
    }
    return tone;
}

} // namespace

void FakeRecorder::prepare() {
    if (!recording_ && !isOpen_) {
        ++prepared_;
        isOpen_ = true;
        unplugged_ = false;
    }
}

void FakeRecorder::start() {
    if (startFailure_) {
        const ErrorNumber number = *startFailure_;
        startFailure_.reset();
        throw RuntimeError(number, path_);
    }
    if (recording_) {
        throw RuntimeError(ErrorNumber::DeviceError, path_);
    }
    writer_.reset(); // the latest take's status lived until here
    writer_ = std::make_unique<TakeWriter>(path_, limits_, *storage_);
    takes_ << path_;
    startedAt_.reset();
    recording_ = true;
    isOpen_ = false;
    heardPeak_ = 0;
    unplugged_ = false;
}

void FakeRecorder::stop() {
    isOpen_ = false;
    if (recording_) {
        recording_ = false;
        writer_->finish();
    }
}

RecorderStatus FakeRecorder::status() {
    RecorderStatus status = writer_ ? writer_->status() : RecorderStatus();
    status.deviceLost = unplugged_ && writer_ != nullptr;
    status.peak = std::max(status.peak, static_cast<float>(std::exchange(heardPeak_, 0)) / 32768.0F);
    status.isHeard = std::exchange(isHeard_, false);
    return status;
}

void FakeRecorder::push(std::span<const std::int16_t> samples) {
    isHeard_ = isHeard_ || ((isOpen_ || recording_) && !unplugged_ && !samples.empty());
    if (isOpen_ && !unplugged_) {
        heardPeak_ = std::max(heardPeak_, highestOf(samples));
    }
    while (recording_ && !unplugged_ && !samples.empty()) {
        const auto part = samples.first(std::min(samples.size(), writer_->space()));
        writer_->push(part);
        samples = samples.subspan(part.size());
        if (!samples.empty()) {
            writer_->flush();
        }
    }
}

FakeSoundCard::FakeSoundCard()
    : FakeSoundCard({{QStringLiteral("mic"), QStringLiteral("Microfoon"), {QStringLiteral("Ingang")}}}) {}

FakeSoundCard::FakeSoundCard(std::vector<Card> cards)
    : plugged_(std::move(cards)), record_([this] { return plugged_; }, mixer_) {}

std::unique_ptr<WavePlayer> FakeSoundCard::makePlayer() {
    auto made = std::make_unique<FakeWavePlayer>();
    players_.push_back(made.get());
    return made;
}

std::unique_ptr<JoinPlayer> FakeSoundCard::makeJoinPlayer() {
    auto made = std::make_unique<FakeJoinPlayer>();
    joinPlayers_.push_back(made.get());
    return made;
}

void FakeSoundCard::deliver(std::int64_t frames) {
    static const std::array<std::int16_t, kTakeRate> kTone = makeTone();
    while (frames > 0) {
        const auto at = static_cast<std::size_t>(recorder_.toneAt_ % kTakeRate);
        const auto count = std::min(kTone.size() - at, static_cast<std::size_t>(frames));
        deliver(std::span(kTone).subspan(at, count));
        recorder_.toneAt_ += static_cast<std::int64_t>(count);
        frames -= static_cast<std::int64_t>(count);
    }
}

void FakeSoundCard::loseFrames(std::int64_t frames) {
    if (recorder_.recording_ && !recorder_.unplugged_) {
        recorder_.writer_->pushHole(frames);
    }
}

void FakeSoundCard::flush() {
    if (recorder_.recording_) {
        recorder_.writer_->flush();
    }
}

} // namespace orvel
