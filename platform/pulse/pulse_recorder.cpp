#include "platform/pulse/pulse_recorder.h"

#include "platform/runtime_error.h"

#include <algorithm>
#include <pulse/pulseaudio.h>
#include <thread>

namespace orvel {
namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

constexpr pa_sample_spec kTakeFormat{PA_SAMPLE_S16LE, kTakeRate, 1};
constexpr auto kFrameBytes = sizeof(std::int16_t);
/// Samples come in pieces of so many bytes, 20 ms: the meters are lively and little is on its way at stop.
constexpr std::uint32_t kPieceBytes = kTakeRate / 50 * kFrameBytes;
constexpr auto kOpenPatience = 3s;
/// No server holds back more than that: PulseAudio's longest latency is two seconds.
constexpr std::chrono::microseconds kMostHeld = 3s;
/// For samples to come over from the server, and for its estimate to be wrong.
constexpr auto kDrainMargin = 100ms;

std::int64_t framesIn(std::chrono::microseconds time) {
    return time.count() * kTakeRate / 1'000'000;
}

[[noreturn]] void throwDeviceError(const char *detail) {
    throw RuntimeError(ErrorNumber::DeviceError, {}, QString::fromUtf8(detail));
}

} // namespace

/// What the library calls, on its own thread with the server's lock held. No allocation, no lock, no log in here.
struct PulseRecorderCallbacks {
    static PulseRecorder &recorder(void *user) { return *static_cast<PulseRecorder *>(user); }

    static void state(pa_stream *stream, void *user) {
        if (!PA_STREAM_IS_GOOD(pa_stream_get_state(stream))) {
            recorder(user).lost_.store(true, std::memory_order_relaxed);
        }
        recorder(user).server_.wakeWaiters();
    }

    static void read(pa_stream * /*stream*/, std::size_t /*bytes*/, void *user) { recorder(user).takeSamples(); }

    static void suspended(pa_stream *stream, void *user) {
        recorder(user).sourceSuspended(pa_stream_is_suspended(stream) == 1);
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

void PulseRecorder::start() {
    if (stream_ != nullptr) {
        throwDeviceError("er loopt al een opname");
    }
    if (source_.isEmpty()) {
        source_ = cards_.key(device_ + 1); // it was not there yet when the number was set
    }
    if (source_.isEmpty()) {
        throwDeviceError("de geluidskaart is niet gevonden");
    }
    openStream(source_.toUtf8());
    try {
        writer_ = std::make_unique<TakeWriter>(path_);
    } catch (...) {
        closeStream();
        throw;
    }
    const PulseServer::Lock lock(server_);
    // Not earlier: they use the writer.
    pa_stream_set_read_callback(stream_, PulseRecorderCallbacks::read, this);
    pa_stream_set_suspended_callback(stream_, PulseRecorderCallbacks::suspended, this);
    if (pa_operation *operation = pa_stream_cork(stream_, 0, nullptr, nullptr)) {
        pa_operation_unref(operation);
    }
}

void PulseRecorder::openStream(const QByteArray &source) {
    const PulseServer::Lock lock(server_);
    lost_.store(false, std::memory_order_relaxed);
    received_.store(0, std::memory_order_relaxed);
    suspendedSince_.reset();
    stream_ = server_.isReady() ? pa_stream_new(server_.context(), "Opname", &kTakeFormat, nullptr) : nullptr;
    if (stream_ == nullptr) {
        throwDeviceError("de geluidsserver is weg");
    }
    pa_stream_set_state_callback(stream_, PulseRecorderCallbacks::state, this);
    constexpr auto kServersChoice = static_cast<std::uint32_t>(-1);
    const pa_buffer_attr buffer{kServersChoice, kServersChoice, kServersChoice, kServersChoice, kPieceBytes};
    // Silent until the file is there: a file that cannot be made loses nothing, a card that cannot record makes no
    // file.
    const auto flags = PA_STREAM_DONT_MOVE | PA_STREAM_START_CORKED | PA_STREAM_ADJUST_LATENCY;
    pa_stream_connect_record(stream_, source.constData(), &buffer, static_cast<pa_stream_flags_t>(flags));
    server_.waitUntil([this] { return pa_stream_get_state(stream_) != PA_STREAM_CREATING; }, kOpenPatience);
    if (pa_stream_get_state(stream_) != PA_STREAM_READY) {
        pa_stream *failed = std::exchange(stream_, nullptr);
        pa_stream_set_state_callback(failed, nullptr, nullptr);
        pa_stream_disconnect(failed);
        pa_stream_unref(failed);
        throwDeviceError("de geluidskaart kan niet opnemen");
    }
}

void PulseRecorder::closeStream() {
    if (stream_ == nullptr) {
        return;
    }
    const PulseServer::Lock lock(server_);
    pa_stream_set_state_callback(stream_, nullptr, nullptr);
    pa_stream_set_read_callback(stream_, nullptr, nullptr);
    pa_stream_set_suspended_callback(stream_, nullptr, nullptr);
    pa_stream_disconnect(stream_);
    pa_stream_unref(stream_);
    stream_ = nullptr;
}

void PulseRecorder::stop() {
    if (stream_ == nullptr) {
        return;
    }
    drain();
    closeStream();
    writer_->finish();
}

RecorderStatus PulseRecorder::status() {
    RecorderStatus status = writer_ ? writer_->status() : RecorderStatus();
    status.deviceLost = lost_.load(std::memory_order_relaxed);
    return status;
}

/// What was spoken until now is on its way for as long as the server says: goes on recording until it has come.
void PulseRecorder::drain() {
    const std::chrono::microseconds held = heldByServer();
    const std::int64_t wanted = received_.load(std::memory_order_relaxed) + framesIn(held);
    const Clock::time_point deadline = Clock::now() + held + kDrainMargin;
    while (received_.load(std::memory_order_relaxed) < wanted && !lost_.load(std::memory_order_relaxed) &&
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
    pa_operation_cancel(operation);
    pa_operation_unref(operation);
    pa_usec_t latency = 0;
    int isNegative = 0; // a monitor gives sound before it is heard
    if (pa_stream_get_latency(stream_, &latency, &isNegative) != 0 || isNegative != 0) {
        return 0us;
    }
    return std::min(std::chrono::microseconds(latency), kMostHeld);
}

void PulseRecorder::takeSamples() {
    const void *data = nullptr;
    std::size_t bytes = 0;
    while (pa_stream_readable_size(stream_) > 0 && pa_stream_peek(stream_, &data, &bytes) == 0 && bytes > 0) {
        const std::size_t frames = bytes / kFrameBytes;
        if (data != nullptr) {
            writer_->push(std::span(static_cast<const std::int16_t *>(data), frames));
        } else {
            writer_->pushHole(static_cast<std::int64_t>(frames));
        }
        received_.fetch_add(static_cast<std::int64_t>(frames), std::memory_order_relaxed);
        pa_stream_drop(stream_);
    }
}

/// A suspended source delivers nothing and says nothing about how long: the clock tells.
void PulseRecorder::sourceSuspended(bool suspended) {
    if (suspended == suspendedSince_.has_value()) {
        return;
    }
    if (suspended) {
        suspendedSince_ = Clock::now();
        writer_->countOverrun();
        return;
    }
    const auto away = std::chrono::duration_cast<std::chrono::microseconds>(Clock::now() - *suspendedSince_);
    suspendedSince_.reset();
    writer_->pushHole(framesIn(away));
}

} // namespace orvel
