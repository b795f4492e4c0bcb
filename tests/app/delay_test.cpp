// The delay of the recording card is measured from the desk, and stands beside the card.
#include "settings/card_delays.h"
#include "station.h"
#include "windows/frm_delay.h"

#include <cstring>

namespace orvel {

namespace {

class DelayDesk : public Station {
  protected:
    void startAtTheDesk() {
        disk.write(path(QStringLiteral("orvel-desk.ini")), "[Desk]\nFolded=0\n"); // on a small screen it would be
        ASSERT_TRUE(start());
        panel = window->panels().cardPanel;
    }
    void startAtASlot() {
        addPlaylist(demo);
        startAtTheDesk();
        open(demo);
        for (int row = 0; !window->workplace().step.StepSelected; ++row) {
            ASSERT_LT(row, window->workplace().datList.stepCount());
            select(row);
        }
    }
    void openWindow() {
        click(panel->cmdDelay);
        delay = window->findChild<frmDelay *>();
        ASSERT_NE(delay, nullptr);
        ASSERT_TRUE(delay->isVisible());
    }
    /// The card hears the probe 40 ms late.
    void hear() {
        sound.deliver(441);
        timers.advance(20);
        ASSERT_TRUE(player().isPlaying());
        player().hearZeroAt(JoinPlayer::Clock::now());
        timers.advance(20);
        ASSERT_EQ(sound.takes().last(), path(QStringLiteral("temp2/meting.opname.wav")));
        const JoinClip clip = player().clips().at(0);
        QFile played(clip.path);
        ASSERT_TRUE(played.open(QIODevice::ReadOnly));
        const QByteArray probe = played.readAll().mid(44);
        QByteArray room(2 * 2 * 44100, '\0');
        room.replace(2 * static_cast<int>((clip.anchorMs + 40) * 441 / 10), probe.size(), probe);
        std::vector<std::int16_t> samples(static_cast<std::size_t>(room.size()) / 2);
        std::memcpy(samples.data(), room.constData(), static_cast<std::size_t>(room.size()));
        sound.deliver(samples);
        sound.flush();
        timers.advance(20);
    }
    [[nodiscard]] FakeJoinPlayer &player() { return sound.joinPlayer(2); }

    CardPanel *panel = nullptr;
    frmDelay *delay = nullptr;
};

} // namespace

TEST_F(DelayDesk, WhatWasMeasuredStandsBesideTheCardAndIsThereAgain) {
    startAtTheDesk();
    EXPECT_EQ(panel->lblDelay->text(), QStringLiteral("vertraging niet gemeten"));
    openWindow();
    EXPECT_EQ(delay->lblCard->text(), QStringLiteral("Microfoon: vertraging niet gemeten"));
    EXPECT_EQ(delay->cmdMeasure->text(), QStringLiteral("Meten"));
    click(delay->cmdMeasure);
    EXPECT_EQ(delay->cmdMeasure->text(), QStringLiteral("Stop"));
    for (int number = 1; number <= 5; ++number) {
        EXPECT_EQ(delay->prgDelay->value(), number - 1);
        hear();
    }
    EXPECT_EQ(delay->cmdMeasure->text(), QStringLiteral("Meten"));
    EXPECT_EQ(delay->lblCard->text(), QStringLiteral("Microfoon: vertraging 40 ms, gemeten"));
    EXPECT_TRUE(delay->lblDelay->text().startsWith(QStringLiteral("De vertraging is 40 ms")));
    click(delay->cmdQuit);
    EXPECT_EQ(panel->lblDelay->text(), QStringLiteral("vertraging 40 ms, gemeten"));
    EXPECT_TRUE(content(QStringLiteral("orvel.ini")).contains("[Delays]\r\n1=40.0 Microfoon\r\n"));
    window->close();
    window.reset();
    startAtTheDesk();
    EXPECT_EQ(panel->lblDelay->text(), QStringLiteral("vertraging 40 ms, gemeten"));
    EXPECT_EQ(window->workplace().delay.ofCard(), std::chrono::milliseconds(40));
}

TEST_F(DelayDesk, ClosingTheWindowStopsItAndTheMicrophoneIsHeardAgain) {
    startAtASlot();
    ASSERT_TRUE(sound.isOpen()) << "the desk listens to the microphone";
    openWindow();
    click(delay->cmdMeasure);
    hear();
    EXPECT_FALSE(window->panels().recorderPanel->cmdRec->isEnabled());
    EXPECT_FALSE(panel->cmdDelay->isEnabled());
    click(delay->cmdQuit);
    EXPECT_FALSE(delay->isVisible());
    EXPECT_FALSE(player().isPlaying());
    EXPECT_TRUE(window->panels().recorderPanel->cmdRec->isEnabled());
    EXPECT_TRUE(panel->cmdDelay->isEnabled());
    EXPECT_TRUE(sound.isOpen());
    EXPECT_EQ(panel->lblDelay->text(), QStringLiteral("vertraging niet gemeten"));
    openWindow();
    EXPECT_EQ(delay->lblDelay->text(), QString()) << "what was said is over";
}

TEST_F(DelayDesk, ATakeThatRunsIsLeftAlone) {
    startAtASlot();
    ASSERT_TRUE(panel->cmdDelay->isEnabled());
    beginRecording();
    EXPECT_FALSE(panel->cmdDelay->isEnabled());
    click(window->panels().recorderPanel->cmdRec);
    EXPECT_TRUE(panel->cmdDelay->isEnabled());
}

TEST_F(DelayDesk, EachCardShowsItsOwn) {
    sound.plug({{QStringLiteral("mic"), QStringLiteral("Microfoon"), {QStringLiteral("Ingang")}},
                {QStringLiteral("desk"), QStringLiteral("Mengtafel"), {QStringLiteral("Lijn")}}});
    sound.audioRecord().refresh();
    configure(QStringLiteral("[Delays]\n1=12.3 Mengtafel\n"));
    startAtTheDesk();
    EXPECT_EQ(panel->lblDelay->text(), QStringLiteral("vertraging niet gemeten"));
    panel->cobKaart->setCurrentIndex(1);
    EXPECT_EQ(panel->lblDelay->text(), QStringLiteral("vertraging 12 ms, gemeten"));
}

} // namespace orvel
