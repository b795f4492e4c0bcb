#include "platform/pulse/pulse_player.h"

#include "platform/runtime_error.h"

#include <algorithm>

namespace orvel {
namespace {

bool contains(const std::vector<PulseSink> &sinks, const QByteArray &name) {
    return std::any_of(sinks.begin(), sinks.end(), [&](const PulseSink &sink) { return sink.name == name; });
}

} // namespace

PulsePlayer::~PulsePlayer() {
    try {
        for (const PulseSink &sink : muted_) {
            server_.setMute(sink.name, sink.isMuted);
        }
    } catch (const RuntimeError &) {
        // The server is gone, and its outputs with it.
    }
}

void PulsePlayer::setOutputMute(bool mute) {
    std::vector<PulseSink> sinks = outputs();
    if (mute) {
        for (const PulseSink &sink : sinks) {
            if (!contains(muted_, sink.name)) {
                muted_.push_back(sink);
            }
            server_.setMute(sink.name, true);
        }
        return;
    }
    // The default output may be another one by now.
    std::copy_if(muted_.begin(), muted_.end(), std::back_inserter(sinks),
                 [&](const PulseSink &sink) { return !contains(sinks, sink.name); });
    muted_.clear();
    for (const PulseSink &sink : sinks) {
        server_.setMute(sink.name, false);
    }
}

std::vector<PulseSink> PulsePlayer::outputs() const {
    PulseDevices devices = server_.devices();
    const auto source = std::find_if(devices.sources.begin(), devices.sources.end(),
                                     [this](const PulseSource &s) { return s.name == source_; });
    const std::uint32_t card = source == devices.sources.end() ? kNoPulseCard : source->card;
    std::erase_if(devices.sinks, [&](const PulseSink &sink) {
        return sink.name != devices.defaultSink && (sink.card != card || card == kNoPulseCard);
    });
    return devices.sinks;
}

} // namespace orvel
