#include "dsp/cutting.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace orvel {

namespace {

constexpr int crossFadeMs = 5;
constexpr int edgeFadeMs = 2;

std::size_t lengthOf(int milliseconds, int sampleRate) {
    return static_cast<std::size_t>(std::max(sampleRate, 0)) * static_cast<std::size_t>(milliseconds) / 1000;
}

/// How far a fade of so many samples is, as a quarter of a turn.
double angleAt(std::size_t i, std::size_t count) {
    return (static_cast<double>(i) + 0.5) / static_cast<double>(count) * std::numbers::pi / 2;
}

std::int16_t rounded(double sample) {
    return static_cast<std::int16_t>(std::lrint(std::clamp(sample, -32768.0, 32767.0)));
}

/// From silence to the full sound, in a raised cosine.
template <typename Iterator>
void fadeUp(Iterator samples, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i, ++samples) {
        const double gain = std::pow(std::sin(angleAt(i, count)), 2);
        *samples = rounded(gain * static_cast<double>(*samples));
    }
}

} // namespace

void cutOut(std::vector<std::int16_t> &samples, std::size_t begin, std::size_t count, int sampleRate) {
    begin = std::min(begin, samples.size());
    count = std::min(count, samples.size() - begin);
    const std::size_t behind = begin + count;
    const std::size_t fade = std::min({lengthOf(crossFadeMs, sampleRate), samples.size() - behind, count});
    for (std::size_t i = 0; i < fade; ++i) {
        samples[behind + i] =
            rounded(std::cos(angleAt(i, fade)) * samples[begin + i] + std::sin(angleAt(i, fade)) * samples[behind + i]);
    }
    const auto from = samples.begin() + static_cast<std::ptrdiff_t>(begin);
    samples.erase(from, from + static_cast<std::ptrdiff_t>(count));
}

void keepOnly(std::vector<std::int16_t> &samples, std::size_t begin, std::size_t end, int sampleRate) {
    end = std::min(end, samples.size());
    begin = std::min(begin, end);
    const bool endsEarlier = end < samples.size();
    samples.resize(end);
    samples.erase(samples.begin(), samples.begin() + static_cast<std::ptrdiff_t>(begin));
    const std::size_t fade = std::min(lengthOf(edgeFadeMs, sampleRate), samples.size());
    if (begin > 0) {
        fadeUp(samples.begin(), fade);
    }
    if (endsEarlier) {
        fadeUp(samples.rbegin(), fade);
    }
}

} // namespace orvel
