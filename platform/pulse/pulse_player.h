#pragma once

#include "platform/audio.h"
#include "platform/card_list.h"
#include "platform/pulse/pulse_server.h"

#include <vector>

namespace orvel {

/// Mutes what plays near the microphone.
class PulsePlayer : public AudioPlayer {
  public:
    PulsePlayer(PulseServer &server, const CardList &cards) : server_(server), cards_(cards) {}
    ~PulsePlayer() override;
    PulsePlayer(const PulsePlayer &) = delete;
    PulsePlayer(PulsePlayer &&) = delete;
    PulsePlayer &operator=(const PulsePlayer &) = delete;
    PulsePlayer &operator=(PulsePlayer &&) = delete;

    void setDevice(int device) override { source_ = cards_.key(device + 1).toUtf8(); }
    void setOutputMute(bool mute) override;

  private:
    [[nodiscard]] std::vector<PulseSink> outputs() const;

    PulseServer &server_;
    const CardList &cards_;
    QByteArray source_;            ///< of the card whose outputs are meant
    std::vector<PulseSink> muted_; ///< by us, each as it was before
};

} // namespace orvel
