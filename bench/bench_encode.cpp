// A ten-minute take to MP3: our reader and writer, as the saving of a voice track uses them, beside the `lame` command
// at the same rate and quality. Both in one run, in turns, the best of each counts. A ratio of 1.00 is as fast as lame.
//
// lame makes a one-channel file of a one-channel take, half the work; so it gets the same samples twice as well, which
// is what the station's files hold. The files are checked to be the same sound.

#include "bench/measure.h"
#include "platform/lame/system_audio_files.h"
#include "platform/sndfile/take_writer.h"

#include <QFile>
#include <QTemporaryDir>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <vector>

namespace {

using namespace orvel;
using Clock = std::chrono::steady_clock;

constexpr int kSeconds = 600;
constexpr int kRounds = 5;

void writeTake(const QString &path, const std::vector<std::int16_t> &samples) {
    TakeWriter writer(path);
    for (std::size_t at = 0; at < samples.size(); at += kTakeRate) {
        writer.push(std::span(samples).subspan(at, std::min<std::size_t>(kTakeRate, samples.size() - at)));
        writer.flush();
    }
    writer.finish();
}

/// The loop that saving a voice track runs; returns the longest time between two looks at the window's events, seconds.
double transcode(const QString &wav, const QString &mp3, int kbit) {
    SystemAudioFiles files;
    const auto reader = files.reader();
    const auto writer = files.mp3Writer();
    reader->open(wav);
    writer->setFormat({44100, 2, kbit, false});
    writer->setInput(reader->sampleRate(), reader->channels());
    writer->create(mp3);
    double longest = 0;
    Clock::time_point before = Clock::now();
    for (QByteArray block = reader->readBlock(); !block.isEmpty(); block = reader->readBlock()) {
        writer->write(block);
        const Clock::time_point now = Clock::now();
        longest = std::max(longest, std::chrono::duration<double>(now - before).count());
        before = now;
    }
    writer->close();
    return longest;
}

void runLame(const QString &wav, const QString &mp3, int kbit) {
    const QString command = QStringLiteral("lame --quiet --cbr -b %1 -m j '%2' '%3'").arg(kbit).arg(wav, mp3);
    if (std::system(command.toLocal8Bit().constData()) != 0) {
        std::puts("the lame command failed");
        std::exit(1);
    }
}

void printLine(const char *name, const Cost &cost) {
    std::printf("  %-34s %6.2f s  processor %6.2f s\n", name, cost.wall, cost.processor);
}

void compare(const QTemporaryDir &folder, int kbit) {
    const QString mono = folder.filePath("take.wav");
    const QString stereo = folder.filePath("twice.wav");
    Cost ours;
    Cost lameMono;
    Cost lameStereo;
    double longest = 0;
    for (int round = 0; round < kRounds; ++round) {
        measure(lameMono, RUSAGE_CHILDREN, [&] { runLame(mono, folder.filePath("mono.mp3"), kbit); });
        measure(ours, RUSAGE_SELF,
                [&] { longest = std::max(longest, transcode(mono, folder.filePath("ours.mp3"), kbit)); });
        measure(lameStereo, RUSAGE_CHILDREN, [&] { runLame(stereo, folder.filePath("lame.mp3"), kbit); });
    }
    std::printf("%d kbit/s, ten minutes\n", kbit);
    printLine("ours, two channels, synced", ours);
    printLine("lame, two channels", lameStereo);
    printLine("lame, one channel", lameMono);
    std::printf("  ratio to lame, two channels %.2f (processor %.2f), one channel %.2f (processor %.2f)\n",
                ours.wall / lameStereo.wall, ours.processor / lameStereo.processor, ours.wall / lameMono.wall,
                ours.processor / lameMono.processor);
    std::printf("  longest block %.1f ms\n", longest * 1000);
}

} // namespace

int main() {
    const QTemporaryDir folder;
    const std::vector<std::int16_t> take = makeTake(kSeconds, kTakeRate);
    writeTake(folder.filePath("take.wav"), take);
    const QString twice =
        QStringLiteral("sox '%1' -c 2 '%2'").arg(folder.filePath("take.wav"), folder.filePath("twice.wav"));
    if (std::system(twice.toLocal8Bit().constData()) != 0) {
        std::puts("sox is missing");
        return 1;
    }
    for (const int kbit : {128, 256, 320}) {
        compare(folder, kbit);
    }
    return 0;
}
