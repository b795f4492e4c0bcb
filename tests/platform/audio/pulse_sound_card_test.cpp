#include "tests/platform/audio/full_disk.h"
#include "tests/platform/audio/outside_tool.h"
#include "tests/platform/audio/pulse_fixture.h"

#include <QFile>

#include <algorithm>
#include <chrono>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <span>
#include <thread>
#include <unistd.h>
#include <utility>

namespace orvel {
namespace {

using namespace std::chrono_literals;
using test::comesTrue;
using test::counting;
using test::errorOf;
using test::PrivatePulse;
using test::samplesOf;
using test::soxStat;

QStringList namesOf(const AudioRecord &record) {
    QStringList names;
    for (int device = 1; device <= record.deviceCount(); ++device) {
        names << record.deviceName(device);
    }
    return names;
}

class PulseTest : public test::PulseFixture {
  protected:
    bool isMuted(const char *sink) { return pulse.pactl({"get-sink-mute", sink}).contains("yes"); }

    void startTake(const char *name) {
        take = folder.path(name);
        card->recorder().setFileName(take);
        card->recorder().start();
    }

    void waitForFrames(std::int64_t frames) {
        ASSERT_TRUE(comesTrue([&] { return card->recorder().status().frames >= frames; }));
    }

    QString take;
};

TEST_F(PulseTest, ListsRealInputsBeforeMonitors) {
    pulse.loadNullSink("B");
    pulse.loadNullSink("A");
    pulse.load("module-remap-source",
               {"master=B.monitor", "source_name=z-mic", "source_properties=device.description=Microfoon"});
    AudioRecord &record = card.emplace().audioRecord();
    EXPECT_EQ(namesOf(record), (QStringList{"Microfoon", "Monitor of A", "Monitor of B"}));
    EXPECT_EQ(record.currentDevice(), 1);
    EXPECT_TRUE(record.canRecord(1));
    EXPECT_FALSE(record.canRecord(0));
    EXPECT_FALSE(record.canRecord(4));
    EXPECT_EQ(record.lineCount(), 1);
    EXPECT_EQ(record.currentLine(), 1);
    EXPECT_EQ(record.lineName(), "Microfoon") << "a source without ports is one line with its name";
}

TEST_F(PulseTest, FollowsCardsThatComeAndGo) {
    const int a = pulse.loadNullSink("A");
    pulse.loadNullSink("B");
    AudioRecord &record = connect().audioRecord();
    record.setCurrentDevice(2);
    EXPECT_FALSE(record.refresh());
    pulse.unload(a);
    ASSERT_TRUE(comesTrue([&] { return record.refresh() && record.deviceCount() == 1; }));
    EXPECT_EQ(record.currentDevice(), 1) << "B is still the chosen one";
    pulse.loadNullSink("A");
    ASSERT_TRUE(comesTrue([&] { return record.refresh() && record.deviceCount() == 2; }));
    EXPECT_EQ(record.currentDevice(), 2);
}

TEST_F(PulseTest, FindsAServerThatComesLater) {
    pulse.kill();
    AudioRecord &record = card.emplace().audioRecord();
    EXPECT_EQ(record.deviceCount(), 0);
    EXPECT_EQ(record.currentDevice(), 0);
    EXPECT_FALSE(record.canRecord(1));
    EXPECT_EQ(record.lineCount(), 0);
    EXPECT_EQ(errorOf([&] { startTake("a.wav"); }), 57);
    EXPECT_EQ(errorOf([&] { card->audioPlayer().setOutputMute(true); }), 0) << "there is nothing to mute";
    pulse.restart();
    pulse.load("module-null-source", {"source_name=mic"});
    EXPECT_TRUE(comesTrue([&] { return record.refresh() && record.deviceCount() == 1; }));
    EXPECT_EQ(record.currentDevice(), 1);
    EXPECT_EQ(errorOf([&] { startTake("a.wav"); }), 0);
}

TEST_F(PulseTest, RecordsWhatIsPlayedFromTheCardThatWasChosen) {
    pulse.loadNullSink("A");
    pulse.loadNullSink("B");
    const QString low = tone("low.wav", "3", "440");
    const QString high = tone("high.wav", "3", "2000");
    connect().recorder().setDevice(1);
    startTake("één take.wav");
    const pid_t toA = pulse.play(low, "A");
    const pid_t toB = pulse.play(high, "B");
    EXPECT_EQ(test::waitForTool(toA), 0);
    EXPECT_EQ(test::waitForTool(toB), 0);
    EXPECT_NEAR(card->recorder().status().peak, 0.5, 0.02);
    card->recorder().stop();
    const RecorderStatus status = card->recorder().status();
    EXPECT_FALSE(status.deviceLost);
    EXPECT_EQ(status.overruns, 0);
    EXPECT_EQ(status.frames, static_cast<std::int64_t>(samplesOf(take).size()));
    const QStringList speech{"silence", "1", "0.01", "1%", "reverse", "silence", "1", "0.01", "1%", "reverse"};
    EXPECT_NEAR(soxStat(take, "Length (seconds)", speech), 3, 0.05) << "the whole tone, without a hole";
    EXPECT_NEAR(soxStat(take, "Rough   frequency", speech), 2000, 20);
    EXPECT_NEAR(soxStat(take, "RMS     amplitude", speech), 0.354, 0.01);
}

/// A microphone whose samples a pipe brings to the server, with nothing in between.
class PipeMicrophone : public PulseTest, public testing::WithParamInterface<int> {
  protected:
    PipeMicrophone() {
        const QString format = "format=s16le rate=44100 channels=%1";
        const QStringList source{"source_name=mic", "file=" + pipe};
        EXPECT_GE(pulse.load("module-pipe-source", source + format.arg(GetParam()).split(' ')), 0);
        out = open(pipe.toLocal8Bit().constData(), O_WRONLY);
    }
    ~PipeMicrophone() override { close(out); }
    PipeMicrophone(const PipeMicrophone &) = delete;
    PipeMicrophone(PipeMicrophone &&) = delete;
    PipeMicrophone &operator=(const PipeMicrophone &) = delete;
    PipeMicrophone &operator=(PipeMicrophone &&) = delete;

    /// The same on every channel, at about the pace of a card; the last part at once.
    void speak(const std::vector<std::int16_t> &samples) const {
        std::vector<std::int16_t> bytes;
        for (const std::int16_t sample : samples) {
            bytes.insert(bytes.end(), static_cast<std::size_t>(GetParam()), sample);
        }
        const std::size_t ahead = std::min<std::size_t>(bytes.size(), 15'000);
        for (auto rest = std::span(std::as_const(bytes)); !rest.empty();) {
            const auto part = rest.first(rest.size() > ahead ? std::min<std::size_t>(rest.size() - ahead, 880) : ahead);
            ASSERT_EQ(write(out, part.data(), part.size_bytes()), static_cast<ssize_t>(part.size_bytes()));
            rest = rest.subspan(part.size());
            std::this_thread::sleep_for(2ms);
        }
    }

    QString pipe = folder.path("pipe");
    int out = -1;
};

TEST_P(PipeMicrophone, TakesEverySampleOnceAndInOrder) {
    connect().recorder().prepare();
    speak(std::vector<std::int16_t>(4410)); // it is on
    startTake("a.wav");
    const std::vector<std::int16_t> samples = counting(88'200);
    speak(samples);
    card->recorder().stop(); // at once: the end is still in the pipe or in the server
    std::vector<std::int16_t> taken = samplesOf(take);
    taken.erase(taken.begin(), std::find_if(taken.begin(), taken.end(), [](std::int16_t s) { return s != 0; }));
    EXPECT_EQ(taken, samples);
}

INSTANTIATE_TEST_SUITE_P(Channels, PipeMicrophone, testing::Values(1, 2, 4));

TEST_F(PulseTest, ATakeIsAsLongAsTheClockSays) {
    pulse.loadNullSink("A");
    connect().recorder().prepare();
    std::this_thread::sleep_for(2500ms); // an idle null sink sleeps for two seconds at most
    startTake("a.wav");
    std::this_thread::sleep_for(2s);
    const auto before = std::chrono::steady_clock::now();
    card->recorder().stop();
    EXPECT_LT(std::chrono::steady_clock::now() - before, 400ms) << "the button must come back soon";
    EXPECT_NEAR(static_cast<double>(samplesOf(take).size()), 2 * 44100, 44100 * 0.15);
}

TEST_F(PulseTest, KeepsAndTellsATakeWhoseCardVanished) {
    const int a = pulse.loadNullSink("A");
    pulse.loadNullSink("B");
    connect();
    startTake("a.wav");
    const pid_t player = pulse.play(tone("t.wav", "3", "440"), "A");
    waitForFrames(44100);
    EXPECT_FALSE(card->recorder().status().deviceLost);
    pulse.unload(a);
    EXPECT_TRUE(comesTrue([&] { return card->recorder().status().deviceLost; }));
    test::waitForTool(player);
    const std::int64_t frames = card->recorder().status().frames;
    std::this_thread::sleep_for(300ms);
    EXPECT_LE(card->recorder().status().frames - frames, 4410) << "it must not go on from another card";
    EXPECT_EQ(errorOf([&] { card->recorder().stop(); }), 0);
    EXPECT_TRUE(card->recorder().status().deviceLost) << "told also after the stop";
    EXPECT_GE(samplesOf(take).size(), 44100U);
    EXPECT_GT(soxStat(take, "Maximum amplitude"), 0.45);
    // The chosen card is not there, the other one is.
    EXPECT_EQ(errorOf([&] { startTake("b.wav"); }), 57);
    EXPECT_FALSE(QFile::exists(take)) << "a card that cannot record must not touch the file";
    EXPECT_TRUE(comesTrue([&] { return card->audioRecord().refresh(); }));
    card->recorder().setDevice(0);
    EXPECT_EQ(errorOf([&] { startTake("b.wav"); }), 0);
    EXPECT_FALSE(card->recorder().status().deviceLost);
}

TEST_F(PulseTest, KeepsAndTellsATakeWhoseServerDied) {
    pulse.loadNullSink("A");
    connect();
    startTake("a.wav");
    waitForFrames(22050);
    pulse.kill();
    EXPECT_TRUE(comesTrue([&] { return card->recorder().status().deviceLost; }));
    EXPECT_EQ(errorOf([&] { card->recorder().stop(); }), 0);
    EXPECT_GE(samplesOf(take).size(), 22050U);
    EXPECT_EQ(errorOf([&] { startTake("b.wav"); }), 57);
    EXPECT_TRUE(comesTrue([&] { return card->audioRecord().refresh(); }));
    EXPECT_EQ(card->audioRecord().deviceCount(), 0);
    pulse.restart();
    pulse.loadNullSink("A");
    EXPECT_TRUE(comesTrue([&] { return card->audioRecord().refresh() && card->audioRecord().deviceCount() == 1; }));
    EXPECT_EQ(errorOf([&] { startTake("b.wav"); }), 0);
    waitForFrames(4410);
}

TEST_F(PulseTest, AServerThatHangsDoesNotHangTheProgram) {
    pulse.loadNullSink("A");
    connect();
    startTake("a.wav");
    waitForFrames(22050);
    pulse.freeze(true);
    EXPECT_TRUE(comesTrue([&] { return card->recorder().status().overruns > 0; })) << "nothing comes in: told";
    const auto before = std::chrono::steady_clock::now();
    EXPECT_EQ(errorOf([&] { card->recorder().stop(); }), 0);
    EXPECT_EQ(errorOf([&] { startTake("b.wav"); }), 57);
    EXPECT_EQ(errorOf([&] { card->audioPlayer().setOutputMute(true); }), 57);
    EXPECT_LT(std::chrono::steady_clock::now() - before, 8s);
    EXPECT_GE(samplesOf(folder.path("a.wav")).size(), 22050U);
    pulse.freeze(false);
    EXPECT_TRUE(comesTrue([&] { return errorOf([&] { startTake("c.wav"); }) == 0; }));
}

TEST_F(PulseTest, ASuspendedCardLeavesAHoleOfItsOwnLengthAndTells) {
    pulse.loadNullSink("A");
    connect();
    startTake("a.wav");
    waitForFrames(22050);
    pulse.pactl({"suspend-source", "A.monitor", "1"});
    pulse.pactl({"suspend-sink", "A", "1"});
    EXPECT_TRUE(comesTrue([&] { return card->recorder().status().overruns > 0; }));
    const std::int64_t frames = card->recorder().status().frames;
    std::this_thread::sleep_for(1s);
    pulse.pactl({"suspend-sink", "A", "0"});
    pulse.pactl({"suspend-source", "A.monitor", "0"});
    std::this_thread::sleep_for(300ms);
    EXPECT_GE(card->recorder().status().frames - frames, 44100) << "the hole is in the take";
    card->recorder().stop();
    EXPECT_FALSE(card->recorder().status().deviceLost);
}

/// Such a card was "recorded" from for three seconds, and then there was a take of no frames in place of the earlier
/// one.
class DeadCard : public PulseTest {
  protected:
    void loadCard() { pulse.load("module-null-source", {"source_name=mic", "rate=44100"}); }
    void suspend(bool off) { pulse.pactl({"suspend-source", "mic", off ? "1" : "0"}); }

    /// Tries to record over an earlier take: the refusal's text, empty when it records.
    QString refusal() {
        take = folder.path("a.wav");
        test::writeContent(take, "earlier take");
        card->recorder().setFileName(take);
        const auto before = Clock::now();
        QString text;
        try {
            card->recorder().start();
        } catch (const RuntimeError &error) {
            EXPECT_EQ(error.number(), ErrorNumber::DeviceError);
            text = error.description();
            EXPECT_EQ(test::contentOf(take), "earlier take");
        }
        took = Clock::now() - before;
        return text;
    }

    using Clock = std::chrono::steady_clock;
    Clock::duration took{};
};

TEST_F(DeadCard, ThatIsSwitchedOffIsRefusedAtOnce) {
    loadCard();
    suspend(true);
    connect();
    EXPECT_TRUE(refusal().contains("uitgezet"));
    EXPECT_LT(took, 500ms);
    suspend(false);
    EXPECT_EQ(refusal(), QString());
    card->recorder().stop();
    EXPECT_FALSE(samplesOf(take).empty());
}

TEST_F(DeadCard, ThatIsSwitchedOffDuringTheCountDownIsRefused) {
    loadCard();
    connect().recorder().prepare();
    std::this_thread::sleep_for(200ms);
    suspend(true);
    EXPECT_TRUE(refusal().contains("uitgezet"));
    EXPECT_LT(took, 500ms);
}

TEST_F(DeadCard, ThatBringsNothingIsRefused) {
    const QString pipe = folder.path("pipe");
    pulse.load("module-pipe-source", {"source_name=mic", "file=" + pipe});
    connect();
    EXPECT_TRUE(refusal().contains("geen geluid"));
    EXPECT_LT(took, 2500ms);
    card->recorder().prepare();
    std::this_thread::sleep_for(2100ms);
    EXPECT_TRUE(refusal().contains("geen geluid"));
    EXPECT_LT(took, 500ms) << "it has had the count-down";
}

TEST_F(PulseTest, ACardThatSleepsUntilItIsUsedIsNotRefused) {
    pulse.load("module-null-source", {"source_name=mic", "rate=44100"});
    pulse.load("module-suspend-on-idle", {"timeout=0"});
    connect();
    ASSERT_TRUE(comesTrue([&] { return pulse.pactl({"list", "short", "sources"}).contains("SUSPENDED"); }));
    EXPECT_EQ(errorOf([&] { startTake("a.wav"); }), 0);
}

TEST_F(PulseTest, ACardThatIsSwitchedOnWhileItIsWaitedForIsNotRefused) {
    pulse.load("module-null-source", {"source_name=mic", "rate=44100"});
    pulse.pactl({"suspend-source", "mic", "1"});
    connect();
    const pid_t late = test::startTool("sh", {"-c", "sleep 0.1; pactl suspend-source mic 0"});
    EXPECT_EQ(errorOf([&] { startTake("a.wav"); }), 0);
    test::waitForTool(late);
}

TEST_F(PulseTest, AFileThatCannotBeMadeLeavesTheRecorderUsable) {
    pulse.loadNullSink("A");
    connect();
    EXPECT_EQ(errorOf([&] { startTake("geen/map.wav"); }), 76);
    EXPECT_EQ(errorOf([&] { startTake("a.wav"); }), 0);
    EXPECT_EQ(errorOf([&] { startTake("b.wav"); }), 57) << "it records already";
    card->recorder().stop();
    card->recorder().stop();
}

TEST_F(PulseTest, PreparingRecordsNothingAndFailsNever) {
    const int a = pulse.loadNullSink("A");
    pulse.loadNullSink("B");
    connect().recorder().prepare();
    card->recorder().prepare();
    EXPECT_EQ(card->recorder().status().frames, 0);
    card->recorder().stop();
    pulse.unload(a);
    std::this_thread::sleep_for(100ms);
    EXPECT_FALSE(card->recorder().status().deviceLost) << "no take was lost";
    card->recorder().prepare();
    EXPECT_EQ(errorOf([&] { startTake("a.wav"); }), 57);
    EXPECT_TRUE(comesTrue([&] { return card->audioRecord().refresh(); }));
    card->recorder().setDevice(0);
    startTake("b.wav");
    waitForFrames(4410);
}

TEST_F(PulseTest, ACardThatIsOpenTellsItsLevelAndIsLetGo) {
    const auto listeners = [this] { return pulse.pactl({"list", "short", "source-outputs"}); };
    pulse.loadNullSink("A");
    connect().recorder().prepare();
    EXPECT_TRUE(comesTrue([&] { return card->recorder().status().isHeard; }));
    const pid_t player = pulse.play(tone("t.wav", "2", "440"), "A");
    float highest = 0;
    EXPECT_TRUE(comesTrue([&] {
        highest = std::max(highest, card->recorder().status().peak);
        return highest > 0.45F;
    }));
    EXPECT_LT(highest, 0.55F);
    EXPECT_EQ(card->recorder().status().frames, 0);
    EXPECT_FALSE(listeners().isEmpty());
    card->recorder().stop();
    EXPECT_TRUE(comesTrue([&] { return listeners().isEmpty(); })) << "nobody holds the card";
    test::waitForTool(player);
}

TEST_F(PulseTest, WhatWasOnlyHeardIsNotInTheTake) {
    pulse.loadNullSink("A");
    connect().recorder().prepare();
    test::waitForTool(pulse.play(tone("t.wav", "1", "440"), "A"));
    std::this_thread::sleep_for(300ms);
    startTake("a.wav");
    waitForFrames(22050);
    card->recorder().stop();
    EXPECT_EQ(soxStat(take, "Maximum amplitude"), 0);
}

TEST_F(PulseTest, ACardThatIsOpenSurvivesUnpluggingAndItsServersEnd) {
    const int a = pulse.loadNullSink("A");
    pulse.loadNullSink("B");
    connect().recorder().prepare();
    ASSERT_TRUE(comesTrue([&] { return card->recorder().status().isHeard; }));
    pulse.unload(a);
    EXPECT_TRUE(comesTrue([&] {
        static_cast<void>(card->recorder().status());
        std::this_thread::sleep_for(100ms);
        return !card->recorder().status().isHeard;
    }));
    card->recorder().prepare(); // nothing to open
    pulse.loadNullSink("A");
    EXPECT_TRUE(comesTrue([&] {
        static_cast<void>(card->audioRecord().refresh());
        card->recorder().prepare();
        return card->recorder().status().isHeard;
    }));
    EXPECT_FALSE(card->recorder().status().deviceLost) << "no take was lost";
    pulse.kill();
    std::this_thread::sleep_for(200ms);
    card->recorder().prepare();
    EXPECT_EQ(errorOf([&] { startTake("a.wav"); }), 57);
    card->recorder().stop();
}

// Opening a card waited for the server's answer, three seconds at the most: nobody may wait for a level.
TEST_F(PulseTest, OpeningACardNeverWaits) {
    pulse.loadNullSink("A");
    connect();
    pulse.freeze(true);
    const auto before = std::chrono::steady_clock::now();
    card->recorder().prepare();
    card->recorder().prepare();
    static_cast<void>(card->recorder().status());
    card->recorder().stop();
    EXPECT_LT(std::chrono::steady_clock::now() - before, 100ms);
    pulse.freeze(false);
    EXPECT_TRUE(comesTrue([&] { return errorOf([&] { startTake("a.wav"); }) == 0; }));
}

TEST_F(PulseTest, RecordsFromTheCardChosenLastNotFromThePreparedOne) {
    pulse.loadNullSink("A");
    pulse.loadNullSink("B");
    connect().recorder().prepare();
    card->recorder().setDevice(1);
    startTake("a.wav");
    test::waitForTool(pulse.play(tone("t.wav", "1", "440"), "B"));
    card->recorder().stop();
    EXPECT_GT(soxStat(take, "Maximum amplitude"), 0.45);
}

TEST_F(PulseTest, RefusesACardThatIsNotThere) {
    pulse.loadNullSink("A");
    connect().recorder().setDevice(7);
    EXPECT_EQ(errorOf([&] { startTake("a.wav"); }), 57);
    card->recorder().setDevice(-1);
    EXPECT_EQ(errorOf([&] { startTake("a.wav"); }), 57);
    EXPECT_FALSE(QFile::exists(take));
}

TEST_F(PulseTest, MutesTheDefaultOutputAndLeavesItAsItWas) {
    pulse.loadNullSink("A");
    pulse.loadNullSink("B");
    pulse.pactl({"set-default-sink", "B"});
    connect().audioPlayer().setDevice(0);
    card->audioPlayer().setOutputMute(true);
    EXPECT_TRUE(isMuted("B"));
    EXPECT_FALSE(isMuted("A"));
    card->audioPlayer().setOutputMute(false);
    EXPECT_FALSE(isMuted("B"));
    card->audioPlayer().setOutputMute(true);
    card->audioPlayer().setOutputMute(true);
    card.reset();
    EXPECT_FALSE(isMuted("B")) << "a mute that is ours must not outlive us";

    pulse.pactl({"set-sink-mute", "B", "1"});
    connect().audioPlayer().setOutputMute(true);
    card.reset();
    EXPECT_TRUE(isMuted("B")) << "but the user's own stays";
}

TEST_F(PulseTest, TakesItsMuteBackFromAnOutputThatIsNoLongerTheDefault) {
    pulse.loadNullSink("A");
    pulse.loadNullSink("B");
    pulse.pactl({"set-default-sink", "A"});
    connect().audioPlayer().setOutputMute(true);
    pulse.pactl({"set-default-sink", "B"});
    std::this_thread::sleep_for(200ms);
    card->audioPlayer().setOutputMute(false);
    EXPECT_FALSE(isMuted("A"));
}

TEST(PulseWithoutServer, HasNoCards) {
    PrivatePulse::pointNowhere();
    PulseSoundCard card;
    EXPECT_EQ(card.audioRecord().deviceCount(), 0);
    EXPECT_FALSE(card.audioRecord().refresh());
    card.recorder().stop();
    EXPECT_EQ(card.recorder().status().frames, 0);
}

} // namespace
} // namespace orvel
