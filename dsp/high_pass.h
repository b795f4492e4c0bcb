#pragma once

#include <algorithm>
#include <cmath>
#include <numbers>

namespace orvel {

/// A second-order Butterworth high-pass (R. Bristow-Johnson, "Cookbook formulae for audio EQ biquad filter
/// coefficients").
class HighPass {
  public:
    /// Both in Hz.
    HighPass(double cutOff, double sampleRate) {
        const double w = 2 * std::numbers::pi * std::min(cutOff / sampleRate, 0.25);
        const double alpha = std::sin(w) / std::numbers::sqrt2;
        b_ = (1 + std::cos(w)) / 2 / (1 + alpha);
        a1_ = -2 * std::cos(w) / (1 + alpha);
        a2_ = (1 - alpha) / (1 + alpha);
    }

    double next(double x) {
        const double y = b_ * x + first_;
        first_ = second_ - 2 * b_ * x - a1_ * y;
        second_ = b_ * x - a2_ * y;
        return y;
    }

  private:
    double b_;
    double a1_;
    double a2_;
    double first_ = 0;
    double second_ = 0;
};

} // namespace orvel
