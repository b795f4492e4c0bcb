#pragma once

#include "platform/pulse/pulse_play_stream.h"
#include "platform/pulse/pulse_server.h"
#include "platform/sndfile/patient_reader.h"
#include "platform/wave_player.h"

#include <QObject>

#include <atomic>
#include <functional>
#include <memory>
#include <thread>

namespace orvel {

/// Plays files to an output of the server. Every start, and every new position, is a stream of its own with a thread
/// that decodes into it. Peaks are those of the file: the meters of a track that is listened to softly still tell how
/// loud it is.
class PulseWavePlayer : public WavePlayer {
  public:
    /// open: see PulseSoundCard.
    PulseWavePlayer(PulseServer &server, FileWork open) : server_(server), openFile_(std::move(open)) {}
    ~PulseWavePlayer() override;
    PulseWavePlayer(const PulseWavePlayer &) = delete;
    PulseWavePlayer(PulseWavePlayer &&) = delete;
    PulseWavePlayer &operator=(const PulseWavePlayer &) = delete;
    PulseWavePlayer &operator=(PulseWavePlayer &&) = delete;

    void setOutput(const PlayerSettings &settings) override { settings_ = settings; }
    void setFileName(const QString &path) override;
    void start() override;
    void pause() override;
    void resume() override;
    void stop() override;
    void close() override;
    [[nodiscard]] int state() const override;
    [[nodiscard]] std::int32_t position() const override;
    void setPosition(std::int32_t milliseconds) override;
    [[nodiscard]] std::int32_t length() const override;
    void setVolume(int volume) override;
    [[nodiscard]] StereoPeaks peaks() override;
    void setEndHandler(std::function<void()> handler) override { ended_ = std::move(handler); }
    [[nodiscard]] bool brokeOff() const override { return state_.load(std::memory_order_relaxed) == Run::Broken; }

  private:
    enum class Mode { Stopped, Playing, Paused };
    /// How far the thread has come.
    enum class Run { Playing, Heard, Broken };

    void begin();
    void endRun();
    void tellEnd(std::uint64_t run);
    [[nodiscard]] std::int64_t heard() const;
    [[nodiscard]] std::int32_t inMilliseconds(std::int64_t frames) const;
    [[nodiscard]] QByteArray outputName() const;
    [[nodiscard]] PlayFormat format() const;
    // The decoding thread.
    void feed(std::uint64_t run, std::int64_t from);
    bool decode(std::int64_t from);

    PulseServer &server_;
    FileWork openFile_;
    PlayerSettings settings_;
    std::function<void()> ended_;
    float gain_ = 1;
    std::unique_ptr<PatientReader> reader_; ///< of the file that is open; the thread's while there is one
    bool hasBeenRead_ = false;              ///< so that it may not stand at its start any more
    Mode mode_ = Mode::Stopped;
    std::int64_t from_ = 0; ///< frame where the stream began, or where the next one will
    bool isAtEnd_ = false;  ///< the file was heard to its end, which may come before its promised length
    std::uint64_t run_ = 0; ///< number of the stream: news of an earlier one is no news
    std::unique_ptr<PulsePlayStream> stream_;
    std::thread thread_;
    std::atomic<Run> state_{Run::Playing};
    QObject window_; ///< what is called through it runs in the window's thread
};

} // namespace orvel
