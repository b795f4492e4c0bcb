#pragma once

#include "sound.h"

#include <cstdio>
#include <memory>
#include <string>

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

/// A Dutch computer voice at 44100 Hz; empty when espeak-ng is not installed.
inline Samples speak(const char *sentence) {
    constexpr std::size_t header = 44; // espeak-ng's WAV: mono, 16-bit, 22050 Hz
    const std::string command = std::string("espeak-ng -v nl --stdout '") + sentence + "' 2>/dev/null";
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

} // namespace orvel
