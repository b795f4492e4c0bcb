// Which marked steps have no voice track where the play-out system looks for it.
#include "platform/fake/fake_database.h"
#include "platform/fake/faulty_file_system.h"
#include "platform/qt/disk_file_system.h"
#include "playlist/playlist.h"
#include "playlist/step_types.h"
#include "playlist/voice_tracks.h"
#include "settings/settings.h"
#include "tests/platform/audio/temp_folder.h"

#include <QDir>

#include <gtest/gtest.h>

namespace orvel {

namespace {

class TheVoiceTracks : public testing::Test {
  protected:
    TheVoiceTracks() {
        settings.OkPath = folder.path("ok/");
        settings.VoicetrackPath = folder.path("server");
        QDir(folder.path()).mkdir(QStringLiteral("ok"));
        const QList<Step> steps{{PresStep, "LINK1", true},  {PresStep, "link2", true}, {PresStep, "LINK3", false},
                                {TrackStep, "LINK4", true}, {PresStep, "NONE", true},  {PresStep, "", true},
                                {PresStep, nullptr, true}};
        QStringList header;
        for (const StepField &field : stepFields) {
            header << QString::fromLatin1(field.name);
        }
        QList<QVariantList> rows;
        for (const Step &step : steps) {
            QVariantList row(StepColumnCount, 0);
            row[StapColumn] = static_cast<int>(rows.size()) + 1;
            row[TypeColumn] = step.kind;
            row[AtrackColumn] = step.name == nullptr ? QVariant() : QString::fromLatin1(step.name);
            row[ImportedColumn] = step.isMarked;
            rows.append(row);
        }
        databases.setTable(folder.path("uur.mdb"), QStringLiteral("Steps"), header, rows);
        playlist.open(folder.path(), QStringLiteral("uur.mdb"));
    }
    struct Step {
        int kind;
        const char *name;
        bool isMarked;
    };
    void put(const char *name) { test::writeContent(folder.path(name), "klank"); }

    test::TempFolder folder;
    Settings settings;
    DiskFileSystem disk;
    FaultyFileSystem files{disk};
    FakeDatabaseEngine databases;
    Playlist playlist{databases, [](const QString &) {}};
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
