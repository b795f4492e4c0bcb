// How far off the search for speech is, voice by voice and noise by noise, and what it costs.
#include "bench/measure.h"
#include "dsp/speech.h"
#include "tests/dsp/speech.h"

#include <map>

using namespace orvel;

namespace {

struct Hiss {
    const char *name;
    double belowVoice; ///< dB below the loudest 10 ms of the voice
    bool pink;
};

constexpr std::array hisses = {Hiss{"clean", 200, false},    Hiss{"white -50", 50, false}, Hiss{"white -40", 40, false},
                               Hiss{"white -30", 30, false}, Hiss{"pink -50", 50, true},   Hiss{"pink -40", 40, true},
                               Hiss{"pink -30", 30, true}};
constexpr std::array speeds = {110, 160, 240};

/// Milliseconds that the found begin comes too late, or the end.
using Errors = std::vector<double>;

void print(const std::string &name, Errors errors) {
    if (errors.empty()) {
        return;
    }
    std::sort(errors.begin(), errors.end());
    const auto at = [&](double share) {
        return errors[static_cast<std::size_t>(share * static_cast<double>(errors.size() - 1))];
    };
    const auto within = std::count_if(errors.begin(), errors.end(), [](double e) { return std::abs(e) <= 20; });
    std::printf("%-40s %5zu %7.1f %7.1f %7.1f %7.1f %7.1f  %5.1f %%\n", name.c_str(), errors.size(), errors.front(),
                at(0.05), at(0.5), at(0.95), errors.back(),
                100.0 * static_cast<double>(within) / static_cast<double>(errors.size()));
}

} // namespace

int main() {
    constexpr std::size_t ms = testRate / 1000;
    std::map<std::string, Errors> begins;
    std::map<std::string, Errors> ends;
    std::map<std::string, Errors> lives;
    std::map<std::string, int> missed;
    unsigned seed = 1;
    Samples longest;
    for (const char *voice : spokenVoices) {
        for (const int speed : speeds) {
            for (const char *sentence : spokenSentences) {
                const Samples spoken =
                    atPeak(speak(sentence, voice + std::string(" -s ") + std::to_string(speed)), seed % 2 ? -9 : -25);
                Samples clean(700 * ms);
                clean.insert(clean.end(), spoken.begin(), spoken.end());
                clean.resize(clean.size() + 600 * ms);
                const Levels levels(clean);
                const double loudest = levels.highest(0, clean.size());
                for (const Hiss &hiss : hisses) {
                    const double truthLevel = std::max(loudest - 30, loudest - hiss.belowVoice + 6);
                    const auto [first, last] = levels.passage(truthLevel);
                    Samples take = clean;
                    if (hiss.belowVoice < 100) {
                        const double rms = 32768 * std::pow(10, (loudest - hiss.belowVoice) / 20);
                        const Samples n = hiss.pink ? pinkNoise(rms, take.size(), seed) : noise(rms, take.size(), seed);
                        for (std::size_t i = 0; i < take.size(); ++i) {
                            take[i] = static_cast<std::int16_t>(std::clamp(take[i] + n[i], -32768, 32767));
                        }
                    }
                    ++seed;
                    if (take.size() > longest.size()) {
                        longest = take;
                    }
                    const auto found = findSpeech(take, testRate);
                    const std::string row = hiss.name;
                    if (found.empty()) {
                        ++missed[row];
                        continue;
                    }
                    const auto late = [](std::size_t is, std::size_t should) {
                        return (static_cast<double>(is) - static_cast<double>(should)) / ms;
                    };
                    for (const std::string &key :
                         {row, std::string(voice), "speed " + std::to_string(speed), std::string("~all")}) {
                        begins[key].push_back(late(found.front().begin, first));
                        ends[key].push_back(late(found.back().end, last));
                    }
                    SpeechWatch watch(testRate);
                    for (std::size_t at = 0; at < take.size(); at += 441) {
                        watch.add(std::span(take).subspan(at, std::min<std::size_t>(441, take.size() - at)));
                    }
                    if (watch.begin()) {
                        lives[row].push_back(late(*watch.begin(), first));
                    } else {
                        ++missed["live " + row];
                    }
                }
            }
        }
    }
    std::printf("%-40s %5s %7s %7s %7s %7s %7s  within 20 ms\n", "ms late", "takes", "least", "5 %", "median", "95 %",
                "most");
    for (const auto &[name, errors] : begins) {
        print(name + ", begin", errors);
        print(name + ", end", ends[name]);
    }
    for (const auto &[name, errors] : lives) {
        print(name + ", live begin", errors);
    }
    for (const auto &[name, count] : missed) {
        std::printf("%s: %d missed\n", name.c_str(), count);
    }
    Samples minute;
    while (minute.size() < std::size_t{60} * testRate) {
        minute.insert(minute.end(), longest.begin(), longest.end());
    }
    Cost offline;
    Cost live;
    for (int i = 0; i < 5; ++i) {
        measure(offline, RUSAGE_SELF, [&] { static_cast<void>(findSpeech(minute, testRate)); });
        measure(live, RUSAGE_SELF, [&] {
            SpeechWatch watch(testRate);
            for (std::size_t at = 0; at + 441 <= minute.size(); at += 441) {
                watch.add(std::span(minute).subspan(at, 441));
            }
        });
    }
    std::printf("a minute: %.1f ms; live %.3f %% of a core\n", offline.wall * 1000, live.processor / 60 * 100);
    return 0;
}
