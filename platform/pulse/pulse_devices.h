#pragma once

#include "platform/pulse/pulse_levels.h"

#include <QByteArray>
#include <QString>

#include <cstdint>
#include <optional>
#include <vector>

namespace orvel {

/// The server's number for a device that belongs to no card, a virtual one for instance.
constexpr std::uint32_t kNoPulseCard = UINT32_MAX;

/// One input of a source: a microphone socket, a line.
struct PulsePort {
    QByteArray name;
    QString description;
    std::optional<std::int64_t> latencyOffset = {}; ///< microseconds that its sound is moved by; of a card's ports
};

/// What records, as the server describes it.
struct PulseSource {
    QByteArray name;
    QString description;
    std::vector<PulsePort> ports;
    int activePort = 0; ///< position in ports
    std::uint32_t card = kNoPulseCard;
    QByteArray cardName; ///< empty without a card
    QByteArray alsaCard; ///< the number of the card in ALSA; empty when it is none of ALSA's
    bool isMonitor = false;
    bool isMuted = false;
    PulseLevels levels;
};

/// What plays.
struct PulseSink {
    QByteArray name;
    QString description;
    std::uint32_t card = kNoPulseCard;
    bool isMuted = false;
};

struct PulseDevices {
    std::vector<PulseSource> sources; ///< by name: plugging one leaves the order of the rest
    std::vector<PulseSink> sinks;     ///< by name
    QByteArray defaultSink;

    /// Null when there is none of this name.
    [[nodiscard]] const PulseSource *source(const QByteArray &name) const {
        for (const PulseSource &source : sources) {
            if (source.name == name) {
                return &source;
            }
        }
        return nullptr;
    }
};

/// What the mixer asks of the server. Everything throws DeviceError when the server or the device is gone, and has been
/// read back into devices() when it returns.
class PulseControls {
  public:
    virtual ~PulseControls() = default;

    [[nodiscard]] virtual PulseDevices devices() const = 0;
    virtual void setLevels(const QByteArray &source, const PulseLevels &levels) = 0;
    virtual void setSourceMute(const QByteArray &source, bool mute) = 0;
    virtual void setPort(const QByteArray &source, const QByteArray &port) = 0;
    virtual void setLatencyOffset(const QByteArray &card, const QByteArray &port, std::int64_t microseconds) = 0;
};

} // namespace orvel
