#pragma once

#include "platform/audio.h"
#include "platform/card_list.h"
#include "platform/pulse/capture_clock.h"
#include "platform/pulse/pulse_server.h"
#include "platform/sndfile/take_writer.h"

#include <array>
#include <atomic>
#include <chrono>
#include <memory>
#include <optional>
#include <span>
#include <vector>

struct pa_stream;

namespace orvel {

/// Records from a source of the server. The stream is nailed to its source: when that vanishes, the recording says so
/// instead of going on with another microphone.
class PulseRecorder : public WaveRecorder {
  public:
    PulseRecorder(PulseServer &server, const CardList &cards) : server_(server), cards_(cards) {}
    ~PulseRecorder() override;
    PulseRecorder(const PulseRecorder &) = delete;
    PulseRecorder(PulseRecorder &&) = delete;
    PulseRecorder &operator=(const PulseRecorder &) = delete;
    PulseRecorder &operator=(PulseRecorder &&) = delete;

    void setDevice(int device) override;
    void setFileName(const QString &path) override { path_ = path; }
    void prepare() override;
    void start() override { begin({}); }
    void startAt(std::chrono::steady_clock::time_point moment) override { begin(moment); }
    void stop() override;
    RecorderStatus status() override;

  private:
    friend struct PulseRecorderCallbacks;
    [[nodiscard]] bool hasStreamOf(const QString &source) const;
    void openStream();
    void connectStream(const PulseSource &source);
    void waitUntilReady();
    void begin(std::optional<std::chrono::steady_clock::time_point> moment);
    void beginAt(std::chrono::steady_clock::time_point moment); ///< with the server's lock held
    void waitForSound();
    void closeStream();
    void dropStream(); ///< with the server's lock held
    void drain();
    [[nodiscard]] std::chrono::microseconds heldByServer();
    void tellStall();
    // The server's thread.
    void streamChanged();
    void takeSamples();
    void noteTime();
    void pushMixed(std::span<const float> samples);
    void pushSilence(std::int64_t frames);
    void push(std::span<const std::int16_t> mono);
    void hear(std::span<const std::int16_t> samples);
    void sourceSuspended(bool suspended);

    PulseServer &server_;
    const CardList &cards_;
    QString path_;
    std::optional<int> device_;
    QString source_;
    pa_stream *stream_ = nullptr;
    QString streamSource_;                           ///< what stream_ records from
    std::chrono::steady_clock::time_point openedAt_; ///< stream_
    std::size_t channels_ = 1;                       ///< of stream_; set before it runs
    bool recording_ = false;
    std::int64_t receivedBefore_ = 0;                     ///< when samples came in last, as far as status() saw
    std::chrono::steady_clock::time_point receivedSince_; ///< when status() saw that
    bool stallTold_ = false;
    std::unique_ptr<TakeWriter> writer_; ///< of the running or the latest take

    std::array<std::int16_t, 4096> mono_{}; ///< the server's thread: what it mixes

    // Under the server's lock: what came before the take, and when. When frame 0 of the stream came into the card is
    // told anew with every piece; a single figure is off by milliseconds now and then, their median is not.
    CaptureClock clock_;
    std::vector<std::int16_t> history_ = std::vector<std::int16_t>(kTakeRate); ///< frame f at f % size
    std::int64_t streamFrames_ = 0;                                            ///< that came
    std::int64_t leaveOut_ = 0; ///< frames that come before the take's first

    // What both threads see.
    std::atomic<TakeWriter *> take_{nullptr}; ///< where samples go; without it they go nowhere
    std::atomic<bool> streamLost_{false};
    std::atomic<bool> takeLost_{false};
    std::atomic<int> heardPeak_{0};         ///< of what came in without a take, since status() looked
    std::atomic<bool> isHeard_{false};      ///< something came in since then
    std::atomic<std::int64_t> received_{0}; ///< frames of the take
    std::optional<std::chrono::steady_clock::time_point> suspendedSince_; ///< under the server's lock
    std::optional<std::chrono::steady_clock::time_point> soundAt_; ///< when stream_ brought some last; under that lock
};

} // namespace orvel
