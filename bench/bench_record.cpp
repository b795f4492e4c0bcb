// A one-hour take pumped through the fake card at full speed: memory that it takes, and how long. Beside it: how long
// writing as many bytes with `dd` takes, both without and with waiting for the disk.

#include "platform/fake/fake_sound_card.h"

#include <QTemporaryDir>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <unistd.h>

namespace {

using namespace orvel;
using Clock = std::chrono::steady_clock;

constexpr std::int64_t kHour = INT64_C(3600) * kTakeRate;

double residentMebibytes() {
    std::ifstream statm("/proc/self/statm");
    long total = 0;
    long resident = 0;
    statm >> total >> resident;
    return static_cast<double>(resident) * static_cast<double>(sysconf(_SC_PAGESIZE)) / (1 << 20);
}

double secondsSince(Clock::time_point before) {
    return std::chrono::duration<double>(Clock::now() - before).count();
}

double copyAsMuch(const QString &path) {
    const QString command = QStringLiteral("dd if=/dev/zero of='%1' bs=32k count=%2 conv=fsync status=none")
                                .arg(path)
                                .arg(kHour * 2 / 32768);
    const Clock::time_point before = Clock::now();
    return std::system(command.toLocal8Bit().constData()) == 0 ? secondsSince(before) : -1;
}

/// What it costs the sound card's thread to hand over one piece of 20 ms, in the mean and at most.
void printPushCost(const QTemporaryDir &folder) {
    TakeWriter writer(folder.filePath("push.wav"));
    const std::vector<std::int16_t> piece(kTakeRate / 50, 1000);
    double total = 0;
    double longest = 0;
    constexpr int kPieces = 100'000;
    for (int i = 0; i < kPieces; ++i) {
        if (writer.space() < piece.size()) {
            writer.flush();
        }
        const Clock::time_point before = Clock::now();
        writer.push(piece);
        const double took = secondsSince(before);
        total += took;
        longest = std::max(longest, took);
    }
    writer.finish();
    std::printf("handing over 20 ms of sound: %.2f us in the mean, %.0f us at most\n", total / kPieces * 1e6,
                longest * 1e6);
}

} // namespace

int main() {
    const QTemporaryDir folder;
    FakeSoundCard sound;
    sound.recorder().setFileName(folder.filePath("take.wav"));
    sound.recorder().start();
    sound.deliver(kTakeRate);
    sound.flush();
    const double before = residentMebibytes();
    const Clock::time_point begin = Clock::now();
    sound.deliver(kHour);
    sound.flush();
    const double after = residentMebibytes();
    sound.recorder().stop();
    const double took = secondsSince(begin);
    const double peer = copyAsMuch(folder.filePath("dd"));
    const RecorderStatus status = sound.recorder().status();
    std::printf(
        "one hour: %lld frames, %d overruns, memory %+.2f MiB (limit 20), %.2f s; dd of as much %.2f s; ratio %.2f\n",
        static_cast<long long>(status.frames), status.overruns, after - before, took, peer, took / peer);
    printPushCost(folder);
    return after - before < 20 && status.overruns == 0 ? 0 : 1;
}
