// The window that puts back what the recovery folder keeps.
#include "station.h"

namespace orvel {

namespace {

const QString restoreTitle = QStringLiteral("Herstellen");

class RecoverWindow : public Station {
  protected:
    void openWindow() {
        click(window->panels().filePanel->cmdHerstellen);
        recover = window->findChild<frmRecover *>();
        ASSERT_NE(recover, nullptr);
        ASSERT_TRUE(recover->isVisible());
    }
    void openDemo() {
        addPlaylist(QStringLiteral("access-2003.mdb"), QStringLiteral("een.mdb"));
        ASSERT_TRUE(start());
        open(QStringLiteral("een.mdb"));
        while (!window->workplace().step.StepSelected) {
            select(window->panels().gridPanel->currentRow() + 1);
        }
        row = window->panels().gridPanel->currentRow();
        take = window->workplace().step.VoiceTrackName;
    }
    [[nodiscard]] QString line(int index) const {
        return recover->lstKept->item(index, 0)->text() + u' ' + recover->lstKept->item(index, 1)->text();
    }
    void expectQuestion(const QString &place, const QString &name, bool answer) {
        prompts.expectAsk(
            QStringLiteral("%1 staat al %2. Wilt U dat vervangen ?\n\nWat er nu staat, blijft bewaard en kan "
                           "ook weer teruggezet worden.")
                .arg(place, name),
            restoreTitle, answer, Preset::No, {QStringLiteral("&Vervang"), QStringLiteral("&Laat staan")});
    }
    FakeWavePlayer &player() { return sound.player(sound.playerCount() - 1); }

    frmRecover *recover = nullptr;
    QString take;
    int row = 0;
};

} // namespace

TEST_F(RecoverWindow, WithoutAnythingKeptItSaysSo) {
    ASSERT_TRUE(start());
    openWindow();
    EXPECT_EQ(recover->windowTitle(), restoreTitle);
    EXPECT_TRUE(recover->isModal());
    EXPECT_EQ(recover->lstKept->rowCount(), 0);
    EXPECT_FALSE(recover->lblResult->text().isEmpty());
    EXPECT_FALSE(recover->cmdTerug->isEnabled());
    EXPECT_FALSE(recover->cmdPlay->isEnabled());
    click(recover->cmdQuit);
    EXPECT_FALSE(recover->isVisible());
}

TEST_F(RecoverWindow, ADeletedPlaylistIsBackInTheList) {
    openDemo();
    prompts.expectAsk(QStringLiteral("Wenst U het bestand een.mdb te verwijderen ?"),
                      QStringLiteral("Playlists verwijderen"), true, Preset::No);
    click(window->panels().filePanel->cmdWisNew);
    EXPECT_EQ(window->panels().filePanel->filNew->count(), 0);
    openWindow();
    ASSERT_EQ(recover->lstKept->rowCount(), 1);
    EXPECT_EQ(line(0), QStringLiteral("Playlist een.mdb"));
    EXPECT_FALSE(recover->cmdPlay->isEnabled()) << "a playlist makes no sound";
    click(recover->cmdTerug);
    EXPECT_EQ(recover->lblResult->text(), QStringLiteral("een.mdb staat weer bij de te bewerken playlists."));
    EXPECT_EQ(recover->lstKept->rowCount(), 0);
    EXPECT_FALSE(recover->cmdTerug->isEnabled());
    EXPECT_EQ(window->panels().filePanel->filNew->count(), 1);
    recover->close();
    open(QStringLiteral("een.mdb"));
    EXPECT_GT(window->workplace().datList.stepCount(), 0);
}

TEST_F(RecoverWindow, TheOpenPlaylistIsOpenedAnewWhenAnotherOneTakesItsPlace) {
    openDemo();
    const int steps = window->workplace().datList.stepCount();
    addPlaylist(QStringLiteral("steps-150.mdb"), QStringLiteral("../een.mdb"));
    window->workplace().recovery.keep(path(QStringLiteral("een.mdb")));
    openWindow();
    expectQuestion(QStringLiteral("Bij de te bewerken playlists"), QStringLiteral("een.mdb"), false);
    click(recover->cmdTerug);
    EXPECT_EQ(window->workplace().datList.stepCount(), steps);
    EXPECT_EQ(recover->lstKept->rowCount(), 1);
    expectQuestion(QStringLiteral("Bij de te bewerken playlists"), QStringLiteral("een.mdb"), true);
    click(recover->cmdTerug);
    EXPECT_EQ(window->workplace().datList.stepCount(), 150);
    EXPECT_EQ(recover->lstKept->rowCount(), 1) << "what was replaced can be put back in its turn";
    recover->close();
    mark(window->panels().gridPanel->currentRow(), true); // nobody is in the way
    EXPECT_EQ(filesIn(QStringLiteral("new")), QStringList{QStringLiteral("een.mdb")});
}

// A take that was recorded over could be put back by hand only, and then neither listened to nor saved.
TEST_F(RecoverWindow, ATakeThatWasRecordedOverIsBackUnderItsStep) {
    openDemo();
    record(1000);
    const QByteArray first = content(QStringLiteral("temp/") + take + QStringLiteral(".wav"));
    record(3000);
    select(row + 1);
    openWindow();
    ASSERT_GE(recover->lstKept->rowCount(), 1);
    EXPECT_EQ(line(0), QStringLiteral("Opname ") + take + QStringLiteral(".wav"));
    expectQuestion(QStringLiteral("Bij de opnames"), take + QStringLiteral(".wav"), true);
    click(recover->cmdTerug);
    EXPECT_EQ(content(QStringLiteral("temp/") + take + QStringLiteral(".wav")), first);
    EXPECT_EQ(window->panels().gridPanel->currentRow(), row);
    EXPECT_TRUE(window->panels().playbackPanel->cmdPlay->isEnabled());
    EXPECT_TRUE(window->panels().savePanel->cmdSave->isEnabled());
}

TEST_F(RecoverWindow, ATakeOfTheRecorderIsTheOneInHandAgain) {
    ASSERT_TRUE(start(QStringLiteral("-RECORDER")));
    disk.write(path(QStringLiteral("temp/proef.wav")), QByteArray(1000, 's'));
    window->workplace().recovery.keep(path(QStringLiteral("temp/proef.wav")));
    openWindow();
    click(recover->cmdTerug);
    EXPECT_TRUE(exists(QStringLiteral("temp/proef.wav")));
    EXPECT_EQ(window->workplace().step.VoiceTrackName, QStringLiteral("proef"));
    EXPECT_EQ(window->panels().stepPanel->lblBestand->text(), QStringLiteral("proef"));
    EXPECT_TRUE(window->panels().savePanel->cmdSave->isEnabled());
}

TEST_F(RecoverWindow, NothingIsPutBackWhileATakeRuns) {
    openDemo();
    record(1000);
    beginRecording();
    openWindow();
    ASSERT_GE(recover->lstKept->rowCount(), 1);
    click(recover->cmdTerug);
    EXPECT_TRUE(recover->lblResult->text().contains(QStringLiteral("loopt een opname")));
    recover->close();
    click(window->panels().recorderPanel->cmdRec);
    EXPECT_FALSE(sound.recorder().isRecording());
}

TEST_F(RecoverWindow, AVoiceTrackIsListenedToAndPutBack) {
    ASSERT_TRUE(start());
    ASSERT_TRUE(QFile::copy(QStringLiteral(ORVEL_SOURCE_DIR "/samples/station/audio/jingles/002.mp3"),
                            path(QStringLiteral("ok/VT1.mp3"))));
    window->workplace().recovery.keep(path(QStringLiteral("ok/VT1.mp3")));
    openWindow();
    EXPECT_EQ(line(0), QStringLiteral("Voicetrack VT1.mp3"));
    click(recover->cmdPlay);
    EXPECT_EQ(player().state(), WavePlayer::playing);
    EXPECT_TRUE(player().file().contains(QStringLiteral("VT1.")));
    EXPECT_EQ(recover->cmdPlay->text(), QStringLiteral("Stop"));
    click(recover->cmdPlay);
    EXPECT_NE(player().state(), WavePlayer::playing);
    EXPECT_EQ(recover->cmdPlay->text(), QStringLiteral("Beluister"));
    click(recover->cmdPlay);
    player().play(player().length());
    EXPECT_EQ(recover->cmdPlay->text(), QStringLiteral("Beluister")) << "the end was heard";
    click(recover->cmdPlay);
    click(recover->cmdTerug);
    EXPECT_NE(player().state(), WavePlayer::playing);
    EXPECT_TRUE(exists(QStringLiteral("ok/VT1.mp3")));
}

TEST_F(RecoverWindow, AFileThatCannotBeListenedToIsToldInTheWindow) {
    ASSERT_TRUE(start());
    disk.write(path(QStringLiteral("stuk.wav")), "geen geluid");
    window->workplace().recovery.keep(path(QStringLiteral("stuk.wav")));
    openWindow();
    click(recover->cmdPlay);
    EXPECT_TRUE(recover->lblResult->text().startsWith(QStringLiteral("stuk.wav kan niet worden beluisterd: ")));
    EXPECT_EQ(recover->cmdPlay->text(), QStringLiteral("Beluister"));
}

TEST_F(RecoverWindow, ClosingStopsTheSound) {
    ASSERT_TRUE(start());
    ASSERT_TRUE(QFile::copy(QStringLiteral(ORVEL_SOURCE_DIR "/samples/station/audio/jingles/002.mp3"),
                            path(QStringLiteral("VT1.mp3"))));
    window->workplace().recovery.keep(path(QStringLiteral("VT1.mp3")));
    openWindow();
    click(recover->cmdPlay);
    recover->reject();
    EXPECT_NE(player().state(), WavePlayer::playing);
    openWindow();
    EXPECT_EQ(window->findChildren<frmRecover *>().size(), 1);
}

} // namespace orvel
