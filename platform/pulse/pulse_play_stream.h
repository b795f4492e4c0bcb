#pragma once

#include "platform/pulse/pulse_server.h"
#include "platform/wave_player.h"

#include <chrono>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

struct pa_stream;

namespace orvel {

/// What a stream plays, and how much of it waits for the card.
struct PlayFormat {
    int sampleRate = 0;
    int channels = 0;
    std::int64_t framesAhead = 0;
};

/// One run of sound to an output, from its begin to its end or break. One thread writes; the window thread does the
/// rest. The main loop's lock guards everything; callbacks only wake the writer up.
///
/// The volume acts at once, not after what waits for the card: that is kept, and sent again louder or softer.
class PulsePlayStream {
  public:
    /// output: a sink's name, and the stream stays there or breaks; empty for the default output, and then it goes
    /// where the server moves it. Throws DeviceError.
    PulsePlayStream(PulseServer &server, const QByteArray &output, const PlayFormat &format, float gain);
    ~PulsePlayStream();
    PulsePlayStream(const PulsePlayStream &) = delete;
    PulsePlayStream(PulsePlayStream &&) = delete;
    PulsePlayStream &operator=(const PulsePlayStream &) = delete;
    PulsePlayStream &operator=(PulsePlayStream &&) = delete;

    // The writing thread.

    /// Interleaved samples; waits until all are taken. False when the stream was aborted or broke.
    bool write(std::span<const std::int16_t> samples);
    /// Waits until the last sample has been heard. False as above.
    bool drain();
    [[nodiscard]] bool isAborted() const;

    // The window thread.

    /// Makes write() and drain() return, now and from now on.
    void abort();
    void pause(bool paused);
    /// 0 .. 1; changes within 20 ms, without a click.
    void setGain(float gain);
    /// Frames that have been heard; never runs back.
    [[nodiscard]] std::int64_t heard();
    /// The moment when the first frame was heard, by what the server says now of how much still waits; nothing before
    /// it was, or where the server does not say. One such figure is off by a few milliseconds now and then.
    [[nodiscard]] std::optional<std::chrono::steady_clock::time_point> beganAt() const;
    /// Of what was heard since the last look, before the volume.
    [[nodiscard]] StereoPeaks peaks();

  private:
    friend struct PulsePlayStreamCallbacks;
    void connect(const QByteArray &output, const PlayFormat &format);
    void disconnect();
    [[nodiscard]] bool isUsable() const;
    std::int64_t heardUntilNow();
    [[nodiscard]] std::int64_t framesToSend(std::size_t samples) const;
    [[nodiscard]] float gainAt(std::int64_t frame) const;
    void remember(std::span<const std::int16_t> samples);
    void notePeaks(std::span<const std::int16_t> samples);
    void send(std::int64_t from, std::int64_t replaced);

    PulseServer &server_;
    pa_stream *stream_ = nullptr;
    std::int64_t rate_;
    std::int64_t channels_;
    bool aborted_ = false;
    bool drained_ = false;
    std::int64_t written_ = 0; ///< frames
    std::int64_t heard_ = 0;   ///< the most that heard() gave

    std::int64_t historyFrames_;
    std::vector<std::int16_t> history_; ///< the last frames written; frame f at f % historyFrames_
    std::vector<float> outgoing_;

    // The volume goes from one value to the other, beginning at a frame.
    float gainFrom_;
    float gainTo_;
    std::int64_t rampStart_ = 0;

    std::int64_t peakFrames_;        ///< frames that share a peak, 10 ms
    std::vector<StereoPeaks> peaks_; ///< of block b at b % size
    std::int64_t peakLooked_ = 0;    ///< first block that peaks() has not told
};

} // namespace orvel
