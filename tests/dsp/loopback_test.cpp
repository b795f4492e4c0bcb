// The way from an output back to an input: found to the sample where it is there, and never made up.
#include "dsp/loopback.h"
#include "speech.h"

#include <gtest/gtest.h>

namespace orvel {

namespace {

constexpr std::size_t probeAt = 13337;

/// What an input heard: the probe, so much weaker, among other things.
class Heard {
  public:
    explicit Heard(Samples room = Samples(55000)) : samples_(std::move(room)) {}

    Heard &probe(std::size_t at, double factor) {
        const Samples probe = loopbackProbe();
        for (std::size_t i = 0; i < probe.size(); ++i) {
            const double sum = samples_.at(at + i) + factor * probe[i];
            samples_.at(at + i) = static_cast<std::int16_t>(std::lrint(std::clamp(sum, -32768.0, 32767.0)));
        }
        return *this;
    }
    [[nodiscard]] ProbeSearch search() const { return findProbe(samples_); }

  private:
    Samples samples_;
};

void expectFound(const Heard &heard, std::size_t at = probeAt) {
    const ProbeSearch found = heard.search();
    EXPECT_TRUE(found.isSure()) << found.likeness << " " << found.rival;
    EXPECT_LE(std::abs(found.at - static_cast<std::int64_t>(at)), 4) << found.at;
}

void expectUnsure(const Heard &heard) {
    const ProbeSearch found = heard.search();
    EXPECT_FALSE(found.isSure()) << found.likeness << " " << found.rival;
}

} // namespace

TEST(LoopbackProbe, IsShortFadedAndNotTooLoudForHeadphones) {
    const Samples probe = loopbackProbe();
    EXPECT_EQ(probe.size(), 8820U);
    EXPECT_LE(peakOf(probe), 8192);
    EXPECT_GT(peakOf(probe), 8000);
    EXPECT_LT(peakOf(Samples(probe.begin(), probe.begin() + 40)), 200) << "no click where it begins";
    EXPECT_LT(peakOf(Samples(probe.end() - 40, probe.end())), 200);
}

TEST(Loopback, TheProbeIsFoundWhereverItBegins) {
    for (const std::size_t at : {0U, 1U, 4410U, 22050U, 22052U, 46180U}) {
        expectFound(Heard().probe(at, 1), at);
    }
    EXPECT_GT(Heard().probe(probeAt, 1).search().likeness, 0.95);
}

TEST(Loopback, MuchWeakerOrTooLoudOrUpsideDownItIsTheSame) {
    for (const double factor : {0.003, 0.05, 6.0, -0.8, -0.01}) {
        expectFound(Heard().probe(probeAt, factor));
    }
}

TEST(Loopback, ItIsFoundInNoiseAsLoudAsItself) {
    for (unsigned seed = 1; seed <= 5; ++seed) {
        expectFound(Heard(pinkNoise(4000, 55000, seed)).probe(probeAt, 0.9));
        expectFound(Heard(noise(5000, 55000, seed)).probe(probeAt, 0.9));
    }
}

/// The direct way is the first one and the strongest.
TEST(Loopback, EchoesOfARoomDoNotMoveIt) {
    expectFound(Heard(noise(30, 55000))
                    .probe(probeAt, 0.4)
                    .probe(probeAt + 180, 0.2)
                    .probe(probeAt + 485, -0.24)
                    .probe(probeAt + 1014, 0.2)
                    .probe(probeAt + 2072, -0.16)
                    .probe(probeAt + 4000, 0.1));
}

TEST(Loopback, TwoWaysThatAreAsStrongAreNoAnswer) {
    expectUnsure(Heard().probe(probeAt, 0.5).probe(probeAt + 2646, 0.5));
    expectUnsure(Heard().probe(probeAt, 0.5).probe(probeAt + 20000, -0.4));
}

TEST(Loopback, NothingOrAPartIsNoAnswer) {
    expectUnsure(Heard());
    expectUnsure(Heard(Samples{}));
    expectUnsure(Heard(Samples(100, 5)));
    const Samples probe = loopbackProbe();
    Samples cut(55000);
    std::copy(probe.begin() + 7000, probe.end(), cut.begin());
    expectUnsure(Heard(cut));
}

TEST(Loopback, WhatIsHeardInAStudioIsNeverTakenForIt) {
    for (unsigned seed = 1; seed <= 5; ++seed) {
        expectUnsure(Heard(noise(3000, 55000, seed)));
        expectUnsure(Heard(pinkNoise(3000, 55000, seed)));
    }
    expectUnsure(Heard(tone(1000, 8000, 55000)));
    expectUnsure(Heard(tone(50, 8000, 55000)));
    for (const double frequency : {500.0, 1000.0, 2000.0, 3000.0}) {
        Samples blip = tone(frequency, 12000, 400);
        blip.insert(blip.begin(), probeAt, 0);
        blip.resize(55000);
        expectUnsure(Heard(blip));
    }
    for (std::size_t i = 0; i < spokenSentences.size(); ++i) {
        Samples words = speak(spokenSentences.at(i), spokenVoices.at(i % spokenVoices.size()));
        if (words.empty()) {
            GTEST_SKIP() << "espeak-ng is not installed";
        }
        words.resize(55000);
        expectUnsure(Heard(words));
    }
}

/// A presenter who talks through it.
TEST(Loopback, AVoiceBesideItDoesNotMoveIt) {
    for (const char *voice : spokenVoices) {
        Samples words = atPeak(speak(spokenSentences.front(), voice), -24);
        if (words.empty()) {
            GTEST_SKIP() << "espeak-ng is not installed";
        }
        words.resize(55000);
        expectFound(Heard(words).probe(probeAt, 0.5));
    }
}

} // namespace orvel
