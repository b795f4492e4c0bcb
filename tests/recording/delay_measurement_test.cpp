// The way from the output back to the recording card is measured several times, and kept when there is no doubt.
#include "recording/delay_measurement.h"
#include "settings/card_delays.h"
#include "tests/desk.h"
#include "tests/dsp/sound.h"

#include <cstring>

namespace orvel {

namespace {

const QString measuredCard = QStringLiteral("Microfoon");

class Delay : public Desk {
  protected:
    /// The card hears what the output plays so much later than the server says, so much weaker, in such a room. One
    /// measurement.
    void hear(double delayMs, double factor = 0.3, const Samples &room = Samples(2 * testRate)) {
        begin();
        heard(delayMs, factor, room);
    }
    /// The card brings sound, the output plays, and the axis' 0 is heard.
    void begin() {
        sound.deliver(441);
        timers.advance(20);
        ASSERT_TRUE(player().isPlaying());
        zero_ = JoinPlayer::Clock::now();
        player().hearZeroAt(zero_);
        timers.advance(20);
        ASSERT_EQ(sound.takeBeganAt(), zero_) << "recorded like a take is";
    }
    void heard(double delayMs, double factor, Samples room = Samples(2 * testRate)) {
        const JoinClip clip = player().clips().at(0);
        const Samples played = fileOf(clip.path);
        const auto at = static_cast<std::size_t>(std::lround((static_cast<double>(clip.anchorMs) + delayMs) * 44.1));
        for (std::size_t i = 0; i < played.size() && at + i < room.size(); ++i) {
            const double sum = room[at + i] + factor * played[i];
            room[at + i] = static_cast<std::int16_t>(std::lrint(std::clamp(sum, -32768.0, 32767.0)));
        }
        sound.deliver(room);
        sound.flush();
        timers.advance(20);
    }
    [[nodiscard]] Samples fileOf(const QString &path) {
        const auto reader = audioFiles.reader();
        reader->open(path);
        QByteArray bytes;
        for (QByteArray block = reader->readBlock(); !block.isEmpty(); block = reader->readBlock()) {
            bytes += block;
        }
        Samples samples(static_cast<std::size_t>(bytes.size()) / 2);
        std::memcpy(samples.data(), bytes.constData(), static_cast<std::size_t>(bytes.size()));
        return samples;
    }
    void measure(std::initializer_list<double> delaysMs) {
        delay.start();
        for (const double ms : delaysMs) {
            hear(ms);
        }
    }
    void expectNothingChanged(const char *words) {
        EXPECT_TRUE(delay.sentence().contains(QString::fromUtf8(words))) << delay.sentence().toStdString();
        EXPECT_TRUE(session.isIdle());
        EXPECT_FALSE(player().isPlaying());
        EXPECT_FALSE(sound.isOpen());
        EXPECT_FALSE(delays.of(measuredCard));
        EXPECT_EQ(filesIn(QStringLiteral("temp2")), QStringList());
        const int before = player().plays();
        timers.advance(10000);
        EXPECT_EQ(player().plays(), before);
    }
    /// Of measuring: the desk's others are made before it.
    [[nodiscard]] FakeJoinPlayer &player() { return sound.joinPlayer(2); }

    CardDelays delays{files, folder.path()};
    DelayMeasurement delay{{platform, places, session, delays, [] {}}};

  private:
    JoinPlayer::Clock::time_point zero_;
};

} // namespace

TEST_F(Delay, TheMiddleOneOfFiveIsKeptForTheCard) {
    EXPECT_EQ(delay.caption(), QStringLiteral("vertraging niet gemeten"));
    EXPECT_EQ(delay.ofCard(), std::chrono::microseconds(0));
    measure({23.4, 22.6, 31, 23.9, 23});
    EXPECT_EQ(delay.sentence(), QStringLiteral("De vertraging is 23 ms (5 metingen, 23 tot 31 ms). Meeluisteren rekent "
                                               "daar nu mee."));
    ASSERT_TRUE(delays.of(measuredCard));
    EXPECT_NEAR(*delays.of(measuredCard), 23.4, 0.2);
    EXPECT_NEAR(static_cast<double>(delay.ofCard().count()), 23400, 200);
    EXPECT_EQ(delay.caption(), QStringLiteral("vertraging 23 ms, gemeten"));
    CardDelays stored(files, folder.path());
    stored.load();
    EXPECT_EQ(stored.of(measuredCard), delays.of(measuredCard)) << "also for the next start";
    EXPECT_TRUE(session.isIdle());
    EXPECT_FALSE(sound.isOpen());
    EXPECT_EQ(filesIn(QStringLiteral("temp2")), QStringList());
    EXPECT_EQ(player().plays(), 5);
}

TEST_F(Delay, ACardThatHearsItBeforeTheServersTimeHasANegativeOne) {
    measure({-200, -200.5, -199.5, -200, -200});
    ASSERT_TRUE(delays.of(measuredCard));
    EXPECT_NEAR(*delays.of(measuredCard), -200, 0.2);
}

TEST_F(Delay, NoiseAWrongPolarityAndAnEchoAreNoMatter) {
    delay.start();
    for (unsigned seed = 1; seed <= 5; ++seed) {
        Samples room = pinkNoise(500, 2 * testRate, seed);
        const Samples probe = fileOf(places.delayProbe());
        for (std::size_t i = 0; i < probe.size(); ++i) {
            room.at(24000 + i) = static_cast<std::int16_t>(room.at(24000 + i) + probe[i] / 10);
        }
        hear(12, -0.3, room);
    }
    ASSERT_TRUE(delays.of(measuredCard)) << delay.sentence().toStdString();
    EXPECT_NEAR(*delays.of(measuredCard), 12, 0.2);
}

TEST_F(Delay, FiguresThatSpreadAreRefusedAndWhatWasKeptStays) {
    delays.keep(measuredCard, 7);
    measure({12, 12, 38, 12, 12});
    EXPECT_EQ(delay.sentence(),
              QStringLiteral("De metingen lopen te ver uiteen (5 metingen, 12 tot 38 ms). Er is niets veranderd."));
    EXPECT_EQ(delays.of(measuredCard), 7.0);
    EXPECT_TRUE(session.isIdle());
}

TEST_F(Delay, ASilentOrUncertainCardKeepsNothing) {
    delay.start();
    hear(12);
    hear(12, 0);
    expectNothingChanged("hoorde niets");
    delay.start();
    hear(12, 0.01, noise(3000, 2 * testRate));
    expectNothingChanged("niet zeker genoeg");
    delay.start();
    hear(700);
    expectNothingChanged("Er is niets veranderd");
}

TEST_F(Delay, ACardThatGoesIsTold) {
    delay.start();
    begin();
    sound.unplug();
    timers.advance(20);
    expectNothingChanged("De opnamekaart is losgekoppeld.");
    delay.start();
    sound.plug({});
    sound.audioRecord().refresh();
    timers.advance(20);
    expectNothingChanged("De opnamekaart is losgekoppeld.");
}

TEST_F(Delay, ACardThatBringsNothingIsTold) {
    delay.start();
    timers.advance(5900);
    EXPECT_TRUE(delay.isRunning());
    timers.advance(200);
    expectNothingChanged("De opnamekaart geeft geen geluid.");
    delay.start();
    begin();
    timers.advance(6100);
    expectNothingChanged("De opnamekaart geeft geen geluid.");
    delay.start();
    sound.deliver(441);
    timers.advance(20);
    sound.failNextStart(ErrorNumber::DeviceError);
    player().hearZeroAt(JoinPlayer::Clock::now());
    timers.advance(20);
    expectNothingChanged("Meten lukt nu niet");
}

TEST_F(Delay, AnOutputThatGoesOrDoesNotPlayIsTold) {
    delay.start();
    begin();
    player().breakOff();
    expectNothingChanged("De uitgang is weg.");
    delay.start();
    sound.deliver(441);
    player().failNextPlay();
    timers.advance(20);
    expectNothingChanged("Meten lukt nu niet");
    delay.start();
    sound.deliver(441);
    timers.advance(6100);
    expectNothingChanged("De uitgang speelt niets.");
}

TEST_F(Delay, AFullDiskIsTold) {
    sound.setDiskRoom(1000);
    delay.start();
    hear(12);
    expectNothingChanged("De schijf is vol");
}

TEST_F(Delay, CancelledItIsOverAtOnce) {
    delay.cancel();
    EXPECT_EQ(delay.sentence(), QString()) << "there is nothing to cancel";
    delay.start();
    hear(12);
    begin();
    EXPECT_EQ(delay.found(), 1);
    EXPECT_EQ(delay.sentence(), QStringLiteral("Meting 2 van 5..."));
    delay.cancel();
    expectNothingChanged("Het meten is gestopt.");
}

TEST_F(Delay, NeverWhileATakeRunsNorATakeMeanwhile) {
    select(link1);
    session.cmdRec_Click();
    delay.start();
    EXPECT_EQ(session.state(), SessionState::CountingDown);
    timers.advance(3000);
    delay.start();
    EXPECT_EQ(session.state(), SessionState::Recording);
    session.cmdRec_Click();
    delay.start();
    EXPECT_EQ(session.state(), SessionState::Measuring);
    EXPECT_FALSE(may().cmdRec);
    EXPECT_FALSE(may().cmdPlay);
    EXPECT_FALSE(may().cmdSave);
    EXPECT_FALSE(may().lists);
    EXPECT_FALSE(may().cmdDelay);
    session.cmdRec_Click();
    EXPECT_EQ(session.state(), SessionState::Measuring);
    session.close(); // the program ends
    timers.advance(1000);
    EXPECT_EQ(player().plays(), 0);
}

} // namespace orvel
