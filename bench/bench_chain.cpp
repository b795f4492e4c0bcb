// A ten-minute take through all five stages, file to file, beside ffmpeg (volume, acompressor, aecho, silenceremove)
// and sox (gain, norm, compand, reverb, silence). All in one run, in turns, the best of each counts. A ratio of 1.00 is
// as fast as the other program; below is faster. Then what stopping a minute's take costs with every stage on.
//
// Ours goes through the disk after every stage and syncs, which the others do not: run it in a memory disk (TMPDIR) to
// compare the work, on a real disk to see what it waits for.

#include "bench/measure.h"
#include "platform/ebur128/ebur128_meter.h"
#include "platform/fake/fake_joystick.h"
#include "platform/fake/fake_prompts.h"
#include "platform/fake/fake_report_viewer.h"
#include "platform/fake/fake_sound_card.h"
#include "platform/fake/manual_timers.h"
#include "platform/jet/jet_engine.h"
#include "platform/lame/system_audio_files.h"
#include "platform/qt/disk_file_system.h"
#include "production/processing_chain.h"

#include <QCoreApplication>
#include <QDir>
#include <QTemporaryDir>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <utility>
#include <vector>

namespace {

using namespace orvel;

constexpr int kRate = 44100;
constexpr int kRounds = 5;

void run(const QString &command) {
    if (std::system(command.toLocal8Bit().constData()) != 0) {
        std::printf("failed: %s\n", command.toLocal8Bit().constData());
        std::exit(1);
    }
}

/// A program folder with a chain that has everything on.
class Station {
  public:
    explicit Station(QString folder) : folder_(std::move(folder)) {
        for (const char *name : {"temp", "temp2"}) {
            QDir(folder_).mkdir(QString::fromLatin1(name));
        }
        for (const char *key : {"UseAmp", "UseNorm", "UseComp", "UseReverb", "UseTrim"}) {
            settings_.set(key, 1);
        }
        settings_.set("Amp", 3);
        settings_.set("Norm", 90);
        settings_.set("CompTresh", -24);
        settings_.set("CompRate", 60);
        settings_.set("RevDelay", 20);
        settings_.set("RevDepth", 15);
        settings_.set("RevDecay", 25);
        settings_.set("RevRate", 20);
        settings_.set("Trim", -45);
    }

    [[nodiscard]] QString take() const { return folder_ + QStringLiteral("/temp/take.wav"); }

    void write(const std::vector<std::int16_t> &samples) {
        const auto writer = audioFiles_.wavWriter();
        writer->create(take(), kRate);
        writer->write(samples);
        writer->close();
    }
    void process() { chain_.AudioProcessing(take()); }

  private:
    QString folder_;
    DiskFileSystem files_;
    FakePrompts prompts_;
    ManualTimers timers_;
    FakeSoundCard sound_;
    FakeJoystick joystick_;
    FakeReportViewer report_;
    JetEngine databases_;
    SystemAudioFiles audioFiles_;
    Ebur128Meter loudness_;
    Platform platform_{sound_, audioFiles_, databases_, files_, prompts_, timers_, joystick_, report_, loudness_};
    Recovery recovery_{files_, folder_};
    ProcessorSettings settings_ = processorKeys();
    ProcessingChain chain_{
        {platform_, folder_, [this] { return settings_; }, recovery_, [](bool) {}, [](const QString &) {}}};
};

void printLine(const char *name, const Cost &cost, const Cost &ours) {
    std::printf("  %-7s %6.2f s  processor %6.2f s  ratio %.2f (processor %.2f)\n", name, cost.wall, cost.processor,
                ours.wall / cost.wall, ours.processor / cost.processor);
}

void compare(const QString &folder) {
    Station station(folder);
    const std::vector<std::int16_t> take = makeTake(600, kRate);
    const QString raw = folder + QStringLiteral("/raw.wav");
    station.write(take);
    QFile::copy(station.take(), raw);
    const QString ffmpeg =
        QStringLiteral("ffmpeg -y -loglevel error -i '%1' -af 'volume=3dB,"
                       "acompressor=threshold=0.063:ratio=2.5:attack=5:release=150,aecho=0.8:0.7:20|37|53:0.3|0.2|0.15,"
                       "silenceremove=start_periods=1:start_threshold=-45dB:stop_periods=-1:stop_threshold=-45dB' '%2'")
            .arg(raw, folder + QStringLiteral("/ffmpeg.wav"));
    const QString sox = QStringLiteral("sox '%1' '%2' gain 3 norm -1 compand 0.005,0.15 -60,-60,-24,-24,0,-14 "
                                       "reverb 30 silence 1 0.05 -45d reverse silence 1 0.05 -45d reverse")
                            .arg(raw, folder + QStringLiteral("/sox.wav"));
    Cost ours;
    Cost theirs;
    Cost soxCost;
    for (int round = 0; round < kRounds; ++round) {
        station.write(take);
        measure(ours, RUSAGE_SELF, [&] { station.process(); });
        measure(theirs, RUSAGE_CHILDREN, [&] { run(ffmpeg); });
        measure(soxCost, RUSAGE_CHILDREN, [&] { run(sox); });
    }
    std::printf("ten minutes, five stages, file to file\n");
    printLine("ours", ours, ours);
    printLine("ffmpeg", theirs, ours);
    printLine("sox", soxCost, ours);
}

void stopAMinute(const QString &folder) {
    Station station(folder);
    const std::vector<std::int16_t> take = makeTake(60, kRate);
    Cost cost;
    for (int round = 0; round < 2 * kRounds; ++round) {
        station.write(take);
        measure(cost, RUSAGE_SELF, [&] { station.process(); });
    }
    std::printf("one minute, five stages: %.0f ms, processor %.0f ms\n", cost.wall * 1000, cost.processor * 1000);
}

} // namespace

int main(int argc, char **argv) {
    const QCoreApplication application(argc, argv);
    const QTemporaryDir folder;
    std::printf("in %s\n", folder.path().toLocal8Bit().constData());
    stopAMinute(folder.path());
    compare(folder.path());
    return 0;
}
