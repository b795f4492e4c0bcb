#include "tests/platform/audio/full_disk.h"
#include "tests/platform/audio/listener.h"
#include "tests/platform/audio/pulse_fixture.h"

#include <QCoreApplication>
#include <QFile>

#include <cmath>
#include <sys/resource.h>
#include <unistd.h>

namespace orvel {
namespace {

using namespace std::chrono_literals;
using test::comesTrue;
using test::errorOf;
using test::Listener;
using test::runTool;
using test::soxStat;
using Clock = std::chrono::steady_clock;

constexpr int kPlaying = WavePlayer::playing;
/// Effects for sox that leave what sounds, without the silence around it.
const QStringList kSound{"silence", "1", "0.01", "1%", "reverse", "silence", "1", "0.01", "1%", "reverse"};

class WavePlayerTest : public test::PulseFixture {
  protected:
    WavePlayerTest() {
        sinkA = pulse.loadPromptSink("A");
        sinkB = pulse.loadPromptSink("B");
        pulse.pactl({"set-default-sink", "A"});
        player = connect().makePlayer();
        player->setEndHandler([this] {
            ++ends;
            wasRightThread = std::this_thread::get_id() == windowThread;
        });
    }

    void play(const QString &path) {
        player->setFileName(path);
        player->start();
    }

    /// As the window does: events come in while time goes by.
    static void live(std::chrono::milliseconds time) {
        const Clock::time_point until = Clock::now() + time;
        while (Clock::now() < until) {
            QCoreApplication::processEvents();
            std::this_thread::sleep_for(5ms);
        }
    }

    bool endComes() {
        return comesTrue([&] {
            QCoreApplication::processEvents();
            return ends > 0;
        });
    }

    int sinkA = -1;
    int sinkB = -1;
    std::unique_ptr<WavePlayer> player;
    int ends = 0;
    bool wasRightThread = false;
    std::thread::id windowThread = std::this_thread::get_id();
};

/// The most memory that this process ever had in use, bytes.
std::int64_t mostMemory() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    return std::int64_t{usage.ru_maxrss} * 1024;
}

/// A file of one kilobyte took 1.7 GB and four seconds, and was refused only then.
TEST_F(WavePlayerTest, AFileThatClaimsMadnessIsRefusedBeforeMemoryIsTakenForIt) {
    const QString path = folder.path("c.wav");
    test::writeContent(path, test::wavThatClaims(100'000'000, 16));
    const std::int64_t before = mostMemory();
    EXPECT_EQ(errorOf([&] { play(path); }), 57);
    EXPECT_EQ(player->length(), 0);
    EXPECT_LT(mostMemory() - before, INT64_C(20) << 20);
}

TEST_F(WavePlayerTest, PlaysTheWholeFileOnTheChosenOutput) {
    Listener chosen("B", folder.path("b.wav"));
    Listener other("A", folder.path("a.wav"));
    player->setOutput({.device = 1});
    play(tone("t.wav", "1", "440"));
    EXPECT_EQ(player->state(), kPlaying);
    EXPECT_TRUE(endComes());
    const QString heard = chosen.stop();
    EXPECT_NEAR(soxStat(heard, "Length (seconds)", kSound), 1, 0.02) << "nothing lost, nothing double";
    EXPECT_NEAR(soxStat(heard, "Rough   frequency", kSound), 440, 5);
    EXPECT_NEAR(soxStat(heard, "Maximum amplitude"), 0.5, 0.01) << "full volume is as recorded";
    EXPECT_NEAR(soxStat(other.stop(), "Maximum amplitude"), 0, 0.001);
}

TEST_F(WavePlayerTest, PlaysMp3OfAnotherRateAtItsOwnPitch) {
    Listener listener("A", folder.path("a.wav"));
    play(tone("t.mp3", "1", "1000", "22050", "2"));
    EXPECT_NEAR(player->length(), 1000, 100) << "sox leaves the padding in";
    EXPECT_TRUE(endComes());
    EXPECT_NEAR(soxStat(listener.stop(), "Rough   frequency", kSound), 1000, 10);
    EXPECT_NEAR(soxStat(folder.path("a.wav"), "Length (seconds)", kSound), 1, 0.1);
}

TEST_F(WavePlayerTest, NumbersThatMakeNoSenseAreTheDefault) {
    Listener listener("A", folder.path("a.wav"));
    player->setOutput({.device = 7, .bufferSize = -5, .buffers = 0});
    play(tone("t.wav", "0.3", "440"));
    EXPECT_TRUE(endComes());
    EXPECT_NEAR(soxStat(listener.stop(), "Length (seconds)", kSound), 0.3, 0.02);
    player->setOutput({.device = -1, .bufferSize = 2'000'000'000, .buffers = 2'000'000'000});
    ends = 0;
    player->start();
    EXPECT_TRUE(endComes()) << "a buffer of years is two seconds";
}

TEST_F(WavePlayerTest, StaysOnTheChosenOutputButFollowsTheDefault) {
    const auto moves = [&] {
        const QString inputs = pulse.pactl({"list", "short", "sink-inputs"});
        const QString target = inputs.section('\t', 1, 1) == pulse.pactl({"list", "short", "sinks"}).section('\t', 0, 0)
                                   ? QStringLiteral("B")
                                   : QStringLiteral("A");
        return runTool("pactl", {"move-sink-input", inputs.section('\t', 0, 0), target}).exitCode == 0;
    };
    play(tone("t.wav", "5", "440"));
    EXPECT_TRUE(moves());
    live(200ms);
    EXPECT_EQ(player->state(), kPlaying);
    player->stop();
    player->setOutput({.device = 0});
    player->start();
    EXPECT_FALSE(moves());
}

TEST_F(WavePlayerTest, TellsWhatIsHeardAtThisMoment) {
    Listener listener("A", folder.path("a.wav"));
    play(tone("t.wav", "1.5", "440"));
    const Clock::time_point begin = Clock::now();
    std::int32_t before = 0;
    while (ends == 0 && Clock::now() - begin < 5s) {
        QCoreApplication::processEvents();
        const std::int32_t position = player->position();
        EXPECT_GE(position, before) << "never backwards";
        EXPECT_LE(position, 1500) << "never beyond the end";
        if (player->state() == kPlaying) {
            const auto clock = std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - begin).count();
            EXPECT_LE(position, clock + 60) << "not what is sent but what is heard";
            EXPECT_GE(position, std::min<std::int64_t>(clock, 1500) - 250);
        }
        before = position;
        std::this_thread::sleep_for(10ms);
    }
    EXPECT_EQ(ends, 1);
    EXPECT_EQ(player->position(), 1500);
    EXPECT_EQ(player->length(), 1500);
}

TEST_F(WavePlayerTest, TellsTheEndOnceAndInTheWindowsThread) {
    const Clock::time_point begin = Clock::now();
    play(tone("t.wav", "0.5", "440"));
    EXPECT_TRUE(endComes());
    EXPECT_GE(Clock::now() - begin, 480ms) << "the end has been heard";
    EXPECT_TRUE(wasRightThread);
    EXPECT_NE(player->state(), kPlaying);
    live(300ms);
    EXPECT_EQ(ends, 1);
    player->start();
    EXPECT_EQ(player->state(), kPlaying);
    EXPECT_LT(player->position(), 300) << "from the start when the end was reached";
    live(200ms);
    player->stop();
    EXPECT_EQ(player->position(), 0);
    live(800ms);
    EXPECT_EQ(ends, 1) << "not after stop()";
}

TEST_F(WavePlayerTest, AnEndThatNobodyHeardOfYetDoesNotEndTheNextRun) {
    play(tone("t.wav", "0.4", "440"));
    ASSERT_TRUE(comesTrue([&] { return player->state() != kPlaying; })); // no events handled
    EXPECT_EQ(player->position(), 400);
    player->start();
    QCoreApplication::processEvents();
    EXPECT_EQ(ends, 0) << "that was the run before";
    EXPECT_EQ(player->state(), kPlaying);
    EXPECT_TRUE(endComes());
    ASSERT_TRUE(comesTrue([&] { return player->state() != kPlaying; }));
    ends = 0;
    player->start();
    ASSERT_TRUE(comesTrue([&] { return player->state() != kPlaying; }));
    player->stop();
    live(50ms);
    EXPECT_EQ(ends, 0);
}

TEST_F(WavePlayerTest, PauseIsSilentAndKeepsThePlace) {
    play(tone("t.wav", "1", "440"));
    live(300ms);
    player->pause();
    EXPECT_NE(player->state(), kPlaying);
    live(100ms);
    const std::int32_t place = player->position();
    Listener listener("A", folder.path("a.wav"));
    live(300ms);
    EXPECT_NEAR(player->position(), place, 1);
    EXPECT_NEAR(soxStat(listener.stop(), "Maximum amplitude"), 0, 0.001);
    player->resume();
    EXPECT_EQ(player->state(), kPlaying);
    player->resume();
    EXPECT_TRUE(endComes());
    EXPECT_EQ(player->position(), 1000);
    player->stop();
    player->pause();
    player->resume();
    EXPECT_NE(player->state(), kPlaying) << "what does not play cannot be paused";
}

class SeekTest : public WavePlayerTest {
  protected:
    /// Two seconds of 440 Hz, then two of 2000.
    QString twoTones(const char *name, const QStringList &encoder = {}) {
        const QString both = folder.path("both.wav");
        EXPECT_EQ(runTool("sox", {tone("low.wav", "2", "440"), tone("high.wav", "2", "2000"), both}).exitCode, 0);
        if (encoder.isEmpty()) {
            return both;
        }
        const QString path = folder.path(name);
        EXPECT_EQ(runTool("lame", QStringList{"--quiet"} + encoder + QStringList{both, path}).exitCode, 0);
        return path;
    }
};

TEST_F(SeekTest, GoesOnFromTheNewPlaceAtOnce) {
    play(twoTones("t.wav"));
    live(200ms);
    Listener listener("A", folder.path("a.wav"));
    player->setPosition(3000);
    EXPECT_EQ(player->state(), kPlaying);
    EXPECT_GE(player->position(), 3000);
    live(300ms);
    EXPECT_NEAR(player->position(), 3300, 150);
    player->setPosition(2500);
    EXPECT_LT(player->position(), 2800) << "a jump may go back";
    EXPECT_TRUE(endComes());
    EXPECT_EQ(ends, 1) << "jumping ends nothing";
    EXPECT_NEAR(
        soxStat(listener.stop(), "Rough   frequency", {"reverse", "silence", "1", "0.01", "1%", "trim", "0", "1"}),
        2000, 20);
}

TEST_F(SeekTest, WhilePausedOrStoppedIsHeardLater) {
    for (const bool isPaused : {true, false}) {
        play(twoTones("t.wav"));
        live(100ms);
        isPaused ? player->pause() : player->stop();
        player->setPosition(3200);
        EXPECT_NE(player->state(), kPlaying);
        EXPECT_EQ(player->position(), 3200);
        Listener listener("A", folder.path("a.wav"));
        ends = 0;
        isPaused ? player->resume() : player->start();
        EXPECT_TRUE(endComes());
        EXPECT_NEAR(soxStat(listener.stop(), "Rough   frequency", kSound), 2000, 20);
        // On a busy machine the idle output swallows its first 50 ms, whoever plays.
        EXPECT_NEAR(soxStat(folder.path("a.wav"), "Length (seconds)", kSound), 0.8, 0.06);
    }
}

TEST_F(SeekTest, IsLimitedToTheFile) {
    player->setPosition(5);
    EXPECT_EQ(player->position(), 0) << "no file";
    player->setFileName(twoTones("t.wav"));
    player->setPosition(99'000);
    EXPECT_EQ(player->position(), 4000);
    player->setPosition(-5);
    EXPECT_EQ(player->position(), 0);
    player->start();
    player->setPosition(99'000);
    EXPECT_TRUE(endComes()) << "a jump to the end ends it";
    EXPECT_EQ(player->position(), 4000);
}

/// libsndfile took its guess at the length of such a file for the truth: half the track was never heard.
TEST_F(SeekTest, FindsItsPlaceInAnMp3OfVariableRateWithoutTag) {
    player->setFileName(twoTones("t.mp3", {"-V", "2", "-t"}));
    EXPECT_NEAR(player->length(), 4000, 80);
    player->setPosition(3000);
    Listener listener("A", folder.path("a.wav"));
    player->start();
    EXPECT_TRUE(endComes());
    EXPECT_NEAR(soxStat(listener.stop(), "Rough   frequency", kSound), 2000, 20);
    EXPECT_NEAR(soxStat(folder.path("a.wav"), "Length (seconds)", kSound), 1, 0.1);
}

TEST_F(WavePlayerTest, HalfTheVolumeIsHalfAsLoudToTheEar) {
    Listener listener("A", folder.path("a.wav"));
    player->setVolume(32768);
    play(tone("t.wav", "0.4", "440"));
    EXPECT_TRUE(endComes());
    EXPECT_NEAR(soxStat(listener.stop(), "Maximum amplitude"), 0.5 * std::pow(0.5, 1 / 0.6), 0.005);
    Listener silent("A", folder.path("s.wav"));
    player->setVolume(0);
    player->start();
    live(300ms);
    EXPECT_NEAR(soxStat(silent.stop(), "Maximum amplitude"), 0, 0.001);
}

TEST_F(WavePlayerTest, AVolumeActsAtOnceAndDoesNotClick) {
    Listener listener("A", folder.path("a.wav"));
    player->setOutput({.device = -1, .bufferSize = 44100, .buffers = 2});
    play(tone("t.wav", "4", "440"));
    live(500ms);
    for (int volume = 60'000; volume >= 0; volume -= 6000) { // a knob that is turned
        player->setVolume(volume);
        live(20ms);
    }
    live(500ms);
    player->stop();
    const QString heard = listener.stop();
    EXPECT_LT(soxStat(heard, "Length (seconds)", kSound), 1.1) << "two seconds were waiting at full volume";
    EXPECT_GT(soxStat(heard, "Length (seconds)", kSound), 0.5);
    const double steepest = 0.5 * 2 * 3.1416 * 440 / 44100;
    EXPECT_LT(soxStat(heard, "Maximum delta", {"trim", "0.1"}), steepest * 1.3);
}

TEST_F(WavePlayerTest, PeaksAreThoseOfWhatWasHeardSinceTheLastLook) {
    const QString path = folder.path("left.wav");
    ASSERT_EQ(runTool("sox", {tone("t.wav", "0.4", "440"), path, "remix", "1", "0", "pad", "0.6", "0.4"}).exitCode, 0);
    EXPECT_EQ(player->peaks().left, 0.0F) << "nothing was played";
    player->setVolume(0);
    play(path);
    live(300ms);
    EXPECT_EQ(player->peaks().left, 0.0F) << "sent ahead, but not heard yet";
    live(500ms);
    const StereoPeaks peaks = player->peaks();
    EXPECT_NEAR(peaks.left, 0.5, 0.01) << "of the file, also at volume 0";
    EXPECT_EQ(peaks.right, 0.0F);
    live(300ms);
    (void)player->peaks();
    live(200ms);
    EXPECT_EQ(player->peaks().left, 0.0F) << "reading resets them";
}

TEST_F(WavePlayerTest, AMonoFileMovesBothMeters) {
    play(tone("t.wav", "0.5", "440"));
    live(400ms);
    const StereoPeaks peaks = player->peaks();
    EXPECT_NEAR(peaks.left, 0.5, 0.01);
    EXPECT_EQ(peaks.left, peaks.right);
}

TEST_F(WavePlayerTest, AFileThatCannotBePlayedLeavesNoneOpen) {
    const QString good = tone("t.wav", "1", "440");
    test::writeContent(folder.path("tekst.mp3"), QByteArray("Dit is geen geluid. ").repeated(500));
    const auto refused = [&](const QString &path) {
        play(good);
        const int error = errorOf([&] { player->setFileName(path); });
        EXPECT_NE(player->state(), kPlaying);
        EXPECT_EQ(player->length(), 0);
        EXPECT_EQ(player->position(), 0);
        player->start();
        EXPECT_NE(player->state(), kPlaying) << "nothing happens without a file";
        return error;
    };
    EXPECT_EQ(refused(folder.path("is er niet.mp3")), 53);
    EXPECT_EQ(refused(folder.path("tekst.mp3")), 57);
    EXPECT_EQ(refused(folder.path()), 57) << "a folder is no sound";
    EXPECT_EQ(ends, 0);
}

TEST_F(WavePlayerTest, AFileThatMayNotBeReadSaysSo) {
    const QString path = tone("t.wav", "1", "440");
    const auto passable = QFile::ReadGroup | QFile::ExeGroup | QFile::ReadOther | QFile::ExeOther;
    QFile::setPermissions(folder.path(), QFile::permissions(folder.path()) | passable);
    QFile::setPermissions(path, QFile::WriteOwner);
    const uid_t user = geteuid();
    const bool isRoot = user == 0; // who may read everything
    ASSERT_TRUE(!isRoot || seteuid(65534) == 0);
    const int error = errorOf([&] { player->setFileName(path); });
    ASSERT_EQ(seteuid(user), 0);
    EXPECT_EQ(error, 70);
}

TEST_F(WavePlayerTest, AFileThatBreaksOffIsHeardAsFarAsItGoes) {
    for (const char *name : {"t.wav", "t.mp3"}) {
        const QString path = tone(name, "2", "440");
        const QByteArray content = test::contentOf(path);
        test::writeContent(path, content.left(content.size() / 4));
        Listener listener("A", folder.path("a.wav"));
        ends = 0;
        play(path);
        EXPECT_TRUE(endComes()) << name;
        EXPECT_NEAR(soxStat(listener.stop(), "Length (seconds)", kSound), 0.5, 0.1) << name;
        EXPECT_NEAR(player->position(), 500, 100) << name;
        player->start();
        EXPECT_LT(player->position(), 300) << "again from the start";
    }
}

TEST_F(WavePlayerTest, AFileWithoutSoundEndsAtOnce) {
    const QString path = tone("t.wav", "1", "440");
    test::writeContent(path, test::contentOf(path).left(44));
    play(path);
    EXPECT_TRUE(endComes());
    EXPECT_EQ(player->length(), 0);
}

TEST_F(WavePlayerTest, ACardThatVanishesEndsThePlaying) {
    player->setOutput({.device = 1});
    play(tone("t.wav", "5", "440"));
    live(300ms);
    pulse.unload(sinkB);
    EXPECT_TRUE(endComes());
    EXPECT_TRUE(wasRightThread);
    EXPECT_NE(player->state(), kPlaying);
    EXPECT_GT(player->position(), 100) << "it broke off here";
    EXPECT_LT(player->position(), 2000);
    live(200ms);
    EXPECT_EQ(ends, 1);
}

TEST_F(WavePlayerTest, AServerThatDiesEndsThePlayingAlsoWhilePaused) {
    play(tone("t.wav", "5", "440"));
    live(200ms);
    player->pause();
    pulse.kill();
    EXPECT_TRUE(endComes());
    player->resume();
    EXPECT_NE(player->state(), kPlaying);
    EXPECT_EQ(errorOf([&] { player->start(); }), 57);
    EXPECT_NE(player->state(), kPlaying);
    pulse.restart();
    pulse.loadPromptSink("A");
    AudioRecord &record = card->audioRecord();
    EXPECT_TRUE(comesTrue([&] { return record.refresh() && record.deviceCount() == 1; }));
    EXPECT_EQ(errorOf([&] { player->start(); }), 0);
    EXPECT_EQ(player->state(), kPlaying);
}

TEST_F(WavePlayerTest, WithoutAnOutputStartSaysSo) {
    pulse.unload(sinkA);
    pulse.unload(sinkB);
    player->setFileName(tone("t.wav", "1", "440"));
    EXPECT_EQ(errorOf([&] { player->start(); }), 57);
    EXPECT_NE(player->state(), kPlaying);
}

TEST_F(WavePlayerTest, AServerThatHangsDoesNotHangTheButton) {
    play(tone("t.wav", "5", "440"));
    live(200ms);
    pulse.freeze(true);
    const Clock::time_point before = Clock::now();
    player->setVolume(100);
    player->stop();
    EXPECT_LT(Clock::now() - before, 500ms);
    EXPECT_EQ(errorOf([&] { player->start(); }), 57);
    EXPECT_LT(Clock::now() - before, 5s);
    pulse.freeze(false);
    live(100ms);
    EXPECT_EQ(ends, 0);
}

TEST_F(WavePlayerTest, CanGoWhileItPlays) {
    play(tone("t.wav", "0.3", "440"));
    player.reset();
    player = card->makePlayer();
    player->setEndHandler([this] { ++ends; });
    play(folder.path("t.wav"));
    ASSERT_TRUE(comesTrue([&] { return player->state() != kPlaying; }));
    player.reset(); // the news of the end is on its way
    live(100ms);
    EXPECT_EQ(ends, 0);
}

TEST_F(WavePlayerTest, TwoPlayersDoNotDisturbEachOther) {
    const std::unique_ptr<WavePlayer> other = card->makePlayer();
    other->setOutput({.device = 1});
    other->setFileName(tone("h.wav", "1", "2000"));
    Listener onA("A", folder.path("a.wav"));
    Listener onB("B", folder.path("b.wav"));
    play(tone("t.wav", "0.5", "440"));
    other->start();
    EXPECT_TRUE(endComes());
    EXPECT_EQ(other->state(), kPlaying);
    EXPECT_NEAR(soxStat(onA.stop(), "Rough   frequency", kSound), 440, 5);
    EXPECT_NEAR(soxStat(onB.stop(), "Rough   frequency", kSound), 2000, 20);
}

TEST_F(WavePlayerTest, OutputsAreNumberedByNameAndTwinsAreToldApart) {
    pulse.load("module-null-sink", {"sink_name=0", "sink_properties=device.description=B"});
    EXPECT_TRUE(comesTrue([&] {
        return card->outputNames() == QStringList{"B", "A", "B (2)"};
    })) << card->outputNames().join(", ").toStdString();
}

TEST(WavePlayerWithoutServer, CannotStart) {
    test::PrivatePulse::pointNowhere();
    PulseSoundCard card;
    EXPECT_EQ(card.outputNames(), QStringList());
    const std::unique_ptr<WavePlayer> player = card.makePlayer();
    player->start();
    player->stop();
    player->close();
    EXPECT_EQ(player->length(), 0);
    EXPECT_EQ(player->position(), 0);
}

} // namespace
} // namespace orvel

/// libpulse makes a lock when it is first needed, and Qt hands a call to another thread, without a sign that
/// ThreadSanitizer could see.
// NOLINTNEXTLINE(bugprone-reserved-identifier): the name is ThreadSanitizer's
extern "C" const char *__tsan_default_suppressions();
// NOLINTNEXTLINE(bugprone-reserved-identifier)
extern "C" const char *__tsan_default_suppressions() {
    return "race:pa_mutex_lock\nrace:invokeMethod\n";
}

int main(int argc, char **argv) {
    const QCoreApplication application(argc, argv); // for the news that comes into the window's thread
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
