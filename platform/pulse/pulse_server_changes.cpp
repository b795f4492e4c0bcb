#include "platform/pulse/pulse_server.h"
#include "platform/runtime_error.h"

#include <algorithm>
#include <pulse/pulseaudio.h>

// What the server is asked to do, and its answers.

namespace orvel {
namespace {

using namespace std::chrono_literals;

/// How long it may take while somebody moves a slider.
constexpr auto kShortPatience = 1s;

} // namespace

struct PulseServer::Answer {
    PulseServer &server;
    bool isHere = false;
    bool isYes = false;

    /// Called by the library, on its own thread with the lock held.
    static void take(pa_context * /*context*/, int success, void *user) {
        auto &answer = *static_cast<Answer *>(user);
        answer.isHere = true;
        answer.isYes = success != 0;
        answer.server.wakeWaiters();
    }
};

void PulseServer::setMute(const QByteArray &sink, bool mute) {
    const Lock lock(*this);
    ask(
        [&](Answer &answer) {
            return pa_context_set_sink_mute_by_name(context_, sink.constData(), mute ? 1 : 0, Answer::take, &answer);
        },
        kServerPatience);
}

void PulseServer::setLevels(const QByteArray &source, const PulseLevels &levels) {
    pa_cvolume volumes{};
    volumes.channels = static_cast<std::uint8_t>(levels.volumes.size());
    std::copy(levels.volumes.begin(), levels.volumes.end(), volumes.values);
    change([&](Answer &answer) {
        return pa_context_set_source_volume_by_name(context_, source.constData(), &volumes, Answer::take, &answer);
    });
}

void PulseServer::setSourceMute(const QByteArray &source, bool mute) {
    change([&](Answer &answer) {
        return pa_context_set_source_mute_by_name(context_, source.constData(), mute ? 1 : 0, Answer::take, &answer);
    });
}

void PulseServer::setPort(const QByteArray &source, const QByteArray &port) {
    change([&](Answer &answer) {
        return pa_context_set_source_port_by_name(context_, source.constData(), port.constData(), Answer::take,
                                                  &answer);
    });
}

void PulseServer::setLatencyOffset(const QByteArray &card, const QByteArray &port, std::int64_t microseconds) {
    change([&](Answer &answer) {
        return pa_context_set_port_latency_offset(context_, card.constData(), port.constData(), microseconds,
                                                  Answer::take, &answer);
    });
}

bool PulseServer::ask(const Question &question, std::chrono::milliseconds patience) {
    Answer answer{*this};
    pa_operation *operation = isReady() ? question(answer) : nullptr;
    const auto over = [&] { return answer.isHere || pa_operation_get_state(operation) != PA_OPERATION_RUNNING; };
    const bool inTime = operation != nullptr && waitUntil(over, patience);
    if (operation != nullptr) {
        pa_operation_cancel(operation); // `answer` goes out of scope
        pa_operation_unref(operation);
    }
    if (!inTime || !isReady()) {
        throwDeviceError("de geluidsserver antwoordt niet");
    }
    return answer.isYes;
}

void PulseServer::change(const Question &question) {
    const Lock lock(*this);
    if (!ask(question, kShortPatience)) {
        throwDeviceError("de geluidskaart weigert");
    }
    askForDevices();
    waitUntil([this] { return !asking_; }, kShortPatience);
}

} // namespace orvel
