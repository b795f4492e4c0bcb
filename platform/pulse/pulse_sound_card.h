#pragma once

#include "platform/audio.h"

#include <memory>

namespace orvel {

/// The sound of a PulseAudio or PipeWire server. A card is a source of the server, its lines are the source's ports; a
/// source without ports is one line with its name. Without a server there are no cards until refresh() finds one.
class PulseSoundCard : public SoundCard {
  public:
    /// Waits for the server's answer, three seconds at most.
    PulseSoundCard();
    /// A running recording is closed as it is; outputs that were muted are as they were before.
    ~PulseSoundCard() override;
    PulseSoundCard(const PulseSoundCard &) = delete;
    PulseSoundCard(PulseSoundCard &&) = delete;
    PulseSoundCard &operator=(const PulseSoundCard &) = delete;
    PulseSoundCard &operator=(PulseSoundCard &&) = delete;

    [[nodiscard]] AudioRecord &audioRecord() override;
    [[nodiscard]] WaveRecorder &recorder() override;
    [[nodiscard]] AudioPlayer &audioPlayer() override;
    [[nodiscard]] std::unique_ptr<WavePlayer> makePlayer() override;
    [[nodiscard]] QStringList outputNames() const override;

  private:
    class Impl;
    std::unique_ptr<Impl> impl_;
};

} // namespace orvel
