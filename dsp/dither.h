#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

namespace orvel {

/// Rounds computed samples to 16 bits with triangular dither (TPDF, two steps wide), which makes the rounding error a
/// steady noise that has nothing to do with the sound; see Lipshitz, Wannamaker and Vanderkooy, "Quantization and
/// Dither: A Theoretical Survey", J. Audio Eng. Soc. 40 (1992). The same seed gives the same noise.
class Dither {
  public:
    /// Samples that are dithered, or left as they are, together.
    static constexpr std::size_t blockSize = 256;

    explicit Dither(std::uint32_t seed = 1);

    /// Rounds values (one 16-bit step is 1) into samples of the same number. Past full scale they are cut off there.
    /// A block in which nothing changed stays as it is: digital silence remains silent, and a stage that has nothing to
    /// do does nothing. Otherwise every sample is within one step of the rounded value.
    void quantise(std::span<const float> values, std::span<std::int16_t> samples);

    /// Runs a computation on consecutive blocks of float samples and rounds them back in place.
    template <typename Computation>
    void rework(std::span<std::int16_t> samples, Computation compute) {
        std::array<float, blockSize> values{};
        while (!samples.empty()) {
            const std::size_t count = std::min(samples.size(), blockSize);
            std::copy_n(samples.begin(), count, values.begin());
            compute(std::span(values).first(count));
            quantise(std::span(values).first(count), samples.first(count));
            samples = samples.subspan(count);
        }
    }

  private:
    static constexpr std::uint32_t lanes = 32;

    void add(std::span<float, blockSize> values);

    /// Generators side by side, so that the processor can run them at once.
    std::array<std::uint32_t, lanes> state_{};
};

} // namespace orvel
