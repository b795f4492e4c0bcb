#include "dsp/resampler.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <numeric>

namespace orvel {

namespace {

/// Zero crossings of the sinc on either side.
constexpr double kCrossings = 16;
/// Of the lower rate's band: the rest is for the filter's slope.
constexpr double kBand = 0.94;

/// sin(pi x) / (pi x)
double sinc(double x) {
    const double angle = std::numbers::pi * x;
    return std::abs(angle) < 1e-9 ? 1 : std::sin(angle) / angle;
}

/// Blackman's window for -1..1.
double window(double x) {
    const double angle = std::numbers::pi * x;
    return std::abs(x) >= 1 ? 0 : 0.42 + 0.5 * std::cos(angle) + 0.08 * std::cos(2 * angle);
}

} // namespace

Resampler::Resampler(int from, int to)
    : up_(static_cast<std::size_t>(to / std::gcd(from, to))),
      down_(static_cast<std::size_t>(from / std::gcd(from, to))) {
    if (up_ == down_) {
        return;
    }
    const double band = kBand * std::min(1.0, static_cast<double>(to) / from);
    half_ = static_cast<std::size_t>(std::ceil(kCrossings / band));
    kernel_.resize(up_ * 2 * half_);
    for (std::size_t phase = 0; phase < up_; ++phase) {
        // The sample stands this far behind the frame half_ - 1 of its kernel.
        const double fraction = static_cast<double>(phase) / static_cast<double>(up_);
        const std::span<float> weights(kernel_.data() + phase * 2 * half_, 2 * half_);
        double sum = 0;
        for (std::size_t i = 0; i < weights.size(); ++i) {
            const double distance = static_cast<double>(i) - static_cast<double>(half_ - 1) - fraction;
            const double weight = sinc(distance * band) * window(distance / static_cast<double>(half_));
            weights[i] = static_cast<float>(weight);
            sum += weight;
        }
        std::for_each(weights.begin(), weights.end(), [sum](float &weight) { weight /= static_cast<float>(sum); });
    }
    input_.assign(2 * (half_ - 1), 0.0F);
}

void Resampler::push(std::span<const float> stereo, std::vector<float> &out) {
    if (up_ == down_) {
        out.insert(out.end(), stereo.begin(), stereo.end());
        return;
    }
    input_.insert(input_.end(), stereo.begin(), stereo.end());
    produce(out);
}

void Resampler::finish(std::vector<float> &out) {
    const std::vector<float> silence(2 * half_, 0.0F);
    push(silence, out);
}

void Resampler::produce(std::vector<float> &out) {
    const std::size_t taps = 2 * half_;
    while (first_ + taps <= input_.size() / 2) {
        const float *weights = kernel_.data() + phase_ * taps;
        const float *frame = input_.data() + 2 * first_;
        float left = 0;
        float right = 0;
        for (std::size_t i = 0; i < taps; ++i) {
            left += weights[i] * frame[2 * i];
            right += weights[i] * frame[2 * i + 1];
        }
        out.push_back(left);
        out.push_back(right);
        phase_ += down_;
        first_ += phase_ / up_;
        phase_ %= up_;
    }
    const std::size_t done = std::min(first_, input_.size() / 2);
    input_.erase(input_.begin(), input_.begin() + static_cast<std::ptrdiff_t>(2 * done));
    first_ -= done;
}

} // namespace orvel
