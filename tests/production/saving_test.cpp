// The save button: playlists, servers, the plain recorder, versions of stations, takes of an earlier run.
#include "tests/desk.h"

namespace orvel {

namespace {

using Operation = FaultyFileSystem::Operation;

class SavingTake : public Desk {
  protected:
    SavingTake() { QDir(folder.path()).mkdir(QStringLiteral("server")); }

    void useServer() {
        settings.ServerMode = true;
        settings.VoicetrackPath = path(QStringLiteral("server"));
    }
    void recordLink(int row = link1) {
        select(row);
        record(500);
    }
    [[nodiscard]] double secondsOf(const QString &file) {
        const auto reader = realAudioFiles.reader();
        reader->open(path(file));
        return reader->errorState() < 0
                   ? -1
                   : static_cast<double>(reader->frames()) / static_cast<double>(reader->sampleRate());
    }
};

class SavingAs : public SavingTake {
  protected:
    SavingAs() { session.mode.RecorderOnly = true; }

    void recordNamed(const QString &name) {
        prompts.expectInput(QStringLiteral("Geef een naam voor dit bestand (ZONDER EXTENSIE)"),
                            QStringLiteral("Bestandsnaam"), name);
        record(500);
    }
    void answerWith(const QString &file) {
        prompts.expectSaveFileName(QStringLiteral("Geef naam en locatie waarmee U het bestand wenst te bewaren"),
                                   QStringLiteral("memo.mp3"), file);
    }
};

class SavingVersions : public SavingTake {
  protected:
    SavingVersions() {
        saving.cmdMultivoice_Click();
        recordLink();
    }
    void answerLast(bool last) {
        prompts.expectAsk(QStringLiteral("Bent U klaar met deze inteksting ?"), QStringLiteral("Multivoice inteksting"),
                          last);
    }
    /// What the presenter does for one station: save, choose it, answer.
    void saveFor(const QString &code, bool last) {
        saving.cmdSave_Click();
        answerLast(last);
        EXPECT_TRUE(saving.ExternalSave(code));
        saving.stationsClosed();
    }
};

} // namespace

TEST_F(SavingTake, WithoutAServerItIsFiledLocally) {
    settings.VoicetrackPath = path(QStringLiteral("server"));
    recordLink();
    EXPECT_TRUE(may().cmdSave);
    saving.cmdSave_Click();
    EXPECT_NEAR(secondsOf(mp3Of1), 0.5, 0.05);
    EXPECT_TRUE(filesIn(QStringLiteral("server")).isEmpty());
    EXPECT_TRUE(isMarked(link1));
    EXPECT_FALSE(may().cmdSave);
    EXPECT_TRUE(session.isIdle());
}

TEST_F(SavingTake, WithAServerItIsFiledThereOnly) {
    useServer();
    recordLink();
    saving.cmdSave_Click();
    EXPECT_NEAR(secondsOf(QStringLiteral("server/LINK1.mp3")), 0.5, 0.05);
    EXPECT_TRUE(filesIn(QStringLiteral("ok")).isEmpty());
    EXPECT_TRUE(filesIn(QStringLiteral("temp")).isEmpty());
    EXPECT_FALSE(may().cmdSave);
}

TEST_F(SavingTake, OnAServerAVoiceTrackIsReplacedOnYesOnly) {
    useServer();
    recordLink();
    disk.write(path(QStringLiteral("server/LINK1.mp3")), "van gisteren");
    const QString question = QStringLiteral("Het bestand LINK1.mp3 bestaat al. Wilt U het overschrijven ?");
    prompts.expectOverwrite(question, QStringLiteral("Copying..."), false);
    saving.cmdSave_Click();
    EXPECT_EQ(disk.read(path(QStringLiteral("server/LINK1.mp3"))), "van gisteren");
    EXPECT_FALSE(isMarked(link1));
    EXPECT_TRUE(exists(wavOf1));
    EXPECT_TRUE(may().cmdSave) << "it can be tried again";
    prompts.expectOverwrite(question, QStringLiteral("Copying..."), true);
    saving.cmdSave_Click();
    EXPECT_NEAR(secondsOf(QStringLiteral("server/LINK1.mp3")), 0.5, 0.05);
    EXPECT_TRUE(isMarked(link1));
    EXPECT_FALSE(exists(wavOf1));
}

TEST_F(SavingTake, WithoutATakeTheStepIsMarkedAndTheButtonStays) {
    select(link1);
    saving.cmdSave_Click();
    EXPECT_TRUE(isMarked(link1));
    EXPECT_TRUE(may().cmdSave);
    EXPECT_EQ(told, QStringList{QStringLiteral("Er is geen opname voor LINK1.")});
    EXPECT_TRUE(audioFiles.created.isEmpty()) << "nothing is converted";
    EXPECT_EQ(step.row, link1) << "the playlist does not go on";
}

TEST_F(SavingTake, ListeningEndsFirst) {
    recordLink();
    listening.cmdPlay_Click();
    ASSERT_EQ(session.state(), SessionState::Listening);
    saving.cmdSave_Click();
    EXPECT_NE(sound.player(0).state(), WavePlayer::playing);
    EXPECT_TRUE(exists(mp3Of1));
    EXPECT_TRUE(session.isIdle());
}

TEST_F(SavingTake, WhileATakeRunsNothingIsSaved) {
    select(link1);
    startTake();
    saving.cmdSave_Click();
    EXPECT_EQ(session.state(), SessionState::Recording);
    EXPECT_FALSE(isMarked(link1));
    EXPECT_FALSE(saving.ExternalSave(QStringLiteral("012")));
    EXPECT_EQ(told.last(), QStringLiteral("Deze opname kan nog niet bewaard worden."));
    EXPECT_FALSE(saving.saveUnfiled(session.currentTake()));
    EXPECT_TRUE(filesIn(QStringLiteral("ok")).isEmpty());
}

TEST_F(SavingTake, WhatIsClickedDuringTheConversionFilesNothingTwice) {
    recordLink();
    int clicks = 0;
    onProgress = [&] {
        ++clicks;
        EXPECT_EQ(session.state(), SessionState::Filing);
        EXPECT_FALSE(may().cmdSave);
        saving.cmdSave_Click();
        EXPECT_FALSE(saving.ExternalSave(QStringLiteral("012")));
        session.cmdRec_Click();
    };
    saving.cmdSave_Click();
    EXPECT_GT(clicks, 1);
    EXPECT_EQ(audioFiles.created.filter(QStringLiteral(".mp3")).size(), 1);
    EXPECT_EQ(filesIn(QStringLiteral("ok")), QStringList{QStringLiteral("LINK1.mp3")});
}

TEST_F(SavingTake, APlaylistThatCannotBeMarkedKeepsTheTake) {
    recordLink();
    databases.fail(FakeDatabaseEngine::Call::Update, ErrorNumber::PermissionDenied);
    EXPECT_THROW(saving.cmdSave_Click(), RuntimeError);
    EXPECT_TRUE(exists(wavOf1));
    EXPECT_TRUE(filesIn(QStringLiteral("ok")).isEmpty());
    EXPECT_TRUE(session.isIdle()) << "the desk is not stuck in filing";
    EXPECT_TRUE(may().cmdSave);
    databases.clearFailure(FakeDatabaseEngine::Call::Update);
    saving.cmdSave_Click();
    EXPECT_TRUE(exists(mp3Of1));
}

TEST_F(SavingTake, AConversionThatFailsOnAServerIsToldAndChangesNothing) {
    useServer();
    recordLink();
    audioFiles.faults.create = true;
    saving.cmdSave_Click();
    EXPECT_EQ(told.last(), QStringLiteral("LINK1 kon niet worden omgezet naar MP3; de opname blijft klaarstaan."));
    EXPECT_FALSE(isMarked(link1));
    EXPECT_TRUE(may().cmdSave);
    EXPECT_EQ(filesIn(QStringLiteral("temp")), QStringList{QStringLiteral("LINK1.wav")});
}

TEST_F(SavingTake, ATakeWithoutSamplesIsFiledAtOnce) {
    select(link1);
    const auto writer = realAudioFiles.wavWriter();
    writer->create(path(wavOf1), 44100);
    writer->close();
    saving.cmdSave_Click();
    EXPECT_TRUE(exists(mp3Of1));
    EXPECT_FALSE(exists(wavOf1));
}

TEST_F(SavingTake, TheLastStepOffersThePlaylist) {
    for (const int row : {0, 2, 3, 4, 5}) {
        playlist.setValue(row, ImportedColumn, true);
    }
    disk.write(path(QStringLiteral("ok/LINK2.mp3")), "klank");
    recordLink();
    prompts.expectAsk(QStringLiteral("Playlist Klaar ?"), QStringLiteral("Playlist overzetten"), false);
    saving.cmdSave_Click();
    EXPECT_EQ(prompts.open(), 0U);
    EXPECT_TRUE(playlist.isOpen());
    EXPECT_FALSE(may().cmdSave);
}

TEST_F(SavingTake, WithoutTheProcessorWhatWasEncodedIsFiledAsItIs) {
    settings.UseProcessor = false;
    recordLink();
    disk.write(path(QStringLiteral("temp/LINK1.mp3")), "al klaar");
    saving.cmdSave_Click();
    EXPECT_EQ(disk.read(path(mp3Of1)), "al klaar");
    EXPECT_FALSE(exists(QStringLiteral("temp/LINK1.mp3")));
    EXPECT_TRUE(isMarked(link1));
    EXPECT_FALSE(may().cmdSave);
    EXPECT_EQ(step.row, link2);
}

TEST_F(SavingAs, TheTakeGoesWhereThePresenterWants) {
    recordNamed(QStringLiteral("memo"));
    const QString chosen = path(QStringLiteral("server/elders.mp3"));
    answerWith(chosen);
    saving.cmdSave_Click();
    EXPECT_NEAR(secondsOf(QStringLiteral("server/elders.mp3")), 0.5, 0.05);
    EXPECT_EQ(filesIn(QStringLiteral("temp")), QStringList{QStringLiteral("memo.mp3")}) << "the encoded one stays";
    EXPECT_TRUE(filesIn(QStringLiteral("ok")).isEmpty());
    EXPECT_FALSE(may().cmdSave);
    EXPECT_TRUE(databases.updates().isEmpty()) << "no playlist has anything to do with it";
    EXPECT_TRUE(journal.entries().empty());
}

TEST_F(SavingAs, ADialogThatIsCancelledKeepsTheTakeAndDisablesTheButton) {
    recordNamed(QStringLiteral("memo"));
    answerWith({});
    saving.cmdSave_Click();
    EXPECT_EQ(filesIn(QStringLiteral("temp")), QStringList{QStringLiteral("memo.wav")});
    EXPECT_FALSE(may().cmdSave);
}

TEST_F(SavingAs, WithoutATakeNothingIsAsked) {
    recordNamed(QStringLiteral("memo"));
    ASSERT_TRUE(QFile::remove(path(QStringLiteral("temp/memo.wav"))));
    saving.cmdSave_Click();
    EXPECT_TRUE(may().cmdSave);
    EXPECT_EQ(told.last(), QStringLiteral("Er is geen opname voor memo."));
}

TEST_F(SavingAs, WhatCannotBeConvertedStays) {
    recordNamed(QStringLiteral("memo"));
    audioFiles.faults.write = 0;
    answerWith(path(QStringLiteral("server/elders.mp3")));
    saving.cmdSave_Click();
    EXPECT_EQ(filesIn(QStringLiteral("temp")), QStringList{QStringLiteral("memo.wav")});
    EXPECT_TRUE(filesIn(QStringLiteral("server")).isEmpty());
    EXPECT_TRUE(may().cmdSave);
    EXPECT_EQ(told.last(), QStringLiteral("memo kon niet worden omgezet naar MP3; de opname blijft klaarstaan."));
}

TEST_F(SavingAs, WhatCannotBeCopiedStays) {
    recordNamed(QStringLiteral("memo"));
    files.fail(Operation::Copy, QStringLiteral("elders"), ErrorNumber::DiskFull);
    answerWith(path(QStringLiteral("server/elders.mp3")));
    prompts.expectReport(QStringLiteral("Error: 61"));
    saving.cmdSave_Click();
    EXPECT_TRUE(exists(QStringLiteral("temp/memo.wav")));
    EXPECT_TRUE(may().cmdSave);
    EXPECT_EQ(told.last(), QStringLiteral("memo is niet bewaard; de opname blijft klaarstaan."));
}

TEST_F(SavingVersions, TheButtonSwitchesTheMode) {
    EXPECT_TRUE(saving.isMultivoice());
    select(link2);
    EXPECT_TRUE(saving.isMultivoice()) << "the mode survives another step";
    saving.cmdMultivoice_Click();
    EXPECT_FALSE(saving.isMultivoice());
}

TEST_F(SavingVersions, SavingAsksForTheStationAndFilesNothingYet) {
    saving.cmdSave_Click();
    EXPECT_EQ(stationsShown, 1);
    EXPECT_TRUE(isMarked(link1));
    EXPECT_TRUE(may().cmdSave);
    EXPECT_TRUE(exists(wavOf1));
    EXPECT_TRUE(filesIn(QStringLiteral("ok")).isEmpty());
}

TEST_F(SavingVersions, EveryStationHasItsOwnUntilThePresenterIsDone) {
    saveFor(QStringLiteral("012"), false);
    EXPECT_EQ(filesIn(QStringLiteral("ok")), QStringList{QStringLiteral("012LINK1.mp3")});
    EXPECT_FALSE(exists(wavOf1)) << "each version is a recording of its own";
    EXPECT_TRUE(may().cmdSave);
    EXPECT_TRUE(saving.isMultivoice());
    EXPECT_EQ(step.row, link1) << "on the same step";
    record(800);
    saveFor(QStringLiteral("034"), true);
    EXPECT_EQ(filesIn(QStringLiteral("ok")).join(u' '), QStringLiteral("012LINK1.mp3 034LINK1.mp3"));
    EXPECT_NEAR(secondsOf(QStringLiteral("ok/034LINK1.mp3")), 0.8, 0.05);
    EXPECT_FALSE(may().cmdSave);
    EXPECT_FALSE(saving.isMultivoice());
    EXPECT_TRUE(isMarked(link1));
    EXPECT_EQ(step.row, link2) << "the playlist goes on";
    EXPECT_TRUE(filesIn(QStringLiteral("temp")).isEmpty());
}

TEST_F(SavingVersions, TheGeneralOnesHaveNoCodeInTheirName) {
    saveFor(QStringLiteral("999"), false);
    EXPECT_EQ(filesIn(QStringLiteral("ok")), QStringList{QStringLiteral("LINK1.mp3")});
    record(800);
    saveFor(QStringLiteral("000"), false);
    EXPECT_EQ(filesIn(QStringLiteral("ok")), QStringList{QStringLiteral("LINK1.mp3")});
    EXPECT_NEAR(secondsOf(mp3Of1), 0.8, 0.05);
}

TEST_F(SavingVersions, OnAServerTheyAreThere) {
    useServer();
    saveFor(QStringLiteral("012"), true);
    EXPECT_EQ(filesIn(QStringLiteral("server")), QStringList{QStringLiteral("012LINK1.mp3")});
    EXPECT_TRUE(filesIn(QStringLiteral("ok")).isEmpty());
}

TEST_F(SavingVersions, WithoutATakeAServerGetsNothingAndTheQuestionIsAsked) {
    useServer();
    saving.cmdSave_Click();
    ASSERT_TRUE(QFile::remove(path(wavOf1)));
    answerLast(false);
    EXPECT_TRUE(saving.ExternalSave(QStringLiteral("012")));
    EXPECT_EQ(prompts.open(), 0U);
    EXPECT_TRUE(filesIn(QStringLiteral("server")).isEmpty());
    EXPECT_TRUE(saving.isMultivoice());
}

TEST_F(SavingVersions, WithoutATakeALocalVersionEndsTheProgram) {
    saving.cmdSave_Click();
    ASSERT_TRUE(QFile::remove(path(wavOf1)));
    EXPECT_THROW(saving.ExternalSave(QStringLiteral("012")), FatalError);
    EXPECT_TRUE(filesIn(QStringLiteral("ok")).isEmpty());
}

TEST_F(SavingVersions, AVersionThatFailsIsAskedNothingAboutAndLeavesNoMark) {
    useServer();
    saving.cmdSave_Click();
    audioFiles.faults.open = true;
    EXPECT_TRUE(saving.ExternalSave(QStringLiteral("012")));
    saving.stationsClosed();
    EXPECT_FALSE(isMarked(link1));
    EXPECT_TRUE(exists(wavOf1));
    EXPECT_TRUE(saving.isMultivoice());
    EXPECT_TRUE(may().cmdSave);
}

TEST_F(SavingVersions, ASecondVersionThatFailsLeavesTheMarkOfTheFirst) {
    useServer();
    saveFor(QStringLiteral("012"), false);
    record(500);
    saving.cmdSave_Click();
    audioFiles.faults.open = true;
    EXPECT_TRUE(saving.ExternalSave(QStringLiteral("034")));
    saving.stationsClosed();
    EXPECT_TRUE(isMarked(link1)) << "it has a voice track";
    EXPECT_EQ(filesIn(QStringLiteral("server")), QStringList{QStringLiteral("012LINK1.mp3")});
}

TEST_F(SavingVersions, AChooserThatIsClosedAfterAVersionLeavesTheMark) {
    saveFor(QStringLiteral("012"), false);
    record(500);
    saving.cmdSave_Click();
    saving.stationsClosed();
    EXPECT_TRUE(isMarked(link1));
}

TEST_F(SavingVersions, AChooserThatIsClosedLeavesAStepThatWasDoneBefore) {
    marks.mark(session.currentTake().step, true);
    saving.cmdSave_Click();
    saving.stationsClosed();
    EXPECT_TRUE(isMarked(link1));
}

// The save button stays enabled behind the chooser: the second click took the first one's mark for the step's own.
TEST_F(SavingVersions, ASecondClickBehindTheChooserForgetsNothing) {
    saving.cmdSave_Click();
    saving.cmdSave_Click();
    saving.stationsClosed();
    EXPECT_FALSE(isMarked(link1)) << "it has no voice track";
}

// Another step was chosen behind the chooser and saved: the first one kept its mark without having a voice track.
TEST_F(SavingVersions, AnotherStepThatIsSavedBehindTheChooserTakesTheMarkOfTheFirstBack) {
    saving.cmdSave_Click();
    recordLink(link2);
    saving.cmdSave_Click();
    EXPECT_FALSE(isMarked(link1));
    EXPECT_TRUE(isMarked(link2));
    answerLast(true);
    EXPECT_TRUE(saving.ExternalSave(QStringLiteral("012")));
    saving.stationsClosed();
    EXPECT_EQ(filesIn(QStringLiteral("ok")), QStringList{QStringLiteral("012LINK2.mp3")});
    EXPECT_FALSE(isMarked(link1));
    EXPECT_TRUE(isMarked(link2));
}

// A link that was saved without a version behind the chooser lost its mark when the chooser was closed.
TEST_F(SavingVersions, WithTheModeOffBehindTheChooserTheTakeIsFiledAndMarked) {
    saving.cmdSave_Click();
    saving.cmdMultivoice_Click();
    saving.cmdSave_Click();
    saving.stationsClosed();
    EXPECT_TRUE(exists(mp3Of1));
    EXPECT_TRUE(isMarked(link1));
}

TEST_F(SavingVersions, TheChooserKeepsItsTakeWhileAnotherOneIsSavedWithoutVersions) {
    saving.cmdSave_Click();
    saving.cmdMultivoice_Click();
    recordLink(link2);
    saving.cmdSave_Click();
    EXPECT_TRUE(exists(QStringLiteral("ok/LINK2.mp3")));
    answerLast(true);
    EXPECT_TRUE(saving.ExternalSave(QStringLiteral("012")));
    EXPECT_EQ(filesIn(QStringLiteral("ok")).join(u' '), QStringLiteral("012LINK1.mp3 LINK2.mp3"));
    EXPECT_TRUE(isMarked(link1));
    EXPECT_TRUE(isMarked(link2));
}

TEST_F(SavingTake, ATakeOfAnEarlierRunIsFiledForItsOwnStep) {
    recordLink();
    const Take take = session.currentTake();
    select(link2);
    EXPECT_TRUE(saving.saveUnfiled(take));
    EXPECT_TRUE(exists(mp3Of1));
    EXPECT_TRUE(isMarked(link1));
    EXPECT_FALSE(isMarked(link2));
    EXPECT_EQ(step.row, link2) << "the selection stays";
}

TEST_F(SavingTake, ATakeOfAnotherPlaylistIsMarkedThere) {
    databases.setTable(places.newFolder() + QStringLiteral("/nacht.mdb"), QStringLiteral("Steps"), header(),
                       {slot(1, QStringLiteral("NACHT1"))});
    const auto writer = realAudioFiles.wavWriter();
    writer->create(path(QStringLiteral("temp/NACHT1.wav")), 44100);
    writer->write(std::vector<std::int16_t>(22050, 1000));
    writer->close();
    const Take take{Take::Kind::Playlist, {QStringLiteral("nacht.mdb"), 1, QStringLiteral("NACHT1")}, {}};
    EXPECT_TRUE(saving.saveUnfiled(take));
    EXPECT_TRUE(exists(QStringLiteral("ok/NACHT1.mp3")));
    EXPECT_TRUE(marks.isMarked(take.step));
    EXPECT_EQ(playlist.fileName(), QStringLiteral("avond.mdb"));
}

TEST_F(SavingTake, ATakeOfAnEarlierRunThatCannotBeFiledIsStillWaiting) {
    useServer();
    recordLink();
    audioFiles.faults.open = true;
    EXPECT_FALSE(saving.saveUnfiled(session.currentTake()));
    EXPECT_TRUE(exists(wavOf1));
    EXPECT_FALSE(isMarked(link1));
}

TEST_F(SavingAs, ATakeOfAnEarlierRunWaitsUntilThePresenterSaysWhere) {
    recordNamed(QStringLiteral("memo"));
    const Take take = session.currentTake();
    answerWith({});
    EXPECT_FALSE(saving.saveUnfiled(take));
    answerWith(path(QStringLiteral("server/elders.mp3")));
    EXPECT_TRUE(saving.saveUnfiled(take));
    EXPECT_TRUE(exists(QStringLiteral("server/elders.mp3")));
    EXPECT_FALSE(exists(QStringLiteral("temp/memo.wav")));
}

} // namespace orvel
