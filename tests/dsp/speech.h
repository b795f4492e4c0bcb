#pragma once

#include "sound.h"

#include <cstdio>
#include <memory>
#include <string>
#include <utility>

namespace orvel {

/// What ten takes say.
inline constexpr std::array spokenSentences = {
    "Goedemorgen, dit is de ochtendshow.",
    "Het is precies acht uur.",
    "Straks meer muziek na het nieuws.",
    "Dat was een plaat uit negentienhonderdtachtig.",
    "Blijf luisteren, tot zo.",
    "En nu het weer van vandaag.",
    "Wij gaan door met de top veertig.",
    "Zaterdagavond om tien uur.",
    "Bedankt voor het bellen, Karin.",
    "Alle verzoekjes zijn welkom.",
};

/// Voices with what is hard for a trim: low ones are silent between two beats of the vocal cords, whispered ones have
/// none. Options of espeak-ng.
inline constexpr std::array spokenVoices = {
    "-v nl", "-v nl+m3 -p 0", "-v nl+m7 -p 20", "-v nl+f2 -p 80", "-v nl+croak -p 0", "-v nl+whisper",
};

/// A Dutch computer voice at 44100 Hz; empty when espeak-ng is not installed.
/// options: of espeak-ng, the voice among them.
inline Samples speak(const std::string &sentence, const std::string &options = "-v nl") {
    constexpr std::size_t header = 44; // espeak-ng's WAV: mono, 16-bit, 22050 Hz
    const std::string command = "espeak-ng " + options + " --stdout '" + sentence + "' 2>/dev/null";
    const std::unique_ptr<std::FILE, int (*)(std::FILE *)> pipe(popen(command.c_str(), "r"), pclose);
    std::vector<unsigned char> bytes;
    for (int byte = std::fgetc(pipe.get()); byte != EOF; byte = std::fgetc(pipe.get())) {
        bytes.push_back(static_cast<unsigned char>(byte));
    }
    Samples samples;
    int before = 0;
    for (std::size_t at = header; at + 1 < bytes.size(); at += 2) {
        const int sample = static_cast<std::int16_t>(bytes[at] | bytes[at + 1] << 8);
        samples.push_back(static_cast<std::int16_t>((before + sample) / 2));
        samples.push_back(static_cast<std::int16_t>(sample));
        before = sample;
    }
    return samples;
}

/// Brings the peak to a level, dB below full scale.
inline Samples atPeak(Samples samples, double decibels) {
    const double factor = 32767 * std::pow(10, decibels / 20) / std::max(peakOf(samples), 1);
    for (std::int16_t &sample : samples) {
        sample = static_cast<std::int16_t>(std::lrint(factor * sample));
    }
    return samples;
}

/// Levels (dB below full scale, RMS) of the 10 ms around every sample.
class Levels {
  public:
    static constexpr std::size_t ms = testRate / 1000;

    explicit Levels(const Samples &samples) {
        for (const std::int16_t sample : samples) {
            sums_.push_back(sums_.back() + static_cast<double>(sample) * static_cast<double>(sample));
        }
    }

    /// The first and the last sample around which a level is passed; the same twice when it never is.
    [[nodiscard]] std::pair<std::size_t, std::size_t> passage(double level) const {
        const double sum = 32768.0 * 32768.0 * std::pow(10, level / 10) * window;
        std::size_t first = 0;
        std::size_t last = 0;
        for (std::size_t at = window / 2; at + window / 2 < sums_.size(); ++at) {
            if (around(at) > sum) {
                last = at;
                first = first == 0 ? last : first;
            }
        }
        return {first, last};
    }
    /// The highest level around the samples from one to before another.
    [[nodiscard]] double highest(std::size_t from, std::size_t end) const {
        double highest = 0;
        for (std::size_t at = std::max(from, window / 2); at < end && at + window / 2 < sums_.size(); ++at) {
            highest = std::max(highest, around(at));
        }
        return 10 * std::log10(highest / window / (32768.0 * 32768.0) + 1e-12);
    }

  private:
    static constexpr std::size_t window = 10 * ms;

    [[nodiscard]] double around(std::size_t at) const { return sums_[at + window / 2] - sums_[at - window / 2]; }

    std::vector<double> sums_ = {0};
};

} // namespace orvel
