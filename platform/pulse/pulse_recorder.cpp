#include "platform/pulse/pulse_recorder.h"

#include "platform/runtime_error.h"
#include "platform/samples.h"

#include <algorithm>
#include <pulse/pulseaudio.h>
#include <thread>

namespace orvel {
namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

/// Samples come in pieces of so many frames, 20 ms: the meters are lively and little is on its way at stop.
constexpr std::uint32_t kPieceFrames = kTakeRate / 50;
/// A card that has just been opened brings its first samples after so long at most: an idle output without hardware
/// sleeps for two seconds.
constexpr std::chrono::milliseconds kWakePatience = 2300ms;
/// What of that a count-down does not leave, and all that a card gets which the server says is off.
constexpr std::chrono::milliseconds kFirstPatience = 300ms;
/// No server holds back more than that: PulseAudio's longest latency is two seconds.
constexpr std::chrono::microseconds kMostHeld = 3s;
/// No working source pauses longer, by the same rule.
constexpr auto kLongestPause = 3s;
/// How far a take's begin may be from its start: what is kept of the time before, and what may be left out after it.
constexpr auto kFarthestBegin = 1s;
/// For samples to come over from the server, and for its estimate to be wrong.
constexpr auto kDrainMargin = 100ms;

std::int64_t framesIn(std::chrono::microseconds time) {
    return time.count() * kTakeRate / 1'000'000;
}

pa_channel_map channelsOf(const PulseSource &source) {
    const std::vector<int> &positions = source.levels.positions;
    pa_channel_map map{};
    map.channels = static_cast<std::uint8_t>(positions.size());
    std::transform(positions.begin(), positions.end(), map.map,
                   [](int position) { return static_cast<pa_channel_position_t>(position); });
    return map;
}

} // namespace

/// What the library calls, on its own thread with the server's lock held. No allocation, no lock, no log in here.
struct PulseRecorderCallbacks {
    static PulseRecorder &recorder(void *user) { return *static_cast<PulseRecorder *>(user); }

    static void state(pa_stream * /*stream*/, void *user) { recorder(user).streamChanged(); }

    static void read(pa_stream * /*stream*/, std::size_t /*bytes*/, void *user) { recorder(user).takeSamples(); }

    static void suspended(pa_stream *stream, void *user) {
        recorder(user).sourceSuspended(pa_stream_is_suspended(stream) == 1);
        recorder(user).server_.wakeWaiters();
    }

    static void timing(pa_stream * /*stream*/, int /*success*/, void *user) { recorder(user).server_.wakeWaiters(); }
};

PulseRecorder::~PulseRecorder() {
    closeStream();
}

void PulseRecorder::setDevice(int device) {
    device_ = device;
    source_ = cards_.key(device + 1);
}

void PulseRecorder::prepare() {
    if (recording_) {
        return;
    }
    try {
        openStream();
    } catch (const RuntimeError &) {
        // start() tries again and tells.
    }
}

void PulseRecorder::begin(std::optional<Clock::time_point> moment) {
    if (recording_) {
        throwDeviceError("er loopt al een opname");
    }
    openStream();
    try {
        waitUntilReady();
        waitForSound();
        writer_ = std::make_unique<TakeWriter>(path_);
    } catch (...) {
        closeStream();
        throw;
    }
    const PulseServer::Lock lock(server_);
    received_.store(0, std::memory_order_relaxed);
    heardPeak_.store(0, std::memory_order_relaxed);
    takeLost_.store(streamLost_.load(std::memory_order_relaxed), std::memory_order_relaxed);
    suspendedSince_.reset();
    leaveOut_ = 0;
    if (moment) {
        beginAt(*moment);
    }
    take_.store(writer_.get(), std::memory_order_release);
    recording_ = true;
    receivedBefore_ = 0;
    receivedSince_ = Clock::now();
    stallTold_ = false;
}

/// What came at the moment and since goes into the take; or what comes before it is left out.
void PulseRecorder::beginAt(Clock::time_point moment) {
    const auto away = std::chrono::abs(moment - Clock::now());
    if (away > kFarthestBegin || !clock_.isKnown()) {
        return;
    }
    const std::int64_t first = clock_.frameAt(moment);
    leaveOut_ = std::max<std::int64_t>(first - streamFrames_, 0);
    const auto size = static_cast<std::int64_t>(history_.size());
    for (std::int64_t frame = std::max({first, streamFrames_ - size, INT64_C(0)}); frame < streamFrames_;) {
        const std::int64_t at = frame % size;
        const std::int64_t count = std::min(size - at, streamFrames_ - frame);
        writer_->push(std::span(history_).subspan(static_cast<std::size_t>(at), static_cast<std::size_t>(count)));
        received_.fetch_add(count, std::memory_order_relaxed);
        frame += count;
    }
}

/// A card can be there and bring nothing: switched off by the user, or dead. Then nobody may believe that it records.
void PulseRecorder::waitForSound() {
    const PulseServer::Lock lock(server_);
    const auto isOff = [this] { return pa_stream_is_suspended(stream_) == 1; };
    const auto isOver = [&] {
        const bool hasSound = soundAt_ && Clock::now() - *soundAt_ < kLongestPause;
        return streamLost_.load(std::memory_order_relaxed) || (hasSound && !isOff());
    };
    const auto open = std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - openedAt_);
    const auto more = std::max<std::chrono::milliseconds>(kWakePatience - kFirstPatience - open, 0ms);
    if (!server_.waitUntil(isOver, kFirstPatience) && (isOff() || !server_.waitUntil(isOver, more))) {
        throwDeviceError(isOff() ? "de geluidskaart is uitgezet" : "de geluidskaart geeft geen geluid");
    }
    if (streamLost_.load(std::memory_order_relaxed)) {
        throwDeviceError("de geluidskaart is weg");
    }
}

bool PulseRecorder::hasStreamOf(const QString &source) const {
    return stream_ != nullptr && streamSource_ == source && !streamLost_.load(std::memory_order_relaxed);
}

void PulseRecorder::openStream() {
    if (!device_) {
        source_ = cards_.key(cards_.currentDevice());
    } else if (source_.isEmpty()) {
        source_ = cards_.key(*device_ + 1); // it was not there yet when the number was set
    }
    if (source_.isEmpty()) {
        throwDeviceError("de geluidskaart is niet gevonden");
    }
    if (!hasStreamOf(source_)) {
        closeStream();
        const PulseDevices devices = server_.devices();
        const PulseSource *source = devices.source(source_.toUtf8());
        if (source == nullptr) {
            throwDeviceError("de geluidskaart is weg");
        }
        connectStream(*source);
    }
}

/// Asks for the source's own channels: how servers make one of two differs, and PipeWire's way is 3 dB too loud. Asks
/// for floating point: what the server's change of rate makes louder than full scale is still there when channels are
/// mixed.
void PulseRecorder::connectStream(const PulseSource &source) {
    const PulseServer::Lock lock(server_);
    streamLost_.store(false, std::memory_order_relaxed);
    soundAt_.reset();
    clock_ = {};
    streamFrames_ = 0;
    const pa_channel_map map = channelsOf(source);
    const pa_sample_spec format{PA_SAMPLE_FLOAT32NE, kTakeRate, map.channels};
    pa_stream *stream = server_.isReady() ? pa_stream_new(server_.context(), "Opname", &format, &map) : nullptr;
    if (stream == nullptr) {
        throwDeviceError("de geluidskaart kan niet opnemen");
    }
    stream_ = stream;
    streamSource_ = QString::fromUtf8(source.name);
    channels_ = map.channels;
    pa_stream_set_state_callback(stream, PulseRecorderCallbacks::state, this);
    pa_stream_set_read_callback(stream, PulseRecorderCallbacks::read, this);
    pa_stream_set_suspended_callback(stream, PulseRecorderCallbacks::suspended, this);
    constexpr auto kServersChoice = static_cast<std::uint32_t>(-1);
    const pa_buffer_attr buffer{kServersChoice, kServersChoice, kServersChoice, kServersChoice,
                                static_cast<std::uint32_t>(kPieceFrames * pa_frame_size(&format))};
    const auto flags = static_cast<pa_stream_flags_t>(PA_STREAM_DONT_MOVE | PA_STREAM_ADJUST_LATENCY |
                                                      PA_STREAM_AUTO_TIMING_UPDATE | PA_STREAM_INTERPOLATE_TIMING);
    const bool asked = pa_stream_connect_record(stream, source.name.constData(), &buffer, flags) == 0;
    if (!asked) {
        dropStream();
        throwDeviceError("de geluidskaart kan niet opnemen");
    }
    openedAt_ = Clock::now();
}

/// A stream that was only asked for says later whether there is one.
void PulseRecorder::waitUntilReady() {
    const PulseServer::Lock lock(server_);
    const auto answered = [&] { return pa_stream_get_state(stream_) != PA_STREAM_CREATING; };
    if (!server_.waitUntil(answered, kServerPatience) || pa_stream_get_state(stream_) != PA_STREAM_READY) {
        throwDeviceError("de geluidskaart kan niet opnemen");
    }
}

void PulseRecorder::closeStream() {
    if (stream_ != nullptr) {
        const PulseServer::Lock lock(server_);
        dropStream();
    }
}

void PulseRecorder::dropStream() {
    take_.store(nullptr, std::memory_order_relaxed);
    pa_stream_set_state_callback(stream_, nullptr, nullptr);
    pa_stream_set_read_callback(stream_, nullptr, nullptr);
    pa_stream_set_suspended_callback(stream_, nullptr, nullptr);
    pa_stream_disconnect(stream_);
    pa_stream_unref(stream_);
    stream_ = nullptr;
}

void PulseRecorder::stop() {
    if (!recording_) {
        closeStream();
        return;
    }
    recording_ = false;
    drain();
    closeStream();
    writer_->finish();
}

RecorderStatus PulseRecorder::status() {
    tellStall();
    RecorderStatus status = writer_ ? writer_->status() : RecorderStatus();
    status.deviceLost = takeLost_.load(std::memory_order_relaxed);
    const int heard = heardPeak_.exchange(0, std::memory_order_relaxed);
    status.peak = std::max(status.peak, static_cast<float>(heard) / 32768.0F);
    status.isHeard = isHeard_.exchange(false, std::memory_order_relaxed);
    return status;
}

/// A server that hangs says nothing, not even that. Counted as an overrun, once each time.
void PulseRecorder::tellStall() {
    const std::int64_t received = received_.load(std::memory_order_relaxed);
    if (!recording_ || received != receivedBefore_) {
        receivedBefore_ = received;
        receivedSince_ = Clock::now();
        stallTold_ = false;
    } else if (!stallTold_ && Clock::now() - receivedSince_ > kLongestPause) {
        stallTold_ = true;
        writer_->countOverrun();
    }
}

/// What was spoken until now is on its way for as long as the server says: goes on recording until it has come.
void PulseRecorder::drain() {
    const std::chrono::microseconds held = heldByServer();
    const std::int64_t wanted = received_.load(std::memory_order_relaxed) + framesIn(held);
    const Clock::time_point deadline = Clock::now() + held + kDrainMargin;
    while (received_.load(std::memory_order_relaxed) < wanted && !streamLost_.load(std::memory_order_relaxed) &&
           Clock::now() < deadline) {
        std::this_thread::sleep_for(2ms);
    }
}

std::chrono::microseconds PulseRecorder::heldByServer() {
    const PulseServer::Lock lock(server_);
    pa_operation *operation = pa_stream_update_timing_info(stream_, PulseRecorderCallbacks::timing, this);
    if (operation == nullptr) {
        return 0us;
    }
    server_.waitUntil([&] { return pa_operation_get_state(operation) != PA_OPERATION_RUNNING; }, 300ms);
    const bool isAnswered = pa_operation_get_state(operation) == PA_OPERATION_DONE;
    pa_operation_cancel(operation);
    pa_operation_unref(operation);
    if (!isAnswered) {
        return 0us; // a server that hangs brings nothing more, however much it holds
    }
    pa_usec_t latency = 0;
    int isNegative = 0; // a monitor gives sound before it is heard
    if (pa_stream_get_latency(stream_, &latency, &isNegative) != 0 || isNegative != 0) {
        return 0us;
    }
    return std::min(std::chrono::microseconds(latency), kMostHeld);
}

void PulseRecorder::streamChanged() {
    if (!PA_STREAM_IS_GOOD(pa_stream_get_state(stream_))) {
        streamLost_.store(true, std::memory_order_relaxed);
        takeLost_.store(take_.load(std::memory_order_relaxed) != nullptr, std::memory_order_relaxed);
    }
    server_.wakeWaiters();
}

void PulseRecorder::takeSamples() {
    const void *data = nullptr;
    std::size_t bytes = 0;
    noteTime();
    while (pa_stream_readable_size(stream_) > 0 && pa_stream_peek(stream_, &data, &bytes) == 0 && bytes > 0) {
        const std::size_t samples = bytes / sizeof(float);
        if (data != nullptr) {
            pushMixed(std::span(static_cast<const float *>(data), samples));
        } else {
            pushSilence(static_cast<std::int64_t>(samples / channels_));
        }
        isHeard_.store(true, std::memory_order_relaxed);
        pa_stream_drop(stream_);
        if (!soundAt_) {
            server_.wakeWaiters();
        }
        soundAt_ = Clock::now();
    }
}

void PulseRecorder::noteTime() {
    pa_usec_t delay = 0;
    int isNegative = 0; // a monitor gives sound before it is heard
    if (pa_stream_get_latency(stream_, &delay, &isNegative) == 0) {
        const auto age = std::chrono::microseconds(delay);
        clock_.note(streamFrames_, isNegative == 0 ? Clock::now() - age : Clock::now() + age);
    }
}

void PulseRecorder::pushMixed(std::span<const float> samples) {
    while (samples.size() >= channels_) {
        const std::span<std::int16_t> mono = std::span(mono_).first(std::min(mono_.size(), samples.size() / channels_));
        mixToMono(samples, channels_, mono);
        push(mono);
        samples = samples.subspan(mono.size() * channels_);
    }
}

/// The level of what is no take.
void PulseRecorder::hear(std::span<const std::int16_t> samples) {
    const int highest = highestOf(samples);
    // Only status() lowers it, and a level that comes at that moment counts for the next look.
    if (highest > heardPeak_.load(std::memory_order_relaxed)) {
        heardPeak_.store(highest, std::memory_order_relaxed);
    }
}

/// The server lost something. What lies before the take is not worth telling.
void PulseRecorder::pushSilence(std::int64_t frames) {
    TakeWriter *take = take_.load(std::memory_order_acquire);
    const std::int64_t before = std::min(leaveOut_, frames);
    leaveOut_ -= before;
    if (take != nullptr) {
        take->pushHole(frames - before);
        received_.fetch_add(frames - before, std::memory_order_relaxed);
    }
    std::fill(history_.begin(), history_.end(), std::int16_t{0});
    streamFrames_ += frames;
}

/// Into the take, or where the latest second is kept as long as there is none.
void PulseRecorder::push(std::span<const std::int16_t> mono) {
    TakeWriter *take = take_.load(std::memory_order_acquire);
    for (std::size_t i = 0; take == nullptr && i < mono.size(); ++i) {
        history_[(static_cast<std::size_t>(streamFrames_) + i) % history_.size()] = mono[i];
    }
    streamFrames_ += static_cast<std::int64_t>(mono.size());
    if (take == nullptr) {
        hear(mono);
    } else {
        const std::int64_t before = std::min(leaveOut_, static_cast<std::int64_t>(mono.size()));
        leaveOut_ -= before;
        take->push(mono.subspan(static_cast<std::size_t>(before)));
        received_.fetch_add(static_cast<std::int64_t>(mono.size()) - before, std::memory_order_relaxed);
    }
}

/// A suspended source delivers nothing and says nothing about how long: the clock tells.
void PulseRecorder::sourceSuspended(bool suspended) {
    TakeWriter *take = take_.load(std::memory_order_acquire);
    if (take == nullptr || suspended == suspendedSince_.has_value()) {
        return;
    }
    if (suspended) {
        suspendedSince_ = Clock::now();
        take->countOverrun();
        return;
    }
    const auto away = std::chrono::duration_cast<std::chrono::microseconds>(Clock::now() - *suspendedSince_);
    suspendedSince_.reset();
    take->pushHole(framesIn(away));
}

} // namespace orvel
