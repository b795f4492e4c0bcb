#include "dsp/mixer.h"

#include <algorithm>
#include <cmath>

namespace orvel {

namespace {

constexpr float kStraight = 0.8F;

/// Goes on where the straight part ends with the same slope, and comes near full scale.
float bent(float sample) {
    const float size = std::abs(sample);
    if (size <= kStraight) {
        return sample;
    }
    constexpr float room = 1 - kStraight;
    return std::copysign(kStraight + room * std::tanh((size - kStraight) / room), sample);
}

/// Of a frame that has so many before it and behind it in its clip.
float rampAt(std::int64_t before, std::int64_t behind) {
    const auto nearest = static_cast<float>(std::min({before + 1, behind + 1, Mixer::rampFrames}));
    return nearest / static_cast<float>(Mixer::rampFrames);
}

} // namespace

void Mixer::add(MixClip clip) {
    clip.start = std::max(clip.start, at_);
    clips_.push_back({std::move(clip), {}, 0, false});
}

void Mixer::mix(std::span<float> stereo) {
    std::fill(stereo.begin(), stereo.end(), 0.0F);
    std::erase_if(clips_, [&](Playing &playing) { return !addTo(stereo, playing, at_); });
    std::transform(stereo.begin(), stereo.end(), stereo.begin(), bent);
    at_ += static_cast<std::int64_t>(stereo.size() / 2);
}

void Mixer::readAhead(Playing &playing, std::size_t frames) {
    while (!playing.hasEnded && playing.waiting.size() < 2 * frames) {
        const std::size_t before = playing.waiting.size();
        playing.waiting.resize(2 * frames);
        const std::size_t count = playing.clip.read(std::span(playing.waiting).subspan(before));
        playing.waiting.resize(before + 2 * count);
        playing.hasEnded = count == 0;
    }
}

/// False when the clip is over. at: the frame of the axis where `stereo` begins.
bool Mixer::addTo(std::span<float> stereo, Playing &playing, std::int64_t at) {
    const MixClip &clip = playing.clip;
    const auto frames = static_cast<std::int64_t>(stereo.size() / 2);
    const std::int64_t from = std::clamp<std::int64_t>(clip.start - at, 0, frames);
    const std::int64_t to = std::clamp<std::int64_t>(clip.end - at, from, frames);
    if (from == frames && clip.end > at) {
        return true;
    }
    readAhead(playing, static_cast<std::size_t>(to - from + rampFrames));
    const auto waiting = static_cast<std::int64_t>(playing.waiting.size() / 2);
    const std::int64_t count = std::min(to - from, waiting);
    for (std::int64_t i = 0; i < count; ++i) {
        const std::int64_t untilEnd = clip.end - (at + from + i) - 1;
        const std::int64_t behind = playing.hasEnded ? std::min(waiting - i - 1, untilEnd) : untilEnd;
        const float gain = clip.gain * rampAt(playing.given + i, behind);
        for (std::int64_t channel = 0; channel < 2; ++channel) {
            stereo[static_cast<std::size_t>(2 * (from + i) + channel)] +=
                gain * playing.waiting[static_cast<std::size_t>(2 * i + channel)];
        }
    }
    playing.given += count;
    playing.waiting.erase(playing.waiting.begin(), playing.waiting.begin() + 2 * count);
    return clip.end > at + frames && !(playing.hasEnded && playing.waiting.empty());
}

} // namespace orvel
