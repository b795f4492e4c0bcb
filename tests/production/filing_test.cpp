#include "tests/desk.h"

namespace orvel {

namespace {

constexpr int link2 = 3;
const QString wavOf1 = QStringLiteral("temp/LINK1.wav");
const QString mp3Of1 = QStringLiteral("ok/LINK1.mp3");

} // namespace

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

class AfterARestart : public Desk {
  protected:
    /// A program of the same station that starts when this one is gone.
    std::vector<UnfiledTake> restart(bool recorderOnly = false) {
        TakeStore later{files, places, journal, recovery, "later"};
        return Unfinished({platform, settings, places, recovery, journal, later, marks, tell}).settle(recorderOnly);
    }
    JournalEntry entry(JournalEntry::Phase phase) {
        JournalEntry made;
        made.name = QStringLiteral("LINK1");
        made.playlist = QStringLiteral("avond.mdb");
        made.stap = 2;
        made.phase = phase;
        made.target = path(mp3Of1);
        return made;
    }
    void putTake() {
        const auto writer = realAudioFiles.wavWriter();
        writer->create(path(wavOf1), 44100);
        writer->write(std::vector<std::int16_t>(44100, 1000));
        writer->close();
    }
};

TEST_F(AfterARestart, ATakeThatWasNotSavedIsOfferedForItsStep) {
    putTake();
    journal.write(entry(JournalEntry::Phase::Kept));
    const auto waiting = restart();
    ASSERT_EQ(waiting.size(), 1U);
    EXPECT_EQ(waiting.front().take.step, (StepId{QStringLiteral("avond.mdb"), 2, QStringLiteral("LINK1")}));
    EXPECT_EQ(waiting.front().why, UnfiledTake::Why::NotSaved);
    EXPECT_TRUE(restart(true).empty()) << "the plain recorder has its own takes";
    select(link1);
    EXPECT_TRUE(may().cmdSave) << "the step knows its take after a restart";
}

TEST_F(AfterARestart, ARecordingThatWasCutOffIsRepaired) {
    putTake();
    // The header of a take that was killed hides what came after it was written last.
    QFile file(path(wavOf1));
    ASSERT_TRUE(file.open(QIODevice::ReadWrite));
    ASSERT_TRUE(file.seek(4));
    ASSERT_EQ(file.write(QByteArray::fromHex("24000000")), 4);
    ASSERT_TRUE(file.seek(40));
    ASSERT_EQ(file.write(QByteArray::fromHex("00000000")), 4);
    file.close();
    journal.write(entry(JournalEntry::Phase::Recording));
    const auto waiting = restart();
    ASSERT_EQ(waiting.size(), 1U);
    EXPECT_EQ(waiting.front().why, UnfiledTake::Why::RecordingBroken);
    const auto reader = realAudioFiles.reader();
    reader->open(path(wavOf1));
    EXPECT_EQ(reader->frames(), 44100);
    EXPECT_EQ(journal.entry(QStringLiteral("LINK1"))->phase, JournalEntry::Phase::Kept);
}

TEST_F(AfterARestart, AFilingThatWasCutOffIsTakenBack) {
    // A kill while saving left a marked step without its voice track, and nobody was told.
    putTake();
    disk.write(path(QStringLiteral("temp/LINK1.mp3")), "een half bestand");
    playlist.setValue(link1, ImportedColumn, true);
    journal.write(entry(JournalEntry::Phase::Filing));
    const auto waiting = restart();
    ASSERT_EQ(waiting.size(), 1U);
    EXPECT_EQ(waiting.front().why, UnfiledTake::Why::FilingBroken);
    EXPECT_FALSE(isMarked(link1));
    EXPECT_EQ(filesIn(QStringLiteral("temp")), QStringList{QStringLiteral("LINK1.wav")});
    EXPECT_TRUE(filesIn(QStringLiteral("ok")).isEmpty());
}

TEST_F(AfterARestart, AFilingThatWasDoneStaysDoneAndIsTold) {
    disk.write(path(mp3Of1), "klank");
    playlist.setValue(link1, ImportedColumn, true);
    journal.write(entry(JournalEntry::Phase::Filing));
    EXPECT_TRUE(restart().empty());
    EXPECT_TRUE(isMarked(link1));
    EXPECT_TRUE(journal.entries().empty());
    ASSERT_EQ(told.size(), 1);
    EXPECT_TRUE(told.first().contains(QStringLiteral("LINK1 is bewaard")));
}

TEST_F(AfterARestart, AnotherProgramsTakeIsLeftAlone) {
    putTake();
    JournalEntry running = entry(JournalEntry::Phase::Recording);
    running.playlist.clear(); // of the plain recorder beside this program
    journal.write(running);
    const auto lock = disk.tryLock(places.takeLock(QStringLiteral("LINK1")), "zij");
    ASSERT_TRUE(lock);
    EXPECT_TRUE(restart(true).empty());
    EXPECT_EQ(journal.entry(QStringLiteral("LINK1")), running);
}

} // namespace orvel
