#pragma once

#include "dsp/high_pass.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace orvel {

/// A stretch of speech in a take, in samples from its beginning; `end` is the first one that is silent again.
struct SpeechSegment {
    std::size_t begin = 0;
    std::size_t end = 0;

    bool operator==(const SpeechSegment &) const = default;
};

/// Where there is speech in signed 16-bit mono samples, in order; nothing where there is none. What lies less than 150
/// ms apart is one stretch.
///
/// Like the trim it measures the power of 10 ms, and a click (up to 10 ms with silence on both sides) is no sound.
/// There is no threshold to set: speech is what passes both 8.5 dB above the noise (of the quietest 40 ms) and 28 dB
/// below the voice itself (what the loudest tenth of a second passes). A take in which nothing stands 10 dB out of the
/// noise, or passes 60 dB below full scale, has no speech.
[[nodiscard]] std::vector<SpeechSegment> findSpeech(std::span<const std::int16_t> samples, int sampleRate);

/// The powers of consecutive milliseconds of a voice, without hum and rumble.
class SpeechPowers {
  public:
    explicit SpeechPowers(int sampleRate);

    /// Samples of a millisecond.
    [[nodiscard]] std::size_t blockLength() const { return length_; }
    /// Calls take(power) for every millisecond that is complete now; full scale is 1.
    template <typename Take>
    void add(std::span<const std::int16_t> samples, Take take) {
        if (!offset_ && !samples.empty()) {
            offset_ = samples.front(); // a DC offset is no sound at the beginning either
        }
        for (const std::int16_t sample : samples) {
            const double y = highPass_.next((static_cast<double>(sample) - *offset_) / 32768);
            sum_ += y * y;
            if (++count_ == length_) {
                take(sum_ / static_cast<double>(length_));
                sum_ = 0;
                count_ = 0;
            }
        }
    }

  private:
    std::size_t length_;
    HighPass highPass_;
    std::optional<double> offset_;
    double sum_ = 0;
    std::size_t count_ = 0;
};

/// The search of findSpeech() in a take that comes in blocks, of any length.
class SpeechSearch {
  public:
    explicit SpeechSearch(int sampleRate);

    void add(std::span<const std::int16_t> samples);
    /// In what was added so far.
    [[nodiscard]] std::vector<SpeechSegment> found() const;
    /// The sums of the powers of all whole milliseconds before each, and of all of them; full scale is 1.
    [[nodiscard]] std::span<const double> sums() const { return sums_; }
    /// Samples of such a millisecond.
    [[nodiscard]] std::size_t blockLength() const { return powers_.blockLength(); }
    /// That were added.
    [[nodiscard]] std::size_t samples() const { return samples_; }

  private:
    SpeechPowers powers_;
    std::size_t samples_ = 0;
    std::vector<double> sums_ = {0}; ///< of the powers of all milliseconds before
};

/// Finds speech while it is recorded; nothing is known of the voice yet, so that it is a little less sure than
/// findSpeech(). For one thread.
class SpeechWatch {
  public:
    explicit SpeechWatch(int sampleRate);

    /// The samples that come next, in blocks of any length.
    void add(std::span<const std::int16_t> samples);
    /// Whether somebody speaks now; it lasts through pauses of 150 ms.
    [[nodiscard]] bool isSpeaking() const;
    /// Where speech began, in samples from the first one; nothing as long as there was none.
    [[nodiscard]] std::optional<std::size_t> begin() const;
    /// Where it was last heard, in samples.
    [[nodiscard]] std::optional<std::size_t> lastHeard() const;
    /// The stretch that is being spoken, or was the last one; it ends where it was last heard. Nothing as long as there
    /// was none.
    [[nodiscard]] std::optional<SpeechSegment> latest() const;

  private:
    static constexpr std::size_t firstMs = 2000;

    void addMillisecond(double power);
    void hear(double window);
    [[nodiscard]] std::size_t firstSound() const;
    void learnNoise(double window);
    [[nodiscard]] double threshold() const;
    [[nodiscard]] std::size_t sampleAt(std::size_t millisecond) const;

    // Times in milliseconds.
    SpeechPowers powers_;
    std::vector<double> recent_; ///< the powers of the last 10 ms, in a ring
    double sum_ = 0;             ///< of them
    std::vector<float> first_;   ///< windows of the beginning
    double noiseSum_ = 0;        ///< of the windows that the noise is measured in
    std::size_t noiseCount_ = 0;
    std::optional<double> noise_;
    std::size_t now_ = 0;
    std::optional<std::size_t> lastAbove_;
    std::size_t start_ = 0;   ///< of what was above the threshold last, without a pause
    std::size_t above_ = 0;   ///< of it
    std::size_t stretch_ = 0; ///< where the latest stretch of speech began
    double loudest_ = 0;      ///< window since the beginning
    std::optional<std::size_t> begin_;
    std::optional<std::size_t> lastSound_;
};

} // namespace orvel
