// The times around a step, and which steps can be previewed.
#include "platform/fake/fake_database.h"
#include "platform/runtime_error.h"
#include "playlist/current_step.h"
#include "playlist/playlist.h"
#include "playlist/step_types.h"

#include <gtest/gtest.h>

namespace orvel {

namespace {

struct Step {
    int stap;
    int type;
    int intro;
    int outtro;
};

class Playlists : public testing::Test {
  protected:
    void open(const QString &name, const QList<Step> &steps) {
        QStringList header;
        for (const StepField &field : stepFields) {
            header << QString::fromLatin1(field.name);
        }
        QList<QVariantList> rows;
        for (const Step &shown : steps) {
            QVariantList row(StepColumnCount, QVariant(0));
            row[StapColumn] = shown.stap;
            row[TypeColumn] = shown.type;
            row[IntroColumn] = shown.intro;
            row[OuttroColumn] = shown.outtro;
            row[TrackidColumn] = 700 + shown.stap;
            row[AtrackColumn] = QStringLiteral("NONE");
            rows << row;
        }
        databases.setTable(QStringLiteral("/new/") + name, QStringLiteral("Steps"), header, rows);
        playlist.open(QStringLiteral("/new"), name);
    }
    [[nodiscard]] ErrorNumber errorOfTimes(int row) {
        try {
            showTimes(playlist, row, step);
        } catch (const RuntimeError &error) {
            return error.number();
        }
        return ErrorNumber{};
    }

    FakeDatabaseEngine databases;
    Playlist playlist{databases, [](const QString &) {}};
    CurrentStep step;
};

class PlaylistTimes : public Playlists {};
class ChosenForPreview : public Playlists {};

} // namespace

// The tables kept what the playlist before had put there: a link at the end got an intro that no step had.
TEST_F(PlaylistTimes, NothingOfThePlaylistBeforeIsLeft) {
    open(QStringLiteral("lang.mdb"), {{1, 1, 100, 200}, {2, 2, 0, 0}, {3, 1, 300, 400}});
    showTimes(playlist, 1, step);
    EXPECT_EQ(step.PrevOutroMs, 200);
    EXPECT_EQ(step.NextIntroMs, 300);
    EXPECT_EQ(step.TalkTotalMs, 500);
    open(QStringLiteral("kort.mdb"), {{2, 2, 0, 0}});
    EXPECT_EQ(playlist.intro(3), 0);
    EXPECT_EQ(playlist.outtro(3), 0);
    open(QStringLiteral("leeg.mdb"), {});
    EXPECT_EQ(playlist.intro(1), 0);
    EXPECT_EQ(playlist.outtro(1), 0);
}

TEST_F(PlaylistTimes, AStepZeroHasNoTimes) {
    open(QStringLiteral("nul.mdb"), {{0, 2, 1, 1}, {1, 2, 50, 60}, {150, 2, 7, 8}});
    EXPECT_EQ(errorOfTimes(0), ErrorNumber::SubscriptOutOfRange) << "nothing stands before the table";
    EXPECT_EQ(errorOfTimes(2), ErrorNumber::SubscriptOutOfRange) << "nothing stands behind it";
    EXPECT_EQ(errorOfTimes(1), ErrorNumber{});
    EXPECT_EQ(step.PrevOutroMs, 0) << "before step 1 there is none";
}

TEST_F(ChosenForPreview, TracksAndJinglesOnlyAndNotDuringATake) {
    open(QStringLiteral("lijst.mdb"),
         {{1, TrackStep, 0, 0}, {2, PresStep, 0, 0}, {3, JingleStep, 0, 0}, {4, 20, 0, 0}});
    EXPECT_FALSE(choosePreview(playlist, 0, step)) << "before a step was selected";
    step.previewAllowed = true;
    EXPECT_TRUE(choosePreview(playlist, 0, step));
    EXPECT_EQ(step.PreviewKind, TrackStep);
    EXPECT_EQ(step.PreviewTrackId, 701);
    EXPECT_FALSE(choosePreview(playlist, 1, step));
    EXPECT_FALSE(choosePreview(playlist, 3, step));
    step.PlaylistTakeRunning = true;
    EXPECT_FALSE(choosePreview(playlist, 2, step));
    EXPECT_EQ(step.PreviewTrackId, 701);
    step.PlaylistTakeRunning = false;
    EXPECT_TRUE(choosePreview(playlist, 2, step));
    EXPECT_EQ(step.PreviewKind, JingleStep);
    EXPECT_EQ(step.PreviewTrackId, 703);
}

} // namespace orvel
