// What the last run left behind: found, repaired, taken back, offered.
#include "tests/desk.h"

namespace orvel {

namespace {

using Operation = FaultyFileSystem::Operation;
using Phase = JournalEntry::Phase;
using Why = UnfiledTake::Why;

} // namespace

class AfterARestart : public Desk {
  protected:
    /// A program of the same station that starts when this one is gone.
    std::vector<UnfiledTake> restart(bool recorderOnly = false) {
        TakeStore later{files, places, journal, recovery, "later"};
        return Unfinished({platform, settings, places, recovery, journal, later, marks, tell}).settle(recorderOnly);
    }
    static JournalEntry recorderEntry() {
        JournalEntry made;
        made.name = QStringLiteral("memo");
        made.phase = JournalEntry::Phase::Kept;
        return made;
    }
    [[nodiscard]] std::optional<JournalEntry::Phase> phase() const {
        const auto found = journal.entry(QStringLiteral("LINK1"));
        return found ? std::optional(found->phase) : std::nullopt;
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
    void putTake(const QString &name = QStringLiteral("LINK1")) {
        const auto writer = realAudioFiles.wavWriter();
        writer->create(places.take(name), 44100);
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

TEST_F(AfterARestart, WithoutAJournalThereIsNothingToDo) {
    putTake();
    EXPECT_TRUE(restart().empty()) << "nobody knows whose it is";
    EXPECT_TRUE(exists(wavOf1));
    ASSERT_TRUE(QDir(path(QStringLiteral("journal"))).removeRecursively());
    EXPECT_TRUE(restart().empty());
}

TEST_F(AfterARestart, WhatIsOfferedTellsWhereAndWhen) {
    putTake();
    JournalEntry kept = entry(Phase::Kept);
    kept.begun = QStringLiteral("2026-11-21T20:00:00");
    journal.write(kept);
    const auto waiting = restart();
    ASSERT_EQ(waiting.size(), 1U);
    EXPECT_EQ(waiting.front().wav, path(wavOf1));
    EXPECT_EQ(waiting.front().begun, kept.begun);
    EXPECT_EQ(waiting.front().take.kind, Take::Kind::Playlist);
    EXPECT_EQ(journal.entry(QStringLiteral("LINK1")), kept) << "it is offered again after the next start";
    EXPECT_EQ(restart().size(), 1U);
}

TEST_F(AfterARestart, ThePlainRecorderHasItsOwnTakes) {
    putTake();
    putTake(QStringLiteral("memo"));
    journal.write(entry(Phase::Kept));
    journal.write(recorderEntry());
    const auto ofRecorder = restart(true);
    ASSERT_EQ(ofRecorder.size(), 1U);
    EXPECT_EQ(ofRecorder.front().take.name(), QStringLiteral("memo"));
    EXPECT_EQ(ofRecorder.front().take.kind, Take::Kind::Recorder);
    const auto ofPlaylists = restart();
    ASSERT_EQ(ofPlaylists.size(), 1U);
    EXPECT_EQ(ofPlaylists.front().take.name(), QStringLiteral("LINK1"));
}

TEST_F(AfterARestart, ATakeThatIsGoneIsForgotten) {
    journal.write(entry(Phase::Kept));
    EXPECT_TRUE(restart().empty());
    EXPECT_TRUE(filesIn(QStringLiteral("journal")).isEmpty());
    EXPECT_TRUE(told.isEmpty());
}

TEST_F(AfterARestart, ARecordingWithoutSoundIsForgotten) {
    const auto writer = realAudioFiles.wavWriter();
    writer->create(path(wavOf1), 44100);
    writer->close();
    journal.write(entry(Phase::Recording));
    EXPECT_TRUE(restart().empty());
    EXPECT_FALSE(phase());
}

TEST_F(AfterARestart, WhatAStageLeftGoesToRecovery) {
    putTake();
    disk.write(places.stageOutput(QStringLiteral("LINK1")), "half");
    disk.write(places.rawTake(QStringLiteral("LINK1")), "ruw");
    journal.write(entry(Phase::Recording));
    const auto waiting = restart();
    ASSERT_EQ(waiting.size(), 1U);
    EXPECT_EQ(waiting.front().why, Why::RecordingBroken);
    EXPECT_TRUE(filesIn(QStringLiteral("temp2")).isEmpty());
    QList<QByteArray> kept;
    for (const KeptFile &file : recovery.kept()) {
        kept << disk.read(file.path);
    }
    EXPECT_EQ(kept.size(), 2);
    EXPECT_TRUE(kept.contains("half") && kept.contains("ruw"));
    EXPECT_EQ(phase(), Phase::Kept);
}

TEST_F(AfterARestart, AFilingThatWasCutOffIsTakenBack) {
    // A kill while saving left a marked step without its voice track, and nobody was told.
    putTake();
    disk.write(places.encoded(QStringLiteral("LINK1")), "half");
    playlist.setValue(link1, ImportedColumn, true);
    journal.write(entry(Phase::Filing));
    const auto waiting = restart();
    ASSERT_EQ(waiting.size(), 1U);
    EXPECT_EQ(waiting.front().why, Why::FilingBroken);
    EXPECT_FALSE(isMarked(link1));
    EXPECT_EQ(filesIn(QStringLiteral("temp")), QStringList{QStringLiteral("LINK1.wav")});
    EXPECT_TRUE(filesIn(QStringLiteral("ok")).isEmpty());
    EXPECT_EQ(phase(), Phase::Kept);
    EXPECT_TRUE(told.isEmpty());
}

TEST_F(AfterARestart, AMarkFromBeforeTheFilingStays) {
    putTake();
    playlist.setValue(link1, ImportedColumn, true);
    JournalEntry filing_ = entry(Phase::Filing);
    filing_.markBefore = true;
    journal.write(filing_);
    EXPECT_EQ(restart().size(), 1U);
    EXPECT_TRUE(isMarked(link1));
}

TEST_F(AfterARestart, AVersionsHalfMp3GoesToo) {
    putTake();
    disk.write(places.encoded(QStringLiteral("012LINK1")), "half");
    JournalEntry filing_ = entry(Phase::Filing);
    filing_.target = places.filed(QStringLiteral("012LINK1"));
    journal.write(filing_);
    EXPECT_EQ(restart().size(), 1U);
    EXPECT_EQ(filesIn(QStringLiteral("temp")), QStringList{QStringLiteral("LINK1.wav")});
}

TEST_F(AfterARestart, AFilingWithNeitherTakeNorVoiceTrackTellsNothing) {
    journal.write(entry(Phase::Filing));
    EXPECT_TRUE(restart().empty());
    EXPECT_TRUE(told.isEmpty());
    EXPECT_FALSE(phase());
}

// The playlist was in use at the start: the mark of a link that had no voice track was never taken back.
TEST_F(AfterARestart, AMarkThatCannotBeTakenBackIsTakenBackAtTheNextStart) {
    putTake();
    playlist.setValue(link1, ImportedColumn, true);
    journal.write(entry(Phase::Filing));
    databases.fail(FakeDatabaseEngine::Call::Update, ErrorNumber::PermissionDenied);
    EXPECT_EQ(restart().size(), 1U) << "the take is offered all the same";
    EXPECT_TRUE(isMarked(link1));
    databases.clearFailure(FakeDatabaseEngine::Call::Update);
    EXPECT_EQ(restart().size(), 1U);
    EXPECT_FALSE(isMarked(link1));
    EXPECT_EQ(phase(), Phase::Kept);
}

TEST_F(AfterARestart, ATakeOfAPlaylistThatIsGoneIsOffered) {
    putTake();
    JournalEntry gone = entry(Phase::Filing);
    gone.playlist = QStringLiteral("weg.mdb");
    journal.write(gone);
    const auto waiting = restart();
    ASSERT_EQ(waiting.size(), 1U);
    EXPECT_EQ(waiting.front().take.step.playlist, QStringLiteral("weg.mdb"));
    EXPECT_EQ(phase(), Phase::Kept) << "there is no mark to take back";
}

TEST_F(AfterARestart, WhatTheDiskRefusesIsLeftForTheNextStartAndHoldsNobodyUp) {
    putTake();
    putTake(QStringLiteral("LINK2"));
    disk.write(places.rawTake(QStringLiteral("LINK1")), "ruw");
    journal.write(entry(Phase::Recording));
    JournalEntry other = entry(Phase::Kept);
    other.name = QStringLiteral("LINK2");
    other.stap = 4;
    journal.write(other);
    files.fail(Operation::Move, QStringLiteral("herstel"), ErrorNumber::DiskFull);
    const auto waiting = restart();
    ASSERT_EQ(waiting.size(), 1U);
    EXPECT_EQ(waiting.front().take.name(), QStringLiteral("LINK2"));
    EXPECT_EQ(phase(), Phase::Recording);
    EXPECT_TRUE(exists(QStringLiteral("temp2/LINK1.ruw.wav")));
    files.heal();
    EXPECT_EQ(restart().size(), 2U);
}

TEST_F(AfterARestart, AJournalThatCannotBeWrittenStillOffersTheTake) {
    putTake();
    journal.write(entry(Phase::Recording));
    files.fail(Operation::Write, QStringLiteral("journal"), ErrorNumber::DiskFull);
    EXPECT_EQ(restart().size(), 1U);
    EXPECT_EQ(phase(), Phase::Recording);
}

TEST_F(AfterARestart, WhatIsOfferedIsReservedForThisProgram) {
    putTake();
    journal.write(entry(Phase::Kept));
    TakeStore mine{files, places, journal, recovery, "ik"};
    ASSERT_EQ(Unfinished({platform, settings, places, recovery, journal, mine, marks, tell}).settle(false).size(), 1U);
    EXPECT_FALSE(takes.reserve(QStringLiteral("LINK1")));
    EXPECT_TRUE(restart().empty()) << "a second program does not offer it once more";
}

} // namespace orvel
