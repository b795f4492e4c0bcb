// What the trim takes off speech, and how near to it the cuts lie. Six Dutch computer voices at three speeds, clean and
// in white and pink noise, after every combination of the stages before, thresholds from -60 to -20 dB. What counts as
// speech is measured on the clean voice that went through the same stages: where the RMS of 10 ms passes the threshold.
// Needs espeak-ng.

#include "dsp/compress.h"
#include "dsp/gain.h"
#include "dsp/reverb.h"
#include "dsp/trim.h"
#include "tests/dsp/speech.h"

#include <cstdio>

namespace {

using namespace orvel;

constexpr std::array speeds = {110, 160, 240};
constexpr std::array thresholds = {-60.0, -50.0, -40.0, -30.0, -20.0};
constexpr std::size_t lead = 400 * Levels::ms;

enum Stage : unsigned { Gain = 1, Norm = 2, Comp = 4, Reverb = 8, Combinations = 16 };

/// What the trim did to takes of one kind.
struct Account {
    int takes = 0;
    double lostMs = 0;    ///< most that any lost
    double lostLevel = 0; ///< highest level that any lost, dB above the threshold
    double keptMs = 0;    ///< most that any kept too much, where the noise is 10 dB and more below the threshold
    int losers = 0;
    int edges = 0; ///< of those with noise so low
    int near = 0;  ///< within 5 ms
};

double milliseconds(std::ptrdiff_t samples) {
    return 1000.0 * static_cast<double>(samples) / testRate;
}

double decibels(double rms) {
    return 20 * std::log10(rms / 32768 + 1e-6);
}

Samples around(const Samples &speech) {
    Samples take(lead);
    take.insert(take.end(), speech.begin(), speech.end());
    take.resize(take.size() + lead);
    return take;
}

/// Compresses the take, and the clean voice by just as much at every moment.
void compressBoth(Samples &take, Samples &clean) {
    Compressor compressor({-30, 70, 0}, testRate);
    float gain = 1;
    for (std::size_t start = 0; start < take.size(); start += Dither::blockSize) {
        const std::size_t count = std::min(Dither::blockSize, take.size() - start);
        std::array<float, Dither::blockSize> values{};
        for (std::size_t i = 0; i < count; ++i) {
            values[i] = static_cast<float>(take[start + i]) / 32768;
        }
        compressor.process(std::span(values).first(count));
        for (std::size_t i = 0; i < count; ++i) {
            std::int16_t &sample = take[start + i];
            gain = sample != 0 ? values[i] * 32768 / static_cast<float>(sample) : gain;
            sample = static_cast<std::int16_t>(std::lrint(gain * static_cast<float>(sample)));
            clean[start + i] = static_cast<std::int16_t>(std::lrint(gain * static_cast<float>(clean[start + i])));
        }
    }
}

/// The take and the clean voice through the same stages, at the same level.
void process(Samples &take, Samples &clean, unsigned stages) {
    Dither dither;
    for (Samples *samples : {&take, &clean}) {
        if ((stages & Gain) != 0) {
            amplify(*samples, decibelsToFactor(6), dither);
        }
    }
    const auto factor = static_cast<float>(0.9 * 32767 / std::max(peakOf(take), 1));
    for (Samples *samples : {&take, &clean}) {
        if ((stages & Norm) != 0) {
            amplify(*samples, factor, dither);
        }
    }
    if ((stages & Comp) != 0) {
        compressBoth(take, clean);
    }
    for (Samples *samples : {&take, &clean}) {
        if ((stages & Reverb) != 0) {
            amplify(*samples, 0.7F, dither); // or both would be made softer, each by its own peak
            reverb(*samples, {20, 15, 20, 20}, testRate, dither);
        }
    }
}

void judge(const std::vector<Account *> &accounts, const Samples &take, const Levels &clean, double threshold,
           double noiseLevel) {
    const auto [first, last] = clean.passage(threshold);
    if (first == last) {
        return; // nothing above the threshold
    }
    Dither dither;
    Samples rest = take;
    std::int32_t k = 0;
    trimStart(rest, static_cast<float>(threshold), testRate, dither, k);
    const auto begin = static_cast<std::size_t>(k);
    trimEnd(rest, static_cast<float>(threshold), testRate, dither, k);
    const std::size_t end = begin + rest.size();
    const double atStart = milliseconds(static_cast<std::ptrdiff_t>(begin) - static_cast<std::ptrdiff_t>(first));
    const double atEnd = milliseconds(static_cast<std::ptrdiff_t>(last) - static_cast<std::ptrdiff_t>(end));
    const double lostLevel = std::max(clean.highest(0, begin) - threshold, clean.highest(end, take.size()) - threshold);
    for (Account *account : accounts) {
        ++account->takes;
        account->lostLevel = std::max(account->lostLevel, lostLevel);
        for (const double lost : {atStart, atEnd}) {
            account->lostMs = std::max(account->lostMs, lost);
            account->losers += lost > 0 ? 1 : 0;
            if (noiseLevel <= threshold - 10) {
                ++account->edges;
                account->near += std::abs(lost) <= 5 ? 1 : 0;
                account->keptMs = std::max(account->keptMs, -lost);
            }
        }
    }
}

void print(const char *name, const Account &account) {
    std::printf("%-34s %6d %8d %9.1f %8.1f %9.1f %8d %7.1f\n", name, account.takes, account.losers, account.lostMs,
                account.lostLevel, account.keptMs, account.edges,
                account.edges > 0 ? 100.0 * account.near / account.edges : 0.0);
}

struct Hiss {
    const char *name;
    double level;
    bool pink;
};

constexpr std::array hisses = {
    Hiss{"clean", -120, false},    Hiss{"white -70", -70, false}, Hiss{"white -60", -60, false},
    Hiss{"white -50", -50, false}, Hiss{"white -40", -40, false}, Hiss{"pink -70", -70, true},
    Hiss{"pink -60", -60, true},   Hiss{"pink -50", -50, true},   Hiss{"pink -40", -40, true}};

} // namespace

int main() {
    std::array<Account, hisses.size()> byHiss;
    std::array<Account, Combinations> byStages;
    std::array<Account, spokenVoices.size()> byVoice;
    std::array<Account, thresholds.size()> byThreshold;
    Account plain;
    Account everything;
    unsigned seed = 1;
    for (std::size_t v = 0; v < spokenVoices.size(); ++v) {
        for (const int speed : speeds) {
            const char *sentence = seed % 2 == 1 ? spokenSentences[3] : spokenSentences[seed % spokenSentences.size()];
            const Samples clean =
                around(atPeak(speak(sentence, spokenVoices[v] + std::string(" -s ") + std::to_string(speed)), -12));
            for (std::size_t h = 0; h < hisses.size(); ++h) {
                const double rms = 32768 * std::pow(10, hisses[h].level / 20);
                const Samples hiss =
                    hisses[h].pink ? pinkNoise(rms, clean.size(), seed) : noise(rms, clean.size(), seed);
                ++seed;
                for (unsigned stages = 0; stages < Combinations; ++stages) {
                    Samples take = clean;
                    for (std::size_t i = 0; i < take.size(); ++i) {
                        take[i] = static_cast<std::int16_t>(std::clamp(take[i] + hiss[i], -32768, 32767));
                    }
                    Samples reference = clean;
                    process(take, reference, stages);
                    const Levels levels(reference);
                    const double noiseLevel = decibels(rmsOf(Samples(take.begin(), take.begin() + lead * 9 / 10)));
                    for (std::size_t t = 0; t < thresholds.size(); ++t) {
                        std::vector<Account *> accounts = {&byHiss[h], &byStages[stages], &byVoice[v], &byThreshold[t],
                                                           &everything};
                        if ((stages & Reverb) == 0) {
                            accounts.push_back(&plain);
                        }
                        judge(accounts, take, levels, thresholds[t], noiseLevel);
                    }
                }
            }
        }
    }
    std::printf("%-34s %6s %8s %9s %8s %9s %8s %7s\n", "takes", "", "edges", "worst", "dB above", "kept too", "edges",
                "% near");
    std::printf("%-34s %6s %8s %9s %8s %9s %8s %7s\n", "", "", "that lost", "loss, ms", "", "much, ms", "in quiet", "");
    for (std::size_t h = 0; h < hisses.size(); ++h) {
        print(hisses[h].name, byHiss[h]);
    }
    for (unsigned stages = 0; stages < Combinations; ++stages) {
        const std::string name = std::string("after") + ((stages & Gain) != 0 ? " gain" : "") +
                                 ((stages & Norm) != 0 ? " level" : "") + ((stages & Comp) != 0 ? " compressor" : "") +
                                 ((stages & Reverb) != 0 ? " reverb" : "") + (stages == 0 ? " nothing" : "");
        print(name.c_str(), byStages[stages]);
    }
    for (std::size_t v = 0; v < spokenVoices.size(); ++v) {
        print(spokenVoices[v], byVoice[v]);
    }
    for (std::size_t t = 0; t < thresholds.size(); ++t) {
        print(("threshold " + std::to_string(static_cast<int>(thresholds[t]))).c_str(), byThreshold[t]);
    }
    print("without reverb", plain);
    print("all", everything);
    return 0;
}
