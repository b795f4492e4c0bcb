// Which file is played, and when the player stops.
#include "tests/desk.h"

namespace orvel {

namespace {

class Listens : public Desk {
  protected:
    Listens() {
        QDir(folder.path()).mkdir(QStringLiteral("server"));
        settings.VoicetrackPath = path(QStringLiteral("server"));
    }
    void copySound(const QString &target) {
        QFile::copy(QStringLiteral(ORVEL_SOURCE_DIR "/samples/station/audio/jingles/002.mp3"), path(target));
    }
    [[nodiscard]] FakeWavePlayer &player() { return sound.player(0); }
};

} // namespace

// The copy that happened to be at home was played, or a run-time error reported, when the server's was deleted.
TEST_F(Listens, AVoiceTrackThatIsGoneFromTheServerPlaysNothing) {
    settings.ServerMode = true;
    playlist.setValue(link1, ImportedColumn, true);
    select(link1);
    copySound(QStringLiteral("ok/LINK1.mp3"));
    listening.cmdPlay_Click();
    EXPECT_EQ(player().starts(), 0);
    EXPECT_EQ(session.state(), SessionState::Idle);
    copySound(QStringLiteral("server/LINK1.mp3"));
    listening.cmdPlay_Click();
    EXPECT_EQ(player().file(), path(QStringLiteral("server/LINK1.mp3")));
    EXPECT_EQ(session.state(), SessionState::Listening);
}

// What played on held the file while it was being filed.
TEST_F(Listens, SavingStopsTheTakeThatPlays) {
    select(link1);
    record(800);
    listening.cmdPlay_Click();
    ASSERT_EQ(player().state(), WavePlayer::playing);
    saving.cmdSave_Click();
    EXPECT_NE(player().state(), WavePlayer::playing);
    EXPECT_EQ(session.state(), SessionState::Idle);
    EXPECT_TRUE(exists(QStringLiteral("ok/LINK1.mp3")));
    EXPECT_FALSE(exists(QStringLiteral("temp/LINK1.wav")));
}

} // namespace orvel
