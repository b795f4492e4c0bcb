#pragma once

#include "platform/audio.h"

#include <memory>

namespace orvel {

/// The sound of a PulseAudio or PipeWire server. A card is a source of the server, its lines are the source's ports; a
/// source without ports is one line with its name. Without a server there are no cards until refresh() finds one.
class PulseSoundCard : public SoundCard {
  public:
    /// Waits for the server's answer, three seconds at most. open: how players open their files.
    explicit PulseSoundCard(FileWork open = openHere);
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
    [[nodiscard]] std::unique_ptr<JoinPlayer> makeJoinPlayer() override;
    [[nodiscard]] QStringList outputNames() const override;

  private:
    static void openHere(const QString & /*path*/, const std::function<void()> &work) { work(); }

    class Impl;
    std::unique_ptr<Impl> impl_;
    FileWork open_;
};

} // namespace orvel
