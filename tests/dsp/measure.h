#pragma once

#include <cmath>
#include <complex>
#include <numbers>
#include <vector>

namespace orvel {

using Curve = std::vector<double>;

/// The spectrum's powers; the number of samples is a power of two, of results half of it.
inline Curve powerSpectrum(const Curve &samples) {
    const std::size_t count = samples.size();
    std::vector<std::complex<double>> work(samples.begin(), samples.end());
    for (std::size_t i = 1, j = 0; i < count; ++i) {
        std::size_t bit = count >> 1U;
        for (; (j & bit) != 0; bit >>= 1U) {
            j ^= bit;
        }
        j ^= bit;
        if (i < j) {
            std::swap(work[i], work[j]);
        }
    }
    for (std::size_t half = 1; half < count; half *= 2) {
        for (std::size_t k = 0; k < half; ++k) {
            const std::complex<double> turn =
                std::polar(1.0, -std::numbers::pi * static_cast<double>(k) / static_cast<double>(half));
            for (std::size_t i = k; i < count; i += 2 * half) {
                const std::complex<double> other = work[i + half] * turn;
                work[i + half] = work[i] - other;
                work[i] += other;
            }
        }
    }
    Curve powers(count / 2);
    for (std::size_t i = 0; i < powers.size(); ++i) {
        powers[i] = std::norm(work[i]);
    }
    return powers;
}

/// About an octave around a frequency: two band-pass sections of quality 1 in a row (R. Bristow-Johnson, "Cookbook
/// formulae for audio EQ biquad filter coefficients").
inline Curve band(Curve samples, double frequency, double rate) {
    const double w = 2 * std::numbers::pi * frequency / rate;
    const double alpha = std::sin(w) / 2;
    for (int section = 0; section < 2; ++section) {
        double x1 = 0;
        double x2 = 0;
        double y1 = 0;
        double y2 = 0;
        for (double &sample : samples) {
            const double y = (alpha * (sample - x2) + 2 * std::cos(w) * y1 - (1 - alpha) * y2) / (1 + alpha);
            x2 = x1;
            x1 = sample;
            y2 = y1;
            y1 = y;
            sample = y;
        }
    }
    return samples;
}

/// Decibels of the energy that is still to come, after M. R. Schroeder, "New Method of Measuring Reverberation Time",
/// J. Acoust. Soc. Am. 37 (1965).
inline Curve decayCurve(const Curve &response) {
    Curve decay(response.size());
    double energy = 0;
    for (std::size_t i = response.size(); i-- > 0;) {
        energy += response[i] * response[i];
        decay[i] = energy;
    }
    for (double &value : decay) {
        value = 10 * std::log10(value / energy + 1e-30);
    }
    return decay;
}

/// Seconds for 60 dB, from the line through -5 .. -35 dB of the decay curve (ISO 3382: T30).
inline double reverberationTime(const Curve &response, double rate) {
    const Curve decay = decayCurve(response);
    double count = 0;
    double t = 0;
    double level = 0;
    double tt = 0;
    double tLevel = 0;
    for (std::size_t i = 0; i < decay.size(); ++i) {
        if (decay[i] < -5 && decay[i] > -35) {
            const double time = static_cast<double>(i) / rate;
            count += 1;
            t += time;
            level += decay[i];
            tt += time * time;
            tLevel += time * decay[i];
        }
    }
    return -60 * (count * tt - t * t) / (count * tLevel - t * level);
}

} // namespace orvel
