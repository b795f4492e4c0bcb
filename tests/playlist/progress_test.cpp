// How far a playlist is, and which slot is the next one.
#include "playlist/progress.h"
#include "playlist/step_types.h"
#include "tests/desk.h"

namespace orvel {

namespace {

class HowFar : public Desk {
  protected:
    HowFar() { playlist.close(); }
    struct Step {
        int kind;
        bool isDone;
    };
    void open(const QList<Step> &steps) {
        QList<QVariantList> rows;
        for (const Step &one : steps) {
            QVariantList row = stepRow(static_cast<int>(rows.size()) + 1, one.kind, QStringLiteral("LINK"));
            row[ImportedColumn] = one.isDone;
            rows.append(row);
        }
        databases.setTable(places.newFolder() + QStringLiteral("/uur.mdb"), QStringLiteral("Steps"), header(), rows);
        playlist.open(settings.NewPath, QStringLiteral("uur.mdb"));
    }
};

} // namespace

TEST_F(HowFar, OnlySlotsCount) {
    EXPECT_EQ(progressOf(playlist), Progress()) << "none is open";
    open({{TrackStep, true}, {PresStep, true}, {JingleStep, false}, {PresStep, false}, {PresStep, true}, {4, true}});
    EXPECT_EQ(progressOf(playlist), (Progress{3, 2}));
}

TEST_F(HowFar, IsToldInWords) {
    EXPECT_EQ(toText(Progress{5, 3}), QStringLiteral("3 van 5 links klaar"));
    EXPECT_EQ(toText(Progress{1, 0}), QStringLiteral("0 van 1 link klaar"));
    EXPECT_EQ(toText(Progress{}), QString());
}

TEST_F(HowFar, TheNextOpenSlotIsBelowAndOtherwiseAbove) {
    EXPECT_EQ(nextOpenSlot(playlist, 0), -1);
    open({{TrackStep, false}, {PresStep, false}, {PresStep, true}, {PresStep, false}, {TrackStep, false}});
    EXPECT_EQ(nextOpenSlot(playlist, -1), 1);
    EXPECT_EQ(nextOpenSlot(playlist, 0), 1);
    EXPECT_EQ(nextOpenSlot(playlist, 1), 3) << "the selected one is not the next one";
    EXPECT_EQ(nextOpenSlot(playlist, 3), 1) << "round";
    EXPECT_EQ(nextOpenSlot(playlist, 4), 1);
    open({{TrackStep, false}, {PresStep, true}});
    EXPECT_EQ(nextOpenSlot(playlist, 0), -1);
    open({{PresStep, false}});
    EXPECT_EQ(nextOpenSlot(playlist, 0), 0) << "the only one";
}

} // namespace orvel
