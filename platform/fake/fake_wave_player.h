#pragma once

#include "platform/wave_player.h"

#include <optional>

namespace orvel {

/// Plays in a time moved by hand; files are opened for real.
class FakeWavePlayer : public WavePlayer {
  public:
    void setOutput(const PlayerSettings &settings) override { output_ = settings; }
    void setFileName(const QString &path) override;
    void start() override;
    void pause() override;
    void resume() override;
    void stop() override;
    void close() override;
    [[nodiscard]] int state() const override { return state_; }
    [[nodiscard]] std::int32_t position() const override { return position_; }
    void setPosition(std::int32_t milliseconds) override;
    [[nodiscard]] std::int32_t length() const override { return length_; }
    void setVolume(int volume) override { volume_ = volume; }
    [[nodiscard]] StereoPeaks peaks() override { return peaks_; }
    void setEndHandler(std::function<void()> handler) override { ended_ = std::move(handler); }
    [[nodiscard]] bool brokeOff() const override { return brokeOff_; }

    // What a test does.

    /// So much is heard; at the end of the file the player stops by itself and calls the end handler.
    void play(std::int32_t milliseconds);
    /// The end was reached, but nobody has been told yet.
    void reachEndSilently();
    /// Playing fails on the way.
    void breakOff();
    void setPeaks(StereoPeaks peaks) { peaks_ = peaks; }
    /// The next start() throws DeviceError.
    void failNextStart() { failsNextStart_ = true; }

    // What a test asks.

    [[nodiscard]] QString file() const { return file_; }
    [[nodiscard]] const PlayerSettings &output() const { return output_; }
    [[nodiscard]] int volume() const { return volume_; }
    [[nodiscard]] int starts() const { return starts_; }

  private:
    PlayerSettings output_;
    QString file_;
    std::function<void()> ended_;
    StereoPeaks peaks_;
    std::int32_t position_ = 0;
    std::int32_t length_ = 0;
    int state_ = 0;
    int volume_ = 65535;
    int starts_ = 0;
    bool failsNextStart_ = false;
    bool brokeOff_ = false;
};

} // namespace orvel
