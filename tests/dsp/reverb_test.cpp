#include "dsp/reverb.h"
#include "dsp/room.h"
#include "measure.h"
#include "sound.h"
#include "speech.h"

#include <gtest/gtest.h>

namespace orvel {

namespace {

/// What a room makes of a click.
Curve impulseResponse(double seconds, double hertz, double length, int rate = testRate) {
    Room room(static_cast<float>(seconds), static_cast<float>(hertz), rate);
    Curve response;
    RoomBlock block{};
    block[0] = 1;
    while (static_cast<double>(response.size()) < length * rate) {
        room.process(block);
        response.insert(response.end(), block.begin(), block.end());
        block = {};
    }
    return response;
}

/// The part of a response between two samples as if it did not decay, with soft edges: what rings longer than the rest
/// stands out.
Curve undecayed(Curve response, double seconds, double from, double until) {
    for (std::size_t i = 0; i < response.size(); ++i) {
        const double time = static_cast<double>(i) / testRate;
        const double place = (time - from) / (until - from);
        response[i] *= place < 0 || place > 1
                           ? 0
                           : std::pow(std::sin(std::numbers::pi * place), 2) * std::pow(10.0, 3 * time / seconds);
    }
    return response;
}

/// How far the strongest partial (a peak of the spectrum) is above the mean of those around it, dB; 100 Hz to 8 kHz.
double strongestPartial(Curve response) {
    constexpr std::size_t count = std::size_t{1} << 18U;
    response.resize(count);
    const Curve power = powerSpectrum(response);
    std::vector<std::pair<double, double>> partials; // frequency, power
    for (std::size_t i = 1; i + 1 < power.size(); ++i) {
        if (power[i] > power[i - 1] && power[i] > power[i + 1]) {
            partials.emplace_back(static_cast<double>(i) * testRate / count, power[i]);
        }
    }
    double strongest = 0;
    std::size_t first = 0;
    std::size_t end = 0;
    double sum = 0;
    for (const auto &[frequency, strength] : partials) {
        for (; end < partials.size() && partials[end].first < frequency * 1.12; ++end) {
            sum += partials[end].second;
        }
        for (; partials[first].first < frequency / 1.12; ++first) {
            sum -= partials[first].second;
        }
        if (frequency > 100 && frequency < 8000) {
            strongest = std::max(strongest, strength * static_cast<double>(end - first) / sum);
        }
    }
    return 10 * std::log10(strongest);
}

/// How far the strongest bin of the spectrum is above the mean of its third of an octave, dB; 100 Hz to 8 kHz.
double strongestBin(Curve response) {
    constexpr std::size_t count = std::size_t{1} << 18U;
    response.resize(count);
    const Curve power = powerSpectrum(response);
    Curve sums = {0};
    for (const double value : power) {
        sums.push_back(sums.back() + value);
    }
    constexpr double bin = static_cast<double>(testRate) / count;
    const double half = std::pow(2, 1.0 / 6);
    double strongest = 0;
    for (auto i = static_cast<std::size_t>(100 / bin); i < static_cast<std::size_t>(8000 / bin); ++i) {
        const auto first = static_cast<std::size_t>(static_cast<double>(i) / half);
        const auto end = static_cast<std::size_t>(static_cast<double>(i) * half) + 1;
        strongest = std::max(strongest, power[i] * static_cast<double>(end - first) / (sums[end] - sums[first]));
    }
    return 10 * std::log10(strongest);
}

/// F. J. Harris, "On the use of windows for harmonic analysis with the discrete Fourier transform", Proc. IEEE 66
/// (1978): what is 92 dB down is its own.
Curve blackmanHarris(Curve samples) {
    for (std::size_t i = 0; i < samples.size(); ++i) {
        const double x = 2 * std::numbers::pi * static_cast<double>(i) / static_cast<double>(samples.size());
        samples[i] *= 0.35875 - 0.48829 * std::cos(x) + 0.14128 * std::cos(2 * x) - 0.01168 * std::cos(3 * x);
    }
    return samples;
}

Samples click(std::size_t length) {
    Samples take(length);
    take[0] = 32767;
    return take;
}

} // namespace

TEST(Reverb, TheReverberationTimeIsWithinATenth) {
    for (const int decay : {1, 2, 5, 10, 20, 33, 50, 75, 100}) {
        const double seconds = decay * static_cast<double>(reverbSeconds) / 100;
        const Curve response = impulseResponse(seconds, 0.2, 2 * seconds + 0.1);
        // ISO 3382: the mean of the octaves of 500 Hz and 1 kHz.
        const double measured = (reverberationTime(band(response, 500, testRate), testRate) +
                                 reverberationTime(band(response, 1000, testRate), testRate)) /
                                2;
        EXPECT_NEAR(measured / seconds, 1, 0.1) << decay << " %";
    }
}

TEST(Reverb, NoPartialStandsOut) {
    for (const double seconds : {0.15, 0.6, 1.0, 3.0}) {
        for (const double hertz : {0.01, 0.2, 1.0}) {
            const Curve response = impulseResponse(seconds, hertz, 1.5 * seconds);
            EXPECT_LT(strongestPartial(response), 12) << seconds << " s, " << hertz << " Hz";
            EXPECT_LT(strongestPartial(undecayed(response, seconds, 0.4 * seconds, seconds)), 12)
                << seconds << " s, " << hertz << " Hz, what rings at the end";
        }
    }
}

// The strongest bin of a long tail stood 14 dB out of its third of an octave: the lines were too short for so long a
// time. White noise of the same length and course is the measure: 20 pieces of it lie within 2.2 dB of their mean.
// Where a room's maximum lies is chance as well, so that many rooms are asked.
TEST(Reverb, NoBinStandsOutMoreThanInNoise) {
    Curve whole;
    Curve tails;
    for (const double seconds : {0.6, 1.0, 2.0, static_cast<double>(reverbSeconds)}) {
        double inNoise = 0;
        constexpr int noises = 6;
        for (unsigned seed = 1; seed <= noises; ++seed) {
            const Samples hiss = noise(1000, static_cast<std::size_t>(1.6 * seconds * testRate), seed);
            const Curve sound(hiss.begin(), hiss.end());
            inNoise += strongestBin(undecayed(sound, 1e9, 0.4 * seconds, seconds)) / noises;
        }
        for (const double hertz : {0.01, 0.2, 1.0}) {
            const Curve response = impulseResponse(seconds, hertz, 1.6 * seconds);
            whole.push_back(strongestBin(response) - inNoise);
            tails.push_back(strongestBin(undecayed(response, seconds, 0.4 * seconds, seconds)) - inNoise);
            EXPECT_LT(whole.back(), 2) << seconds << " s, " << hertz << " Hz";
            EXPECT_LT(tails.back(), 3.5) << seconds << " s, " << hertz << " Hz, what rings at the end";
        }
    }
    const auto mean = [](const Curve &values) {
        return std::accumulate(values.begin(), values.end(), 0.0) / static_cast<double>(values.size());
    };
    EXPECT_LT(mean(whole), 0.5);
    EXPECT_LT(mean(tails), 1.6) << "what rings at the end";
}

// The delays were set once in 32 samples: a tone had neighbours every 1378 Hz, 51 dB below it.
TEST(Reverb, ATonesSideLinesAreEightyDecibelsDown) {
    constexpr std::size_t count = std::size_t{1} << 17U;
    constexpr double distance = static_cast<double>(testRate) / roomBlock;
    for (const double frequency : {300.0, 3000.0, 6000.0}) {
        Room room(1, 1, testRate);
        Curve sound;
        RoomBlock block{};
        for (std::size_t i = 0; sound.size() < count + 2 * testRate; i += roomBlock) {
            for (std::size_t n = 0; n < roomBlock; ++n) {
                const double phase = frequency * static_cast<double>(i + n) / testRate;
                block[n] = static_cast<float>(std::sin(2 * std::numbers::pi * phase));
            }
            room.process(block);
            sound.insert(sound.end(), block.begin(), block.end());
        }
        const Curve power = powerSpectrum(blackmanHarris({sound.end() - count, sound.end()}));
        const auto around = [&](double hertz) {
            constexpr double bin = static_cast<double>(testRate) / count;
            return *std::max_element(power.begin() + std::lround((hertz - 20) / bin),
                                     power.begin() + std::lround((hertz + 20) / bin));
        };
        for (double other = frequency + distance; other < 20000; other += distance) {
            EXPECT_LT(10 * std::log10(around(other) / around(frequency)), -80) << frequency << " Hz, " << other;
        }
    }
}

// Where the room's peaks met those of a take at full scale, they were cut off, up to 0.7 dB.
TEST(Reverb, NothingIsCutOffAtFullScale) {
    const Samples voice = speak(spokenSentences[3]);
    ASSERT_GT(peakOf(voice), 0) << "espeak-ng is not installed";
    bool met = false;
    for (const float depth : {10.0F, 25.0F, 50.0F}) {
        for (const Samples &dry : {atPeak(voice, 0), square(20000), noise(12000, 20000)}) {
            Dither dither;
            Samples whole = dry;
            reverb(whole, {20, depth, 20, 20}, testRate, dither);
            Samples soft(dry.size());
            std::transform(dry.begin(), dry.end(), soft.begin(), [](int sample) { return sample / 4; });
            reverb(soft, {20, depth, 20, 20}, testRate, dither);
            // What is a quarter as loud meets no limit; both must be the same sound.
            const double factor = static_cast<double>(peakOf(whole)) / peakOf(soft);
            EXPECT_LE(factor, 4.01);
            met = met || factor < 3.9;
            for (std::size_t i = 0; i < whole.size(); ++i) {
                ASSERT_NEAR(whole[i], factor * soft[i], 12) << depth << " %, sample " << i;
            }
        }
    }
    EXPECT_TRUE(met) << "nothing that would have been cut off";
}

TEST(Reverb, TrebleDiesAwayFirst) {
    const Curve response = impulseResponse(1.5, 0.2, 3);
    const double middle = reverberationTime(band(response, 1000, testRate), testRate);
    EXPECT_LT(reverberationTime(band(response, 8000, testRate), testRate), 0.8 * middle);
    EXPECT_NEAR(reverberationTime(band(response, 125, testRate), testRate), middle, 0.15 * middle);
}

TEST(Reverb, TheEchoesSoonCoverEverything) {
    // A tin box repeats single echoes: 100 ms after the click hardly any sample may stand out of its neighbours.
    const Curve response = impulseResponse(1, 0.2, 0.3);
    for (std::size_t start = testRate / 10; start + 1000 < response.size(); start += 1000) {
        double square = 0;
        double peak = 0;
        for (std::size_t i = start; i < start + 1000; ++i) {
            square += response[i] * response[i] / 1000;
            peak = std::max(peak, std::abs(response[i]));
        }
        EXPECT_LT(peak / std::sqrt(square), 6) << start;
    }
}

TEST(Reverb, TheFirstReflectionComesAfterTheDelay) {
    for (const int delay : {0, 10, 250, 1000}) {
        Dither dither;
        Samples take = click(100);
        reverb(take, {static_cast<float>(delay), 100, 10, 20}, testRate, dither);
        const auto first =
            std::find_if(take.begin(), take.end(), [](std::int16_t sample) { return sample > 300 || sample < -300; });
        EXPECT_NEAR(static_cast<double>(first - take.begin()), delay * 44.1, 3) << delay;
    }
}

TEST(Reverb, TheTailHasFallenBySixtyDecibelsWhereTheTakeEnds) {
    for (const float decay : {10.0F, 50.0F, 100.0F}) {
        Dither dither;
        Samples take = tone(1000, 30000, testRate);
        reverb(take, {50, 100, decay, 20}, testRate, dither);
        const double tail = 0.05 + static_cast<double>(decay / 100 * reverbSeconds);
        EXPECT_NEAR(static_cast<double>(take.size()), testRate * (1 + tail), 2);
        // Quantised, only the dither is left.
        EXPECT_LT(rmsOf(Samples(take.end() - 1000, take.end())), 0.0015 * 30000) << decay;
        const Samples middle(take.begin() + testRate + static_cast<std::ptrdiff_t>(tail / 3 * testRate),
                             take.begin() + testRate + static_cast<std::ptrdiff_t>(tail / 3 * testRate) + 1000);
        EXPECT_GT(rmsOf(middle), 0.003 * 30000) << decay;
    }
}

TEST(Reverb, TheTakeKeepsItsLoudnessAtEveryDepth) {
    // Speech has its energy in the middle of the spectrum.
    Samples take(std::size_t{4} * testRate);
    double low = 0;
    const Samples hiss = noise(8000, take.size());
    for (std::size_t i = 0; i < take.size(); ++i) {
        low += 0.08 * (hiss[i] - low);
        take[i] = static_cast<std::int16_t>(std::lrint(low));
    }
    const double before = rmsOf(take);
    for (const float depth : {1.0F, 25.0F, 50.0F, 100.0F}) {
        Dither dither;
        Samples wet = take;
        reverb(wet, {0, depth, 30, 20}, testRate, dither);
        const double after = rmsOf(Samples(wet.begin() + testRate, wet.begin() + std::ptrdiff_t{4} * testRate));
        EXPECT_NEAR(20 * std::log10(after / before), 0, 1.5) << depth;
    }
}

TEST(Reverb, DepthOneIsNextToNothing) {
    Dither dither;
    const Samples take = tone(440, 10000, testRate);
    Samples wet = take;
    reverb(wet, {30, 1, 30, 20}, testRate, dither);
    for (std::size_t i = 0; i < take.size(); ++i) {
        ASSERT_NEAR(wet[i], take[i], 400) << i;
    }
    EXPECT_NE(Samples(wet.begin(), wet.begin() + testRate), take);
}

TEST(Reverb, TheRateMovesTheRoom) {
    // In a room that stands still, the same sound some seconds later sounds the same.
    const auto difference = [](float rate) {
        Dither dither;
        Samples take(std::size_t{3} * testRate);
        take[0] = 32767;
        take[std::size_t{2} * testRate] = 32767;
        reverb(take, {0, 100, 40, rate}, testRate, dither);
        double error = 0;
        for (std::size_t i = 0; i < testRate / 2; ++i) {
            error += std::pow(take[i] - take[i + std::size_t{2} * testRate], 2);
        }
        return error;
    };
    EXPECT_GT(difference(60), 4 * difference(1));
}

TEST(Reverb, SilenceStaysSilentAndAnEmptyTakeEmpty) {
    Dither dither;
    Samples silent(10000);
    reverb(silent, {100, 100, 100, 100}, testRate, dither);
    EXPECT_EQ(silent, Samples(10000 + 4410 + 3 * std::size_t{testRate}));
    Samples empty;
    reverb(empty, {100, 100, 100, 100}, testRate, dither);
    EXPECT_TRUE(empty.empty());
}

TEST(Reverb, EndsAtEverySampleRate) {
    for (const int rate : {8000, 11025, 22050, 48000, 96000}) {
        const Curve response = impulseResponse(3, 1, 6, rate);
        const Curve decay = decayCurve(response);
        EXPECT_LT(decay[static_cast<std::size_t>(4.5 * rate)], -60) << rate;
    }
}

} // namespace orvel
