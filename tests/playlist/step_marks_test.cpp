#include "platform/jet/jet_engine.h"
#include "platform/runtime_error.h"
#include "playlist/playlist.h"
#include "playlist/step_marks.h"
#include "playlist/voice_tracks.h"
#include "settings/settings.h"
#include "tests/test_platform.h"

#include <QDir>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace orvel {

namespace {

class Marks : public testing::Test, protected TestPlatform<JetEngine> {
  protected:
    Marks() {
        const QString source = QStringLiteral(ORVEL_SOURCE_DIR "/tests/data/databases/all-imported.mdb");
        for (const char *name : {"een.mdb", "twee.mdb"}) {
            const QString target = folder.filePath(QString::fromLatin1(name));
            EXPECT_TRUE(QFile::copy(source, target));
            QFile::setPermissions(target, QFile::ReadOwner | QFile::WriteOwner);
        }
        open.open(folder.path(), QStringLiteral("een.mdb"));
        settings.OkPath = folder.path();
    }

    [[nodiscard]] StepId step(int row, const QString &playlist) const {
        return {playlist, open.value(row, StapColumn).toInt(), open.value(row, AtrackColumn).toString()};
    }
    [[nodiscard]] bool inFile(const QString &playlist, int row) {
        Playlist again(databases, [](const QString &) {});
        again.open(folder.path(), playlist);
        return again.value(row, ImportedColumn).toBool();
    }

    QTemporaryDir folder;
    QString newPath = folder.path();
    Playlist open{databases, [](const QString &) {}};
    QList<int> changed;
    StepMarks marks{open, databases, newPath, [this](int row) { changed << row; }};
    Settings settings;
    static constexpr int slot = 1;
};

} // namespace

TEST_F(Marks, AStepOfTheOpenPlaylistIsMarkedThereAndTold) {
    EXPECT_TRUE(marks.mark(step(slot, QStringLiteral("een.mdb")), false));
    EXPECT_FALSE(open.value(slot, ImportedColumn).toBool());
    EXPECT_EQ(changed, QList<int>{slot});
    EXPECT_FALSE(marks.isMarked(step(slot, QStringLiteral("een.mdb"))));
}

TEST_F(Marks, AStepOfAnotherPlaylistIsMarkedInItsFile) {
    EXPECT_TRUE(marks.mark(step(slot, QStringLiteral("twee.mdb")), false));
    EXPECT_TRUE(open.value(slot, ImportedColumn).toBool());
    EXPECT_FALSE(inFile(QStringLiteral("twee.mdb"), slot));
    EXPECT_TRUE(changed.isEmpty());
}

TEST_F(Marks, AStepThatIsGoneIsNotMarked) {
    StepId gone = step(slot, QStringLiteral("een.mdb"));
    gone.name += u'x';
    EXPECT_FALSE(marks.mark(gone, false));
    gone.playlist = QStringLiteral("twee.mdb");
    EXPECT_FALSE(marks.mark(gone, false));
}

TEST_F(Marks, WhatAnotherProgramChangedBesideItIsReadFirst) {
    // Any byte that changed on the step's page refused recording and saving until the playlist was opened again.
    Playlist other(databases, [](const QString &) {});
    other.open(folder.path(), QStringLiteral("een.mdb"));
    other.setValue(0, ImportedColumn, false);
    EXPECT_TRUE(marks.mark(step(slot, QStringLiteral("een.mdb")), false));
    EXPECT_FALSE(inFile(QStringLiteral("een.mdb"), slot));
    EXPECT_FALSE(open.value(0, ImportedColumn).toBool()) << "the other program's value is shown";
}

TEST_F(Marks, AStepThatAnotherProgramMovedIsMarkedWhereItIsNow) {
    Playlist other(databases, [](const QString &) {});
    other.open(folder.path(), QStringLiteral("een.mdb"));
    const StepId moved = step(slot, QStringLiteral("een.mdb"));
    other.setValue(0, StapColumn, 140); // to the end: the slot is the first one now
    EXPECT_TRUE(marks.mark(moved, false));
    EXPECT_EQ(marks.rowOf(moved), 0);
    EXPECT_FALSE(open.value(0, ImportedColumn).toBool());
    EXPECT_TRUE(open.value(slot, ImportedColumn).toBool()) << "what stands in its old place is as it was";
    EXPECT_EQ(changed, QList<int>{0});
}

TEST_F(Marks, AValueThatAnotherProgramChangedItselfIsShownAndSaid) {
    Playlist other(databases, [](const QString &) {});
    other.open(folder.path(), QStringLiteral("een.mdb"));
    other.setValue(slot, ImportedColumn, false);
    try {
        marks.mark(step(slot, QStringLiteral("een.mdb")), true);
        ADD_FAILURE() << "the presenter must look first";
    } catch (const RuntimeError &error) {
        EXPECT_EQ(error.number(), ErrorNumber::DatabaseLocked);
        EXPECT_TRUE(error.report().contains(QStringLiteral("intussen gewijzigd")));
    }
    EXPECT_FALSE(open.value(slot, ImportedColumn).toBool());
    EXPECT_EQ(changed, QList<int>{slot}) << "the view shows the new value";
    EXPECT_TRUE(marks.mark(step(slot, QStringLiteral("een.mdb")), true)) << "now it has been seen";
}

TEST_F(Marks, AMarkedSlotWithoutItsVoiceTrackIsMissing) {
    const VoiceTracks tracks(files, settings);
    const QSet<int> all = tracks.missing(open);
    ASSERT_FALSE(all.isEmpty());
    const int row = *all.begin();
    disk.write(folder.filePath(open.value(row, AtrackColumn).toString().toUpper() + QStringLiteral(".MP3")), "klank");
    EXPECT_FALSE(tracks.missing(open).contains(row)) << "names match without regard to case";
    open.setValue(row, ImportedColumn, false);
    EXPECT_FALSE(tracks.missing(open).contains(row));
    settings.OkPath = folder.filePath(QStringLiteral("weg"));
    EXPECT_TRUE(tracks.missing(open).isEmpty()) << "a folder that is not there tells nothing";
}

} // namespace orvel
