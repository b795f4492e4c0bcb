// What is heard along a take lies where the take has it, on PulseAudio and on PipeWire.
#include "platform/pulse/capture_clock.h"
#include "platform/pulse/pulse_sound_card.h"
#include "tests/platform/audio/full_disk.h"
#include "tests/platform/audio/listener.h"
#include "tests/platform/audio/private_pipewire.h"
#include "tests/platform/audio/pulse_fixture.h"

#include <QCoreApplication>

#include <cmath>
#include <gtest/gtest.h>
#include <memory>
#include <sys/resource.h>

namespace orvel {
namespace {

using namespace std::chrono_literals;
using test::comesTrue;
using test::Listener;
using test::runTool;
using test::samplesOf;
using Clock = std::chrono::steady_clock;

constexpr int kRate = 44100;

/// A server and an output as they are found.
struct Place {
    const char *name;
    bool isPipeWire;
    QStringList sink; ///< arguments of the null sink
};

/// Where a piece of a known sound begins in another one, by the highest correlation; in samples, -1 for nowhere.
std::int64_t find(std::span<const std::int16_t> piece, std::span<const std::int16_t> in) {
    double best = 0;
    std::int64_t found = -1;
    for (std::size_t at = 0; at + piece.size() <= in.size(); ++at) {
        double product = 0;
        double energy = 1;
        for (std::size_t i = 0; i < piece.size(); ++i) {
            product += static_cast<double>(piece[i]) * in[at + i];
            energy += static_cast<double>(in[at + i]) * in[at + i];
        }
        const double alike = product / std::sqrt(energy);
        if (alike > best) {
            best = alike;
            found = static_cast<std::int64_t>(at);
        }
    }
    return found;
}

double processorSeconds() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    const auto seconds = [](const timeval &time) {
        return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_usec) / 1e6;
    };
    return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

class JoinPlayerTest : public testing::TestWithParam<Place> {
  protected:
    JoinPlayerTest() {
        if (GetParam().isPipeWire) {
            server = std::make_unique<test::PrivatePipeWire>();
        } else {
            server = std::make_unique<test::PrivatePulse>();
        }
        sink = server->loadNullSink("A", GetParam().sink);
        server->pactl({"set-default-sink", "A"});
        card.emplace();
        AudioRecord &cards = card->audioRecord();
        EXPECT_TRUE(comesTrue([&] {
            cards.refresh();
            return cards.deviceName(1) == "Monitor of A";
        }));
        card->recorder().setDevice(0);
        card->recorder().setFileName(folder.path("take.wav"));
        player = card->makeJoinPlayer();
        player->setEndHandler([this] { ++ends; });
    }

    /// Noise that is like no other: 16 bits mono at 44100 Hz, and the same at another rate and in stereo.
    QString noise(const QString &name, double seconds, int rate = kRate) {
        const QString plain = folder.path(name + ".wav");
        EXPECT_EQ(runTool("sox", {"-n", "-r", "44100", "-c", "1", "-b", "16", plain, "synth", QString::number(seconds),
                                  "pinknoise", "gain", "-12", "lowpass", "8000"})
                      .exitCode,
                  0);
        if (rate == kRate) {
            return plain;
        }
        const QString other = folder.path(name + "-other.wav");
        EXPECT_EQ(runTool("sox", {plain, "-r", QString::number(rate), "-c", "2", other}).exitCode, 0);
        return other;
    }
    [[nodiscard]] std::vector<std::int16_t> plain(const QString &name) const {
        return samplesOf(folder.path(name + ".wav"));
    }

    /// As the window does: events come in while time goes by.
    static void live(Clock::time_point until) {
        while (Clock::now() < until) {
            QCoreApplication::processEvents();
            std::this_thread::sleep_for(2ms);
        }
    }

    /// Milliseconds by which a moment of a file lies later in the take than on the axis.
    static double lag(const std::vector<std::int16_t> &take, const std::vector<std::int16_t> &sound, double soundSecond,
                      double axisSecond) {
        constexpr double around = 0.25;
        const std::span<const std::int16_t> piece =
            std::span(sound).subspan(static_cast<std::size_t>(soundSecond * kRate), 4096);
        const auto from = static_cast<std::int64_t>((axisSecond - around) * kRate);
        const auto count = static_cast<std::int64_t>(2 * around * kRate) + 4096;
        if (from < 0 || from + count > static_cast<std::int64_t>(take.size())) {
            return 9999;
        }
        const std::int64_t found =
            find(piece, std::span(take).subspan(static_cast<std::size_t>(from), static_cast<std::size_t>(count)));
        return found < 0 ? 9999 : (static_cast<double>(found) / kRate - around) * 1000;
    }

    test::TempFolder folder;
    std::unique_ptr<test::PrivateServer> server;
    std::optional<PulseSoundCard> card;
    std::unique_ptr<JoinPlayer> player;
    int sink = -1;
    int ends = 0;
};

/// What is heard at the moment of the take's first frame is the begin of the outro; the next item begins where the
/// previous one ends.
TEST_P(JoinPlayerTest, TheTakeBeginsWhereTheOutroIsHeardToBegin) {
    const QString previous = noise("previous", 4);
    const QString next = noise("next-item", 3, 48000);
    card->recorder().prepare();
    const Clock::time_point zero = Clock::now() + 2s;
    const double before = processorSeconds();
    player->play({{previous, JoinClip::Anchor::End, 1500, -1200, 1500}, {next, JoinClip::Anchor::Begin, 1500, 1500}},
                 zero);
    EXPECT_FALSE(player->zeroHeardAt()) << "nobody knows yet";
    live(zero + 150ms); // the window's thread comes late
    ASSERT_TRUE(player->zeroHeardAt());
    const double offset = std::chrono::duration<double, std::milli>(*player->zeroHeardAt() - zero).count();
    card->recorder().startAt(*player->zeroHeardAt());
    live(zero + 3500ms);
    card->recorder().stop();
    const double spent = (processorSeconds() - before) / 5.5;
    const double drift = std::chrono::duration<double, std::milli>(*player->zeroHeardAt() - zero).count();
    player->stop();
    const std::vector<std::int16_t> take = samplesOf(folder.path("take.wav"));
    const double first = lag(take, plain("previous"), 2.9, 0.4);
    const double second = lag(take, plain("next-item"), 0.5, 2);
    std::printf(
        "ALIGNMENT %s: outro %.2f ms, next item %.2f ms, by the clock %.2f ms (%.2f at the end), %.1f %% of a core\n",
        GetParam().name, first, second, offset, drift, 100 * spent);
    EXPECT_LT(std::abs(first), 20);
    EXPECT_LT(std::abs(second), 20);
    EXPECT_LT(std::abs(offset), 20);
    EXPECT_NEAR(first, second, 1) << "both items lie on one axis";
    EXPECT_NEAR(static_cast<double>(take.size()) / kRate, 3.5, 0.15);
}

/// The presenter presses stop, or cancels the count-down.
TEST_P(JoinPlayerTest, StopsAtOnceAndCanPlayAgain) {
    const QString sound = noise("sound", 4);
    Listener listener("A", folder.path("heard.wav"));
    player->play({{sound}}, {});
    live(Clock::now() + 700ms);
    const Clock::time_point pressed = Clock::now();
    player->stop();
    EXPECT_LT(Clock::now() - pressed, 100ms);
    EXPECT_FALSE(player->isPlaying());
    live(Clock::now() + 500ms);
    EXPECT_LT(test::soxStat(listener.stop(), "Length (seconds)",
                            {"silence", "1", "0.01", "1%", "reverse", "silence", "1", "0.01", "1%", "reverse"}),
              1.2);
    EXPECT_EQ(ends, 0) << "whoever stops knows";
    player->play({{sound, JoinClip::Anchor::Begin, 0, 0, 300}}, {});
    EXPECT_TRUE(comesTrue([&] {
        QCoreApplication::processEvents();
        return ends == 1;
    }));
    EXPECT_FALSE(player->brokeOff());
}

TEST_P(JoinPlayerTest, AFileThatCannotBeReadIsLeftOutAndNamed) {
    const QString sound = noise("sound", 1);
    test::writeContent(folder.path("broken.mp3"), "no sound");
    Listener listener("A", folder.path("heard.wav"));
    player->play({{folder.path("broken.mp3")}, {folder.path("gone.wav")}, {sound, JoinClip::Anchor::Begin, 500, 500}},
                 {});
    EXPECT_TRUE(comesTrue([&] {
        QCoreApplication::processEvents();
        return ends == 1;
    }));
    EXPECT_EQ(player->unreadable(), (QStringList{folder.path("broken.mp3"), folder.path("gone.wav")}));
    EXPECT_NEAR(test::soxStat(listener.stop(), "Length (seconds)",
                              {"silence", "1", "0.01", "0.5%", "reverse", "silence", "1", "0.01", "0.5%", "reverse"}),
                1, 0.1);
}

/// The take comes from another card: it loses nothing.
TEST_P(JoinPlayerTest, AnOutputThatIsUnpluggedIsToldAndHarmsNoTake) {
    const int other = server->loadNullSink("B", GetParam().sink);
    ASSERT_TRUE(comesTrue([&] { return card->outputNames().size() == 2; }));
    player->setOutput({.device = 1});
    card->recorder().prepare();
    card->recorder().start();
    player->play({{noise("sound", 6)}}, {});
    live(Clock::now() + 600ms);
    server->unload(other);
    EXPECT_TRUE(comesTrue([&] {
        QCoreApplication::processEvents();
        return ends == 1;
    }));
    EXPECT_TRUE(player->brokeOff());
    live(Clock::now() + 300ms);
    card->recorder().stop();
    EXPECT_FALSE(card->recorder().status().deviceLost);
    EXPECT_EQ(card->recorder().status().overruns, 0);
    EXPECT_GT(card->recorder().status().frames, kRate * 8 / 10);
}

/// Null sinks that render two seconds ahead of their own clock have a monitor that tells what nobody hears: not here.
INSTANTIATE_TEST_SUITE_P(Every, JoinPlayerTest,
                         testing::Values(Place{"PulseAudio", false, {"norewinds=1"}},
                                         Place{"PulseAudio48000", false, {"norewinds=1", "rate=48000"}},
                                         Place{"PipeWire", true, {}}),
                         [](const auto &place) { return std::string(place.param.name); });

TEST(CaptureClock, TellsFrameAndMomentByTheMedianOfManyEstimates) {
    CaptureClock clock;
    const CaptureClock::Clock::time_point begin{};
    for (int i = 0; i < 40; ++i) {
        EXPECT_EQ(clock.isKnown(), i >= 10) << i;
        const auto wrong = i % 5 == 0 ? 15ms : 0ms;
        clock.note(i * 882, begin + 100s + i * 20ms + wrong);
    }
    EXPECT_NEAR(static_cast<double>(clock.frameAt(begin + 101s)), kRate, 1);
    EXPECT_LT(clock.frameAt(begin + 99s), 0);
    EXPECT_LT(std::chrono::abs(clock.momentOf(kRate / 2) - (begin + 100s + 500ms)), 1ms);
}

} // namespace
} // namespace orvel

int main(int argc, char **argv) {
    const QCoreApplication application(argc, argv); // for the news that comes into the window's thread
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
