// Speed of a batch import beside lame run on the same files one after the other: twenty WAV files of one minute, mono,
// to 256 kbit/s. Prints one line; needs lame and no display.
#include "platform/lame/system_audio_files.h"
#include "production/conversions.h"
#include "production/transcode.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <random>

namespace {

using namespace orvel;

constexpr int files = 20;
constexpr int seconds = 60;
constexpr int rate = 44100;

/// Something between a voice and noise: an encoder has work with it.
void writeWav(AudioFiles &audioFiles, const QString &path, int seed) {
    const auto writer = audioFiles.wavWriter();
    writer->create(path, rate);
    std::mt19937 random(static_cast<unsigned>(seed));
    std::normal_distribution<double> noise(0, 1500);
    std::vector<std::int16_t> samples(static_cast<std::size_t>(rate) * seconds);
    for (std::size_t i = 0; i < samples.size(); ++i) {
        const double time = static_cast<double>(i) / rate;
        const double syllables = 0.5 + 0.5 * std::sin(time * 12);
        samples[i] = static_cast<std::int16_t>(
            std::clamp(syllables * (6000 * std::sin(time * 900) + noise(random)), -32768.0, 32767.0));
    }
    writer->write(samples);
    writer->close();
}

} // namespace

int main(int argc, char **argv) {
    const QCoreApplication application(argc, argv);
    const QTemporaryDir folder;
    SystemAudioFiles audioFiles;
    for (int file = 0; file < files; ++file) {
        writeWav(audioFiles, folder.filePath(QStringLiteral("%1.wav").arg(file)), file);
    }
    QElapsedTimer timer;
    timer.start();
    Conversions conversions(audioFiles, mp3Format(2, false));
    for (int file = 0; file < files; ++file) {
        conversions.add(folder.filePath(QStringLiteral("%1.wav").arg(file)),
                        folder.filePath(QStringLiteral("%1.mp3").arg(file)));
    }
    qint64 longestPause = 0;
    QElapsedTimer pause;
    pause.start();
    conversions.run([&](int, int) {
        longestPause = std::max(longestPause, pause.restart());
        QCoreApplication::processEvents();
        return true;
    });
    const qint64 ours = timer.restart();
    for (int file = 0; file < files; ++file) {
        QProcess lame;
        lame.start(QStringLiteral("lame"),
                   {QStringLiteral("--quiet"), QStringLiteral("--cbr"), QStringLiteral("-b"), QStringLiteral("256"),
                    folder.filePath(QStringLiteral("%1.wav").arg(file)), folder.filePath(QStringLiteral("lame.mp3"))});
        if (!lame.waitForFinished(-1) || lame.exitCode() != 0) {
            std::fprintf(stderr, "lame failed\n");
            return 1;
        }
    }
    const qint64 theirs = timer.elapsed();
    std::printf("batch of %d files of %d s: %lld ms, longest pause of the window %lld ms; lame %lld ms; ratio %.2f\n",
                files, seconds, static_cast<long long>(ours), static_cast<long long>(longestPause),
                static_cast<long long>(theirs), static_cast<double>(ours) / static_cast<double>(theirs));
    return 0;
}
