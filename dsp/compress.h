#pragma once

#include "dsp/dither.h"

#include <cstdint>
#include <span>

namespace orvel {

/// What lies outside the limits counts as the limit; what is no number as 0.
struct CompressorSettings {
    float threshold = 0; ///< dB below full scale, -96..0; 0 leaves the sound as it is
    float rate = 1;      ///< the share of what is above the threshold that is taken away, percent, 1..100 (a limiter)
    float rmsTime = 0;   ///< time constant of the mean-square detector in ms, 0..1000; 0 detects peaks
};

/// A feed-forward compressor in the decibel domain without make-up gain. The gain computer with its soft knee comes
/// before the level detector, which is the smooth decoupled one: see Giannoulis, Massberg and Reiss, "Digital Dynamic
/// Range Compressor Design", J. Audio Eng. Soc. 60 (2012), equations 4 and 17. Full scale is 1. Keeps its state from
/// block to block.
class Compressor {
  public:
    /// Time constants that suit speech: consonants pass, the breath after a word is not pulled up.
    static constexpr float attackMs = 5;
    static constexpr float releaseMs = 150;
    /// Of the soft knee, centred on the threshold. It narrows towards full scale so as to end there at most.
    static constexpr float kneeDecibels = 6;

    Compressor(const CompressorSettings &settings, int sampleRate);

    /// What a steady level (dB) becomes: the static curve.
    [[nodiscard]] float staticLevel(float level) const;
    /// In place; at most Dither::blockSize samples.
    void process(std::span<float> samples);

  private:
    void meanSquares(std::span<float> squares);
    void smooth(std::span<float> reductions);

    float threshold_;
    float slope_;
    float knee_;
    float attack_;
    float release_;
    float detector_; ///< share of a new square in the mean; 1 detects peaks
    float meanSquare_ = 0;
    float held_ = 0;      ///< dB
    float reduction_ = 0; ///< dB
};

/// Compresses signed 16-bit mono samples in place.
void compress(std::span<std::int16_t> samples, const CompressorSettings &settings, int sampleRate, Dither &dither);

} // namespace orvel
