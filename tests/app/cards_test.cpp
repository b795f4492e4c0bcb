// Recording cards, mixer strips and meters.
#include "station.h"

namespace orvel {

namespace {

const QString mic = QStringLiteral("mic");
const QString desk = QStringLiteral("desk");

std::vector<Card> twoCards() {
    return {
        {mic, QStringLiteral("Microfoon"), {QStringLiteral("Ingang")}},
        {desk, QStringLiteral("Mengtafel"), {QStringLiteral("Lijn"), QStringLiteral("Micro"), QStringLiteral("Aux")}}};
}

/// A microphone behind what records an output.
std::vector<Card> monitorAndMicrophone() {
    Card monitor{QStringLiteral("m"), QStringLiteral("Monitor"), {QStringLiteral("Uitgang")}};
    monitor.isMonitor = true;
    return {monitor, twoCards().front()};
}

class Cards : public Station {
  protected:
    void startWith(std::vector<Card> cards, const QString &settings = {}) {
        sound.plug(std::move(cards));
        sound.audioRecord().refresh();
        configure(settings);
        disk.write(path(QStringLiteral("orvel-desk.ini")), "[Desk]\nFolded=0\n"); // on a small screen it would be
        ASSERT_TRUE(start());
        panel = window->panels().cardPanel;
    }
    /// A second passes, in which the program looks at what is plugged in.
    void replug(std::vector<Card> cards) {
        sound.plug(std::move(cards));
        timers.advance(1000);
    }
    [[nodiscard]] int shownStrips() const {
        int shown = 0;
        for (int index = 1; index <= 7; ++index) {
            shown += panel->strip(index).isVisibleTo(panel) ? 1 : 0;
        }
        return shown;
    }

    CardPanel *panel = nullptr;
};

} // namespace

TEST_F(Cards, EveryLineOfTheCardHasAStripWithItsValues) {
    sound.mixer().line(desk, 2).state = {true, true, true, true, 40000, -30};
    startWith(twoCards(), QStringLiteral("[Audio]\nRecCard=1"));
    EXPECT_EQ(shownStrips(), 3);
    MixerStrip &strip = panel->strip(2);
    EXPECT_EQ(strip.Label->text(), QStringLiteral("Micro"));
    EXPECT_EQ(strip.slVolume->value(), 65535 - 40000);
    EXPECT_TRUE(strip.slVolume->invertedAppearance());
    EXPECT_EQ(strip.slBalance->value(), -30);
    EXPECT_TRUE(strip.chSelect->isChecked());
    EXPECT_EQ(panel->Frame14->width(), 4 * 1260 * panel->logicalDpiX() / 1440);
}

TEST_F(Cards, ACardWithMoreThanSevenLinesShowsItsFirstSeven) {
    QStringList lines;
    for (int line = 1; line <= 9; ++line) {
        lines << QStringLiteral("Lijn %1").arg(line);
    }
    startWith({{desk, QStringLiteral("Mengtafel"), lines}});
    EXPECT_EQ(shownStrips(), 7);
    EXPECT_EQ(panel->lineCount(), 7);
}

TEST_F(Cards, LinesWithoutVolumeBalanceOrSelectShowDisabledControls) {
    sound.mixer().line(mic, 1).state = {false, false, false, true, 0, 0};
    startWith(twoCards());
    EXPECT_FALSE(panel->strip(1).slVolume->isEnabled());
    EXPECT_FALSE(panel->strip(1).slBalance->isEnabled());
    EXPECT_FALSE(panel->strip(1).chSelect->isEnabled());
    EXPECT_TRUE(panel->strip(1).chSelect->isChecked());
}

TEST_F(Cards, TheVolumeSliderShowsWhatTheCardAccepted) {
    startWith(twoCards());
    sound.mixer().setVolumeStep(10000);
    panel->strip(1).slVolume->setValue(65535 - 35000);
    EXPECT_EQ(sound.mixer().line(mic, 1).state.volume, 30000);
    EXPECT_EQ(panel->strip(1).slVolume->value(), 65535 - 30000);
}

TEST_F(Cards, TheBalanceSliderSetsTheLinesBalance) {
    startWith(twoCards());
    panel->strip(1).slBalance->setValue(45);
    EXPECT_EQ(sound.mixer().line(mic, 1).state.balance, 45);
    EXPECT_EQ(panel->strip(1).slBalance->value(), 45);
}

TEST_F(Cards, SelectingALineClearsTheOthersOfACardWithOneSource) {
    startWith(twoCards(), QStringLiteral("[Audio]\nRecCard=1"));
    ASSERT_TRUE(panel->strip(1).chSelect->isChecked());
    sound.audioRecord().setCurrentLine(2);
    click(panel->strip(3).chSelect);
    EXPECT_FALSE(panel->strip(1).chSelect->isChecked());
    EXPECT_TRUE(panel->strip(3).chSelect->isChecked());
    EXPECT_TRUE(sound.mixer().line(desk, 3).state.selected);
    EXPECT_EQ(sound.audioRecord().currentLine(), 2);
}

TEST_F(Cards, AnotherCardShowsItsOwnLinesAndIsRecordedFrom) {
    startWith(twoCards());
    EXPECT_EQ(shownStrips(), 1);
    panel->cobKaart->setCurrentIndex(1);
    EXPECT_EQ(shownStrips(), 3);
    EXPECT_EQ(sound.audioRecord().currentDevice(), 2);
    EXPECT_EQ(sound.recorderDevice(), 1);
}

TEST_F(Cards, ACardThatComesIsListedAndTheChosenOneStaysChosen) {
    startWith({twoCards().back()});
    replug(twoCards());
    EXPECT_EQ(panel->cobKaart->count(), 2);
    EXPECT_EQ(panel->cobKaart->currentText(), QStringLiteral("Mengtafel"));
    EXPECT_EQ(sound.recorderDevice(), 1);
    EXPECT_EQ(shownStrips(), 3);
}

TEST_F(Cards, TheChosenCardIsNotReplacedWhileItIsAwayAndIsChosenAgainWhenItReturns) {
    startWith(twoCards(), QStringLiteral("[Audio]\nRecCard=1"));
    replug({twoCards().front()});
    EXPECT_EQ(panel->cobKaart->currentIndex(), -1);
    EXPECT_EQ(shownStrips(), 0);
    EXPECT_EQ(panel->chosenCard().position, 1);
    EXPECT_TRUE(window->panels().lblStatus->text().contains(QStringLiteral("losgekoppeld")));
    replug(twoCards());
    EXPECT_EQ(panel->cobKaart->currentText(), QStringLiteral("Mengtafel"));
    EXPECT_EQ(shownStrips(), 3);
}

TEST_F(Cards, AMonitorIsListedLastAndNotChosenByItself) {
    for (const char *settings : {"", "[Audio]\nRecCard=9", "[Audio]\nRecCard=-1"}) {
        startWith(monitorAndMicrophone(), QString::fromLatin1(settings));
        EXPECT_EQ(panel->cobKaart->count(), 2);
        EXPECT_EQ(panel->cobKaart->itemText(1), QStringLiteral("Monitor"));
        EXPECT_EQ(panel->cobKaart->currentText(), QStringLiteral("Microfoon")) << settings;
        EXPECT_EQ(sound.recorderDevice(), 0);
    }
    replug({monitorAndMicrophone().front()});
    EXPECT_EQ(panel->cobKaart->currentIndex(), -1) << "nor when the microphone is unplugged";
    replug(monitorAndMicrophone());
    EXPECT_EQ(panel->cobKaart->currentText(), QStringLiteral("Microfoon"));
    EXPECT_EQ(sound.recorderDevice(), 0);
}

TEST_F(Cards, AMonitorThatThePresenterChoseStaysChosen) {
    startWith(monitorAndMicrophone());
    panel->cobKaart->setCurrentIndex(1);
    EXPECT_TRUE(window->close());
    startWith(monitorAndMicrophone());
    EXPECT_EQ(panel->cobKaart->currentText(), QStringLiteral("Monitor"));
    EXPECT_EQ(sound.recorderDevice(), 1);
    replug({monitorAndMicrophone().front()});
    EXPECT_EQ(panel->cobKaart->currentText(), QStringLiteral("Monitor"));
    EXPECT_EQ(sound.recorderDevice(), 0);
}

// Positions shift: with the stored card unplugged, a monitor stood in its place, and silence was recorded.
TEST_F(Cards, AStoredCardThatIsAwayIsNotReplacedByWhatStandsInItsPlace) {
    startWith(twoCards());
    panel->cobKaart->setCurrentIndex(1);
    EXPECT_TRUE(window->close());
    EXPECT_TRUE(content(QStringLiteral("orvel.ini")).contains("RecCardName=Mengtafel"));
    startWith(monitorAndMicrophone());
    EXPECT_EQ(panel->cobKaart->currentText(), QStringLiteral("Microfoon"));
    EXPECT_TRUE(window->panels().lblStatus->text().contains(QStringLiteral("Mengtafel")));
    // Its place is kept for it, also over the end of the program.
    EXPECT_TRUE(window->close());
    EXPECT_TRUE(content(QStringLiteral("orvel.ini")).contains("RecCardName=Mengtafel"));
    startWith({twoCards().back(), twoCards().front()});
    EXPECT_EQ(panel->cobKaart->currentText(), QStringLiteral("Mengtafel"));
    EXPECT_EQ(sound.recorderDevice(), 0);
}

TEST_F(Cards, APositionWithoutANameNeverSelectsAMonitor) {
    startWith(monitorAndMicrophone(), QStringLiteral("[Audio]\nRecCard=1"));
    EXPECT_EQ(panel->cobKaart->currentText(), QStringLiteral("Microfoon"));
    startWith(twoCards(), QStringLiteral("[Audio]\nRecCard=1"));
    EXPECT_EQ(panel->cobKaart->currentText(), QStringLiteral("Mengtafel"));
}

TEST_F(Cards, AVolumeThatSomebodyElseMovedIsShown) {
    startWith(twoCards());
    sound.mixer().line(mic, 1).state.volume = 12345;
    timers.advance(1000);
    EXPECT_EQ(panel->strip(1).slVolume->value(), 65535 - 12345);
}

TEST_F(Cards, ASliderThatIsHeldIsLeftAlone) {
    startWith(twoCards());
    panel->strip(1).slVolume->setSliderDown(true);
    sound.mixer().line(mic, 1).state.volume = 12345;
    timers.advance(1000);
    EXPECT_EQ(panel->strip(1).slVolume->value(), 0);
}

TEST_F(Cards, TheMetersShowTheRecordingOnBothChannels) {
    configure(QStringLiteral("[Program]\nCountdown=0"));
    ASSERT_TRUE(start(QStringLiteral("-RECORDER")));
    prompts.expectInput(QStringLiteral("Geef een naam voor dit bestand (ZONDER EXTENSIE)"),
                        QStringLiteral("Bestandsnaam"), QStringLiteral("proef"));
    beginRecording();
    sound.deliver(4410);
    sound.flush();
    timers.advance(40);
    // The tone of the test is a quarter of full scale.
    EXPECT_NEAR(window->panels().meterPanel->levLeft->levelDb(), -12.0, 0.2);
    EXPECT_NEAR(window->panels().meterPanel->levRight->levelDb(), -12.0, 0.2);
}

TEST_F(Cards, TheLineInHandStaysInHandWhenACardComes) {
    startWith({twoCards().back()});
    sound.audioRecord().setCurrentLine(2);
    replug(twoCards());
    EXPECT_EQ(sound.audioRecord().currentLine(), 2);
    EXPECT_EQ(sound.audioRecord().lineName(), QStringLiteral("Micro"));
}

// With the card of a stored position absent, the end of the program wrote position 0, and the choice was forgotten.
TEST_F(Cards, AStoredPositionIsKeptOverTheEndOfTheProgramWhileItsCardIsAway) {
    startWith({twoCards().front()}, QStringLiteral("[Audio]\nRecCard=1"));
    EXPECT_TRUE(window->panels().lblStatus->text().contains(QStringLiteral("Microfoon")));
    EXPECT_TRUE(window->close());
    EXPECT_TRUE(content(QStringLiteral("orvel.ini")).contains("RecCard=1"));
    EXPECT_FALSE(content(QStringLiteral("orvel.ini")).contains("RecCardName"));
    startWith(twoCards());
    EXPECT_EQ(panel->cobKaart->currentText(), QStringLiteral("Mengtafel"));
    EXPECT_EQ(sound.recorderDevice(), 1);
}

// A card that was plugged in made the card that stood in for the stored one the presenter's choice.
TEST_F(Cards, TheStoredCardStaysTheOneToStoreWhenCardsComeAndGo) {
    const Card third{QStringLiteral("usb"), QStringLiteral("Stokje"), {QStringLiteral("Ingang")}};
    startWith({twoCards().front()}, QStringLiteral("[Audio]\nRecCard=1\nRecCardName=Mengtafel"));
    replug({third, twoCards().front()});
    EXPECT_EQ(panel->cobKaart->currentText(), QStringLiteral("Microfoon"));
    EXPECT_EQ(sound.recorderDevice(), 1);
    EXPECT_EQ(panel->chosenCard().name, QStringLiteral("Mengtafel"));
    panel->cobKaart->setCurrentIndex(0);
    EXPECT_EQ(panel->chosenCard().name, QStringLiteral("Stokje"));
    EXPECT_TRUE(window->close());
    EXPECT_TRUE(content(QStringLiteral("orvel.ini")).contains("RecCardName=Stokje"));
}

TEST_F(Cards, AdvancedOpensForTheLineOfItsStrip) {
    startWith(twoCards(), QStringLiteral("[Audio]\nRecCard=1"));
    sound.audioRecord().setCurrentLine(1);
    click(panel->strip(3).cmdAdvanced);
    EXPECT_EQ(sound.audioRecord().currentLine(), 3);
    EXPECT_EQ(sound.audioRecord().lineName(), QStringLiteral("Aux"));
    auto *adv = window->findChild<frmAdv *>();
    ASSERT_NE(adv, nullptr);
    EXPECT_TRUE(adv->isVisible());
    adv->close();
}

} // namespace orvel
