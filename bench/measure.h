#pragma once

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdint>
#include <numbers>
#include <sys/resource.h>
#include <vector>

namespace orvel {

/// Seconds.
struct Cost {
    double wall = 1e9;
    double processor = 1e9;
};

/// Seconds of the processor that this program (RUSAGE_SELF) or those it started (RUSAGE_CHILDREN) have used.
inline double processorTime(int who) {
    rusage usage{};
    getrusage(who, &usage);
    const auto seconds = [](const timeval &t) {
        return static_cast<double>(t.tv_sec) + static_cast<double>(t.tv_usec) / 1e6;
    };
    return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

/// Keeps the best of all rounds.
template <typename Action>
void measure(Cost &best, int who, Action action) {
    using Clock = std::chrono::steady_clock;
    const double processor = processorTime(who);
    const Clock::time_point before = Clock::now();
    action();
    best.wall = std::min(best.wall, std::chrono::duration<double>(Clock::now() - before).count());
    best.processor = std::min(best.processor, processorTime(who) - processor);
}

/// Something like speech: syllables of a buzzing tone with breath between them, noise under it, half a second of
/// silence around.
inline std::vector<std::int16_t> makeTake(int seconds, int sampleRate) {
    const std::size_t edge = static_cast<std::size_t>(sampleRate) / 2;
    std::vector<std::int16_t> samples(static_cast<std::size_t>(seconds) * static_cast<std::size_t>(sampleRate));
    std::uint32_t random = 7;
    double phase = 0;
    for (std::size_t i = edge; i + edge < samples.size(); ++i) {
        const double t = static_cast<double>(i) / sampleRate;
        random = random * 1664525 + 1013904223;
        const double noise = static_cast<double>(random >> 16U) / 32768 - 1;
        const double syllable = std::max(0.0, std::sin(2 * std::numbers::pi * 4.1 * t));
        phase += (110 + 30 * std::sin(2 * std::numbers::pi * 0.7 * t)) / sampleRate;
        const double buzz = 2 * (phase - std::floor(phase)) - 1;
        samples[i] =
            static_cast<std::int16_t>(std::lrint(9000 * syllable * buzz + 1500 * noise * (1 - syllable) + 40 * noise));
    }
    return samples;
}

} // namespace orvel
