#pragma once

#include "platform/join_player.h"
#include "platform/runtime_error.h"

namespace orvel {

/// Plays nothing: a test looks at what it was asked for, and moves the time by hand.
class FakeJoinPlayer : public JoinPlayer {
  public:
    void setOutput(const PlayerSettings &settings) override { output_ = settings; }
    void play(std::vector<JoinClip> clips, std::optional<Clock::time_point> zeroAt) override {
        stop();
        ++plays_;
        if (failsNextPlay_) {
            failsNextPlay_ = false;
            throw RuntimeError(ErrorNumber::DeviceError);
        }
        clips_ = std::move(clips);
        zeroAt_ = zeroAt;
        brokeOff_ = false;
        isPlaying_ = true;
    }
    void stop() override {
        isPlaying_ = false;
        zeroHeardAt_.reset();
    }
    [[nodiscard]] bool isPlaying() const override { return isPlaying_; }
    [[nodiscard]] std::optional<Clock::time_point> zeroHeardAt() const override { return zeroHeardAt_; }
    void setVolume(int volume) override { volume_ = volume; }
    void setEndHandler(std::function<void()> handler) override { ended_ = std::move(handler); }
    [[nodiscard]] bool brokeOff() const override { return brokeOff_; }
    [[nodiscard]] QStringList unreadable() const override { return unreadable_; }

    // What a test does.

    /// Everything has been heard.
    void end() { finish(false); }
    /// The output vanishes.
    void breakOff() { finish(true); }
    /// The output tells when the axis' 0 is heard.
    void hearZeroAt(Clock::time_point moment) { zeroHeardAt_ = moment; }
    void failNextPlay() { failsNextPlay_ = true; }
    void setUnreadable(const QStringList &files) { unreadable_ = files; }

    // What a test asks.

    [[nodiscard]] const std::vector<JoinClip> &clips() const { return clips_; }
    [[nodiscard]] std::optional<Clock::time_point> zeroAt() const { return zeroAt_; }
    [[nodiscard]] int plays() const { return plays_; }
    [[nodiscard]] int volume() const { return volume_; }
    [[nodiscard]] const PlayerSettings &output() const { return output_; }

  private:
    void finish(bool broken) {
        stop();
        brokeOff_ = broken;
        if (const auto handler = ended_) {
            handler();
        }
    }

    PlayerSettings output_;
    std::vector<JoinClip> clips_;
    std::optional<Clock::time_point> zeroAt_;
    std::optional<Clock::time_point> zeroHeardAt_;
    std::function<void()> ended_;
    QStringList unreadable_;
    int plays_ = 0;
    int volume_ = 65535;
    bool isPlaying_ = false;
    bool brokeOff_ = false;
    bool failsNextPlay_ = false;
};

} // namespace orvel
