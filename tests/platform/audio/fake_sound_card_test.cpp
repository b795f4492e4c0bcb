#include "platform/fake/fake_sound_card.h"
#include "tests/platform/audio/full_disk.h"
#include "tests/platform/audio/temp_folder.h"

#include <QFile>

#include <fstream>
#include <gtest/gtest.h>

namespace orvel {
namespace {

using test::counting;
using test::errorOf;
using test::samplesOf;
using test::TempFolder;

Card card(const char *key, const char *name, const QStringList &lines = {QStringLiteral("Ingang")}) {
    return {QString::fromUtf8(key), QString::fromUtf8(name), lines};
}

TEST(CardList, CountsCardsFromOneAndToleratesOtherNumbers) {
    FakeSoundCard sound({card("a", "Eerste", {"Mic", "Lijn"}), card("b", "Tweede")});
    AudioRecord &record = sound.audioRecord();
    EXPECT_EQ(record.deviceCount(), 2);
    EXPECT_EQ(record.currentDevice(), 1);
    for (int number = 0; number <= record.deviceCount() + 1; ++number) {
        record.setCurrentDevice(number);
        const bool there = number == 1 || number == 2;
        EXPECT_EQ(record.currentDevice(), number);
        EXPECT_EQ(record.canRecord(number), there);
        EXPECT_EQ(record.deviceName(number).isEmpty(), !there);
        EXPECT_EQ(record.lineCount(), number == 1 ? 2 : there ? 1 : 0);
        EXPECT_EQ(record.lineName().isEmpty(), !there);
    }
    record.setCurrentDevice(1);
    record.setCurrentLine(2);
    EXPECT_EQ(record.lineName(), "Lijn");
    record.setCurrentLine(3);
    EXPECT_EQ(record.lineName(), QString());
    record.setCurrentLine(0);
    EXPECT_EQ(record.lineName(), QString());
}

TEST(CardList, TellsCardsOfOneNameApart) {
    FakeSoundCard sound({card("a", "USB"), card("b", "USB"), card("c", "Ander"), card("d", "USB")});
    EXPECT_EQ(sound.audioRecord().deviceName(1), "USB");
    EXPECT_EQ(sound.audioRecord().deviceName(2), "USB (2)");
    EXPECT_EQ(sound.audioRecord().deviceName(4), "USB (3)");
}

TEST(CardList, FollowsCardsOnlyWhenAsked) {
    FakeSoundCard sound({card("a", "A"), card("b", "B")});
    AudioRecord &record = sound.audioRecord();
    record.setCurrentDevice(2);
    EXPECT_FALSE(record.refresh());
    sound.plug({card("new", "Nieuw"), card("a", "A"), card("b", "B")});
    EXPECT_EQ(record.deviceCount(), 2);
    EXPECT_TRUE(record.refresh());
    EXPECT_EQ(record.deviceCount(), 3);
    EXPECT_EQ(record.currentDevice(), 3) << "the chosen card stays chosen under its new number";
}

TEST(CardList, TheChosenCardIsChosenAgainWhenItReturns) {
    FakeSoundCard sound({card("a", "A"), card("b", "B")});
    AudioRecord &record = sound.audioRecord();
    record.setCurrentDevice(2);
    sound.plug({card("a", "A")});
    EXPECT_TRUE(record.refresh());
    EXPECT_EQ(record.currentDevice(), 0);
    EXPECT_EQ(record.lineCount(), 0);
    sound.plug({card("a", "A"), card("b", "B")});
    EXPECT_TRUE(record.refresh());
    EXPECT_EQ(record.currentDevice(), 2);
}

TEST(CardList, TheFirstCardThatComesIsCurrent) {
    FakeSoundCard sound{std::vector<Card>{}};
    AudioRecord &record = sound.audioRecord();
    EXPECT_EQ(record.deviceCount(), 0);
    EXPECT_EQ(record.currentDevice(), 0);
    sound.plug({card("a", "A")});
    EXPECT_TRUE(record.refresh());
    EXPECT_EQ(record.currentDevice(), 1);
}

/// A computer without a card has a "Monitor of Dummy Output" on PipeWire: it counted as a card, was chosen by itself,
/// and a silent take was recorded from it.
Card monitor(const char *key, const char *name) {
    Card card{QString::fromUtf8(key), QString::fromUtf8(name), {QStringLiteral("Ingang")}};
    card.isMonitor = true;
    return card;
}

TEST(CardList, MonitorsComeLastAndAreNoInputs) {
    FakeSoundCard sound({monitor("m", "M"), card("a", "A"), monitor("n", "N"), card("b", "B")});
    AudioRecord &record = sound.audioRecord();
    QStringList names;
    for (int number = 1; number <= record.deviceCount(); ++number) {
        names << record.deviceName(number);
        EXPECT_TRUE(record.canRecord(number)) << "who chooses a monitor records from it";
    }
    EXPECT_EQ(names, (QStringList{"A", "B", "M", "N"}));
    EXPECT_EQ(record.inputCount(), 2);
    EXPECT_EQ(record.currentDevice(), 1);
}

TEST(CardList, AMonitorIsNeverCurrentByItself) {
    FakeSoundCard sound({monitor("m", "M")});
    AudioRecord &record = sound.audioRecord();
    EXPECT_EQ(record.currentDevice(), 0);
    EXPECT_EQ(record.inputCount(), 0);
    sound.plug({monitor("m", "M"), monitor("n", "N")});
    EXPECT_TRUE(record.refresh());
    EXPECT_EQ(record.currentDevice(), 0);
    sound.plug({monitor("m", "M"), monitor("n", "N"), card("a", "A")});
    EXPECT_TRUE(record.refresh());
    EXPECT_EQ(record.currentDevice(), 1);
    EXPECT_EQ(record.deviceName(1), "A");
    sound.plug({monitor("m", "M")});
    EXPECT_TRUE(record.refresh());
    EXPECT_EQ(record.currentDevice(), 0) << "nor when the chosen card goes";
}

TEST(CardList, AMonitorThatWasChosenStaysChosen) {
    FakeSoundCard sound({card("a", "A"), monitor("m", "M")});
    AudioRecord &record = sound.audioRecord();
    record.setCurrentDevice(2);
    sound.plug({card("a", "A"), card("b", "B"), monitor("m", "M")});
    EXPECT_TRUE(record.refresh());
    EXPECT_EQ(record.currentDevice(), 3);
    sound.plug({monitor("m", "M")});
    EXPECT_TRUE(record.refresh());
    EXPECT_EQ(record.currentDevice(), 1);
}

class FakeRecorderTest : public testing::Test {
  protected:
    FakeRecorderTest() : path(folder.path("take.wav")) { sound.recorder().setFileName(path); }

    TempFolder folder;
    QString path;
    FakeSoundCard sound;
};

TEST_F(FakeRecorderTest, RecordsWhatIsDeliveredBetweenStartAndStop) {
    sound.deliver(counting(100));
    sound.recorder().start();
    EXPECT_TRUE(sound.recorder().isRecording());
    sound.deliver(counting(1'000'000)); // more than the ring holds
    sound.flush();
    EXPECT_EQ(samplesOf(path), counting(1'000'000));
    sound.deliver(counting(7));
    sound.recorder().stop();
    EXPECT_FALSE(sound.recorder().isRecording());
    sound.deliver(counting(100));
    sound.recorder().stop();
    const RecorderStatus status = sound.recorder().status();
    EXPECT_EQ(status.frames, 1'000'007);
    EXPECT_EQ(status.overruns, 0);
    EXPECT_EQ(samplesOf(path).size(), 1'000'007U);
    EXPECT_EQ(sound.takes(), QStringList{path});
}

TEST_F(FakeRecorderTest, DeliversAToneThatGoesOn) {
    sound.recorder().start();
    sound.deliver(30'000);
    sound.deliver(58'200);
    sound.recorder().stop();
    const std::vector<std::int16_t> take = samplesOf(path);
    ASSERT_EQ(take.size(), 88'200U);
    for (std::size_t i = 0; i < 44'100; ++i) {
        ASSERT_EQ(take[i], take[i + 44'100]);
    }
    EXPECT_FLOAT_EQ(sound.recorder().status().peak, 0.25F);
}

TEST_F(FakeRecorderTest, ACardThatIsOpenTellsItsLevelAndKeepsNothing) {
    sound.deliver(30'000);
    EXPECT_FALSE(sound.recorder().status().isHeard) << "it is not open";
    sound.recorder().prepare();
    sound.recorder().prepare();
    EXPECT_EQ(sound.prepared(), 1);
    sound.deliver(30'000);
    const RecorderStatus heard = sound.recorder().status();
    EXPECT_TRUE(heard.isHeard);
    EXPECT_FLOAT_EQ(heard.peak, 0.25F);
    EXPECT_EQ(heard.frames, 0);
    EXPECT_FALSE(sound.recorder().status().isHeard) << "nothing more came in";
    EXPECT_FALSE(QFile::exists(path));
    sound.recorder().stop();
    EXPECT_FALSE(sound.isOpen());
}

TEST_F(FakeRecorderTest, TellsWhereATakeWasClipped) {
    sound.recorder().start();
    std::vector<std::int16_t> samples(1000, 32766);
    sound.deliver(samples);
    EXPECT_EQ(sound.recorder().status().clippedAt, -1);
    sound.loseFrames(500);
    samples[7] = -32768;
    samples[9] = 32767;
    sound.deliver(samples);
    EXPECT_EQ(sound.recorder().status().clippedAt, 1507) << "the first one, holes counted";
    EXPECT_EQ(sound.recorder().status().clippedAt, -1) << "since the last look";
    sound.recorder().stop();
}

TEST_F(FakeRecorderTest, KeepsATakeWhoseCardVanished) {
    sound.recorder().start();
    sound.deliver(1000);
    sound.unplug();
    sound.deliver(1000);
    EXPECT_TRUE(sound.recorder().status().deviceLost);
    EXPECT_TRUE(sound.recorder().isRecording());
    sound.recorder().stop();
    EXPECT_EQ(samplesOf(path).size(), 1000U);
    sound.recorder().start();
    EXPECT_FALSE(sound.recorder().status().deviceLost);
}

TEST_F(FakeRecorderTest, CountsWhatWasLost) {
    sound.recorder().start();
    sound.deliver(1000);
    sound.loseFrames(500);
    sound.deliver(1000);
    EXPECT_EQ(sound.recorder().status().overruns, 1);
    sound.recorder().stop();
    EXPECT_EQ(samplesOf(path).size(), 2500U);
}

TEST_F(FakeRecorderTest, TellsAFullDisk) {
    sound.setDiskRoom(1500);
    sound.recorder().start();
    sound.deliver(counting(2000));
    sound.flush();
    EXPECT_TRUE(sound.recorder().status().diskFull);
    EXPECT_EQ(errorOf([&] { sound.recorder().stop(); }), 61);
    EXPECT_FALSE(sound.recorder().isRecording());
    EXPECT_EQ(samplesOf(path), counting(1500));
}

TEST_F(FakeRecorderTest, FailsAtTheStartOnceAndTouchesNoFile) {
    test::writeContent(path, "earlier take");
    sound.failNextStart(ErrorNumber::DeviceError);
    EXPECT_EQ(errorOf([&] { sound.recorder().start(); }), 57);
    EXPECT_FALSE(sound.recorder().isRecording());
    EXPECT_EQ(test::contentOf(path), "earlier take");
    EXPECT_EQ(errorOf([&] { sound.recorder().start(); }), 0);
    EXPECT_EQ(errorOf([&] { sound.recorder().start(); }), 57) << "it records already";
}

TEST_F(FakeRecorderTest, KeepsALogOfTheMute) {
    sound.audioPlayer().setOutputMute(true);
    sound.audioPlayer().setOutputMute(false);
    sound.audioPlayer().setDevice(3);
    sound.recorder().setDevice(1);
    EXPECT_EQ(sound.muteLog(), (std::vector<bool>{true, false}));
    EXPECT_EQ(sound.playerDevice(), 3);
    EXPECT_EQ(sound.recorderDevice(), 1);
}

/// Memory that this process has in use, bytes.
std::int64_t residentMemory() {
    std::ifstream statm("/proc/self/statm");
    std::int64_t total = 0;
    std::int64_t resident = 0;
    statm >> total >> resident;
    return resident * sysconf(_SC_PAGESIZE);
}

TEST_F(FakeRecorderTest, AnHourTakesNoMoreMemoryThanASecond) {
    sound.recorder().start();
    sound.deliver(44'100);
    sound.flush();
    const std::int64_t before = residentMemory();
    sound.deliver(INT64_C(3600) * 44'100);
    sound.flush();
    EXPECT_LT(residentMemory() - before, INT64_C(20) << 20);
    sound.recorder().stop();
    EXPECT_EQ(sound.recorder().status().frames, INT64_C(3601) * 44'100);
    EXPECT_EQ(sound.recorder().status().overruns, 0);
    EXPECT_EQ(QFile(path).size(), 44 + INT64_C(3601) * 44'100 * 2);
}

} // namespace
} // namespace orvel
