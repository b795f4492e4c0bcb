// An hour of take in sight: how long the window waits until something is drawn, until all of it is there, and how long
// one drawing takes on a screen of 3840. Needs no display.
//   bench_picture [minutes]
#include "platform/ebur128/ebur128_meter.h"
#include "platform/fake/fake_database.h"
#include "platform/fake/fake_joystick.h"
#include "platform/fake/fake_prompts.h"
#include "platform/fake/fake_report_viewer.h"
#include "platform/fake/fake_sound_card.h"
#include "platform/fake/manual_timers.h"
#include "platform/lame/system_audio_files.h"
#include "platform/platform.h"
#include "platform/qt/disk_file_system.h"
#include "recording/take_picture.h"
#include "station/places.h"
#include "widgets/waveform.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QTemporaryDir>

#include <algorithm>
#include <cstdio>
#include <random>

namespace {

using namespace orvel;

double sinceMs(const QElapsedTimer &timer) {
    return static_cast<double>(timer.nsecsElapsed()) / 1e6;
}

void writeNoise(AudioFiles &audioFiles, const QString &path, int minutes) {
    std::mt19937 random(3);
    std::uniform_int_distribution<int> sample(-9000, 9000);
    std::vector<std::int16_t> second(44100);
    const auto writer = audioFiles.wavWriter();
    writer->create(path, 44100);
    for (int i = 0; i < minutes * 60; ++i) {
        std::ranges::generate(second, [&] { return static_cast<std::int16_t>(sample(random)); });
        writer->write(second);
    }
    writer->close();
}

/// The slowest of ten, each of another part.
double drawMs(Waveform &wave, const TakePicture &picture, double part) {
    double slowest = 0;
    for (int run = 0; run < 10; ++run) {
        wave.setAxis(picture.lengthMs() * part + run);
        QElapsedTimer timer;
        timer.start();
        const QPixmap drawn = wave.grab();
        slowest = std::max(slowest, sinceMs(timer));
    }
    return slowest;
}

} // namespace

int main(int argc, char **argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    const int minutes = argc > 1 ? std::atoi(argv[1]) : 60;
    const QTemporaryDir folder;
    const Places places(folder.path());
    DiskFileSystem files;
    FakePrompts prompts;
    ManualTimers timers;
    FakeSoundCard sound;
    FakeJoystick joystick;
    FakeReportViewer report;
    FakeDatabaseEngine databases;
    SystemAudioFiles audioFiles;
    Ebur128Meter loudness;
    Platform platform{sound, audioFiles, databases, files, prompts, timers, joystick, report, loudness};
    const QString take = folder.filePath(QStringLiteral("uur.wav"));
    writeNoise(audioFiles, take, minutes);

    TakePicture picture(platform, places, [] {});
    QElapsedTimer timer;
    timer.start();
    picture.read(take);
    const double first = sinceMs(timer);
    double longest = first;
    while (!picture.isComplete()) {
        QElapsedTimer piece;
        piece.start();
        timers.advance(1);
        longest = std::max(longest, sinceMs(piece));
    }
    const double whole = sinceMs(timer);

    Waveform wave;
    wave.resize(3840, 200);
    wave.setSource([&](double from, double to) {
        const auto sample = [](double ms) { return static_cast<std::int64_t>(ms * 44.1); };
        const Extent extent = picture.peaks().between(sample(from), std::max(sample(from) + 1, sample(to)));
        return Waveform::Column{extent.low, extent.high};
    });
    wave.setLength(picture.lengthMs());
    std::printf(
        "%d minutes: first piece %.1f ms, longest piece %.1f ms, all of it %.0f ms; drawn at 3840 x 200 in %.1f ms\n",
        minutes, first, longest, whole, drawMs(wave, picture, 1.0));
    return 0;
}
