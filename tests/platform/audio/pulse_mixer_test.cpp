#include "platform/fake/fake_line_mixer.h"
#include "platform/pulse/pulse_mixer.h"
#include "tests/platform/audio/fake_pulse_controls.h"
#include "tests/platform/audio/full_disk.h"
#include "tests/platform/audio/pulse_fixture.h"

#include <gtest/gtest.h>
#include <pulse/pulseaudio.h>

namespace orvel {
namespace {

using test::comesTrue;
using test::errorOf;

constexpr std::uint32_t kFull = PA_VOLUME_NORM;
const std::vector<int> kStereo{PA_CHANNEL_POSITION_FRONT_LEFT, PA_CHANNEL_POSITION_FRONT_RIGHT};

TEST(PulseLevelsTest, FullVolumeIsFullBothWays) {
    const PulseLevels levels{{kFull, kFull}, kStereo};
    EXPECT_EQ(levels.volume(), 65535);
    EXPECT_EQ(levels.withVolume(65535), levels);
    EXPECT_EQ(levels.withVolume(0).volumes, (std::vector<std::uint32_t>{0, 0}));
    EXPECT_EQ((PulseLevels{{kFull * 3 / 2, kFull}, kStereo}.volume()), 65535) << "more than 100 % is all there is";
    EXPECT_EQ(PulseLevels().volume(), 0);
}

TEST(PulseLevelsTest, EveryVolumeReadsBackAsItWasSet) {
    const PulseLevels levels{{kFull, kFull / 2}, kStereo};
    for (int volume = 0; volume <= 65535; volume += 13) {
        ASSERT_EQ(levels.withVolume(volume).volume(), volume);
    }
}

TEST(PulseLevelsTest, EveryBalanceReadsBackAsItWasSetAndKeepsTheVolume) {
    const PulseLevels levels{{30'000, 30'000}, kStereo};
    for (int balance = -100; balance <= 100; ++balance) {
        ASSERT_EQ(levels.withBalance(balance).balance(), balance);
        ASSERT_EQ(levels.withBalance(balance).volume(), levels.volume());
        ASSERT_EQ(levels.withBalance(balance).withVolume(50'000).balance(), balance);
    }
    EXPECT_EQ(levels.withBalance(-100).volumes, (std::vector<std::uint32_t>{30'000, 0}));
}

TEST(PulseLevelsTest, OneChannelCannotBeBalanced) {
    const PulseLevels mono{{kFull}, {PA_CHANNEL_POSITION_MONO}};
    EXPECT_FALSE(mono.canBalance());
    EXPECT_EQ(mono.balance(), 0);
    EXPECT_EQ(mono.withBalance(50), mono);
    const PulseLevels numbered{{kFull, kFull}, {PA_CHANNEL_POSITION_AUX0, PA_CHANNEL_POSITION_AUX1}};
    EXPECT_FALSE(numbered.canBalance()) << "nobody knows which is left";
}

/// A card with a microphone and a line socket, and one with a single input and no ports.
class PulseMixerTest : public testing::Test {
  protected:
    PulseMixerTest() {
        PulseSource card;
        card.name = "kaart";
        card.ports = {{"mic", "Microfoon", 0}, {"line", "Lijn", 5000}};
        card.cardName = "card0";
        card.levels = {{40'000, 40'000}, kStereo};
        PulseSource plain;
        plain.name = "los";
        plain.levels = {{40'000}, {PA_CHANNEL_POSITION_MONO}};
        server.all.sources = {card, plain};
    }

    PulseSource &card() { return server.all.sources[0]; }

    int valueOf(int line, const QString &name) {
        for (const LineProperty &property : mixer.properties("kaart", line)) {
            if (property.name == name) {
                return property.value.toInt();
            }
        }
        return -1;
    }

    test::FakePulseControls server;
    PulseMixer mixer{server};
};

TEST_F(PulseMixerTest, TheActivePortHasTheVolumeAndTheOthersHaveNone) {
    EXPECT_EQ(mixer.state("kaart", 1), (LineState{true, true, true, true, 39999, 0}));
    EXPECT_EQ(mixer.state("kaart", 2), (LineState{false, false, true, false, 0, 0}));
    mixer.setVolume("kaart", 2, 0);
    mixer.setBalance("kaart", 2, 50);
    EXPECT_EQ(card().levels.volumes, (std::vector<std::uint32_t>{40'000, 40'000})) << "that is the microphone's";
}

TEST_F(PulseMixerTest, SelectingALineMakesItsPortActiveAndTheOthersNot) {
    mixer.select("kaart", 2, true);
    EXPECT_EQ(card().activePort, 1);
    EXPECT_FALSE(mixer.state("kaart", 1).selected);
    EXPECT_FALSE(mixer.state("kaart", 1).hasVolume);
    EXPECT_TRUE(mixer.state("kaart", 2).selected);
    EXPECT_TRUE(mixer.state("kaart", 2).hasVolume);
    mixer.select("kaart", 2, false);
    EXPECT_TRUE(mixer.state("kaart", 2).selected) << "a card always records from one of its lines";
    EXPECT_EQ(errorOf([&] { mixer.select("kaart", 3, true); }), 0) << "there is no such line";
}

TEST_F(PulseMixerTest, ASourceWithoutPortsIsOneSelectedLineThatCannotBeSelected) {
    EXPECT_EQ(mixer.state("los", 1), (LineState{true, false, false, true, 39999, 0}));
    mixer.select("los", 1, true);
    mixer.setBalance("los", 1, 50);
    EXPECT_EQ(mixer.state("los", 1).balance, 0);
    card().ports.resize(1);
    EXPECT_FALSE(mixer.state("kaart", 1).hasSelect) << "nor can a single port";
    EXPECT_TRUE(mixer.state("kaart", 1).selected);
}

/// At volume 0 the server has nothing left that it could balance, and forgot where the slider stood.
TEST_F(PulseMixerTest, ABalanceOutlivesVolumeZero) {
    mixer.setBalance("kaart", 1, -40);
    mixer.setVolume("kaart", 1, 0);
    EXPECT_EQ(mixer.state("kaart", 1).balance, -40);
    mixer.setBalance("kaart", 1, 30);
    EXPECT_EQ(mixer.state("kaart", 1).balance, 30);
    mixer.setVolume("kaart", 1, 50'000);
    EXPECT_EQ(mixer.state("kaart", 1).balance, 30);
    EXPECT_EQ(mixer.state("kaart", 1).volume, 50'000);
}

TEST_F(PulseMixerTest, ACardThatIsGoneShowsNothingAndRefusesEverything) {
    EXPECT_EQ(mixer.state("weg", 1), LineState());
    EXPECT_TRUE(mixer.properties("weg", 1).empty());
    EXPECT_EQ(errorOf([&] { mixer.setVolume("weg", 1, 5); }), 57);
    EXPECT_EQ(errorOf([&] { mixer.setBalance("weg", 1, 5); }), 57);
    EXPECT_EQ(errorOf([&] { mixer.select("weg", 1, true); }), 57);
    EXPECT_EQ(errorOf([&] { mixer.setProperty("weg", 1, "Dempen", true); }), 57);
}

TEST_F(PulseMixerTest, ALineHasAMuteAndItsPortADelay) {
    const std::vector<LineProperty> active = mixer.properties("kaart", 1);
    ASSERT_EQ(active.size(), 2U);
    EXPECT_EQ(active[0].name, "Dempen");
    EXPECT_EQ(active[0].value, QVariant(false));
    EXPECT_EQ(active[1].name, "Vertraging (ms)");
    EXPECT_EQ(active[1].value, QVariant(0));
    EXPECT_EQ(active[1].minimum, -1000);
    EXPECT_EQ(active[1].maximum, 1000);
    ASSERT_EQ(mixer.properties("kaart", 2).size(), 1U) << "the mute is that of the line that records";
    EXPECT_EQ(valueOf(2, "Vertraging (ms)"), 5);
    ASSERT_EQ(mixer.properties("los", 1).size(), 1U) << "no port, no delay";

    mixer.setProperty("kaart", 1, "Dempen", true);
    mixer.setProperty("kaart", 2, "Vertraging (ms)", -20);
    EXPECT_EQ(valueOf(1, "Dempen"), 1);
    EXPECT_EQ(valueOf(2, "Vertraging (ms)"), -20);
    EXPECT_EQ(valueOf(1, "Vertraging (ms)"), 0) << "the other port's";
    EXPECT_EQ(card().ports[1].latencyOffset, -20'000);
    mixer.setProperty("kaart", 2, "Vertraging (ms)", 5000);
    EXPECT_EQ(valueOf(2, "Vertraging (ms)"), 1000);
}

TEST_F(PulseMixerTest, APortWithoutACardHasNoDelay) {
    card().ports[0].latencyOffset.reset();
    EXPECT_EQ(mixer.properties("kaart", 1).size(), 1U);
}

/// On a real server, whose null sinks have sources without ports.
class PulseMixerOnServerTest : public test::PulseFixture {
  protected:
    AudioRecord &twoCards() {
        pulse.loadNullSink("A");
        pulse.load("module-null-sink", {"sink_name=B", "channels=1", "channel_map=mono"});
        AudioRecord &record = connect().audioRecord();
        EXPECT_EQ(record.deviceCount(), 2);
        return record;
    }

    QString volumeOnServer(const char *source) { return pulse.pactl({"get-source-volume", source}); }
};

TEST_F(PulseMixerOnServerTest, WhatIsSetIsWhatTheServerHasAndWhatTheNextLookGives) {
    AudioRecord &record = twoCards();
    EXPECT_TRUE(record.lineHasVolume());
    EXPECT_TRUE(record.lineHasBalance());
    EXPECT_FALSE(record.lineHasSelect());
    EXPECT_TRUE(record.lineSelected());
    EXPECT_EQ(record.lineVolume(), 65535);
    record.setLineVolume(32768);
    EXPECT_EQ(record.lineVolume(), 32768);
    EXPECT_TRUE(volumeOnServer("A.monitor").contains("50%"));
    record.setLineBalance(-50);
    EXPECT_EQ(record.lineBalance(), -50);
    EXPECT_TRUE(volumeOnServer("A.monitor").contains("balance -0.50"));
    EXPECT_TRUE(volumeOnServer("B.monitor").contains("100%")) << "the other card is not touched";
    record.setLineVolume(65535);
    EXPECT_EQ(record.lineVolume(), 65535);
    EXPECT_EQ(record.lineBalance(), -50);
    record.setCurrentDevice(2);
    EXPECT_FALSE(record.lineHasBalance()) << "mono";
    EXPECT_EQ(record.lineVolume(), 65535);
}

TEST_F(PulseMixerOnServerTest, SeesWhatOthersChange) {
    AudioRecord &record = twoCards();
    EXPECT_EQ(record.lineVolume(), 65535);
    pulse.pactl({"set-source-volume", "A.monitor", "16384", "32768"});
    EXPECT_TRUE(comesTrue([&] { return record.lineVolume() == 32768; }));
    EXPECT_EQ(record.lineBalance(), 50);
    EXPECT_EQ(record.lineProperty(0).value, QVariant(false));
    pulse.pactl({"set-source-mute", "A.monitor", "1"});
    EXPECT_TRUE(comesTrue([&] { return record.lineProperty(0).value == QVariant(true); }));
}

TEST_F(PulseMixerOnServerTest, MutesALine) {
    AudioRecord &record = twoCards();
    ASSERT_EQ(record.propertyCount(), 1);
    EXPECT_EQ(record.lineProperty(0).name, "Dempen");
    record.setLineProperty(0, true);
    EXPECT_EQ(record.lineProperty(0).value, QVariant(true));
    EXPECT_TRUE(pulse.pactl({"get-source-mute", "A.monitor"}).contains("yes"));
    EXPECT_EQ(errorOf([&] { record.setLineProperty(0, 7); }), 13);
    EXPECT_EQ(errorOf([&] { record.setLineProperty(1, true); }), 9);
}

TEST_F(PulseMixerOnServerTest, TheChosenCardIsChosenAgainWhenItComesBack) {
    pulse.loadNullSink("A");
    const int b = pulse.loadNullSink("B");
    AudioRecord &record = connect().audioRecord();
    record.setCurrentDevice(2);
    pulse.unload(b);
    EXPECT_TRUE(comesTrue([&] { return record.refresh(); }));
    EXPECT_EQ(record.currentDevice(), 0);
    EXPECT_EQ(record.lineCount(), 0);
    EXPECT_FALSE(record.lineHasVolume());
    EXPECT_EQ(errorOf([&] { record.setLineVolume(5); }), 0) << "without a card there is nothing to set";
    pulse.loadNullSink("B");
    EXPECT_TRUE(comesTrue([&] { return record.refresh() && record.deviceCount() == 2; }));
    EXPECT_EQ(record.currentDevice(), 2);
    EXPECT_EQ(record.deviceName(2), "Monitor of B");
    EXPECT_TRUE(record.lineHasVolume());
}

TEST_F(PulseMixerOnServerTest, SettingOnACardThatIsGoneFails) {
    const int a = pulse.loadNullSink("A");
    AudioRecord &record = connect().audioRecord();
    pulse.unload(a);
    std::this_thread::sleep_for(std::chrono::milliseconds(100)); // known to the server's thread, not to the list
    EXPECT_EQ(errorOf([&] { record.setLineVolume(5); }), 57);
    pulse.kill();
    std::this_thread::sleep_for(std::chrono::milliseconds(100));
    EXPECT_EQ(errorOf([&] { record.setLineVolume(5); }), 57);
    EXPECT_EQ(record.lineVolume(), 0);
}

TEST_F(PulseMixerOnServerTest, AServerThatHangsLetsTheSliderGoSoon) {
    AudioRecord &record = twoCards();
    pulse.freeze(true);
    const auto before = std::chrono::steady_clock::now();
    EXPECT_EQ(record.lineVolume(), 65535) << "looking does not wait";
    EXPECT_EQ(record.propertyCount(), 1);
    EXPECT_LT(std::chrono::steady_clock::now() - before, std::chrono::milliseconds(100));
    EXPECT_EQ(errorOf([&] { record.setLineVolume(5); }), 57);
    EXPECT_LT(std::chrono::steady_clock::now() - before, std::chrono::milliseconds(2500));
    pulse.freeze(false);
}

/// ALSA is told that its card 0 is the test's sound server under another name: a boost is the input's volume, the
/// automatic gain its switch.
class AlsaGainTest : public test::PulseFixture {
  protected:
    AlsaGainTest() {
        test::writeContent(folder.path("alsa.conf"),
                           "ctl.hw { @args [ CARD ] @args.CARD { type string } type remap\n"
                           "child { type pulse } remap {\n"
                           "\"name='Capture Volume'\" \"name='Mic Boost Capture Volume'\"\n"
                           "\"name='Capture Switch'\" \"name='Auto Gain Control Capture Switch'\"\n"
                           "} }\n");
        setenv("ALSA_CONFIG_PATH", folder.path("alsa.conf").toLocal8Bit().constData(), 1);
        pulse.loadPromptSink("A");
    }
    void TearDown() override { unsetenv("ALSA_CONFIG_PATH"); }
};

TEST_F(AlsaGainTest, OffersWhatTheCardHasItselfAndReadsBackWhatItAccepts) {
    AlsaGain gain;
    std::vector<LineProperty> all = gain.properties("0");
    ASSERT_EQ(all.size(), 2U);
    const bool boostFirst = all[0].name.contains("Boost");
    const std::size_t boost = boostFirst ? 0 : 1;
    const std::size_t automatic = 1 - boost;
    EXPECT_EQ(all[boost].name, "Versterking (Mic Boost)");
    EXPECT_EQ(all[boost].value, QVariant(65536));
    EXPECT_EQ(all[boost].minimum, 0);
    EXPECT_EQ(all[boost].maximum, 65536);
    EXPECT_EQ(all[automatic].name, "Automatische sterkte (Auto Gain Control)");
    EXPECT_EQ(all[automatic].value, QVariant(true));
    gain.set("0", all[boost].name, 32768);
    gain.set("0", all[automatic].name, false);
    EXPECT_TRUE(pulse.pactl({"get-source-volume", "A.monitor"}).contains("50%"));
    EXPECT_TRUE(pulse.pactl({"get-source-mute", "A.monitor"}).contains("yes"));
    EXPECT_TRUE(comesTrue([&] {
        all = gain.properties("0");
        return all[boost].value == QVariant(32768) && all[automatic].value == QVariant(false);
    }));
    pulse.pactl({"set-source-volume", "A.monitor", "16384"});
    EXPECT_TRUE(comesTrue([&] { return gain.properties("0")[boost].value == QVariant(16384); })) << "others' changes";
    EXPECT_EQ(errorOf([&] { gain.set("0", "Iets anders", 5); }), 0);
}

TEST_F(AlsaGainTest, BelongsToTheLineThatRecords) {
    test::FakePulseControls server;
    PulseSource source;
    source.name = "kaart";
    source.alsaCard = "0";
    source.ports = {{"mic", "Microfoon"}, {"line", "Lijn"}};
    source.levels = {{kFull}, {PA_CHANNEL_POSITION_MONO}};
    server.all.sources = {source};
    PulseMixer mixer(server);
    ASSERT_EQ(mixer.properties("kaart", 1).size(), 3U);
    EXPECT_EQ(mixer.properties("kaart", 2).size(), 0U);
    mixer.setProperty("kaart", 2, "Versterking (Mic Boost)", 0);
    EXPECT_TRUE(pulse.pactl({"get-source-volume", "A.monitor"}).contains("100%"));
    mixer.setProperty("kaart", 1, "Versterking (Mic Boost)", 0);
    EXPECT_TRUE(pulse.pactl({"get-source-volume", "A.monitor"}).contains(" 0%"));
}

TEST_F(AlsaGainTest, ACardThatIsNotThereHasNothing) {
    AlsaGain gain;
    EXPECT_TRUE(gain.properties("").empty());
    pulse.kill();
    EXPECT_TRUE(gain.properties("0").empty());
    EXPECT_EQ(errorOf([&] { gain.set("0", "Versterking (Mic Boost)", 5); }), 0);
}

TEST(CardListTest, AnotherActivePortIsAChange) {
    std::vector<Card> cards{{"k", "Kaart", {"Microfoon", "Lijn"}, 1, true}};
    FakeLineMixer mixer;
    CardList list([&] { return cards; }, mixer);
    EXPECT_FALSE(list.refresh());
    cards[0].activeLine = 2;
    EXPECT_TRUE(list.refresh());
    EXPECT_FALSE(list.refresh());
}

} // namespace
} // namespace orvel
