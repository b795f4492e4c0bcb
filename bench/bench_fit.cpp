// How far from the goal the last word of a fitted take ends, and what a fit costs.
#include "bench/measure.h"
#include "production/fitting.h"
#include "tests/dsp/speech.h"

#include <cstdio>
#include <map>

using namespace orvel;

namespace {

constexpr double perMs = testRate / 1000.0;
constexpr std::array<double, 4> noiseLevels = {-200, -70, -60, -50};

double endOf(const Samples &samples, double level) {
    return static_cast<double>(Levels(samples).passage(level).second) / perMs;
}

/// Three sentences with pauses of 400 and 600 ms, 500 ms of silence before and behind.
Samples spoken(const std::string &options) {
    Samples take(22050);
    for (std::size_t i = 0; i < 3; ++i) {
        const Samples sentence = atPeak(speak(spokenSentences.at(i * 3), options), -9);
        take.insert(take.end(), sentence.begin(), sentence.end());
        take.resize(take.size() + (i == 0 ? 17640 : i == 1 ? 26460 : 22050));
    }
    return take;
}

void print(const std::string &name, std::vector<double> errors) {
    std::sort(errors.begin(), errors.end());
    const auto within = std::count_if(errors.begin(), errors.end(), [](double e) { return std::abs(e) <= 30; });
    std::printf("%-24s %4zu %8.1f %8.1f %8.1f   %5.1f %%\n", name.c_str(), errors.size(), errors.front(),
                errors[errors.size() / 2], errors.back(),
                100.0 * static_cast<double>(within) / static_cast<double>(errors.size()));
}

} // namespace

int main() {
    std::map<std::string, std::vector<double>> errors;
    unsigned seed = 1;
    int refused = 0;
    for (const char *voice : spokenVoices) {
        for (const char *speed : {" -s 110", " -s 160", " -s 240"}) {
            const Samples clean = spoken(std::string(voice) + speed);
            const double level = Levels(clean).highest(0, clean.size()) - 30;
            const double end = endOf(clean, level);
            for (const double noiseLevel : noiseLevels) {
                Samples take = clean;
                const Samples hiss = noise(32768 * std::pow(10, noiseLevel / 20), take.size(), seed++);
                for (std::size_t i = 0; i < take.size(); ++i) {
                    take[i] = static_cast<std::int16_t>(std::clamp(take[i] + hiss[i], -32768, 32767));
                }
                for (const double less : {0.1, 0.4, 0.7, 0.9, 1.0, 1.1, 1.15, 1.2, 1.25, 1.3, 1.4, 1.5}) {
                    const auto post = static_cast<std::int32_t>(end - less * 1000 + 100);
                    const Fitted fitted = fitToPost(take, testRate, post);
                    if (fitted.outcome != Fitted::Outcome::Fits) {
                        ++refused;
                        continue;
                    }
                    const double error = endOf(fitted.samples, std::max(level, noiseLevel + 6)) - (post - 100);
                    errors["all"].push_back(error);
                    errors[fitted.tempo > 1 ? "with tempo" : "without tempo"].push_back(error);
                    errors["noise " + std::to_string(static_cast<int>(noiseLevel))].push_back(error);
                }
            }
        }
    }
    std::printf("%-24s %4s %8s %8s %8s   within 30 ms\n", "last word, ms late", "fits", "least", "median", "most");
    for (const auto &[name, all] : errors) {
        print(name, all);
    }
    std::printf("refused: %d\n", refused);
    Samples minute;
    const Samples piece = spoken("-v nl");
    while (minute.size() < std::size_t{60} * testRate) {
        minute.insert(minute.end(), piece.begin(), piece.end());
    }
    minute.resize(std::size_t{60} * testRate);
    Cost pauses;
    Cost tempo;
    std::int32_t post = 59000;
    for (const auto isTempo = [&] { return fitToPost(minute, testRate, post).tempo > 1.02; }; !isTempo();) {
        post -= 200;
    }
    for (int i = 0; i < 5; ++i) {
        measure(pauses, RUSAGE_SELF, [&] { static_cast<void>(fitToPost(minute, testRate, 58000)); });
        measure(tempo, RUSAGE_SELF, [&] { static_cast<void>(fitToPost(minute, testRate, post)); });
    }
    std::printf("a minute: %.0f ms with pauses alone, %.0f ms with tempo\n", pauses.wall * 1000, tempo.wall * 1000);
    return 0;
}
