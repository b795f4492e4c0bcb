// Takes that are nothing but trouble, at every setting of every stage.
#include "dsp/audio_transform.h"
#include "dsp/denormals.h"
#include "sound.h"

#include <chrono>
#include <functional>
#include <gtest/gtest.h>
#include <limits>

namespace orvel {

namespace {

/// One stage at one setting.
struct Setting {
    std::string name;
    std::function<void(AudioTransform &, Samples &)> run;
    bool keepsShape = false; ///< louder or softer is all that it makes a sound
};

enum class Shape { Kept, Changed };

void addSettings(std::vector<Setting> &settings, const std::string &stage, int first, int last, int step, Shape shape,
                 const std::function<void(AudioTransform &, Samples &, float)> &run) {
    for (int value = first; value <= last; value += step) {
        settings.push_back({stage + ' ' + std::to_string(value),
                            [run, value](AudioTransform &transform, Samples &take) {
                                run(transform, take, static_cast<float>(value));
                            },
                            shape == Shape::Kept});
    }
}

void trimBoth(AudioTransform &transform, Samples &take, float threshold) {
    std::int32_t k = 0;
    transform.trimStart(take, threshold, k);
    transform.trimEnd(take, threshold, k);
}

/// Every position of every knob, with the others at their ends.
std::vector<Setting> everySetting() {
    std::vector<Setting> all;
    addSettings(all, "gain", -15, 15, 1, Shape::Kept, [](AudioTransform &transform, Samples &take, float value) {
        transform.amplify(take, AudioTransform::decibelsToFactor(value));
    });
    addSettings(all, "level", 0, 100, 1, Shape::Kept,
                [](AudioTransform &transform, Samples &take, float value) { transform.normalise(take, value); });
    addSettings(all, "trim", -90, 0, 1, Shape::Changed, trimBoth);
    for (const float rate : {1.0F, 50.0F, 100.0F}) {
        addSettings(all, "threshold", -96, 0, 1, Shape::Kept,
                    [rate](AudioTransform &transform, Samples &take, float value) {
                        transform.compress(take, value, rate, 0);
                    });
    }
    addSettings(all, "rate", 1, 100, 1, Shape::Kept, [](AudioTransform &transform, Samples &take, float value) {
        transform.compress(take, -96, value, 0);
        transform.compress(take, -30, value, 1000);
    });
    addSettings(all, "delay", 0, 1000, 10, Shape::Changed, [](AudioTransform &transform, Samples &take, float value) {
        transform.reverb(take, {value, 100, 1, 1});
    });
    addSettings(all, "depth", 1, 100, 1, Shape::Changed, [](AudioTransform &transform, Samples &take, float value) {
        transform.reverb(take, {0, value, 3, 50});
    });
    addSettings(all, "decay", 1, 100, 9, Shape::Changed, [](AudioTransform &transform, Samples &take, float value) {
        transform.reverb(take, {0, 100, value, 100});
    });
    addSettings(all, "movement", 1, 100, 1, Shape::Changed, [](AudioTransform &transform, Samples &take, float value) {
        transform.reverb(take, {0, 100, 2, value});
    });
    return all;
}

AudioTransform ready() {
    AudioTransform transform;
    transform.setSampleRate(testRate);
    transform.setChannels(1);
    transform.setEnabled(true);
    return transform;
}

/// Whether something leapt from one end of the scale to the other in a sound that is too slow for that.
bool wraps(const Samples &samples) {
    return std::adjacent_find(samples.begin(), samples.end(), [](int a, int b) { return std::abs(a - b) > 40000; }) !=
           samples.end();
}

/// An hour of sound and silence, each a few seconds.
Samples hour(int rate) {
    Samples samples(std::size_t{3600} * static_cast<std::size_t>(rate));
    const Samples sound = noise(3000, 65536);
    for (std::size_t i = 0; i < samples.size(); ++i) {
        samples[i] = (i >> 17U) % 2 == 1 ? sound[i & 65535U] : std::int16_t{0};
    }
    return samples;
}

} // namespace

TEST(Extremes, SilenceStaysSilentAtEverySetting) {
    for (const Setting &setting : everySetting()) {
        AudioTransform transform = ready();
        Samples take(2000);
        setting.run(transform, take);
        ASSERT_GE(take.size(), 2000U) << setting.name;
        ASSERT_TRUE(std::all_of(take.begin(), take.end(), [](int sample) { return sample == 0; })) << setting.name;
    }
}

TEST(Extremes, AFullScaleSquareKeepsItsSigns) {
    const Samples before = square(2000);
    int looked = 0;
    for (const Setting &setting : everySetting()) {
        AudioTransform transform = ready();
        Samples take = before;
        setting.run(transform, take);
        // What stands still for a millisecond at an edge is an offset to the trim.
        ASSERT_GE(take.size(), before.size() - testRate / 500) << setting.name;
        if (!setting.keepsShape) {
            continue;
        }
        ++looked;
        for (std::size_t i = 0; i < before.size(); ++i) {
            ASSERT_TRUE(before[i] > 0 ? take[i] >= -1 : take[i] <= 1) << setting.name << ", sample " << i;
        }
    }
    EXPECT_EQ(looked, 31 + 101 + 3 * 97 + 100) << "gain, level, threshold at three rates, rate";
}

TEST(Extremes, NothingWrapsAroundAtAnySetting) {
    for (const Setting &setting : everySetting()) {
        AudioTransform transform = ready();
        Samples take = tone(150, 32767, 6000);
        setting.run(transform, take);
        ASSERT_FALSE(wraps(take)) << setting.name;
    }
}

// A gain of 800 dB in the settings file is infinite as a factor, and times 0 no number: rounding that is undefined.
TEST(Extremes, SettingsThatAreNoneAreTheirLimits) {
    constexpr float infinite = std::numeric_limits<float>::infinity();
    const Samples before = tone(150, 9000, 6000);
    for (const float value :
         {std::numeric_limits<float>::quiet_NaN(), infinite, -infinite, 1e30F, -1e30F, -50.0F, 0.0F}) {
        for (const auto &run : std::vector<std::function<void(AudioTransform &, Samples &)>>{
                 [=](AudioTransform &transform, Samples &take) {
                     transform.amplify(take, AudioTransform::decibelsToFactor(value));
                 },
                 [=](AudioTransform &transform, Samples &take) { transform.amplify(take, value); },
                 [=](AudioTransform &transform, Samples &take) { transform.normalise(take, value); },
                 [=](AudioTransform &transform, Samples &take) { transform.compress(take, value, 50, 0); },
                 [=](AudioTransform &transform, Samples &take) { transform.compress(take, -40, value, value); },
                 [=](AudioTransform &transform, Samples &take) {
                     transform.reverb(take, {value, 50, 10, 10});
                 },
                 [=](AudioTransform &transform, Samples &take) {
                     transform.reverb(take, {10, value, value, value});
                 },
                 [=](AudioTransform &transform, Samples &take) { trimBoth(transform, take, value); }}) {
            AudioTransform transform = ready();
            Samples take = before;
            run(transform, take);
            ASSERT_GE(take.size(), before.size()) << value;
            ASSERT_LE(take.size(), before.size() + 5 * testRate) << value;
        }
    }
    AudioTransform transform = ready();
    Samples take = before;
    transform.amplify(take, AudioTransform::decibelsToFactor(800));
    EXPECT_NEAR(take[0], 0, 1);
    EXPECT_EQ(take[50], 32767);
}

TEST(Extremes, OneSampleAndNoneGoThrough) {
    for (const Setting &setting : everySetting()) {
        AudioTransform transform = ready();
        Samples empty;
        setting.run(transform, empty);
        ASSERT_TRUE(empty.empty()) << setting.name;
        Samples one = {-32768};
        setting.run(transform, one);
        ASSERT_GE(one.size(), 1U) << setting.name;
    }
}

TEST(Extremes, AnHourIsTheSameAtItsEndAsAtItsBeginning) {
    AudioTransform transform = ready();
    Samples take = hour(testRate);
    const std::size_t length = take.size();
    const Samples raw(take.end() - 100000, take.end());
    transform.amplify(take, 0.5F);
    for (std::size_t i = 0; i < raw.size(); ++i) {
        ASSERT_NEAR(take[length - raw.size() + i], 0.5 * raw[i], 1.6);
    }
    transform.normalise(take, 90);
    EXPECT_NEAR(peakOf(take), 29490, 2);
    trimBoth(transform, take, -40);
    // It begins with three seconds of silence and ends with sound.
    EXPECT_NEAR(static_cast<double>(length - take.size()), 131072, 400);
}

TEST(Extremes, AnHourOfCompressionAndReverberationDoesNotDrift) {
    AudioTransform transform = ready();
    constexpr int rate = 8000;
    transform.setSampleRate(rate);
    Samples take = hour(rate);
    const std::size_t length = take.size();
    constexpr std::size_t period = 2U << 17U;
    const auto loudness = [&](std::size_t start) {
        const auto first = take.begin() + static_cast<std::ptrdiff_t>(start + period / 2 + 50000);
        return rmsOf(Samples(first, first + 50000));
    };
    const std::size_t last = (length / period - 1) * period;
    transform.compress(take, -40, 70, 0);
    EXPECT_NEAR(loudness(last), loudness(0), 0.002 * loudness(0));
    transform.reverb(take, {20, 30, 30, 50});
    EXPECT_EQ(take.size(), length + 160 + 7200);
    EXPECT_NEAR(loudness(last), loudness(0), 0.05 * loudness(0));
}

TEST(Extremes, WithoutAllowanceNothingHappens) {
    AudioTransform transform = ready();
    const Samples take = tone(440, 20000, 5000);
    transform.setEnabled(false);
    Samples same = take;
    for (const Setting &setting : everySetting()) {
        setting.run(transform, same);
    }
    EXPECT_EQ(same, take);
    transform.setEnabled(true);
    transform.setChannels(2);
    for (const Setting &setting : everySetting()) {
        setting.run(transform, same);
    }
    EXPECT_EQ(same, take);
}

TEST(Denormals, AreOffAsLongAsTheSwitchLives) {
    volatile float small = std::numeric_limits<float>::min();
    EXPECT_GT(small / 4, 0.0F);
    {
        const NoDenormals noDenormals;
        EXPECT_EQ(small / 4, 0.0F);
    }
    EXPECT_GT(small / 4, 0.0F);
}

} // namespace orvel
