#include "dsp/dither.h"

#include "dsp/wide_vectors.h"

namespace orvel {

namespace {

/// The finalizer of MurmurHash3: close seeds become generators that have nothing in common.
std::uint32_t scrambled(std::uint32_t bits) {
    bits ^= bits >> 16U;
    bits *= 0x85EBCA6BU;
    bits ^= bits >> 13U;
    bits *= 0xC2B2AE35U;
    return bits ^ (bits >> 16U);
}

} // namespace

Dither::Dither(std::uint32_t seed) {
    for (std::uint32_t lane = 0; lane < lanes; ++lane) {
        // Zero is the one state that the generator never leaves.
        state_[lane] = scrambled(seed * lanes + lane + 1) | 1U;
    }
}

void Dither::add(std::span<float, blockSize> values) {
    constexpr float step = 1.0F / 65536.0F;
    for (std::size_t start = 0; start < blockSize; start += lanes) {
        for (std::uint32_t lane = 0; lane < lanes; ++lane) {
            // Marsaglia's xorshift generator, J. Statistical Software 8 (2003).
            std::uint32_t bits = state_[lane];
            bits ^= bits << 13U;
            bits ^= bits >> 17U;
            bits ^= bits << 5U;
            state_[lane] = bits;
            // Two even distributions, -1/2 .. 1/2 each, make the triangle.
            const auto first = static_cast<std::int32_t>(bits & 0xFFFFU);
            const auto second = static_cast<std::int32_t>(bits >> 16U);
            values[start + lane] += static_cast<float>(first + second - 65535) * step;
        }
    }
}

ORVEL_WIDE_VECTORS void Dither::quantise(std::span<const float> values, std::span<std::int16_t> samples) {
    while (!samples.empty()) {
        const std::size_t count = std::min(samples.size(), blockSize);
        if (!std::equal(samples.begin(), samples.begin() + static_cast<std::ptrdiff_t>(count), values.begin())) {
            std::array<float, blockSize> noisy{};
            std::copy_n(values.begin(), count, noisy.begin());
            add(noisy);
            // Shifted into the positive range, cutting the fraction off rounds to the nearest step.
            for (std::size_t i = 0; i < count; ++i) {
                // In this order what is no number has a defined result as well.
                const float limited = std::max(-32768.0F, std::min(32767.0F, noisy[i]));
                samples[i] = static_cast<std::int16_t>(static_cast<std::int32_t>(limited + 32768.5F) - 32768);
            }
        }
        samples = samples.subspan(count);
        values = values.subspan(count);
    }
}

} // namespace orvel
