// What becomes of a playlist when every step has its voice track.
#include "tests/desk.h"

namespace orvel {

namespace {

using Operation = FaultyFileSystem::Operation;

class Finishing : public Desk {
  protected:
    Finishing() {
        disk.write(path(QStringLiteral("new/avond.mdb")), "nieuw");
        for (int row = 0; row < playlist.stepCount(); ++row) {
            playlist.setValue(row, ImportedColumn, true);
        }
        for (const char *name : {"LINK1", "LINK2"}) {
            disk.write(path(QStringLiteral("ok/%1.mp3").arg(QLatin1String(name))), "klank");
        }
        prompts.expectAsk(QStringLiteral("Playlist Klaar ?"), QStringLiteral("Playlist overzetten"), true);
    }
    [[nodiscard]] QByteArray finished() const { return disk.read(path(QStringLiteral("ok/avond.mdb"))); }
};

} // namespace

// A playlist that was finished a second time stayed in the finished folder as it had been the first time.
TEST_F(Finishing, APlaylistThatWasFinishedBeforeIsOverwrittenAndKept) {
    disk.write(path(QStringLiteral("ok/avond.mdb")), "oud");
    completion.CheckLijst();
    EXPECT_EQ(finished(), "nieuw");
    EXPECT_FALSE(exists(QStringLiteral("new/avond.mdb")));
    const auto kept = recovery.kept();
    ASSERT_EQ(kept.size(), 1U);
    EXPECT_EQ(kept.front().name, QStringLiteral("avond.mdb"));
}

// The presenter believed that the playlist was gone from the list.
TEST_F(Finishing, ADeletionThatFailsIsReported) {
    files.fail(Operation::Remove, QStringLiteral("new"), ErrorNumber::PermissionDenied);
    EXPECT_THROW(completion.CheckLijst(), RuntimeError);
    EXPECT_EQ(finished(), "nieuw");
    EXPECT_TRUE(exists(QStringLiteral("new/avond.mdb")));
}

TEST_F(Finishing, ACopyThatFailsKeepsThePlaylistToDo) {
    disk.write(path(QStringLiteral("ok/avond.mdb")), "oud");
    files.fail(Operation::Copy, QStringLiteral("ok/avond.mdb"), ErrorNumber::DiskFull);
    EXPECT_THROW(completion.CheckLijst(), RuntimeError);
    EXPECT_TRUE(exists(QStringLiteral("new/avond.mdb")));
    EXPECT_EQ(finished(), "oud");
}

TEST_F(Finishing, AServersPlaylistIsKeptInNeitherFolder) {
    settings.ServerMode = true;
    settings.VoicetrackPath = settings.OkPath;
    completion.CheckLijst();
    EXPECT_FALSE(exists(QStringLiteral("new/avond.mdb")));
    EXPECT_FALSE(exists(QStringLiteral("ok/avond.mdb")));
    EXPECT_FALSE(playlist.isOpen());
}

/// The same desk, without an answer that is waited for.
class LookingAtThePlaylist : public Desk {
  protected:
    void markAll() {
        for (int row = 0; row < playlist.stepCount(); ++row) {
            playlist.setValue(row, ImportedColumn, true);
        }
    }
};

TEST_F(LookingAtThePlaylist, TheFirstUnfinishedStepIsSelectedWithItsTimes) {
    select(3);
    completion.CheckLijst();
    EXPECT_EQ(step.row, link1);
    EXPECT_EQ(step.TalkTotalMs, 9000) << "outro 4 s before it, intro 5 s behind it";
    EXPECT_EQ(prompts.open(), 0U);
}

TEST_F(LookingAtThePlaylist, AStepThatIsSelectedAlreadyShowsItsTimesAnew) {
    Completion standing({platform, settings, playlist, step, recovery, [] {}, [](int) {}, [] {}, [] {}, [] {}, tell});
    select(link1);
    step.barRec.value = 0; // as a take leaves it
    standing.CheckLijst();
    EXPECT_EQ(step.barRec.value, 9000);
}

TEST_F(LookingAtThePlaylist, NoLeavesItOpenAndTheQuestionComesAgain) {
    markAll();
    for (const char *name : {"LINK1", "LINK2"}) {
        disk.write(path(QStringLiteral("ok/%1.mp3").arg(QLatin1String(name))), "klank");
    }
    disk.write(path(QStringLiteral("new/avond.mdb")), "nieuw");
    for (int times = 0; times < 2; ++times) {
        prompts.expectAsk(QStringLiteral("Playlist Klaar ?"), QStringLiteral("Playlist overzetten"), false);
        completion.CheckLijst();
        EXPECT_EQ(prompts.open(), 0U);
    }
    EXPECT_TRUE(playlist.isOpen());
    EXPECT_TRUE(exists(QStringLiteral("new/avond.mdb")));
}

TEST_F(LookingAtThePlaylist, LinksWithoutTheirVoiceTrackAreToldFirst) {
    markAll();
    disk.write(path(QStringLiteral("ok/LINK2.mp3")), "klank");
    prompts.expectMessage(QStringLiteral("Van deze stappen staat de voicetrack niet waar hij moet staan: LINK1.\nNeem "
                                         "ze opnieuw op voor de playlist klaar is."),
                          QStringLiteral("Playlist overzetten"), MessageIcon::Exclamation);
    prompts.expectAsk(QStringLiteral("Playlist Klaar ?"), QStringLiteral("Playlist overzetten"), false, Preset::No);
    completion.CheckLijst();
    EXPECT_EQ(prompts.open(), 0U);
}

TEST_F(LookingAtThePlaylist, StationsWithoutTheirVersionAreToldFirst) {
    markAll();
    for (const char *name : {"012LINK1", "034LINK1", "012LINK2"}) {
        disk.write(path(QStringLiteral("ok/%1.mp3").arg(QLatin1String(name))), "klank");
    }
    const std::vector<NetworkStation> network{{QStringLiteral("Algemeen"), QStringLiteral("999")},
                                              {QStringLiteral("Noord"), QStringLiteral("012")},
                                              {QStringLiteral("Oost"), QStringLiteral("034")}};
    Completion shared(
        {platform, settings, playlist, step, recovery, [] {}, [](int) {}, [] {}, [] {}, [] {}, tell, &network});
    prompts.expectMessage(QStringLiteral("Deze stappen zijn nog niet voor alle stations ingesproken: LINK2 (Oost)."),
                          QStringLiteral("Playlist overzetten"), MessageIcon::Exclamation);
    prompts.expectAsk(QStringLiteral("Playlist Klaar ?"), QStringLiteral("Playlist overzetten"), false, Preset::No);
    shared.CheckLijst();
    EXPECT_EQ(prompts.open(), 0U);
}

TEST_F(LookingAtThePlaylist, AFileThatCannotBeReadAgainIsReportedAndNothingIsAsked) {
    markAll();
    select(3);
    databases.fail(FakeDatabaseEngine::Call::Refresh, ErrorNumber::FileNotFound);
    EXPECT_THROW(completion.CheckLijst(), RuntimeError);
    EXPECT_EQ(step.row, 3);
}

TEST_F(LookingAtThePlaylist, WithoutOneNothingHappens) {
    playlist.close();
    EXPECT_NO_THROW(completion.CheckLijst());
}

// That the finished playlist of this name could not be kept was said to nobody.
TEST_F(LookingAtThePlaylist, AReplacedPlaylistThatCouldNotBeKeptIsTold) {
    markAll();
    for (const char *name : {"LINK1", "LINK2"}) {
        disk.write(path(QStringLiteral("ok/%1.mp3").arg(QLatin1String(name))), "klank");
    }
    disk.write(path(QStringLiteral("new/avond.mdb")), "nieuw");
    disk.write(path(QStringLiteral("ok/avond.mdb")), "oud");
    files.fail(FaultyFileSystem::Operation::Copy, QStringLiteral("herstel"), ErrorNumber::DiskFull);
    prompts.expectAsk(QStringLiteral("Playlist Klaar ?"), QStringLiteral("Playlist overzetten"), true);
    completion.CheckLijst();
    EXPECT_EQ(disk.read(path(QStringLiteral("ok/avond.mdb"))), "nieuw");
    ASSERT_EQ(told.size(), 1);
    EXPECT_TRUE(told.first().startsWith(QStringLiteral("Van avond.mdb is geen kopie bewaard in de map herstel")));
}

} // namespace orvel
