#include "platform/pulse/pulse_server.h"

#include "platform/runtime_error.h"

#include <algorithm>
#include <pulse/pulseaudio.h>
#include <span>

namespace orvel {
namespace {

using namespace std::chrono_literals;

QString describe(const char *description, const char *name) {
    return QString::fromUtf8(description != nullptr ? description : name);
}

PulseLevels levelsOf(const pa_source_info &info) {
    PulseLevels levels;
    levels.volumes.assign(info.volume.values, info.volume.values + info.volume.channels);
    levels.positions.assign(info.channel_map.map, info.channel_map.map + info.channel_map.channels);
    return levels;
}

PulseSource fromInfo(const pa_source_info &info) {
    PulseSource source;
    source.name = info.name;
    source.description = describe(info.description, info.name);
    source.card = info.card;
    source.alsaCard = pa_proplist_gets(info.proplist, "alsa.card");
    source.isMonitor = info.monitor_of_sink != PA_INVALID_INDEX;
    source.isMuted = info.mute != 0;
    source.levels = levelsOf(info);
    for (const pa_source_port_info *port : std::span(info.ports, info.n_ports)) {
        if (port == info.active_port) {
            source.activePort = static_cast<int>(source.ports.size());
        }
        source.ports.push_back({port->name, describe(port->description, port->name)});
    }
    return source;
}

/// Nothing to do with an operation but to let it run.
void letRun(pa_operation *operation) {
    if (operation != nullptr) {
        pa_operation_unref(operation);
    }
}

} // namespace

void throwDeviceError(const char *detail) {
    throw RuntimeError(ErrorNumber::DeviceError, {}, QString::fromUtf8(detail));
}

/// What the library calls, on its own thread with the lock held.
struct PulseServerCallbacks {
    static PulseServer &server(void *user) { return *static_cast<PulseServer *>(user); }

    static void contextState(pa_context * /*context*/, void *user) { server(user).stateChanged(); }

    static void changed(pa_context * /*context*/, pa_subscription_event_type_t /*type*/, std::uint32_t /*index*/,
                        void *user) {
        server(user).askForDevices();
    }

    static void serverInfo(pa_context * /*context*/, const pa_server_info *info, void *user) {
        if (info != nullptr && info->default_sink_name != nullptr) {
            server(user).arriving_.defaultSink = info->default_sink_name;
        }
    }

    static void card(pa_context * /*context*/, const pa_card_info *info, int end, void *user) {
        if (end != 0) {
            return;
        }
        server(user).cardNames_[info->index] = info->name;
        for (const pa_card_port_info *port : std::span(info->ports, info->n_ports)) {
            server(user).offsets_[{info->index, port->name}] = port->latency_offset;
        }
    }

    static void source(pa_context * /*context*/, const pa_source_info *info, int end, void *user) {
        if (end == 0) {
            server(user).arriving_.sources.push_back(fromInfo(*info));
        }
    }

    static void sink(pa_context * /*context*/, const pa_sink_info *info, int end, void *user) {
        if (end == 0) {
            server(user).arriving_.sinks.push_back(
                {info->name, describe(info->description, info->name), info->card, info->mute != 0});
        } else {
            server(user).devicesComplete(); // answers come in the order of the questions: this one was the last
        }
    }

    static void timeout(pa_mainloop_api * /*api*/, pa_time_event * /*event*/, const timeval * /*when*/, void *user) {
        auto &expired = *static_cast<std::pair<PulseServer *, bool> *>(user);
        expired.second = true;
        expired.first->wakeWaiters();
    }
};

PulseServer::Lock::Lock(const PulseServer &server) : loop_(server.loop_) {
    pa_threaded_mainloop_lock(loop_);
}
PulseServer::Lock::~Lock() {
    pa_threaded_mainloop_unlock(loop_);
}

PulseServer::PulseServer() : loop_(pa_threaded_mainloop_new()) {
    pa_threaded_mainloop_set_name(loop_, "orvel-sound");
    pa_threaded_mainloop_start(loop_);
    const Lock lock(*this);
    connect();
    waitUntil([this] { return known_ || !PA_CONTEXT_IS_GOOD(pa_context_get_state(context_)); }, kServerPatience);
}

PulseServer::~PulseServer() {
    {
        const Lock lock(*this);
        disconnect();
    }
    pa_threaded_mainloop_stop(loop_);
    pa_threaded_mainloop_free(loop_);
}

PulseDevices PulseServer::devices() const {
    const Lock lock(*this);
    return devices_;
}

void PulseServer::retry() {
    const Lock lock(*this);
    const bool gone = !PA_CONTEXT_IS_GOOD(pa_context_get_state(context_));
    if (gone && std::chrono::steady_clock::now() - lastAttempt_ >= 1s) {
        disconnect();
        connect();
    }
}

bool PulseServer::isReady() const {
    return pa_context_get_state(context_) == PA_CONTEXT_READY;
}

bool PulseServer::waitUntil(const std::function<bool()> &done, std::chrono::milliseconds longest) {
    std::pair<PulseServer *, bool> expired(this, false);
    const pa_usec_t until = pa_rtclock_now() + static_cast<pa_usec_t>(longest.count()) * PA_USEC_PER_MSEC;
    pa_time_event *alarm = pa_context_rttime_new(context_, until, PulseServerCallbacks::timeout, &expired);
    while (!done() && !expired.second) {
        pa_threaded_mainloop_wait(loop_);
    }
    pa_threaded_mainloop_get_api(loop_)->time_free(alarm);
    return done();
}

void PulseServer::wait() {
    pa_threaded_mainloop_wait(loop_);
}

void PulseServer::wakeWaiters() {
    pa_threaded_mainloop_signal(loop_, 0);
}

void PulseServer::connect() {
    lastAttempt_ = std::chrono::steady_clock::now();
    pa_proplist *properties = pa_proplist_new();
    pa_proplist_sets(properties, PA_PROP_APPLICATION_NAME, "ORVEL");
    pa_proplist_sets(properties, PA_PROP_MEDIA_ROLE, "production");
    context_ = pa_context_new_with_proplist(pa_threaded_mainloop_get_api(loop_), "ORVEL", properties);
    pa_proplist_free(properties);
    pa_context_set_state_callback(context_, PulseServerCallbacks::contextState, this);
    pa_context_set_subscribe_callback(context_, PulseServerCallbacks::changed, this);
    // A failure at once is the state that everybody looks at.
    pa_context_connect(context_, nullptr, PA_CONTEXT_NOFLAGS, nullptr);
}

void PulseServer::disconnect() {
    pa_context_set_state_callback(context_, nullptr, nullptr);
    pa_context_set_subscribe_callback(context_, nullptr, nullptr);
    pa_context_disconnect(context_);
    pa_context_unref(context_);
    context_ = nullptr;
    asking_ = false;
}

void PulseServer::stateChanged() {
    if (isReady()) {
        const auto what = PA_SUBSCRIPTION_MASK_SOURCE | PA_SUBSCRIPTION_MASK_SINK | PA_SUBSCRIPTION_MASK_SERVER |
                          PA_SUBSCRIPTION_MASK_CARD;
        letRun(pa_context_subscribe(context_, static_cast<pa_subscription_mask_t>(what), nullptr, nullptr));
        askForDevices();
    } else if (!PA_CONTEXT_IS_GOOD(pa_context_get_state(context_))) {
        devices_ = {};
        asking_ = false;
        known_ = false;
    }
    wakeWaiters();
}

void PulseServer::askForDevices() {
    askAgain_ = asking_;
    if (asking_) {
        return;
    }
    asking_ = true;
    arriving_ = {};
    cardNames_.clear();
    offsets_.clear();
    letRun(pa_context_get_server_info(context_, PulseServerCallbacks::serverInfo, this));
    letRun(pa_context_get_card_info_list(context_, PulseServerCallbacks::card, this));
    letRun(pa_context_get_source_info_list(context_, PulseServerCallbacks::source, this));
    letRun(pa_context_get_sink_info_list(context_, PulseServerCallbacks::sink, this));
}

void PulseServer::devicesComplete() {
    const auto byName = [](const auto &a, const auto &b) { return a.name < b.name; };
    std::sort(arriving_.sources.begin(), arriving_.sources.end(), byName);
    std::sort(arriving_.sinks.begin(), arriving_.sinks.end(), byName);
    for (PulseSource &source : arriving_.sources) {
        const auto card = cardNames_.find(source.card);
        source.cardName = card == cardNames_.end() ? QByteArray() : card->second;
        for (PulsePort &port : source.ports) {
            const auto offset = offsets_.find({source.card, port.name});
            port.latencyOffset = offset == offsets_.end() ? std::nullopt : std::optional(offset->second);
        }
    }
    devices_ = std::move(arriving_);
    known_ = true;
    asking_ = false;
    wakeWaiters();
    if (askAgain_) {
        askForDevices();
    }
}

} // namespace orvel
