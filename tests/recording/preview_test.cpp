// Which record, which file and which texts the preview gives.
#include "platform/fake/fake_database.h"
#include "playlist/step_types.h"
#include "recording/catalogues.h"
#include "recording/preview.h"
#include "tests/platform/audio/temp_folder.h"
#include "tests/test_platform.h"

#include <gtest/gtest.h>
#include <limits>

namespace orvel {

namespace {

class Previewing : public testing::Test, protected TestPlatform<FakeDatabaseEngine> {
  protected:
    Previewing() {
        databases.setTable(
            folder.path("digital.mdb"), QStringLiteral("Audio"),
            {QStringLiteral("tracknr"), QStringLiteral("path"), QStringLiteral("titel"), QStringLiteral("artiest")},
            {{2, QStringLiteral("M:\\geen.mp3"), QStringLiteral("Weg"), QStringLiteral("Iemand")},
             {1, QStringLiteral("M:\\een.mp3"), QStringLiteral("Lied"), QVariant()}});
        databases.setTable(folder.path("jingles.mdb"), QStringLiteral("jingles"),
                           {QStringLiteral("tracknr"), QStringLiteral("path"), QStringLiteral("titel"),
                            QStringLiteral("Omschrijving")},
                           {{1, QStringLiteral("M:\\een.mp3"), QStringLiteral("Jingle"), QStringLiteral("kort")}});
        drives.set(u'm', folder.path());
        settings.Network = true;
        settings.Databasepath = folder.path();
        QFile::copy(QStringLiteral(ORVEL_SOURCE_DIR "/samples/station/audio/jingles/002.mp3"), folder.path("een.mp3"));
        test::writeContent(folder.path("stuk.mp3"), "geen geluid");
    }
    std::optional<Previewed> load(int kind, std::int32_t track) { return preview.load(kind, track, *player); }

    test::TempFolder folder;
    Settings settings;
    DriveMap drives{files, folder.path()};
    Catalogues catalogues{platform, settings};
    Preview preview{{files, settings, drives, catalogues}};
    std::unique_ptr<WavePlayer> owned = sound.makePlayer();
    FakeWavePlayer *player = &sound.player(0);
};

/// Notes what it is asked to do.
class NotingPlayer : public WavePlayer {
  public:
    void setOutput(const PlayerSettings & /*settings*/) override {}
    void setFileName(const QString & /*path*/) override {}
    void start() override { log << QStringLiteral("start"); }
    void pause() override { log << QStringLiteral("pause"); }
    void resume() override { log << QStringLiteral("resume"); }
    void stop() override { log << QStringLiteral("stop"); }
    void close() override { log << QStringLiteral("close"); }
    [[nodiscard]] int state() const override { return playing; }
    [[nodiscard]] std::int32_t position() const override { return where; }
    void setPosition(std::int32_t milliseconds) override { log << QString::number(milliseconds); }
    [[nodiscard]] std::int32_t length() const override { return whole; }
    void setVolume(int /*volume*/) override {}
    [[nodiscard]] StereoPeaks peaks() override { return {}; }
    void setEndHandler(std::function<void()> /*handler*/) override {}
    [[nodiscard]] bool brokeOff() const override { return false; }

    QStringList log;
    std::int32_t where = 0;
    std::int32_t whole = 0;
};

} // namespace

TEST(PreviewSeeking, IsDoneInSilence) {
    NotingPlayer player;
    seek(player, 1234);
    EXPECT_EQ(player.log, (QStringList{QStringLiteral("pause"), QStringLiteral("1234"), QStringLiteral("resume")}));
}

TEST(PreviewSeeking, ALengthThatCannotBeIsReported) {
    NotingPlayer player;
    player.whole = std::numeric_limits<std::int32_t>::max();
    EXPECT_EQ(remainingTime(player).millis, 647);
    player.where = -1;
    EXPECT_THROW(static_cast<void>(remainingTime(player)), RuntimeError);
}

TEST_F(Previewing, ATrackHasItsArtistAndAJingleItsDescription) {
    const auto track = load(TrackStep, 1);
    ASSERT_TRUE(track);
    EXPECT_EQ(track->title, QStringLiteral("Lied"));
    EXPECT_EQ(track->description, QString()) << "an empty field";
    EXPECT_EQ(track->problem, QString());
    EXPECT_EQ(player->file(), folder.path("een.mp3"));
    const auto jingle = load(JingleStep, 1);
    ASSERT_TRUE(jingle);
    EXPECT_EQ(jingle->title, QStringLiteral("Jingle"));
    EXPECT_EQ(jingle->description, QStringLiteral("kort"));
    EXPECT_EQ(databases.statements(), (QStringList{QStringLiteral("SELECT * From Audio ORDER BY TrackNr"),
                                                   QStringLiteral("SELECT * From jingles ORDER BY TrackNr")}));
}

TEST_F(Previewing, OtherKindsUnknownNumbersAndNoNetworkLeaveThePlayerAlone) {
    ASSERT_TRUE(load(TrackStep, 1));
    player->start();
    for (const int kind : {0, 2, 4, 5, 6, 7, -1, 99}) {
        EXPECT_FALSE(load(kind, 1)) << kind;
    }
    EXPECT_FALSE(load(TrackStep, 99));
    EXPECT_FALSE(load(TrackStep, 0));
    settings.Network = false;
    EXPECT_FALSE(load(TrackStep, 1));
    EXPECT_EQ(player->state(), WavePlayer::playing);
    EXPECT_EQ(player->file(), folder.path("een.mp3"));
}

TEST_F(Previewing, AFileThatIsMissingOrBrokenIsAProblemAndNoFileIsOpen) {
    ASSERT_TRUE(load(TrackStep, 1));
    const auto missing = load(TrackStep, 2);
    ASSERT_TRUE(missing);
    EXPECT_EQ(missing->problem, QStringLiteral("Het bestand M:\\geen.mp3 werd niet gevonden."));
    EXPECT_FALSE(missing->details.isEmpty());
    EXPECT_EQ(missing->title, QStringLiteral("Weg"));
    EXPECT_TRUE(player->file().isEmpty());
    disk.move(folder.path("stuk.mp3"), folder.path("geen.mp3"));
    EXPECT_EQ(load(TrackStep, 2)->problem, QStringLiteral("Het bestand M:\\geen.mp3 is niet leesbaar."));
}

// Without jingles.mdb no track could be previewed either.
TEST_F(Previewing, ACatalogueThatIsNotThereIsAProblemOfItsKindOnly) {
    databases.removeFile(folder.path("jingles.mdb"));
    ASSERT_TRUE(load(TrackStep, 1));
    const auto jingle = load(JingleStep, 1);
    ASSERT_TRUE(jingle);
    EXPECT_EQ(jingle->problem, QStringLiteral("jingles.mdb kon niet worden geopend: Het bestand is niet gevonden."));
    EXPECT_TRUE(jingle->details.contains(folder.path("jingles.mdb")));
    EXPECT_TRUE(jingle->title.isEmpty());
    EXPECT_TRUE(player->file().isEmpty()) << "the track before must not be taken for the jingle";
    EXPECT_TRUE(load(TrackStep, 1)->problem.isEmpty());
}

TEST_F(Previewing, ACatalogueIsOpenedAnewOnlyWhenItCannotBeReadAgain) {
    ASSERT_TRUE(load(TrackStep, 1));
    ASSERT_TRUE(load(TrackStep, 1));
    EXPECT_EQ(databases.statements().size(), 1);
    databases.fail(FakeDatabaseEngine::Call::Refresh, ErrorNumber::FileNotFound);
    ASSERT_TRUE(load(TrackStep, 1));
    EXPECT_EQ(databases.statements().size(), 2);
    databases.fail(FakeDatabaseEngine::Call::Open, ErrorNumber::DiskNotReady);
    EXPECT_FALSE(load(TrackStep, 1)->problem.isEmpty());
    databases.clearFailure(FakeDatabaseEngine::Call::Open);
    databases.clearFailure(FakeDatabaseEngine::Call::Refresh);
    EXPECT_TRUE(load(TrackStep, 1)->problem.isEmpty()) << "the server is there again";
}

TEST_F(Previewing, AnEmptyCatalogueHasNoRecord) {
    databases.setTable(folder.path("digital.mdb"), QStringLiteral("Audio"), {QStringLiteral("tracknr")}, {});
    EXPECT_FALSE(load(TrackStep, 1));
}

TEST_F(Previewing, WhatIsStillToBeHeardGoesDown) {
    ASSERT_TRUE(load(TrackStep, 1));
    const int length = player->length();
    ASSERT_GT(length, 1500);
    player->start();
    player->play(1234);
    const TimeParts left = remainingTime(*player);
    EXPECT_EQ(((left.hours * 60 + left.minutes) * 60 + left.seconds) * 1000 + left.millis, length - 1234);
    EXPECT_LT(left.millis, 1000);
}

TEST_F(Previewing, WhatIsPausedGoesOnWhereItWas) {
    ASSERT_TRUE(load(TrackStep, 1));
    EXPECT_FALSE(preview.canPause(*player));
    preview.pauseOrGoOn(*player);
    EXPECT_FALSE(preview.isPaused()) << "nothing plays";
    preview.play(*player);
    player->play(700);
    ASSERT_TRUE(preview.canPause(*player));
    preview.pauseOrGoOn(*player);
    EXPECT_TRUE(preview.isPaused());
    EXPECT_NE(player->state(), WavePlayer::playing);
    EXPECT_TRUE(preview.canPause(*player));
    preview.seek(*player, 900);
    EXPECT_NE(player->state(), WavePlayer::playing) << "a jump lets nothing go on";
    preview.pauseOrGoOn(*player);
    EXPECT_FALSE(preview.isPaused());
    EXPECT_EQ(player->state(), WavePlayer::playing);
    EXPECT_EQ(player->position(), 900);
}

TEST_F(Previewing, PlayingStoppingAndAnotherTrackEndAPause) {
    ASSERT_TRUE(load(TrackStep, 1));
    const auto pause = [this] {
        preview.play(*player);
        player->play(700);
        preview.pauseOrGoOn(*player);
        return preview.isPaused();
    };
    ASSERT_TRUE(pause());
    preview.play(*player);
    EXPECT_FALSE(preview.isPaused());
    EXPECT_EQ(player->position(), 0) << "play is from the start";
    ASSERT_TRUE(pause());
    preview.stop(*player);
    EXPECT_FALSE(preview.canPause(*player));
    ASSERT_TRUE(pause());
    ASSERT_TRUE(load(JingleStep, 1));
    EXPECT_FALSE(preview.canPause(*player));
}

TEST(PreviewTexts, ScrollFromTwentyFiveCharactersOn) {
    EXPECT_FALSE(scrolls(QString()));
    EXPECT_FALSE(scrolls(QString(24, u'x')));
    EXPECT_TRUE(scrolls(QString(25, u'x')));
}

} // namespace orvel
