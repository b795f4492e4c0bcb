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

} // namespace orvel
