#include "dsp/mixer.h"
#include "dsp/resampler.h"

#include <algorithm>
#include <cmath>
#include <gtest/gtest.h>
#include <numbers>

namespace orvel {
namespace {

using Sound = std::vector<float>; ///< interleaved stereo

constexpr std::int64_t kRamp = Mixer::rampFrames;

Sound constant(std::size_t frames, float level) {
    return Sound(2 * frames, level);
}

/// A sound that gives so many frames at a time at most.
std::function<std::size_t(std::span<float>)> reader(Sound sound, std::size_t most = 1000) {
    return [sound = std::move(sound), most, at = std::size_t{0}](std::span<float> to) mutable {
        const std::size_t count = std::min({to.size() / 2, most, (sound.size() - at) / 2});
        std::copy_n(sound.begin() + static_cast<std::ptrdiff_t>(at), 2 * count, to.begin());
        at += 2 * count;
        return count;
    };
}

/// Mixes in blocks of so many frames.
Sound mixed(Mixer &mixer, std::size_t frames, std::size_t block = 441) {
    Sound all;
    while (all.size() < 2 * frames) {
        Sound part(2 * std::min(block, frames - all.size() / 2));
        mixer.mix(part);
        all.insert(all.end(), part.begin(), part.end());
    }
    return all;
}

float leftAt(const Sound &sound, std::size_t frame) {
    return sound.at(2 * frame);
}

/// The largest step from one sample of a channel to its next.
float largestStep(const Sound &sound) {
    float largest = std::abs(sound.at(0));
    for (std::size_t i = 2; i < sound.size(); ++i) {
        largest = std::max(largest, std::abs(sound[i] - sound[i - 2]));
    }
    return largest;
}

TEST(Mixer, AClipSoundsFromItsStartToItsEndToTheFrame) {
    for (const std::size_t block : {64U, 441U, 5000U}) {
        Mixer mixer;
        mixer.add({.read = reader(constant(3000, 0.5F))});
        mixer.add({.read = reader(constant(2000, 0.25F)), .start = 1234});
        const Sound out = mixed(mixer, 4000, block);
        EXPECT_FLOAT_EQ(leftAt(out, 1233), 0.5F) << block;
        EXPECT_NEAR(leftAt(out, 1234), 0.5F + 0.25F / kRamp, 1e-6) << block;
        EXPECT_FLOAT_EQ(leftAt(out, 1234 + kRamp), 0.75F) << block;
        EXPECT_GT(leftAt(out, 2999), 0.25F) << block;
        EXPECT_FLOAT_EQ(leftAt(out, 3000), 0.25F) << block;
        EXPECT_GT(leftAt(out, 3233), 0.0F) << block;
        EXPECT_EQ(leftAt(out, 3234), 0.0F) << block;
        EXPECT_TRUE(mixer.isOver()) << block;
    }
}

TEST(Mixer, TheAxisMayBeginBeforeZero) {
    Mixer mixer(-1000);
    mixer.add({.read = reader(constant(5000, 0.5F)), .start = -500, .end = 0});
    const Sound out = mixed(mixer, 1200);
    EXPECT_EQ(leftAt(out, 499), 0.0F);
    EXPECT_GT(leftAt(out, 500), 0.0F);
    EXPECT_GT(leftAt(out, 999), 0.0F);
    EXPECT_EQ(leftAt(out, 1000), 0.0F);
    EXPECT_EQ(mixer.at(), 200);
    EXPECT_TRUE(mixer.isOver());
}

TEST(Mixer, NothingClicksAtStartsAndStops) {
    Mixer mixer;
    mixer.add({.read = reader(constant(3000, 0.7F), 77), .start = 100});            // ends by itself
    mixer.add({.read = reader(constant(9000, -0.6F)), .start = 2000, .end = 5000}); // is cut off
    mixer.add({.read = reader(constant(100, 0.5F)), .start = 6000});                // shorter than two ramps
    EXPECT_LE(largestStep(mixed(mixer, 7000)), 1.4F / kRamp);
}

TEST(Mixer, ManyLoudClipsStayBelowFullScale) {
    Mixer mixer;
    for (int i = 0; i < 4; ++i) {
        mixer.add({.read = reader(constant(1000, 1.0F)), .gain = 1.5F});
    }
    const Sound out = mixed(mixer, 1000);
    EXPECT_LE(*std::max_element(out.begin(), out.end()), 1.0F);
    EXPECT_GT(leftAt(out, 500), 0.99F);
}

TEST(Mixer, GainIsAFactorAndQuietSumsAreExact) {
    Mixer mixer;
    mixer.add({.read = reader(constant(1000, 0.5F)), .gain = 0.5F});
    mixer.add({.read = reader(constant(1000, 0.25F)), .gain = 1.0F});
    EXPECT_FLOAT_EQ(leftAt(mixed(mixer, 1000), 500), 0.5F);
}

TEST(Mixer, AClipThatGivesNothingEndsAtOnce) {
    Mixer mixer;
    mixer.add({.read = reader({}), .start = 10});
    EXPECT_FALSE(mixer.isOver());
    EXPECT_EQ(largestStep(mixed(mixer, 100)), 0.0F);
    EXPECT_TRUE(mixer.isOver());
}

Sound sine(std::size_t frames, double hertz, double rate) {
    Sound sound;
    for (std::size_t i = 0; i < frames; ++i) {
        const double angle = 2 * std::numbers::pi * hertz * static_cast<double>(i) / rate;
        sound.push_back(static_cast<float>(0.5 * std::sin(angle)));
        sound.push_back(static_cast<float>(0.5 * std::cos(angle)));
    }
    return sound;
}

TEST(Resampler, KeepsTimePitchAndLevelOfEveryRate) {
    for (const int rate : {8000, 22050, 32000, 44100, 48000, 96000}) {
        Resampler resampler(rate, 44100);
        const Sound in = sine(static_cast<std::size_t>(rate), 1000, rate);
        Sound out;
        for (std::size_t at = 0; at < in.size(); at += 600) {
            resampler.push(std::span(in).subspan(at, std::min<std::size_t>(600, in.size() - at)), out);
        }
        resampler.finish(out);
        ASSERT_NEAR(static_cast<double>(out.size()) / 2, 44100, 20) << rate;
        const Sound truth = sine(44100, 1000, 44100);
        double worst = 0;
        for (std::size_t i = 2000; i + 2000 < std::min(truth.size(), out.size()); ++i) {
            worst = std::max<double>(worst, std::abs(out[i] - truth[i]));
        }
        EXPECT_LT(worst, 0.001) << rate << ": neither delayed nor bent";
    }
}

/// What the lower rate cannot hold is gone, not mirrored into the band.
TEST(Resampler, WhatALowerRateCannotHoldIsSilent) {
    Resampler resampler(96000, 44100);
    Sound out;
    resampler.push(sine(96000, 30000, 96000), out);
    EXPECT_LT(*std::max_element(out.begin() + 4000, out.end() - 4000), 0.001F);
}

} // namespace
} // namespace orvel
