#include "tests/desk.h"

namespace orvel {

class FilingATake : public Desk {
  protected:
    FilingATake() {
        select(link1);
        record(500);
    }
    Take take() { return session.currentTake(); }
};

TEST_F(FilingATake, TheVoiceTrackIsThereTheStepMarkedAndNothingElseIsLeft) {
    saving.cmdSave_Click();
    EXPECT_TRUE(exists(mp3Of1));
    EXPECT_TRUE(isMarked(link1));
    EXPECT_TRUE(filesIn(QStringLiteral("temp")).isEmpty());
    EXPECT_TRUE(filesIn(QStringLiteral("journal")).isEmpty());
    EXPECT_EQ(told.last(), QStringLiteral("LINK1 is bewaard."));
    EXPECT_EQ(step.row, link2) << "on to the first unfinished slot, which has a name";
}

TEST_F(FilingATake, TheJournalSaysWhatIsUnderWay) {
    std::optional<JournalEntry> seen;
    onProgress = [&] { seen = journal.entry(QStringLiteral("LINK1")); };
    saving.cmdSave_Click();
    ASSERT_TRUE(seen);
    EXPECT_EQ(seen->phase, JournalEntry::Phase::Filing);
    EXPECT_FALSE(seen->markBefore);
    EXPECT_EQ(seen->target, path(mp3Of1));
}

TEST_F(FilingATake, ACopyThatFailsEndsTheProgramWithTheTakeInItsPlaceAndTheMarkTakenBack) {
    files.fail(FaultyFileSystem::Operation::Copy, QStringLiteral("LINK1.mp3"), ErrorNumber::DiskFull);
    try {
        saving.cmdSave_Click();
        ADD_FAILURE() << "a local voice track that cannot be written ends the program";
    } catch (const FatalError &error) {
        EXPECT_EQ(error.number(), ErrorNumber::DiskFull);
        EXPECT_TRUE(error.report().contains(QStringLiteral("De opname blijft klaarstaan voor LINK1.")));
    }
    EXPECT_FALSE(isMarked(link1));
    EXPECT_TRUE(exists(wavOf1));
    EXPECT_EQ(filesIn(QStringLiteral("temp")).size(), 1);
    EXPECT_EQ(journal.entry(QStringLiteral("LINK1"))->phase, JournalEntry::Phase::Kept);
}

TEST_F(FilingATake, ABitRateOutsideTheTableLeavesNoMark) {
    filing.setFormat({});
    EXPECT_THROW(saving.cmdSave_Click(), FatalError);
    EXPECT_FALSE(isMarked(link1));
    EXPECT_TRUE(exists(wavOf1));
}

TEST_F(FilingATake, TheVoiceTrackThatIsReplacedGoesToRecovery) {
    disk.write(path(mp3Of1), "van gisteren");
    saving.cmdSave_Click();
    const QStringList kept = filesIn(QStringLiteral("herstel")).filter(QStringLiteral("LINK1"));
    ASSERT_EQ(kept.size(), 1);
    EXPECT_EQ(disk.read(path(QStringLiteral("herstel/") + kept.first())), "van gisteren");
    EXPECT_GT(disk.fileSize(path(mp3Of1)), 1000);
}

TEST_F(FilingATake, ATakeThatVanishedLeavesItsMarkAndSaysSo) {
    ASSERT_TRUE(QFile::remove(path(wavOf1)));
    saving.cmdSave_Click();
    EXPECT_TRUE(isMarked(link1));
    EXPECT_TRUE(may().cmdSave);
    EXPECT_EQ(told.last(), QStringLiteral("Er is geen opname voor LINK1."));
}

TEST_F(FilingATake, AMarkBeforeIsTheMarkAfterwards) {
    settings.ServerMode = true;
    settings.VoicetrackPath = path(QStringLiteral("weg"));
    marks.mark(take().step, true);
    prompts.expectReport(QStringLiteral("LINK1 is niet bewaard"));
    saving.cmdSave_Click();
    EXPECT_TRUE(isMarked(link1));
}

TEST_F(FilingATake, AChooserThatIsClosedWithoutAStationTakesTheMarkBack) {
    saving.cmdMultivoice_Click();
    saving.cmdSave_Click();
    EXPECT_EQ(stationsShown, 1);
    EXPECT_TRUE(isMarked(link1));
    saving.stationsClosed();
    EXPECT_FALSE(isMarked(link1));
    EXPECT_TRUE(may().cmdSave);
}

TEST_F(FilingATake, AVersionBelongsToTheStepThatItWasAskedFor) {
    saving.cmdMultivoice_Click();
    saving.cmdSave_Click();
    select(link2);
    prompts.expectAsk(QStringLiteral("Bent U klaar met deze inteksting ?"), QStringLiteral("Multivoice inteksting"),
                      false);
    EXPECT_TRUE(saving.ExternalSave(QStringLiteral("012")));
    saving.stationsClosed();
    EXPECT_EQ(filesIn(QStringLiteral("ok")), QStringList{QStringLiteral("012LINK1.mp3")});
    EXPECT_TRUE(isMarked(link1));
    EXPECT_FALSE(isMarked(link2));
}

TEST_F(FilingATake, AnImportKeepsWhatItReplaces) {
    disk.write(path(mp3Of1), "van gisteren");
    disk.write(path(QStringLiteral("nieuw.part")), "nieuw");
    filing.place(path(QStringLiteral("nieuw.part")), take());
    EXPECT_EQ(disk.read(path(mp3Of1)), "nieuw");
    EXPECT_EQ(filesIn(QStringLiteral("herstel")).filter(QStringLiteral("LINK1")).size(), 1);
}

} // namespace orvel
