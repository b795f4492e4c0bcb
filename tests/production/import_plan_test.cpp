// What a batch of sound files would do, before it does it.
#include "production/import_plan.h"
#include "production/sound_lengths.h"
#include "tests/desk.h"

namespace orvel {

namespace {

QString seconds(double value) {
    return QLocale().toString(value, 'f', 1) + QStringLiteral(" s");
}

class Planning : public Desk {
  protected:
    Planning() {
        // The neighbours of a slot leave it 4 s of outro and 5 s of intro; the first one has no outro before it.
        databases.setTable(places.newFolder() + QStringLiteral("/uur.mdb"), QStringLiteral("Steps"), header(),
                           {slot(1, QStringLiteral("A")), music(2), slot(3, QStringLiteral("B")), music(4),
                            slot(5, QVariant()), music(6)});
        playlist.open(settings.NewPath, QStringLiteral("uur.mdb"));
    }
    std::vector<PlannedImport> plan(const QStringList &names, const std::vector<std::int32_t> &lengths) const {
        return planBatch(playlist, names, [&](std::size_t number) { return lengths.at(number); });
    }
};

} // namespace

TEST_F(Planning, EveryFileHasItsSlotAndWhatDoesNotFitIsSaid) {
    const auto lines =
        plan({QStringLiteral("1.wav"), QStringLiteral("2.mp3"), QStringLiteral("3.wav")}, {5000, 10300, 1000});
    const std::vector<PlannedImport> wanted{
        {QStringLiteral("1.wav"), seconds(5.0), QStringLiteral("Stap 1: A"), seconds(5.0), QString()},
        {QStringLiteral("2.mp3"), seconds(10.3), QStringLiteral("Stap 3: B"), seconds(9.0),
         seconds(1.3) + QStringLiteral(" te lang")},
        {QStringLiteral("3.wav"), seconds(1.0), QStringLiteral("Stap 5"), seconds(9.0),
         QStringLiteral("deze stap heeft geen naam")},
    };
    ASSERT_EQ(lines.size(), wanted.size());
    for (std::size_t i = 0; i < lines.size(); ++i) {
        EXPECT_TRUE(lines[i] == wanted[i]) << i << ' ' << lines[i].problem.toStdString() << ' '
                                           << lines[i].slot.toStdString() << ' ' << lines[i].talk.toStdString();
    }
}

TEST_F(Planning, WhatIsLeftOverIsSaidOnBothSides) {
    const auto few = plan({QStringLiteral("1.wav")}, {1000});
    ASSERT_EQ(few.size(), 3U);
    EXPECT_EQ(few[1].problem, QStringLiteral("geen bestand voor deze link"));
    EXPECT_EQ(few[1].file, QString());
    EXPECT_EQ(few[1].slot, QStringLiteral("Stap 3: B"));
    const auto many =
        plan({QStringLiteral("1"), QStringLiteral("2"), QStringLiteral("3"), QStringLiteral("4")}, {0, 0, 0, 2000});
    ASSERT_EQ(many.size(), 4U);
    EXPECT_EQ(many[3].problem, QStringLiteral("geen link voor dit bestand"));
    EXPECT_EQ(many[3].length, seconds(2.0));
    EXPECT_EQ(many[3].slot, QString());
}

TEST_F(Planning, LengthsThatAreNotKnownAreNoMisfitAndUnreadableFilesAre) {
    const auto lines =
        plan({QStringLiteral("1"), QStringLiteral("2")}, {SoundLengths::notYet, SoundLengths::unreadable});
    EXPECT_EQ(lines[0].length, QStringLiteral("..."));
    EXPECT_EQ(lines[0].problem, QString());
    EXPECT_EQ(lines[1].length, QString());
    EXPECT_EQ(lines[1].problem, QStringLiteral("niet leesbaar"));
}

TEST_F(Planning, AHundredthTooLongIsNoMisfit) {
    EXPECT_EQ(plan({QStringLiteral("1")}, {5049})[0].problem, QString()) << "it reads 5,0 s";
    EXPECT_EQ(plan({QStringLiteral("1")}, {5050})[0].problem, seconds(0.1) + QStringLiteral(" te lang"));
}

TEST_F(Planning, TheSingleImportNamesItsStep) {
    EXPECT_EQ(singleTarget(playlist, 2),
              QStringLiteral("Importeer Bestand is voor stap 3 (B), praattijd %1.").arg(seconds(9.0)));
    EXPECT_EQ(singleTarget(playlist, -1), QStringLiteral("Er is geen stap gekozen om een bestand voor te importeren."));
    playlist.close();
    EXPECT_EQ(singleTarget(playlist, 2), QStringLiteral("Er is geen stap gekozen om een bestand voor te importeren."));
}

TEST_F(Planning, WithoutAPlaylistOrFilesThereIsNothingToShow) {
    playlist.close();
    EXPECT_TRUE(plan({}, {}).empty());
}

} // namespace orvel
