#include "dsp/loopback.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <numbers>
#include <numeric>

namespace orvel {
namespace {

constexpr double kRate = 44100;
constexpr std::size_t kLength = 8820;
constexpr double kLowest = 300;
constexpr double kHighest = 3500;
constexpr double kPeak = 8192;
/// Of each end.
constexpr std::size_t kFade = 1323;
/// Samples that are taken together: the probe has nothing above their rate.
constexpr std::size_t kStep = 4;
/// What lies nearer than 5 ms to the best place belongs to it.
constexpr std::size_t kOwn = 220 / kStep;

double fade(std::size_t sample) {
    const std::size_t toEnd = std::min(sample, kLength - 1 - sample);
    const double part = std::min(1.0, static_cast<double>(toEnd) / kFade);
    return (1 - std::cos(std::numbers::pi * part)) / 2;
}

/// Sums of `kStep` samples each.
std::vector<float> coarse(std::span<const std::int16_t> samples) {
    std::vector<float> sums(samples.size() / kStep);
    for (std::size_t i = 0; i < sums.size(); ++i) {
        const auto step = samples.subspan(i * kStep, kStep);
        sums[i] = static_cast<float>(std::accumulate(step.begin(), step.end(), 0));
    }
    return sums;
}

double energyOf(std::span<const float> samples) {
    return std::inner_product(samples.begin(), samples.end(), samples.begin(), 0.0);
}

float product(const float *left, const float *right, std::size_t count) {
    // Eight sums that do not wait for each other.
    std::array<float, 8> sums{};
    std::size_t i = 0;
    for (; i + sums.size() <= count; i += sums.size()) {
        for (std::size_t lane = 0; lane < sums.size(); ++lane) {
            sums[lane] += left[i + lane] * right[i + lane];
        }
    }
    float rest = 0;
    for (; i < count; ++i) {
        rest += left[i] * right[i];
    }
    return std::accumulate(sums.begin(), sums.end(), rest);
}

} // namespace

std::vector<std::int16_t> loopbackProbe() {
    std::vector<std::int16_t> probe(kLength);
    for (std::size_t i = 0; i < kLength; ++i) {
        const double time = static_cast<double>(i) / kRate;
        const double slope = (kHighest - kLowest) * kRate / kLength; // Hz a second
        const double phase = 2 * std::numbers::pi * (kLowest * time + slope * time * time / 2);
        probe[i] = static_cast<std::int16_t>(std::lrint(kPeak * fade(i) * std::sin(phase)));
    }
    return probe;
}

ProbeSearch findProbe(std::span<const std::int16_t> recorded) {
    const std::vector<float> probe = coarse(loopbackProbe());
    const std::vector<float> heard = coarse(recorded);
    if (heard.size() < probe.size()) {
        return {};
    }
    std::vector<float> strengths(heard.size() - probe.size() + 1);
    for (std::size_t at = 0; at < strengths.size(); ++at) {
        strengths[at] = std::abs(product(heard.data() + at, probe.data(), probe.size()));
    }
    const auto best =
        static_cast<std::size_t>(std::max_element(strengths.begin(), strengths.end()) - strengths.begin());
    const double strength = strengths[best];
    if (strength <= 0) {
        return {};
    }
    double rival = 0;
    for (std::size_t at = 0; at < strengths.size(); ++at) {
        const bool isOwn = at + kOwn > best && at < best + kOwn;
        rival = isOwn ? rival : std::max<double>(rival, strengths[at]);
    }
    const double energy = energyOf(std::span(heard).subspan(best, probe.size()));
    return {static_cast<std::int64_t>(best * kStep), strength / std::sqrt(energy * energyOf(probe)), rival / strength};
}

} // namespace orvel
