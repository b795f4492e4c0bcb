// Listening to a take, and the joystick.
#include "platform/runtime_error.h"
#include "station.h"

#include <QDialog>

namespace orvel {

namespace {

const QString listen = QStringLiteral("Beluister Opname");
const QString stopIt = QStringLiteral("Stop Weergave");

class Playing : public Station {
  protected:
    void openDemo(const QString &settings = {}) {
        configure(settings);
        addPlaylist(demo);
        ASSERT_TRUE(start());
        open(demo);
        int row = 0;
        while (window->workplace().datList.value(row, TypeColumn).toInt() != PresStep) {
            ++row;
        }
        select(row);
        name = window->workplace().step.VoiceTrackName;
    }

    [[nodiscard]] QPushButton *play() const { return window->panels().playbackPanel->cmdPlay; }
    [[nodiscard]] FakeWavePlayer &player() { return sound.player(0); }
    void copySound(const QString &target) const {
        ASSERT_TRUE(
            QFile::copy(QStringLiteral(ORVEL_SOURCE_DIR "/samples/station/audio/jingles/001.mp3"), path(target)));
    }
    [[nodiscard]] bool othersEnabled() const {
        return window->panels().savePanel->cmdImport->isEnabled() &&
               window->panels().recorderPanel->cmdRec->isEnabled() && window->panels().savePanel->cmdSave->isEnabled();
    }
    [[nodiscard]] bool othersDisabled() const {
        return !window->panels().savePanel->cmdImport->isEnabled() &&
               !window->panels().recorderPanel->cmdRec->isEnabled() &&
               !window->panels().savePanel->cmdSave->isEnabled();
    }

    QString name;
};

} // namespace

TEST_F(Playing, TheTakeThatWasJustRecordedIsPlayedAndTheClockShowsWhatIsHeard) {
    openDemo();
    record(2000);
    click(play());
    EXPECT_EQ(player().file(), path(QStringLiteral("temp/") + name + QStringLiteral(".wav")));
    EXPECT_EQ(player().state(), WavePlayer::playing);
    EXPECT_EQ(play()->text(), stopIt);
    EXPECT_TRUE(othersDisabled());
    player().play(1230);
    timers.advance(10);
    EXPECT_EQ(window->panels().recorderPanel->ledTijd->text(), QStringLiteral("0:00:01.23"));
    click(play());
    EXPECT_NE(player().state(), WavePlayer::playing);
    EXPECT_TRUE(player().file().isEmpty());
    EXPECT_EQ(play()->text(), listen);
    EXPECT_TRUE(othersEnabled());
}

// A new icon for every caption filled the cache of drawn pictures: 6 MB after some hundred takes.
TEST_F(Playing, TheButtonsPicturesAreMadeOnce) {
    openDemo();
    QSet<qint64> listening;
    QSet<qint64> recording;
    for (int cycle = 0; cycle < 4; ++cycle) {
        beginRecording();
        sound.deliver(4410);
        recording << window->panels().recorderPanel->cmdRec->icon().cacheKey();
        click(window->panels().recorderPanel->cmdRec);
        recording << window->panels().recorderPanel->cmdRec->icon().cacheKey();
        click(play());
        ASSERT_EQ(play()->text(), stopIt);
        listening << play()->icon().cacheKey();
        click(play());
        listening << play()->icon().cacheKey();
    }
    EXPECT_EQ(recording.size(), 2);
    EXPECT_EQ(listening.size(), 2);
}

TEST_F(Playing, TheEndOfTheTakePutsTheControlsBack) {
    openDemo();
    record(1000);
    click(play());
    player().play(5000);
    EXPECT_EQ(play()->text(), listen);
    EXPECT_TRUE(player().file().isEmpty());
    EXPECT_TRUE(othersEnabled());
    window->panels().recorderPanel->ledTijd->setTime(0, 0, 9, 0);
    timers.advance(100);
    EXPECT_EQ(window->panels().recorderPanel->ledTijd->seconds(), 9);
}

TEST_F(Playing, AStepThatIsDonePlaysItsFiledVoiceTrack) {
    openDemo();
    mark(window->panels().gridPanel->currentRow(), true);
    window->panels().gridPanel->dbgLijst_RowColChange();
    copySound(QStringLiteral("ok/") + name + QStringLiteral(".mp3"));
    click(play());
    EXPECT_EQ(player().file(), path(QStringLiteral("ok/") + name + QStringLiteral(".mp3")));
}

TEST_F(Playing, WithAServerADoneStepPlaysFromTheServersFolder) {
    QDir(folder.path()).mkdir(QStringLiteral("server"));
    openDemo(QStringLiteral("[Program]\nServer=1\n[Files]\nVoiceTrackPath=") + path(QStringLiteral("server")));
    mark(window->panels().gridPanel->currentRow(), true);
    window->panels().gridPanel->dbgLijst_RowColChange();
    copySound(QStringLiteral("server/") + name + QStringLiteral(".mp3"));
    copySound(QStringLiteral("ok/") + name + QStringLiteral(".mp3"));
    click(play());
    EXPECT_EQ(player().file(), path(QStringLiteral("server/") + name + QStringLiteral(".mp3")));
}

TEST_F(Playing, WithAServerAnUnfinishedStepPlaysItsTake) {
    QDir(folder.path()).mkdir(QStringLiteral("server"));
    openDemo(QStringLiteral("[Program]\nServer=1\n[Files]\nVoiceTrackPath=") + path(QStringLiteral("server")));
    record(500);
    click(play());
    EXPECT_EQ(player().file(), path(QStringLiteral("temp/") + name + QStringLiteral(".wav")));
}

TEST_F(Playing, AVoiceTrackThatWasDeletedPlaysNothingAndSaysNothing) {
    openDemo();
    mark(window->panels().gridPanel->currentRow(), true);
    window->panels().gridPanel->dbgLijst_RowColChange();
    ASSERT_TRUE(play()->isEnabled());
    click(play());
    EXPECT_EQ(player().starts(), 0);
    EXPECT_EQ(play()->text(), listen);
    EXPECT_TRUE(window->panels().recorderPanel->cmdRec->isEnabled());
}

TEST_F(Playing, AClickAfterTheEndButBeforeItsNewsPlaysFromTheStart) {
    openDemo();
    record(1000);
    click(play());
    player().reachEndSilently();
    click(play());
    EXPECT_EQ(player().starts(), 2);
    EXPECT_EQ(player().position(), 0);
    EXPECT_EQ(player().state(), WavePlayer::playing);
    EXPECT_EQ(play()->text(), stopIt);
}

TEST_F(Playing, AnEndThatComesLateChangesNothing) {
    openDemo();
    record(1000);
    click(play());
    click(play());
    const TakeFacts before = window->workplace().session.facts();
    window->workplace().listening.interrupt();
    EXPECT_EQ(window->workplace().session.facts(), before);
    EXPECT_EQ(play()->text(), listen);
}

TEST_F(Playing, InRecorderModeTheLastNameIsPlayedWhateverTheGridShows) {
    configure(QStringLiteral("[Program]\nCountdown=0"));
    ASSERT_TRUE(start(QStringLiteral("-RECORDER")));
    prompts.expectInput(QStringLiteral("Geef een naam voor dit bestand (ZONDER EXTENSIE)"),
                        QStringLiteral("Bestandsnaam"), QStringLiteral("proef"));
    record(500);
    EXPECT_FALSE(window->workplace().step.StepSelected);
    click(play());
    EXPECT_EQ(player().file(), path(QStringLiteral("temp/proef.wav")));
}

TEST_F(Playing, WithoutAStepNothingHappens) {
    addPlaylist(demo);
    ASSERT_TRUE(start());
    play()->setEnabled(true);
    click(play());
    EXPECT_EQ(player().starts(), 0);
}

TEST_F(Playing, APlayerThatFailsEndsTheHandlerWithAReport) {
    openDemo();
    record(500);
    player().failNextStart();
    prompts.expectReport(RuntimeError(ErrorNumber::DeviceError).report().section(u'\n', 0, 0));
    click(play());
    EXPECT_EQ(play()->text(), listen);
    EXPECT_TRUE(othersEnabled());
}

TEST_F(Playing, TheMetersShowBothChannelsOfWhatIsPlayed) {
    openDemo();
    record(1000);
    window->panels().meterPanel->levLeft->reset();
    window->panels().meterPanel->levRight->reset();
    click(play());
    player().setPeaks({1.0F, 0.1F});
    timers.advance(40);
    EXPECT_TRUE(window->panels().meterPanel->levLeft->isClipped());
    EXPECT_NEAR(window->panels().meterPanel->levRight->levelDb(), -20.0, 0.1);
}

TEST_F(Playing, WhileATakePlaysNothingRecords) {
    openDemo();
    record(1000);
    click(play());
    EXPECT_FALSE(window->panels().recorderPanel->cmdRec->isEnabled());
    const int row = window->panels().gridPanel->currentRow();
    select(row + 1);
    select(row);
    EXPECT_FALSE(window->panels().recorderPanel->cmdRec->isEnabled()) << "also when a step is selected meanwhile";
    window->workplace().session.cmdRec_Click();
    EXPECT_FALSE(window->workplace().session.countsDown());
    EXPECT_EQ(player().state(), WavePlayer::playing);
}

TEST_F(Playing, ThePlayerGetsTheDeviceSettings) {
    openDemo(QStringLiteral("[Audio]\nCBuffers=7\nCBuffer_size=4096\nCCard=2\nCCallback=1"));
    EXPECT_EQ(player().output().device, 2);
    EXPECT_EQ(player().output().buffers, 7);
    EXPECT_EQ(player().output().bufferSize, 4096);
    EXPECT_EQ(player().output().callBackMode, 1);
}

TEST_F(Playing, JoystickButtonsDoWhatTheEnabledButtonsDo) {
    openDemo(QStringLiteral("[Program]\nCountdown=0"));
    joystick.press(1);
    timers.advance(20);
    timers.advance(1000);
    EXPECT_TRUE(sound.recorder().isRecording());
    sound.deliver(44100);
    joystick.press(1);
    timers.advance(20);
    EXPECT_FALSE(sound.recorder().isRecording());
    joystick.press(2);
    timers.advance(20);
    EXPECT_EQ(player().state(), WavePlayer::playing);
    // Saving is not possible while the take is played.
    joystick.press(4);
    timers.advance(20);
    EXPECT_TRUE(filesIn(QStringLiteral("ok")).isEmpty());
    joystick.press(2);
    timers.advance(20);
    joystick.press(3);
    joystick.press(5);
    timers.advance(20);
    EXPECT_TRUE(filesIn(QStringLiteral("ok")).isEmpty());
    joystick.press(4);
    timers.advance(20);
    EXPECT_EQ(filesIn(QStringLiteral("ok")), QStringList{name + QStringLiteral(".mp3")});
}

TEST_F(Playing, JoystickButtonsOfDisabledControlsDoNothing) {
    addPlaylist(demo);
    ASSERT_TRUE(start());
    for (const int button : {1, 2, 4}) {
        joystick.press(button);
    }
    timers.advance(20);
    EXPECT_FALSE(window->workplace().session.countsDown());
    EXPECT_EQ(player().starts(), 0);
    EXPECT_TRUE(filesIn(QStringLiteral("ok")).isEmpty());
}

TEST_F(Playing, TheJoystickWaitsForAModalWindow) {
    openDemo(QStringLiteral("[Program]\nCountdown=0"));
    QDialog question(window.get());
    question.open();
    joystick.press(1);
    timers.advance(20);
    EXPECT_FALSE(window->workplace().session.countsDown());
    question.close();
    joystick.press(1);
    timers.advance(20);
    EXPECT_TRUE(window->workplace().session.countsDown());
}

} // namespace orvel
