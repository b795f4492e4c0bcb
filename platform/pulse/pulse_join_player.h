#pragma once

#include "dsp/mixer.h"
#include "platform/join_player.h"
#include "platform/pulse/capture_clock.h"
#include "platform/pulse/pulse_play_stream.h"
#include "platform/pulse/pulse_server.h"
#include "platform/sndfile/clip_reader.h"

#include <QObject>

#include <atomic>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

namespace orvel {

/// Plays joins to an output of the server: every playing is one stream with a thread that decodes and mixes into it.
///
/// To be heard at a moment, it plays silence first and notes when that is heard, by the server's own figures (what
/// waits in the stream, in the server and in the card). After half a second these are steady; then it is known
/// which frame of the stream will be heard at the moment, and the axis is laid so that its 0 is that frame. From there
/// on the same figures tell when 0 was really heard, should the output have paused meanwhile.
class PulseJoinPlayer : public JoinPlayer {
  public:
    explicit PulseJoinPlayer(PulseServer &server) : server_(server) {}
    ~PulseJoinPlayer() override;
    PulseJoinPlayer(const PulseJoinPlayer &) = delete;
    PulseJoinPlayer(PulseJoinPlayer &&) = delete;
    PulseJoinPlayer &operator=(const PulseJoinPlayer &) = delete;
    PulseJoinPlayer &operator=(PulseJoinPlayer &&) = delete;

    void setOutput(const PlayerSettings &settings) override { settings_ = settings; }
    void play(std::vector<JoinClip> clips, std::optional<Clock::time_point> zeroAt) override;
    void stop() override;
    [[nodiscard]] bool isPlaying() const override { return stream_ != nullptr; }
    [[nodiscard]] std::optional<Clock::time_point> zeroHeardAt() const override;
    void setVolume(int volume) override;
    void setEndHandler(std::function<void()> handler) override { ended_ = std::move(handler); }
    [[nodiscard]] bool brokeOff() const override { return brokeOff_; }
    [[nodiscard]] QStringList unreadable() const override;

  private:
    /// A file on the stream's way, with its place on the axis in frames.
    struct Source {
        JoinClip clip;
        ClipReader reader;
        bool isOpen = false;
        std::int64_t fileStart = 0; ///< where its first frame lies
        std::int64_t from = 0;
        std::int64_t to = 0;
    };

    [[nodiscard]] QByteArray outputName() const;
    void endRun();
    void tellEnd(std::uint64_t run, bool isWhole);
    // The playing thread.
    void feed(std::uint64_t run, std::optional<Clock::time_point> zeroAt);
    void openFiles();
    static bool openFile(Source &source);
    [[nodiscard]] std::optional<std::int64_t> firstOnAxis(std::optional<Clock::time_point> zeroAt);
    void addTo(Mixer &mixer);
    bool write(std::span<const float> stereo);
    void noteTime();

    PulseServer &server_;
    PlayerSettings settings_;
    std::function<void()> ended_;
    float gain_ = 1;
    bool brokeOff_ = false;
    std::uint64_t run_ = 0; ///< number of the stream: news of an earlier one is no news
    std::unique_ptr<PulsePlayStream> stream_;
    std::vector<std::unique_ptr<Source>> sources_; ///< the thread's while there is one, but for interrupt()
    std::thread thread_;
    QObject window_; ///< what is called through it runs in the window's thread

    // The playing thread's.
    std::int64_t written_ = 0; ///< frames
    CaptureClock clock_;       ///< of the stream: when its frames are heard
    std::vector<std::int16_t> outgoing_;

    mutable std::mutex mutex_; ///< of what follows
    QStringList unreadable_;
    std::optional<std::int64_t> zeroFrame_; ///< of the stream
    std::optional<Clock::time_point> zeroHeardAt_;
};

} // namespace orvel
