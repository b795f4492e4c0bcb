#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>
#include <vector>

namespace orvel {

/// One sound on a mixer's time axis.
struct MixClip {
    /// Gives as many interleaved stereo samples as it likes, at most those that fit; returns how many frames, 0 at its
    /// end. Asked in their order, from the sound's first frame on.
    std::function<std::size_t(std::span<float> stereo)> read;
    std::int64_t start = 0;       ///< frame of the axis where it begins
    std::int64_t end = INT64_MAX; ///< frame of the axis where it is silent again, if it has not ended before
    float gain = 1;
};

/// Sums clips on one time axis, stereo at whatever rate they share. Every clip comes and goes in a ramp of 5 ms at
/// 44100 Hz, so that nothing clicks. Up to 0.8 of full scale the sum is what it is; above, it bends and never goes past
/// full scale, so that two loud items together do not crack: a single one at full scale is 0.4 dB softer at its peaks.
class Mixer {
  public:
    static constexpr std::int64_t rampFrames = 220;

    /// The axis is heard from this frame on.
    explicit Mixer(std::int64_t from = 0) : at_(from) {}

    /// A clip that should have begun already begins with its first frame all the same, but now.
    void add(MixClip clip);
    /// The next frames of the axis; fills all of `stereo` (interleaved).
    void mix(std::span<float> stereo);
    /// The frame of the axis that mix() gives next.
    [[nodiscard]] std::int64_t at() const { return at_; }
    /// Every clip has ended.
    [[nodiscard]] bool isOver() const { return clips_.empty(); }

  private:
    struct Playing {
        MixClip clip;
        std::vector<float> waiting; ///< read ahead, so that the end is known a ramp before it comes
        std::int64_t given = 0;     ///< frames that went into the mix
        bool hasEnded = false;      ///< nothing more is to be read
    };

    static void readAhead(Playing &playing, std::size_t frames);
    static bool addTo(std::span<float> stereo, Playing &playing, std::int64_t at);

    std::int64_t at_;
    std::vector<Playing> clips_;
};

} // namespace orvel
