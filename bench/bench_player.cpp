// How long a presenter waits for the sound of a ten-minute MP3: from setFileName() and from start() to the first
// samples that are not silent in the monitor of the output, on a private sound server. Limit: 100 ms. The figures hold
// the way from the server to the tool that listens (parec).

#include "platform/pulse/pulse_sound_card.h"
#include "tests/platform/audio/outside_tool.h"
#include "tests/platform/audio/private_pulse.h"
#include "tests/platform/audio/temp_folder.h"

#include <QCoreApplication>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <functional>
#include <thread>
#include <unistd.h>

namespace {

using namespace orvel;
using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

constexpr double kLimitMs = 100;

double since(Clock::time_point before) {
    return std::chrono::duration<double, std::milli>(Clock::now() - before).count();
}

/// Listens to a source of the server.
class Listener {
  public:
    explicit Listener(const char *source) {
        const std::string command = std::string("exec parec 2>/dev/null --raw --rate=44100 --channels=2 --format=s16le "
                                                "--latency-msec=5 -d ") +
                                    source;
        pipe_ = popen(command.c_str(), "r");
        // A null sink that nobody listened to sleeps for two seconds; from the first silence on it is awake.
        std::uint32_t silence = 0;
        while (read(fileno(pipe_), &silence, sizeof(silence)) < 0) {
        }
    }
    ~Listener() { pclose(pipe_); }
    Listener(const Listener &) = delete;
    Listener(Listener &&) = delete;
    Listener &operator=(const Listener &) = delete;
    Listener &operator=(Listener &&) = delete;

    /// Returns when it has become loud.
    void waitForSound() {
        std::int16_t samples[256];
        for (;;) {
            const ssize_t bytes = read(fileno(pipe_), samples, sizeof(samples));
            const auto isLoud = [](std::int16_t sample) { return std::abs(int{sample}) > 100; };
            if (bytes <= 0 || std::any_of(samples, samples + bytes / 2, isLoud)) {
                return;
            }
        }
    }

  private:
    FILE *pipe_;
};

struct Times {
    double open = 0;
    double start = 0; ///< the call
    double fromStart = 0;
    double fromOpen = 0;
};

Times playOnce(SoundCard &card, const QString &path, std::int32_t from) {
    std::unique_ptr<WavePlayer> player = card.makePlayer();
    Times times;
    Clock::time_point heardAt;
    Listener listener("A.monitor");
    std::thread ears([&] {
        listener.waitForSound();
        heardAt = Clock::now();
    });
    const Clock::time_point begin = Clock::now();
    player->setFileName(path);
    times.open = since(begin);
    player->setPosition(from);
    const Clock::time_point start = Clock::now();
    player->start();
    times.start = since(start);
    ears.join();
    times.fromStart = std::chrono::duration<double, std::milli>(heardAt - start).count();
    times.fromOpen = std::chrono::duration<double, std::milli>(heardAt - begin).count();
    player->stop();
    std::this_thread::sleep_for(300ms);
    return times;
}

bool print(const char *name, SoundCard &card, const QString &path, std::int32_t from = 0) {
    std::vector<double> fromStart;
    std::vector<double> fromOpen;
    Times last;
    for (int i = 0; i < 7; ++i) {
        last = playOnce(card, path, from);
        fromStart.push_back(last.fromStart);
        fromOpen.push_back(last.fromOpen);
    }
    std::sort(fromStart.begin(), fromStart.end());
    std::sort(fromOpen.begin(), fromOpen.end());
    std::printf("%-34s open %5.1f ms, start() %4.1f ms; sound after start() %5.1f ms (most %5.1f), after "
                "setFileName() %5.1f ms (most %5.1f)\n",
                name, last.open, last.start, fromStart[3], fromStart.back(), fromOpen[3], fromOpen.back());
    std::fflush(stdout);
    return fromOpen[3] <= kLimitMs;
}

} // namespace

int main(int argc, char **argv) {
    const QCoreApplication application(argc, argv);
    const test::TempFolder folder;
    test::PrivatePulse pulse;
    pulse.loadNullSink("A");
    const QString wav = folder.path("t.wav");
    const QString tagged = folder.path("t.mp3");
    const QString variable = folder.path("v.mp3");
    test::runTool("sox",
                  {"-n", "-r", "44100", "-c", "2", "-b", "16", wav, "synth", "600", "sine", "440", "gain", "-6"});
    test::runTool("lame", {"--quiet", "-b", "192", wav, tagged});
    test::runTool("lame", {"--quiet", "-V", "2", "-t", wav, variable});
    PulseSoundCard card;
    bool isFine = print("10 min MP3", card, tagged);
    isFine = print("10 min MP3, from the middle", card, tagged, 300'000) && isFine;
    isFine = print("10 min MP3, variable, without tag", card, variable) && isFine;
    isFine = print("10 min WAV", card, wav) && isFine;
    return isFine ? 0 : 1;
}
