#include "tests/desk.h"

namespace orvel {

TEST_F(Desk, ATakeRunsThroughItsStates) {
    select(link1);
    EXPECT_EQ(session.state(), SessionState::Idle);
    session.cmdRec_Click();
    EXPECT_EQ(session.state(), SessionState::CountingDown);
    EXPECT_EQ(session.caption(), QStringLiteral("START OPNAME"));
    timers.advance(3000);
    EXPECT_EQ(session.state(), SessionState::Recording);
    EXPECT_EQ(session.caption(), QStringLiteral("STOP OPNAME"));
    SessionState whileProcessing = SessionState::Idle;
    process = [&](const QString &) { whileProcessing = session.state(); };
    sound.deliver(44100);
    session.cmdRec_Click();
    EXPECT_EQ(whileProcessing, SessionState::Processing);
    EXPECT_EQ(session.state(), SessionState::Idle);
    EXPECT_EQ(session.caption(), QStringLiteral("START OPNAME"));
    session.cmdRec_Click();
    timers.advance(1000);
    session.cmdRec_Click();
    EXPECT_EQ(session.CountdownLeft, 3) << "a click during the count-down begins it anew";
}

TEST_F(Desk, TheCountDownOverflowsSixteenBits) {
    select(link1);
    settings.Countdown = 32767;
    EXPECT_THROW(session.cmdRec_Click(), RuntimeError);
    EXPECT_EQ(session.state(), SessionState::Idle);
}

TEST_F(Desk, StartOpnameCountsWithoutTheRecorder) {
    select(link1);
    session.StartOpname();
    timers.advance(1230);
    EXPECT_EQ(session.ElapsedMs(), 1230);
    EXPECT_EQ(session.caption(), QStringLiteral("STOP OPNAME"));
    EXPECT_FALSE(sound.recorder().isRecording());
}

TEST_F(Desk, TheTakesOwnStepIsMarkedWhateverIsSelectedMeanwhile) {
    // The take was whatever row was selected: another step was marked, and another step's MP3 overwritten.
    select(link1);
    record(500);
    select(link2);
    EXPECT_FALSE(may().cmdSave) << "this step has no take";
    EXPECT_FALSE(may().cmdPlay);
    select(0);
    EXPECT_FALSE(may().cmdSave);
    select(link1);
    EXPECT_TRUE(may().cmdSave) << "its own take waits";
    EXPECT_TRUE(may().cmdPlay);
    saving.cmdSave_Click();
    EXPECT_TRUE(isMarked(link1));
    EXPECT_FALSE(isMarked(link2));
    EXPECT_EQ(filesIn(QStringLiteral("ok")), QStringList{QStringLiteral("LINK1.mp3")});
}

TEST_F(Desk, AStepWithoutANameLeavesNothingOfTheStepBefore) {
    // A step whose name was null kept the name before it: the next recording overwrote another step's voice track.
    select(link1);
    record(300);
    select(4);
    EXPECT_FALSE(step.StepSelected);
    EXPECT_EQ(step.VoiceTrackName, QStringLiteral("NONE"));
    EXPECT_EQ(session.fileName(), QStringLiteral("geen bestand"));
    EXPECT_FALSE(may().cmdRec);
    EXPECT_FALSE(may().cmdImport);
    EXPECT_FALSE(may().cmdSave);
    session.cmdRec_Click();
    EXPECT_EQ(session.state(), SessionState::Idle);
}

TEST_F(Desk, AfterTheStopTheTakeCanBeHeardAndSavedWhereverTheGridStood) {
    // The bar jumped to full blue and listening was impossible when the grid had been moved.
    select(link1);
    startTake();
    sound.deliver(44100);
    timers.advance(1000);
    const TalkBar bar = step.barRec;
    shownRow = link2; // the grid's own handlers sleep
    session.cmdRec_Click();
    EXPECT_EQ(shownRow, link1);
    EXPECT_TRUE(may().cmdPlay);
    EXPECT_TRUE(may().cmdSave);
    EXPECT_EQ(step.barRec, bar);
}

TEST_F(Desk, AStartThatFailsLeavesTheStepAsItWas) {
    select(link1);
    record(300);
    saving.cmdSave_Click();
    select(link1);
    ASSERT_TRUE(isMarked(link1));
    sound.failNextStart(ErrorNumber::DeviceError);
    session.cmdRec_Click();
    EXPECT_FALSE(isMarked(link1));
    EXPECT_THROW(timers.advance(3000), RuntimeError);
    EXPECT_TRUE(isMarked(link1)) << "its voice track is still there";
    EXPECT_FALSE(may().cmdSave) << "there is no take";
    EXPECT_TRUE(may().cmdPlay);
    EXPECT_TRUE(journal.entries().empty());
}

TEST_F(Desk, ACardThatBringsNothingMakesNoTakeAndTheEarlierOneComesBack) {
    select(link1);
    record(500);
    const QByteArray before = disk.read(places.take(QStringLiteral("LINK1")));
    const auto entry = journal.entry(QStringLiteral("LINK1"));
    record(0);
    EXPECT_EQ(disk.read(places.take(QStringLiteral("LINK1"))), before);
    EXPECT_EQ(journal.entry(QStringLiteral("LINK1")), entry);
    EXPECT_TRUE(may().cmdSave);
}

TEST_F(Desk, AFullDiskAtTheStartLeavesTheEarlierTakeAndWhatIsKnownOfIt) {
    select(link1);
    record(500);
    const QByteArray before = disk.read(places.take(QStringLiteral("LINK1")));
    const auto entry = journal.entry(QStringLiteral("LINK1"));
    session.cmdRec_Click();
    timers.advance(2000);
    files.fail(FaultyFileSystem::Operation::Write, QStringLiteral(".take"), ErrorNumber::DiskFull);
    EXPECT_THROW(timers.advance(1000), RuntimeError);
    EXPECT_EQ(session.state(), SessionState::Idle);
    EXPECT_EQ(disk.read(places.take(QStringLiteral("LINK1"))), before);
    EXPECT_EQ(journal.entry(QStringLiteral("LINK1")), entry);
    EXPECT_TRUE(may().cmdSave);
}

TEST_F(Desk, ANameThatAnotherProgramUsesIsRefused) {
    // Two programs on one station lost takes silently.
    const auto other = disk.tryLock(places.takeLock(QStringLiteral("LINK1")), "zij");
    ASSERT_TRUE(other);
    select(link1);
    prompts.expectReport(QStringLiteral("Een ander ORVEL-venster gebruikt de naam LINK1."));
    session.cmdRec_Click();
    EXPECT_EQ(session.state(), SessionState::Idle);
    select(link2);
    session.cmdRec_Click();
    EXPECT_EQ(session.state(), SessionState::CountingDown);
}

TEST_F(Desk, ANameThatIsReplacedDuringTheCountDownIsFreeAgain) {
    // It stayed taken until the end of the program.
    session.mode.RecorderOnly = true;
    const auto isFree = [this](const char *name) {
        return disk.tryLock(places.takeLock(QString::fromLatin1(name)), "zij") != nullptr;
    };
    for (const char *name : {"eerst", "eerst", "dan"}) {
        prompts.expectInput(QStringLiteral("Geef een naam voor dit bestand (ZONDER EXTENSIE)"),
                            QStringLiteral("Bestandsnaam"), QString::fromLatin1(name));
        session.cmdRec_Click();
        EXPECT_FALSE(isFree(name));
    }
    EXPECT_TRUE(isFree("eerst"));
    timers.advance(6000);
    ASSERT_EQ(session.state(), SessionState::Recording);
    sound.deliver(13230);
    timers.advance(300);
    session.cmdRec_Click();
    prompts.expectInput(QStringLiteral("Geef een naam voor dit bestand (ZONDER EXTENSIE)"),
                        QStringLiteral("Bestandsnaam"), QStringLiteral("later"));
    session.cmdRec_Click();
    EXPECT_FALSE(isFree("dan")) << "there is a take of that name";
}

TEST_F(Desk, ACountDownThatIsCalledOffLeavesEverythingAsItWas) {
    select(link1);
    record(500);
    const QByteArray before = disk.read(places.take(QStringLiteral("LINK1")));
    const auto entry = journal.entry(QStringLiteral("LINK1"));
    playlist.setValue(link1, ImportedColumn, true);
    select(link2);
    select(link1);
    settings.Mute = true;
    session.cmdRec_Click();
    ASSERT_EQ(session.state(), SessionState::CountingDown);
    ASSERT_FALSE(isMarked(link1));
    timers.advance(1000);
    session.cancelCountDown();
    EXPECT_EQ(session.state(), SessionState::Idle);
    EXPECT_TRUE(isMarked(link1));
    EXPECT_EQ(disk.read(places.take(QStringLiteral("LINK1"))), before);
    EXPECT_EQ(journal.entry(QStringLiteral("LINK1")), entry);
    EXPECT_TRUE(may().cmdSave) << "the earlier take is still there";
    EXPECT_FALSE(step.PlaylistTakeRunning);
    EXPECT_EQ(session.CountdownLeft, 0);
    EXPECT_EQ(sound.muteLog(), (std::vector<bool>{true, false}));
    timers.advance(10000);
    EXPECT_EQ(session.state(), SessionState::Idle);
}

TEST_F(Desk, OnlyACountDownCanBeCalledOff) {
    select(link1);
    session.cancelCountDown();
    EXPECT_EQ(session.state(), SessionState::Idle);
    startTake();
    session.cancelCountDown();
    EXPECT_EQ(session.state(), SessionState::Recording);
}

TEST_F(Desk, ATakeOfAnotherPlaylistIsNotThisStepsTake) {
    select(link1);
    record(300);
    JournalEntry entry = *journal.entry(QStringLiteral("LINK1"));
    entry.playlist = QStringLiteral("ochtend.mdb");
    journal.write(entry);
    select(link2);
    select(link1);
    EXPECT_FALSE(may().cmdSave);
    entry.playlist = QStringLiteral("avond.mdb");
    entry.stap = 9;
    journal.write(entry);
    select(link2);
    select(link1);
    EXPECT_FALSE(may().cmdSave);
}

TEST_F(Desk, TheBarRunsOverTheOutroThenTheIntroThenStaysFullAndRed) {
    select(link1);
    EXPECT_EQ(step.TalkTotalMs, 9000);
    EXPECT_EQ(step.PrevOutroMs, 4000);
    startTake();
    timers.advance(3990);
    EXPECT_EQ(step.barRec.colour, TalkBar::Colour::Blue);
    timers.advance(10);
    EXPECT_EQ(step.barRec.colour, TalkBar::Colour::Yellow);
    timers.advance(5000);
    EXPECT_EQ(step.barRec.value, 0);
    timers.advance(10);
    EXPECT_EQ(step.barRec, (TalkBar{100, 100, TalkBar::Colour::Red}));
}

TEST_F(Desk, NothingRecordsWhileATakePlaysOrIsFiled) {
    select(link1);
    record(300);
    for (const auto begin : {&TakeSession::listeningBegan, &TakeSession::filingBegan}) {
        (session.*begin)();
        session.cmdRec_Click();
        EXPECT_FALSE(session.countsDown());
        session.filingEnded(TakeSession::SaveOffer::ByTake);
    }
}

TEST_F(Desk, ClosingTheProgramClosesTheTakeAndItIsOfferedNextTime) {
    select(link1);
    startTake();
    sound.deliver(44100);
    session.close();
    EXPECT_FALSE(sound.recorder().isRecording());
    EXPECT_EQ(journal.entry(QStringLiteral("LINK1"))->phase, JournalEntry::Phase::Kept);
}

TEST_F(Desk, BeforeTheFirstCountDownTheCounterIsFour) {
    EXPECT_EQ(session.CountdownLeft, 4);
}

TEST_F(Desk, StartOpnameCountsFromNothing) {
    select(link1);
    session.StartOpname();
    timers.advance(700);
    session.StartOpname();
    EXPECT_EQ(session.ElapsedMs(), 0);
    timers.advance(50);
    EXPECT_EQ(session.ElapsedMs(), 50);
}

// The time wrapped around to a negative one instead of reporting an overflow.
TEST_F(Desk, TheTimeOverflowsThirtyTwoBits) {
    session.StartOpname();
    constexpr std::int32_t ticks = 2147483647 / 10;
    for (std::int32_t tick = 0; tick < ticks; ++tick) {
        session.tmrRec_Timer();
    }
    EXPECT_EQ(session.ElapsedMs(), 2147483640);
    EXPECT_THROW(session.tmrRec_Timer(), RuntimeError);
    EXPECT_EQ(session.ElapsedMs(), 2147483640);
}

TEST_F(Desk, WithoutTheProcessorATakeStaysRaw) {
    int processed = 0;
    process = [&](const QString &) { ++processed; };
    select(link1);
    record(300);
    EXPECT_EQ(processed, 1);
    settings.UseProcessor = false;
    record(300);
    EXPECT_EQ(processed, 1);
    EXPECT_TRUE(exists(QStringLiteral("temp/LINK1.wav")));
}

TEST_F(Desk, WithoutTheProcessorWhatIsEncodedIsFiled) {
    settings.UseProcessor = false;
    select(link1);
    disk.write(path(QStringLiteral("temp/LINK1.mp3")), "al omgezet");
    saving.cmdSave_Click();
    EXPECT_EQ(disk.read(path(QStringLiteral("ok/LINK1.mp3"))), "al omgezet");
    EXPECT_TRUE(isMarked(link1));
    EXPECT_TRUE(audioFiles.created.isEmpty()) << "nothing is encoded";
}

} // namespace orvel
