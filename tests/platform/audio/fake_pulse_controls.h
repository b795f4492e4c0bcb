#pragma once

#include "platform/pulse/pulse_devices.h"
#include "platform/runtime_error.h"

namespace orvel::test {

/// A sound server with the cards that no test machine has: sources with ports. It does what it is asked.
class FakePulseControls : public PulseControls {
  public:
    PulseDevices all;

    [[nodiscard]] PulseDevices devices() const override { return all; }
    void setLevels(const QByteArray &source, const PulseLevels &levels) override { find(source).levels = levels; }
    void setSourceMute(const QByteArray &source, bool mute) override { find(source).isMuted = mute; }

    void setPort(const QByteArray &source, const QByteArray &port) override {
        PulseSource &found = find(source);
        for (std::size_t i = 0; i < found.ports.size(); ++i) {
            if (found.ports[i].name == port) {
                found.activePort = static_cast<int>(i);
                return;
            }
        }
        throw RuntimeError(ErrorNumber::DeviceError);
    }

    void setLatencyOffset(const QByteArray &card, const QByteArray &port, std::int64_t microseconds) override {
        for (PulseSource &source : all.sources) {
            for (PulsePort &other : source.ports) {
                if (source.cardName == card && other.name == port) {
                    other.latencyOffset = microseconds;
                }
            }
        }
    }

  private:
    PulseSource &find(const QByteArray &name) {
        for (PulseSource &source : all.sources) {
            if (source.name == name) {
                return source;
            }
        }
        throw RuntimeError(ErrorNumber::DeviceError);
    }
};

} // namespace orvel::test
