#pragma once

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <numbers>
#include <random>
#include <vector>

namespace orvel {

/// Samples to test with. Amplitudes are in 16-bit steps, rates 44100 Hz.
using Samples = std::vector<std::int16_t>;

inline constexpr int testRate = 44100;

inline Samples tone(double frequency, double amplitude, std::size_t count) {
    Samples samples(count);
    for (std::size_t i = 0; i < count; ++i) {
        samples[i] = static_cast<std::int16_t>(
            std::lrint(amplitude * std::sin(2 * std::numbers::pi * frequency * static_cast<double>(i) / testRate)));
    }
    return samples;
}

/// White noise of this RMS.
inline Samples noise(double rms, std::size_t count, unsigned seed = 1) {
    std::mt19937 generator(seed);
    std::normal_distribution<double> normal(0, rms);
    Samples samples(count);
    for (std::int16_t &sample : samples) {
        sample = static_cast<std::int16_t>(std::lrint(std::clamp(normal(generator), -32768.0, 32767.0)));
    }
    return samples;
}

/// Noise with the same power in every octave, above 20 Hz or so, of this RMS: white noise through P. Kellet's three
/// first-order filters.
inline Samples pinkNoise(double rms, std::size_t count, unsigned seed = 1) {
    std::mt19937 generator(seed);
    std::normal_distribution<double> normal(0, 1);
    std::vector<double> values(count);
    std::array<double, 3> state{};
    double square = 0;
    for (double &value : values) {
        const double white = normal(generator);
        state[0] = 0.99765 * state[0] + 0.0990460 * white;
        state[1] = 0.96300 * state[1] + 0.2965164 * white;
        state[2] = 0.57000 * state[2] + 1.0526913 * white;
        value = state[0] + state[1] + state[2] + 0.1848 * white;
        square += value * value;
    }
    const double factor = rms / std::sqrt(square / static_cast<double>(count));
    Samples samples(count);
    for (std::size_t i = 0; i < count; ++i) {
        samples[i] = static_cast<std::int16_t>(std::lrint(std::clamp(factor * values[i], -32768.0, 32767.0)));
    }
    return samples;
}

inline Samples square(std::size_t count) {
    Samples samples(count);
    for (std::size_t i = 0; i < count; ++i) {
        samples[i] = i / 100 % 2 == 0 ? 32767 : -32768;
    }
    return samples;
}

inline int peakOf(const Samples &samples) {
    int peak = 0;
    for (const std::int16_t sample : samples) {
        peak = std::max(peak, std::abs(int{sample}));
    }
    return peak;
}

inline double rmsOf(const Samples &samples) {
    double sum = 0;
    for (const std::int16_t sample : samples) {
        sum += double{static_cast<double>(sample)} * static_cast<double>(sample);
    }
    return std::sqrt(sum / static_cast<double>(samples.size()));
}

/// Amplitude of a component of this frequency.
inline double amplitudeAt(double frequency, const Samples &samples) {
    double cosine = 0;
    double sine = 0;
    for (std::size_t i = 0; i < samples.size(); ++i) {
        const double angle = 2 * std::numbers::pi * frequency * static_cast<double>(i) / testRate;
        cosine += static_cast<double>(samples[i]) * std::cos(angle);
        sine += static_cast<double>(samples[i]) * std::sin(angle);
    }
    return 2 * std::hypot(cosine, sine) / static_cast<double>(samples.size());
}

} // namespace orvel
