#include "platform/pulse/pulse_play_stream.h"

#include "platform/runtime_error.h"

#include <algorithm>
#include <cmath>
#include <pulse/pulseaudio.h>

namespace orvel {
namespace {

using namespace std::chrono_literals;

/// PulseAudio's longest latency is two seconds.
constexpr auto kMostUnheard = 2500ms;
/// Between what is heard and the first sample that a new volume can reach: what a card has already taken.
constexpr std::int64_t kMarginMs = 40;
constexpr std::int64_t kRampMs = 20;
/// Playing begins when so much waits, so that a slow disk does not stutter at once.
constexpr std::int64_t kBeginMs = 100;

} // namespace

/// What the library calls, on its own thread with the server's lock held.
struct PulsePlayStreamCallbacks {
    static PulsePlayStream &stream(void *user) { return *static_cast<PulsePlayStream *>(user); }

    static void state(pa_stream * /*stream*/, void *user) { stream(user).server_.wakeWaiters(); }

    static void write(pa_stream * /*stream*/, std::size_t /*bytes*/, void *user) { stream(user).server_.wakeWaiters(); }

    static void drained(pa_stream * /*stream*/, int /*success*/, void *user) {
        stream(user).drained_ = true;
        stream(user).server_.wakeWaiters();
    }
};

PulsePlayStream::PulsePlayStream(PulseServer &server, const QByteArray &output, const PlayFormat &format, float gain)
    : server_(server), rate_(format.sampleRate), channels_(format.channels),
      historyFrames_(2 * format.framesAhead + rate_ / 2),
      history_(static_cast<std::size_t>(historyFrames_ * channels_)), gainFrom_(gain), gainTo_(gain),
      peakFrames_(std::max<std::int64_t>(rate_ / 100, 1)),
      peaks_(static_cast<std::size_t>(historyFrames_ / peakFrames_ + 2)) {
    const PulseServer::Lock lock(server_);
    connect(output, format);
}

PulsePlayStream::~PulsePlayStream() {
    const PulseServer::Lock lock(server_);
    disconnect();
}

void PulsePlayStream::connect(const QByteArray &output, const PlayFormat &format) {
    const pa_sample_spec sampling{PA_SAMPLE_FLOAT32NE, static_cast<std::uint32_t>(rate_),
                                  static_cast<std::uint8_t>(std::min<std::int64_t>(channels_, UINT8_MAX))};
    pa_channel_map map{};
    if (pa_sample_spec_valid(&sampling) == 0 ||
        pa_channel_map_init_extend(&map, sampling.channels, PA_CHANNEL_MAP_WAVEEX) == nullptr) {
        throwDeviceError("dit geluid kan niet worden weergegeven");
    }
    stream_ = server_.isReady() ? pa_stream_new(server_.context(), "Weergave", &sampling, &map) : nullptr;
    if (stream_ == nullptr) {
        throwDeviceError("de geluidsserver is weg");
    }
    pa_stream_set_state_callback(stream_, PulsePlayStreamCallbacks::state, this);
    pa_stream_set_write_callback(stream_, PulsePlayStreamCallbacks::write, this);
    const auto bytes = [&](std::int64_t frames) {
        return static_cast<std::uint32_t>(frames) * static_cast<std::uint32_t>(pa_frame_size(&sampling));
    };
    constexpr auto kServersChoice = static_cast<std::uint32_t>(-1);
    const std::int64_t begin = std::min(format.framesAhead, rate_ * kBeginMs / 1000);
    const pa_buffer_attr buffer{kServersChoice, bytes(format.framesAhead), bytes(begin), kServersChoice,
                                kServersChoice};
    const auto flags = PA_STREAM_INTERPOLATE_TIMING | PA_STREAM_AUTO_TIMING_UPDATE | PA_STREAM_ADJUST_LATENCY |
                       (output.isEmpty() ? PA_STREAM_NOFLAGS : PA_STREAM_DONT_MOVE);
    const char *sink = output.isEmpty() ? nullptr : output.constData();
    const bool asked = pa_stream_connect_playback(stream_, sink, &buffer, static_cast<pa_stream_flags_t>(flags),
                                                  nullptr, nullptr) == 0;
    const auto answered = [&] { return pa_stream_get_state(stream_) != PA_STREAM_CREATING; };
    if (!asked || !server_.waitUntil(answered, kServerPatience) || !isUsable()) {
        disconnect();
        throwDeviceError("de geluidskaart kan niet afspelen");
    }
}

void PulsePlayStream::disconnect() {
    pa_stream_set_state_callback(stream_, nullptr, nullptr);
    pa_stream_set_write_callback(stream_, nullptr, nullptr);
    pa_stream_disconnect(stream_);
    pa_stream_unref(stream_);
    stream_ = nullptr;
}

bool PulsePlayStream::isUsable() const {
    return !aborted_ && pa_stream_get_state(stream_) == PA_STREAM_READY;
}

bool PulsePlayStream::write(std::span<const std::int16_t> samples) {
    const PulseServer::Lock lock(server_);
    while (isUsable() && !samples.empty()) {
        heardUntilNow(); // for the time when the stream breaks and nobody can be asked any more
        const std::int64_t frames = framesToSend(samples.size());
        if (frames == 0) {
            server_.wait();
            continue;
        }
        const auto count = static_cast<std::size_t>(frames * channels_);
        remember(samples.first(count));
        notePeaks(samples.first(count));
        written_ += frames;
        send(written_ - frames, 0);
        samples = samples.subspan(count);
    }
    return isUsable();
}

/// As much as the server has asked for, and half the history at most: none of it may be gone while it is sent.
std::int64_t PulsePlayStream::framesToSend(std::size_t samples) const {
    const std::size_t bytes = pa_stream_writable_size(stream_);
    const std::size_t frameBytes = static_cast<std::size_t>(channels_) * sizeof(float);
    const std::size_t wanted = bytes == static_cast<std::size_t>(-1) ? 0 : bytes / frameBytes;
    const auto frames = static_cast<std::int64_t>(std::min(samples / static_cast<std::size_t>(channels_), wanted));
    return std::min(frames, historyFrames_ / 2);
}

void PulsePlayStream::remember(std::span<const std::int16_t> samples) {
    const auto start = static_cast<std::size_t>(written_ % historyFrames_ * channels_);
    const std::size_t first = std::min(samples.size(), history_.size() - start);
    std::copy_n(samples.begin(), first, history_.begin() + static_cast<std::ptrdiff_t>(start));
    std::copy(samples.begin() + static_cast<std::ptrdiff_t>(first), samples.end(), history_.begin());
}

void PulsePlayStream::notePeaks(std::span<const std::int16_t> samples) {
    const auto blocks = static_cast<std::int64_t>(peaks_.size());
    std::int64_t frame = written_;
    for (std::size_t i = 0; i < samples.size(); i += static_cast<std::size_t>(channels_), ++frame) {
        StereoPeaks &peak = peaks_[static_cast<std::size_t>(frame / peakFrames_ % blocks)];
        if (frame % peakFrames_ == 0) {
            peak = {};
        }
        const float left = std::abs(static_cast<float>(samples[i])) / 32768;
        const float right = channels_ > 1 ? std::abs(static_cast<float>(samples[i + 1])) / 32768 : left;
        peak.left = std::max(peak.left, left);
        peak.right = std::max(peak.right, right);
    }
}

float PulsePlayStream::gainAt(std::int64_t frame) const {
    const float way =
        static_cast<float>(frame - rampStart_) / static_cast<float>(std::max(rate_ * kRampMs / 1000, INT64_C(1)));
    return gainFrom_ + (gainTo_ - gainFrom_) * std::clamp(way, 0.0F, 1.0F);
}

/// Sends frames out of the history, the last of which is the last one written. What the server has of them is replaced.
void PulsePlayStream::send(std::int64_t from, std::int64_t replaced) {
    outgoing_.clear();
    for (std::int64_t frame = from; frame < written_; ++frame) {
        const float gain = gainAt(frame) / 32768;
        const auto at = static_cast<std::size_t>(frame % historyFrames_ * channels_);
        for (std::size_t channel = 0; channel < static_cast<std::size_t>(channels_); ++channel) {
            outgoing_.push_back(static_cast<float>(history_[at + channel]) * gain);
        }
    }
    const std::int64_t back = replaced * channels_ * static_cast<std::int64_t>(sizeof(float));
    pa_stream_write(stream_, outgoing_.data(), outgoing_.size() * sizeof(float), nullptr, -back, PA_SEEK_RELATIVE);
}

bool PulsePlayStream::drain() {
    const PulseServer::Lock lock(server_);
    pa_operation *operation =
        isUsable() && written_ > 0 ? pa_stream_drain(stream_, PulsePlayStreamCallbacks::drained, this) : nullptr;
    while (operation != nullptr && isUsable() && !drained_) {
        heardUntilNow();
        server_.wait();
    }
    if (operation != nullptr) {
        pa_operation_cancel(operation);
        pa_operation_unref(operation);
    }
    // The server says so when the card has taken it all, which may be long before it is heard.
    const auto unheard = std::chrono::milliseconds((written_ - heardUntilNow()) * 1000 / rate_);
    server_.waitUntil([this] { return !isUsable(); },
                      std::clamp<std::chrono::milliseconds>(unheard, 0ms, kMostUnheard));
    if (!isUsable()) {
        return false;
    }
    heard_ = written_;
    return true;
}

void PulsePlayStream::abort() {
    const PulseServer::Lock lock(server_);
    aborted_ = true;
    server_.wakeWaiters();
}

bool PulsePlayStream::isAborted() const {
    const PulseServer::Lock lock(server_);
    return aborted_;
}

void PulsePlayStream::pause(bool paused) {
    const PulseServer::Lock lock(server_);
    if (pa_operation *operation = pa_stream_cork(stream_, paused ? 1 : 0, nullptr, nullptr)) {
        pa_operation_unref(operation);
    }
}

void PulsePlayStream::setGain(float gain) {
    const PulseServer::Lock lock(server_);
    const std::int64_t reachable =
        std::max({heardUntilNow() + rate_ * kMarginMs / 1000, rampStart_, written_ - historyFrames_});
    const std::int64_t from = std::min(reachable, written_);
    gainFrom_ = gainAt(from);
    gainTo_ = gain;
    rampStart_ = from;
    if (isUsable() && from < written_) {
        send(from, written_ - from);
    }
}

std::int64_t PulsePlayStream::heard() {
    const PulseServer::Lock lock(server_);
    return heardUntilNow();
}

std::optional<std::chrono::steady_clock::time_point> PulsePlayStream::beganAt() const {
    const PulseServer::Lock lock(server_);
    pa_usec_t time = 0;
    if (!isUsable() || pa_stream_get_time(stream_, &time) != 0 || time == 0) {
        return {};
    }
    return std::chrono::steady_clock::now() - std::chrono::microseconds(time);
}

std::int64_t PulsePlayStream::heardUntilNow() {
    pa_usec_t time = 0;
    if (pa_stream_get_state(stream_) == PA_STREAM_READY && pa_stream_get_time(stream_, &time) == 0) {
        const auto frames = static_cast<std::int64_t>(time * static_cast<pa_usec_t>(rate_) / PA_USEC_PER_SEC);
        heard_ = std::clamp(frames, heard_, written_);
    }
    return heard_;
}

StereoPeaks PulsePlayStream::peaks() {
    const PulseServer::Lock lock(server_);
    const auto blocks = static_cast<std::int64_t>(peaks_.size());
    const std::int64_t now = heardUntilNow() / peakFrames_;
    StereoPeaks highest;
    for (std::int64_t block = std::max(peakLooked_, written_ / peakFrames_ - blocks + 1); block < now; ++block) {
        const StereoPeaks &peak = peaks_[static_cast<std::size_t>(block % blocks)];
        highest.left = std::max(highest.left, peak.left);
        highest.right = std::max(highest.right, peak.right);
    }
    peakLooked_ = std::max(peakLooked_, now);
    return highest;
}

} // namespace orvel
