// The desk lets the presenter hear what meets in a slot.
#include "station.h"
#include "windows/join_panel.h"

namespace orvel {

namespace {

/// The sample station: row 2 is a slot between two tracks.
class JoinDesk : public Station {
  protected:
    JoinDesk() {
        QDir(folder.path()).mkpath(QStringLiteral("audio/muziek"));
        for (const char *name :
             {"digital.mdb", "jingles.mdb", "new/ochtend-0700.mdb", "audio/muziek/0001.mp3", "audio/muziek/0002.mp3"}) {
            const QString file = QString::fromLatin1(name);
            EXPECT_TRUE(QFile::copy(QStringLiteral(ORVEL_SOURCE_DIR "/samples/station/") + file, path(file)));
            QFile::setPermissions(path(file), QFile::ReadOwner | QFile::WriteOwner);
        }
        configure(QStringLiteral("[Drives]\nM=audio\n[Program]\nNetwork=1\nCountdown=2\n[Files]\nDatabasepath=") +
                  folder.path());
    }
    void startAtTheSlot() {
        ASSERT_TRUE(start());
        open(QStringLiteral("ochtend-0700.mdb"));
        select(2);
    }
    void press(int key, Qt::KeyboardModifiers modifiers = {}) {
        window->activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(window.get()));
        QWidget *focused = window->focusWidget();
        QTest::keyClick(focused != nullptr ? focused : window.get(), Qt::Key(key), modifiers);
        QCoreApplication::processEvents();
    }
    [[nodiscard]] JoinPanel &panel() const { return *window->panels().joinPanel; }
    [[nodiscard]] FakeJoinPlayer &along() { return sound.joinPlayer(0); }
    [[nodiscard]] FakeJoinPlayer &player() { return sound.joinPlayer(1); }
};

} // namespace

TEST_F(JoinDesk, SwitchedOnTheItemsAroundTheSlotAreHeardFromTheCountDownOn) {
    startAtTheSlot();
    EXPECT_FALSE(panel().chkMeeluisteren->isChecked()) << "off until it is wanted";
    click(panel().chkMeeluisteren);
    EXPECT_TRUE(panel().lblMeeluisteren->text().isEmpty());
    panel().sldMeeluisteren->setValue(80);
    EXPECT_EQ(along().volume(), 52428);
    click(window->panels().recorderPanel->cmdRec);
    ASSERT_EQ(along().clips().size(), 2U);
    EXPECT_EQ(along().clips()[0].path, path(QStringLiteral("audio/muziek/0001.mp3")));
    EXPECT_EQ(along().clips()[0].anchorMs, 3410) << "its end comes when its outro is over";
    EXPECT_EQ(along().clips()[1].path, path(QStringLiteral("audio/muziek/0002.mp3")));
    EXPECT_EQ(along().clips()[1].anchorMs, 3410);
    press(Qt::Key_Escape);
    EXPECT_FALSE(along().isPlaying());
    beginRecording();
    EXPECT_TRUE(along().isPlaying());
    along().breakOff();
    EXPECT_TRUE(window->panels().lblStatus->text().startsWith(QStringLiteral("Meeluisteren is gestopt")));
    sound.deliver(44100);
    timers.advance(1000);
    click(window->panels().recorderPanel->cmdRec);
    EXPECT_EQ(content(QStringLiteral("temp/OCH01.wav")).size(), 44 + 2 * 44100) << "the take is complete";
}

TEST_F(JoinDesk, SwitchAndVolumeAreRemembered) {
    startAtTheSlot();
    click(panel().chkMeeluisteren);
    panel().sldMeeluisteren->setValue(30);
    window->close();
    window.reset();
    ASSERT_TRUE(start());
    EXPECT_TRUE(panel().chkMeeluisteren->isChecked());
    EXPECT_EQ(panel().sldMeeluisteren->value(), 30);
}

TEST_F(JoinDesk, WithTheOutputClosedTheSwitchIsOffAndSaysWhy) {
    configure(QStringLiteral("[Audio]\nMute=1"));
    startAtTheSlot();
    EXPECT_FALSE(panel().chkMeeluisteren->isEnabled());
    EXPECT_FALSE(panel().chkMeeluisteren->isChecked());
    EXPECT_EQ(panel().chkMeeluisteren->toolTip(),
              QStringLiteral("Uit: de uitgang gaat dicht bij de opname (instellingen)."));
}

TEST_F(JoinDesk, AMissingFileIsNamedBesideTheSwitch) {
    QFile::remove(path(QStringLiteral("audio/muziek/0001.mp3")));
    startAtTheSlot();
    click(panel().chkMeeluisteren);
    const QString sentence = QStringLiteral("Geen bestand van 'De laatste tram' gevonden.");
    EXPECT_TRUE(panel().lblMeeluisteren->text().startsWith(QStringLiteral("Geen bestand van")));
    EXPECT_EQ(panel().lblMeeluisteren->toolTip(), sentence);
    EXPECT_EQ(panel().chkMeeluisteren->toolTip(), sentence);
}

TEST_F(JoinDesk, ATakeIsHeardInContextByItsKey) {
    startAtTheSlot();
    EXPECT_FALSE(panel().cmdInVerband->isEnabled());
    record(500);
    EXPECT_TRUE(panel().cmdInVerband->isEnabled());
    press(Qt::Key_F3, Qt::ShiftModifier);
    ASSERT_TRUE(player().isPlaying());
    EXPECT_EQ(player().clips().size(), 3U);
    EXPECT_EQ(player().clips()[1].path, path(QStringLiteral("temp/OCH01.wav")));
    EXPECT_EQ(panel().cmdInVerband->text(), QStringLiteral("Stop"));
    EXPECT_FALSE(window->panels().recorderPanel->cmdRec->isEnabled());
    click(panel().cmdInVerband);
    EXPECT_FALSE(player().isPlaying());
    EXPECT_TRUE(window->panels().recorderPanel->cmdRec->isEnabled());
    EXPECT_EQ(panel().cmdInVerband->text(), QStringLiteral("In verband"));
}

TEST_F(JoinDesk, TheWholeHourMovesTheGridAlong) {
    startAtTheSlot();
    record(500);
    select(0);
    click(panel().cmdHeleUur);
    EXPECT_TRUE(player().isPlaying());
    EXPECT_EQ(window->panels().gridPanel->currentRow(), 2);
    player().end();
    EXPECT_EQ(panel().cmdHeleUur->text(), QStringLiteral("Hele uur"));
    EXPECT_TRUE(window->panels().lblStatus->text().endsWith(QStringLiteral("zonder opname werden overgeslagen.")))
        << window->panels().lblStatus->text().toStdString();
}

} // namespace orvel
