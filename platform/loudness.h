#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <span>

namespace orvel {

/// How loud a sound is.
struct Loudness {
    double lufs = 0;     ///< integrated, over the whole of it
    double truePeak = 0; ///< dBTP: dB below full scale of the sound between the samples

    bool operator==(const Loudness &) const = default;
};

/// Tells the loudness of a take by EBU R 128 (ITU-R BS.1770-4). What is told is that of the voice track that is filed:
/// a file of two channels that are both the take, which is 3.0 LU more than one of them alone.
class LoudnessMeter {
  public:
    virtual ~LoudnessMeter() = default;

    /// Begins with a new take.
    virtual void start(int sampleRate) = 0;
    /// The next mono samples of the take.
    virtual void add(std::span<const std::int16_t> samples) = 0;
    /// Of all that was added. Nothing for what has no loudness: less than 400 ms, or nothing above -70 LUFS.
    [[nodiscard]] virtual std::optional<Loudness> result() = 0;
    /// For a take that is measured on another thread meanwhile.
    [[nodiscard]] virtual std::unique_ptr<LoudnessMeter> another() const = 0;

    /// Of a whole take.
    [[nodiscard]] std::optional<Loudness> measure(std::span<const std::int16_t> samples, int sampleRate) {
        start(sampleRate);
        add(samples);
        return result();
    }
};

} // namespace orvel
