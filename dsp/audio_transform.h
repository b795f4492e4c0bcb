#pragma once

#include "dsp/dither.h"
#include "dsp/limiter.h"
#include "dsp/reverb.h"

#include <cstdint>
#include <vector>

namespace orvel {

/// The signal processor: works in place on one array of signed 16-bit samples. While its switch is off, when no sound
/// is loaded, it does nothing.
class AudioTransform {
  public:
    /// Hz, of the samples to come.
    void setSampleRate(int hertz) { sampleRate_ = hertz; }
    /// Of the samples to come; it works on 1.
    void setChannels(int channels) { channels_ = channels; }
    void setEnabled(bool enabled) { enabled_ = enabled; }
    [[nodiscard]] bool isEnabled() const { return enabled_; }

    /// See gain.h.
    static float decibelsToFactor(float decibels);
    void amplify(std::vector<std::int16_t> &samples, float factor);
    /// See normalise.h.
    void normalise(std::vector<std::int16_t> &samples, float percent);
    /// See CompressorSettings.
    void compress(std::vector<std::int16_t> &samples, float threshold, float rate, float rmsTime);
    /// See ReverbSettings.
    void reverb(std::vector<std::int16_t> &samples, const ReverbSettings &settings);
    /// See limiter.h.
    void limit(std::vector<std::int16_t> &samples, const LimiterSettings &settings);
    /// See trim.h.
    void trimStart(std::vector<std::int16_t> &samples, float threshold, std::int32_t &k);
    void trimEnd(std::vector<std::int16_t> &samples, float threshold, std::int32_t &k);

  private:
    [[nodiscard]] bool works() const { return enabled_ && channels_ == 1; }

    int sampleRate_ = 0;
    int channels_ = 1;
    bool enabled_ = false;
    Dither dither_;
};

} // namespace orvel
