// Which marked steps have no voice track where the play-out system looks for it.
#include "playlist/step_types.h"
#include "playlist/voice_tracks.h"
#include "tests/desk.h"

namespace orvel {

namespace {

class TheVoiceTracks : public Desk {
  protected:
    TheVoiceTracks() {
        settings.OkPath = places.okFolder();
        settings.VoicetrackPath = path(QStringLiteral("server"));
        QList<QVariantList> rows{slot(1, QStringLiteral("LINK1")),
                                 slot(2, QStringLiteral("link2")),
                                 slot(3, QStringLiteral("LINK3")),
                                 stepRow(4, TrackStep, QStringLiteral("LINK4")),
                                 slot(5, QStringLiteral("NONE")),
                                 slot(6, QStringLiteral("")),
                                 slot(7, QVariant())};
        for (QVariantList &row : rows) {
            row[ImportedColumn] = row.at(StapColumn) != 3;
        }
        databases.setTable(places.newFolder() + QStringLiteral("/uur.mdb"), QStringLiteral("Steps"), header(), rows);
        playlist.open(settings.NewPath, QStringLiteral("uur.mdb"));
    }
    void put(const char *name) { disk.write(path(QString::fromLatin1(name)), "klank"); }

    VoiceTracks tracks{files, settings};
};

} // namespace

TEST_F(TheVoiceTracks, AreMissingWhereAMarkedSlotHasNoFileOfItsName) {
    put("ok/Link1.MP3");
    put("ok/anders.mp3");
    EXPECT_EQ(tracks.missing(playlist), QSet<int>{1}) << "only marked slots that have a name count";
    put("ok/LINK2.mp3");
    EXPECT_TRUE(tracks.missing(playlist).isEmpty());
}

TEST_F(TheVoiceTracks, AreLookedForOnTheServerWhereThereIsOne) {
    put("ok/LINK1.mp3");
    QDir(folder.path()).mkdir(QStringLiteral("server"));
    settings.ServerMode = true;
    EXPECT_EQ(tracks.folder(), settings.VoicetrackPath);
    EXPECT_EQ(tracks.missing(playlist), (QSet<int>{0, 1}));
}

TEST_F(TheVoiceTracks, AFolderThatDoesNotAnswerTellsNothingOfAnyStep) {
    files.fail(FaultyFileSystem::Operation::List, QStringLiteral("ok"), ErrorNumber::DiskNotReady);
    EXPECT_TRUE(tracks.missing(playlist).isEmpty());
    settings.ServerMode = true;
    EXPECT_TRUE(tracks.missing(playlist).isEmpty()) << "nor one that is not there";
}

TEST_F(TheVoiceTracks, AServersFolderIsWantedOnlyWhereOneIsUsed) {
    EXPECT_TRUE(tracks.isServerThere());
    settings.ServerMode = true;
    EXPECT_FALSE(tracks.isServerThere());
    QDir(folder.path()).mkdir(QStringLiteral("server"));
    EXPECT_TRUE(tracks.isServerThere());
}

namespace {

/// The same, at a station of a network of three that share their playlists; one has no code of its own.
class TheStationsVersions : public TheVoiceTracks {
  protected:
    [[nodiscard]] StationCount countOf(int row) const { return shared.look(playlist).stations.value(row); }

    std::vector<NetworkStation> network{{QStringLiteral("Algemeen"), QStringLiteral("999")},
                                        {QStringLiteral("Noord"), QStringLiteral("012")},
                                        {QStringLiteral("Zonder"), QString()},
                                        {QStringLiteral("Oost"), QStringLiteral("034")},
                                        {QStringLiteral("Zuid"), QStringLiteral("056")}};
    VoiceTracks shared{files, settings, &network};
};

} // namespace

TEST_F(TheStationsVersions, AreCountedAndWhoHasNoneIsNamed) {
    EXPECT_EQ(countOf(0), StationCount()) << "nobody has one of their own";
    put("ok/034link1.MP3");
    EXPECT_EQ(countOf(0), (StationCount{1, 3, {QStringLiteral("Noord"), QStringLiteral("Zuid")}}));
    put("ok/012LINK1.mp3");
    EXPECT_EQ(countOf(0), (StationCount{2, 3, {QStringLiteral("Zuid")}}));
    EXPECT_EQ(shared.lacking(QStringLiteral("LINK1")), QStringList{QStringLiteral("Zuid")});
    EXPECT_EQ(shared.lacking(QStringLiteral("LINK3")), QStringList());
    put("ok/056LINK1.mp3");
    EXPECT_EQ(countOf(0), (StationCount{3, 3, {}}));
}

TEST_F(TheStationsVersions, TheGeneralOneServesThoseWithoutTheirOwn) {
    put("ok/LINK1.mp3");
    EXPECT_EQ(countOf(0), StationCount()) << "a link like any other";
    put("ok/012LINK1.mp3");
    EXPECT_EQ(countOf(0), (StationCount{1, 3, {}}));
}

// A link that was voiced for every station was called missing, because there was none without a code.
TEST_F(TheStationsVersions, AStepThatIsVoicedPerStationIsNotMissing) {
    EXPECT_TRUE(shared.missing(playlist).contains(0));
    put("ok/012LINK1.mp3");
    EXPECT_FALSE(shared.missing(playlist).contains(0));
    EXPECT_TRUE(tracks.missing(playlist).contains(0)) << "without a network its name is its name";
}

TEST_F(TheStationsVersions, AreListedWithTheirFilesInTheListsOrder) {
    put("ok/012LINK1.mp3");
    put("ok/LINK1.mp3");
    const std::vector<StationVersion> versions = shared.versions(QStringLiteral("LINK1"));
    ASSERT_EQ(versions.size(), 5U);
    EXPECT_TRUE(versions[0].isThere);
    EXPECT_EQ(versions[0].file, path(QStringLiteral("ok/LINK1.mp3")));
    EXPECT_TRUE(versions[1].isThere);
    EXPECT_EQ(versions[1].station.name, QStringLiteral("Noord"));
    EXPECT_EQ(versions[1].file, path(QStringLiteral("ok/012LINK1.mp3")));
    EXPECT_FALSE(versions[2].isThere) << "without a code none can be saved";
    EXPECT_FALSE(versions[3].isThere);
    EXPECT_TRUE(tracks.versions(QStringLiteral("LINK1")).empty());
}

TEST_F(TheStationsVersions, AServerThatDoesNotAnswerTellsNothing) {
    settings.ServerMode = true;
    EXPECT_TRUE(shared.versions(QStringLiteral("LINK1")).empty());
    EXPECT_TRUE(shared.lacking(QStringLiteral("LINK1")).isEmpty());
    EXPECT_TRUE(shared.look(playlist).stations.isEmpty());
}

} // namespace orvel
