#pragma once

#include <cstddef>
#include <span>
#include <vector>

namespace orvel {

/// Brings stereo sound from one sample rate to another, piece by piece: a windowed sinc, whose table holds every phase
/// of the two rates' ratio, so that output sample n stands exactly at the input's time n * from / to, without delay.
class Resampler {
  public:
    /// Hz, both above 0.
    Resampler(int from, int to);

    /// Takes interleaved stereo samples and appends what they make ready to `out`.
    void push(std::span<const float> stereo, std::vector<float> &out);
    /// Nothing follows: appends the rest.
    void finish(std::vector<float> &out);

  private:
    void produce(std::vector<float> &out);

    std::size_t up_;            ///< the ratio without common factors: up_ samples come out
    std::size_t down_;          ///< for down_ that go in
    std::size_t half_ = 0;      ///< input frames that a sample looks at on either side
    std::vector<float> kernel_; ///< 2 * half_ weights for each of the up_ phases
    std::vector<float> input_;  ///< frames that are still looked at; begins with silence before the first
    std::size_t first_ = 0;     ///< frame of input_ that the next sample's kernel begins at
    std::size_t phase_ = 0;     ///< of the next sample
};

} // namespace orvel
