// From the take to the filed voice track, and what happens to a finished playlist.
#include "station.h"

#include <QFile>
#include <QTimer>

namespace orvel {

namespace {

const QString copying = QStringLiteral("Copying...");
const QString saveTitle = QStringLiteral("Geef naam en locatie waarmee U het bestand wenst te bewaren");

class SavingTakes : public Station {
  protected:
    void openDemo(const QString &settings = {}, const QString &fixture = demo) {
        configure(settings);
        addPlaylist(fixture, QStringLiteral("lijst.mdb"));
        ASSERT_TRUE(start());
        open(QStringLiteral("lijst.mdb"));
        row = nextPresentation(0);
        select(row);
        name = window->workplace().step.VoiceTrackName;
    }

    [[nodiscard]] int nextPresentation(int from) const {
        while (window->workplace().datList.value(from, TypeColumn).toInt() != PresStep) {
            ++from;
        }
        return from;
    }

    void save() { click(window->panels().savePanel->cmdSave); }
    [[nodiscard]] bool canSave() const { return window->panels().savePanel->cmdSave->isEnabled(); }
    [[nodiscard]] QStringList keptTakes() const {
        return filesIn(QStringLiteral("herstel")).filter(QStringLiteral(".wav"));
    }
    void finishAllBut(int openRow) {
        for (int step = 0; step < window->workplace().datList.stepCount(); ++step) {
            if (step != openRow) {
                mark(step, true);
                const QString track = window->workplace().datList.value(step, AtrackColumn).toString();
                const Settings &settings = window->workplace().settings;
                disk.write((settings.ServerMode ? settings.VoicetrackPath : settings.OkPath) + u'/' + track +
                               QStringLiteral(".mp3"),
                           "klank");
            }
        }
    }
    [[nodiscard]] QString probe(const QString &file, const QString &entry) const {
        return output(QStringLiteral("ffprobe"),
                      {QStringLiteral("-v"), QStringLiteral("error"), QStringLiteral("-show_entries"), entry,
                       QStringLiteral("-of"), QStringLiteral("default=nw=1:nk=1"), path(file)})
            .simplified();
    }

    int row = 0;
    QString name;
};

} // namespace

TEST_F(SavingTakes, TheVoiceTrackIsFiledTheStepMarkedAndTheNextOneSelected) {
    openDemo();
    const QByteArray before = content(QStringLiteral("new/lijst.mdb"));
    record(2000);
    save();
    EXPECT_EQ(filesIn(QStringLiteral("ok")), QStringList{name + QStringLiteral(".mp3")});
    EXPECT_TRUE(filesIn(QStringLiteral("temp")).isEmpty());
    EXPECT_TRUE(keptTakes().isEmpty());
    EXPECT_FALSE(canSave());
    EXPECT_TRUE(imported(row));
    const QString file = QStringLiteral("ok/") + name + QStringLiteral(".mp3");
    EXPECT_EQ(probe(file, QStringLiteral("stream=codec_name,sample_rate,channels,bit_rate")),
              QStringLiteral("mp3 44100 2 256000"));
    EXPECT_NEAR(probe(file, QStringLiteral("format=duration")).toDouble(), 2.0, 0.05);
    EXPECT_FALSE(imported(window->panels().gridPanel->currentRow()));
    EXPECT_EQ(window->panels().gridPanel->currentRow(), window->workplace().datList.firstUnfinished());
    const QByteArray after = content(QStringLiteral("new/lijst.mdb"));
    int changed = 0;
    for (qsizetype i = 0; i < before.size(); ++i) {
        changed += before.at(i) != after.at(i) ? 1 : 0;
    }
    EXPECT_EQ(before.size(), after.size());
    EXPECT_EQ(changed, 1);
}

TEST_F(SavingTakes, InServerModeTheFileGoesOnlyToTheServer) {
    ASSERT_TRUE(QDir(folder.path()).mkdir(QStringLiteral("server")));
    openDemo(QStringLiteral("[Files]\nVoiceTrackPath=%1/server\n[Program]\nServer=1").arg(folder.path()));
    record(500);
    save();
    EXPECT_EQ(filesIn(QStringLiteral("server")), QStringList{name + QStringLiteral(".mp3")});
    EXPECT_TRUE(filesIn(QStringLiteral("ok")).isEmpty());
    EXPECT_TRUE(filesIn(QStringLiteral("temp")).isEmpty());
}

TEST_F(SavingTakes, AServerFileThatMayNotBeOverwrittenLeavesEverythingAsItWas) {
    ASSERT_TRUE(QDir(folder.path()).mkdir(QStringLiteral("server")));
    openDemo(QStringLiteral("[Files]\nVoiceTrackPath=%1/server\n[Program]\nServer=1").arg(folder.path()));
    disk.write(path(QStringLiteral("server/") + name + QStringLiteral(".mp3")), "oud");
    record(500);
    prompts.expectOverwrite(QStringLiteral("Het bestand %1.mp3 bestaat al. Wilt U het overschrijven ?").arg(name),
                            copying, false);
    save();
    EXPECT_EQ(content(QStringLiteral("server/") + name + QStringLiteral(".mp3")), "oud");
    EXPECT_EQ(filesIn(QStringLiteral("temp")), QStringList{name + QStringLiteral(".wav")});
    EXPECT_FALSE(imported(row));
    EXPECT_TRUE(canSave());
    EXPECT_EQ(window->panels().gridPanel->currentRow(), row);
    EXPECT_TRUE(window->panels().lblStatus->text().contains(QStringLiteral("blijft klaarstaan")));
}

// With the share not mounted, saving made a folder on this machine, filed the take there and told that it was saved.
TEST_F(SavingTakes, AServerThatIsNotThereKeepsTheTakeAndTakesTheMarkBack) {
    ASSERT_TRUE(QDir(folder.path()).mkdir(QStringLiteral("server")));
    openDemo(QStringLiteral("[Files]\nVoiceTrackPath=%1/server\n[Program]\nServer=1").arg(folder.path()));
    record(500);
    const QByteArray take = content(QStringLiteral("temp/") + name + QStringLiteral(".wav"));
    ASSERT_TRUE(QDir(folder.path()).rmdir(QStringLiteral("server")));
    prompts.expectMessage(QStringLiteral("%1 is niet bewaard: de map met voicetracks %2 is niet bereikbaar. De opname "
                                         "blijft klaarstaan.")
                              .arg(name, path(QStringLiteral("server"))),
                          QStringLiteral("Foutmelding"), MessageIcon::Exclamation);
    save();
    EXPECT_FALSE(exists(QStringLiteral("server")));
    EXPECT_FALSE(imported(row));
    EXPECT_TRUE(canSave());
    EXPECT_EQ(content(QStringLiteral("temp/") + name + QStringLiteral(".wav")), take);
    EXPECT_EQ(filesIn(QStringLiteral("temp")).size(), 1);
    EXPECT_TRUE(window->panels().lblStatus->text().contains(path(QStringLiteral("server"))));
    // It is there again.
    ASSERT_TRUE(QDir(folder.path()).mkdir(QStringLiteral("server")));
    save();
    EXPECT_EQ(filesIn(QStringLiteral("server")), QStringList{name + QStringLiteral(".mp3")});
    EXPECT_TRUE(imported(row));
    EXPECT_TRUE(filesIn(QStringLiteral("temp")).isEmpty());
}

TEST_F(SavingTakes, WithoutATakeTheMarkStaysAlsoWhenTheServerIsNotThere) {
    ASSERT_TRUE(QDir(folder.path()).mkdir(QStringLiteral("server")));
    openDemo(QStringLiteral("[Files]\nVoiceTrackPath=%1/server\n[Program]\nServer=1").arg(folder.path()));
    ASSERT_TRUE(QDir(folder.path()).rmdir(QStringLiteral("server")));
    window->panels().savePanel->cmdSave->setEnabled(true);
    save();
    EXPECT_TRUE(imported(row));
    EXPECT_TRUE(canSave());
}

TEST_F(SavingTakes, ACopyThatFailsOnTheWayLeavesEverythingAsItWas) {
    ASSERT_TRUE(QDir(folder.path()).mkdir(QStringLiteral("server")));
    openDemo(QStringLiteral("[Files]\nVoiceTrackPath=%1/server\n[Program]\nServer=1").arg(folder.path()));
    record(500);
    const QString target = path(QStringLiteral("server/") + name + QStringLiteral(".mp3"));
    files.fail(FaultyFileSystem::Operation::Copy, QStringLiteral("server/"), ErrorNumber::DiskNotReady);
    prompts.expectMessage(QStringLiteral("Error: 71. De schijf is niet gereed\n\n") + target,
                          QStringLiteral("ShellCopyFile"), MessageIcon::Exclamation);
    save();
    EXPECT_FALSE(imported(row));
    EXPECT_TRUE(canSave());
    EXPECT_EQ(filesIn(QStringLiteral("temp")), QStringList{name + QStringLiteral(".wav")});
    EXPECT_TRUE(keptTakes().isEmpty());
    files.heal();
    save();
    EXPECT_EQ(filesIn(QStringLiteral("server")), QStringList{name + QStringLiteral(".mp3")});
    EXPECT_TRUE(imported(row));
}

TEST_F(SavingTakes, ASaveWithoutATakeMarksTheStepAndKeepsTheButton) {
    openDemo();
    window->panels().savePanel->cmdSave->setEnabled(true);
    save();
    EXPECT_TRUE(imported(row));
    EXPECT_TRUE(canSave());
    EXPECT_TRUE(filesIn(QStringLiteral("ok")).isEmpty());
}

TEST_F(SavingTakes, TheRecorderSavesWhereTheUserWants) {
    ASSERT_TRUE(start(QStringLiteral("-RECORDER")));
    prompts.expectInput(QStringLiteral("Geef een naam voor dit bestand (ZONDER EXTENSIE)"),
                        QStringLiteral("Bestandsnaam"), QStringLiteral("spot"));
    record(500);
    prompts.expectSaveFileName(saveTitle, QStringLiteral("spot.mp3"), path(QStringLiteral("mijn spot.mp3")));
    save();
    EXPECT_TRUE(exists(QStringLiteral("mijn spot.mp3")));
    EXPECT_TRUE(exists(QStringLiteral("temp/spot.mp3")));
    EXPECT_FALSE(exists(QStringLiteral("temp/spot.wav")));
    EXPECT_FALSE(canSave());
    // The next one begins in the same folder, as long as that answers.
    prompts.expectInput(QStringLiteral("Geef een naam voor dit bestand (ZONDER EXTENSIE)"),
                        QStringLiteral("Bestandsnaam"), QStringLiteral("nog een"));
    record(500);
    prompts.expectSaveFileName(saveTitle, path(QStringLiteral("nog een.mp3")), path(QStringLiteral("weg/nog een.mp3")));
    ASSERT_TRUE(QDir(folder.path()).mkdir(QStringLiteral("weg")));
    save();
    ASSERT_TRUE(QDir(path(QStringLiteral("weg"))).removeRecursively());
    prompts.expectInput(QStringLiteral("Geef een naam voor dit bestand (ZONDER EXTENSIE)"),
                        QStringLiteral("Bestandsnaam"), QStringLiteral("derde"));
    record(500);
    prompts.expectSaveFileName(saveTitle, QStringLiteral("derde.mp3"), QString());
    save();
}

TEST_F(SavingTakes, ACancelledSaveDialogKeepsTheTake) {
    ASSERT_TRUE(start(QStringLiteral("-RECORDER")));
    prompts.expectInput(QStringLiteral("Geef een naam voor dit bestand (ZONDER EXTENSIE)"),
                        QStringLiteral("Bestandsnaam"), QStringLiteral("spot"));
    record(500);
    prompts.expectSaveFileName(saveTitle, QStringLiteral("spot.mp3"), QString());
    save();
    EXPECT_EQ(filesIn(QStringLiteral("temp")), QStringList{QStringLiteral("spot.wav")});
    EXPECT_FALSE(canSave());
}

TEST_F(SavingTakes, AFailedConversionOnAServerIsSilentAndTheTakeIsSafe) {
    ASSERT_TRUE(QDir(folder.path()).mkdir(QStringLiteral("server")));
    openDemo(QStringLiteral("[Files]\nVoiceTrackPath=%1/server\n[Program]\nServer=1").arg(folder.path()));
    record(500);
    const QByteArray take = content(QStringLiteral("temp/") + name + QStringLiteral(".wav"));
    audioFiles.faults.create = true;
    save();
    EXPECT_TRUE(filesIn(QStringLiteral("server")).isEmpty());
    EXPECT_EQ(content(QStringLiteral("temp/") + name + QStringLiteral(".wav")), take);
    EXPECT_FALSE(imported(row)) << "nothing was filed";
    EXPECT_TRUE(canSave());
    EXPECT_TRUE(window->panels().lblStatus->text().contains(QStringLiteral("kon niet worden omgezet")));
    EXPECT_FALSE(window->panels().savePanel->barProgress->isVisible());
}

TEST_F(SavingTakes, AFullDiskWhileEncodingLeavesNoHalfFileAndTheTakeIsSafe) {
    ASSERT_TRUE(QDir(folder.path()).mkdir(QStringLiteral("server")));
    openDemo(QStringLiteral("[Files]\nVoiceTrackPath=%1/server\n[Program]\nServer=1").arg(folder.path()));
    record(5000);
    audioFiles.faults.write = 1;
    save();
    EXPECT_EQ(filesIn(QStringLiteral("temp")), QStringList{name + QStringLiteral(".wav")});
    EXPECT_TRUE(filesIn(QStringLiteral("server")).isEmpty());
}

TEST_F(SavingTakes, AWriterWithoutAFormatConvertsNothing) {
    openDemo(QStringLiteral("[Audio]\nBitRate=7"));
    record(200);
    prompts.expectReport(
        QStringLiteral("Fout 53 tijdens de uitvoering:\n\nHet bestand is niet gevonden: De opname blijft "
                       "klaarstaan"));
    save();
    EXPECT_EQ(filesIn(QStringLiteral("temp")), QStringList{name + QStringLiteral(".wav")});
    EXPECT_FALSE(imported(row)) << "a step without a voice track is not done";
}

TEST_F(SavingTakes, AMissingFinishedFolderEndsTheProgramWithAReport) {
    openDemo();
    record(500);
    ASSERT_TRUE(QDir(folder.path()).rmdir(QStringLiteral("ok")));
    prompts.expectReport(QStringLiteral("Fout 76 tijdens de uitvoering:"));
    save();
    EXPECT_EQ(static_cast<OrvelApplication *>(QCoreApplication::instance())->exitCode(), 1);
    EXPECT_EQ(filesIn(QStringLiteral("temp")), QStringList{name + QStringLiteral(".wav")});
    EXPECT_FALSE(imported(row));
}

TEST_F(SavingTakes, AnExistingVoiceTrackIsOverwrittenWithoutAQuestion) {
    openDemo();
    const QString file = QStringLiteral("ok/") + name + QStringLiteral(".mp3");
    disk.write(path(file), "oud");
    record(500);
    save();
    EXPECT_GT(content(file).size(), 1000);
}

TEST_F(SavingTakes, AFileWithoutSamplesIsConvertedAtOnce) {
    openDemo();
    const auto empty = realAudioFiles.wavWriter();
    empty->create(path(QStringLiteral("leeg.wav")), 44100);
    empty->close();
    EXPECT_TRUE(
        window->workplace().filing.TranscodeToMp3(path(QStringLiteral("leeg.wav")), path(QStringLiteral("leeg.mp3"))));
}

TEST_F(SavingTakes, NothingRecordedIsNoTake) {
    // A card that brought nothing left an empty file, which was filed as "is bewaard".
    openDemo();
    record(500);
    const QByteArray before = content(QStringLiteral("temp/") + name + QStringLiteral(".wav"));
    record(0);
    EXPECT_EQ(content(QStringLiteral("temp/") + name + QStringLiteral(".wav")), before) << "the earlier take is back";
    EXPECT_TRUE(canSave());
    QFile::remove(path(QStringLiteral("temp/") + name + QStringLiteral(".wav")));
    record(0);
    EXPECT_FALSE(canSave());
    EXPECT_TRUE(window->panels().lblStatus->text().contains(QStringLiteral("niets opgenomen")));
}

TEST_F(SavingTakes, TheLastStepOffersToMoveThePlaylist) {
    openDemo();
    finishAllBut(row);
    record(500);
    prompts.expectAsk(QStringLiteral("Playlist Klaar ?"), QStringLiteral("Playlist overzetten"), true);
    save();
    EXPECT_FALSE(exists(QStringLiteral("new/lijst.mdb")));
    EXPECT_TRUE(exists(QStringLiteral("ok/lijst.mdb")));
    EXPECT_EQ(window->panels().filePanel->filNew->count(), 0);
    EXPECT_EQ(window->panels().filePanel->filOK->count(), 1);
    EXPECT_FALSE(window->panels().recorderPanel->cmdRec->isEnabled());
}

TEST_F(SavingTakes, NoLeavesThePlaylistAndTheQuestionComesAgain) {
    openDemo();
    finishAllBut(row);
    record(300);
    prompts.expectAsk(QStringLiteral("Playlist Klaar ?"), QStringLiteral("Playlist overzetten"), false);
    save();
    EXPECT_TRUE(exists(QStringLiteral("new/lijst.mdb")));
    EXPECT_TRUE(window->workplace().datList.isOpen());
    record(300);
    prompts.expectAsk(QStringLiteral("Playlist Klaar ?"), QStringLiteral("Playlist overzetten"), false);
    save();
}

TEST_F(SavingTakes, InServerModeAFinishedPlaylistIsKeptNowhere) {
    ASSERT_TRUE(QDir(folder.path()).mkdir(QStringLiteral("server")));
    openDemo(QStringLiteral("[Files]\nVoiceTrackPath=%1/server\n[Program]\nServer=1").arg(folder.path()));
    finishAllBut(row);
    record(300);
    prompts.expectAsk(QStringLiteral("Playlist Klaar ?"), QStringLiteral("Playlist overzetten"), true);
    save();
    EXPECT_FALSE(exists(QStringLiteral("new/lijst.mdb")));
    EXPECT_FALSE(exists(QStringLiteral("ok/lijst.mdb")));
}

TEST_F(SavingTakes, AFinishedPlaylistThatCannotBeCopiedStays) {
    openDemo();
    finishAllBut(row);
    record(300);
    files.fail(FaultyFileSystem::Operation::Copy, QStringLiteral("ok/lijst.mdb"), ErrorNumber::DiskFull);
    prompts.expectAsk(QStringLiteral("Playlist Klaar ?"), QStringLiteral("Playlist overzetten"), true);
    prompts.expectReport(QStringLiteral("Fout 61 tijdens de uitvoering:"));
    save();
    EXPECT_TRUE(exists(QStringLiteral("new/lijst.mdb")));
}

TEST_F(SavingTakes, APlaylistThatWasFinishedBeforeIsOfferedAtOnce) {
    openDemo({}, QStringLiteral("all-imported.mdb"));
    finishAllBut(window->panels().gridPanel->currentRow());
    prompts.expectAsk(QStringLiteral("Playlist Klaar ?"), QStringLiteral("Playlist overzetten"), false);
    record(300);
    save();
}

TEST_F(SavingTakes, DeletingAsksForTheChosenPlaylist) {
    addPlaylist(demo, QStringLiteral("een.mdb"));
    addPlaylist(demo, QStringLiteral("twee.mdb"));
    ASSERT_TRUE(start());
    open(QStringLiteral("een.mdb"));
    const QString title = QStringLiteral("Playlists verwijderen");
    const QString question = QStringLiteral("Wenst U het bestand een.mdb te verwijderen ?");
    prompts.expectAsk(question, title, false, Preset::No);
    click(window->panels().filePanel->cmdWisNew);
    EXPECT_EQ(filesIn(QStringLiteral("new")).size(), 2);
    EXPECT_TRUE(window->panels().gridPanel->dbgLijst->isVisible());
    prompts.expectAsk(question, title, true, Preset::No);
    click(window->panels().filePanel->cmdWisNew);
    EXPECT_EQ(filesIn(QStringLiteral("new")), QStringList{QStringLiteral("twee.mdb")});
    EXPECT_FALSE(window->panels().gridPanel->dbgLijst->isVisible());
    EXPECT_FALSE(window->workplace().datList.isOpen());
}

TEST_F(SavingTakes, DeletingAllClosesTheOpenPlaylist) {
    addPlaylist(demo, QStringLiteral("een.mdb"));
    addPlaylist(demo, QStringLiteral("twee.mdb"));
    disk.write(path(QStringLiteral("new/blijft.txt")), "x");
    ASSERT_TRUE(start());
    open(QStringLiteral("een.mdb"));
    window->panels().filePanel->filNew->clearSelection();
    prompts.expectAsk(QStringLiteral("Wenst U ALLE nog te bewerken playlists te verwijderen ?"),
                      QStringLiteral("Playlists verwijderen"), true, Preset::No);
    click(window->panels().filePanel->cmdWisNew);
    EXPECT_EQ(filesIn(QStringLiteral("new")), QStringList{QStringLiteral("blijft.txt")});
    EXPECT_FALSE(window->panels().gridPanel->dbgLijst->isVisible());
    EXPECT_FALSE(window->workplace().datList.isOpen());
}

// A backslash in a playlist's name was taken for a folder: the button deleted, and a click opened, a file outside the
// station.
TEST_F(SavingTakes, ABackslashInANameIsACharacterLikeAnyOther) {
    const QString tricky = QStringLiteral("map.mdb\\..\\..\\buiten.mdb");
    QDir(folder.path()).mkpath(QStringLiteral("new/map.mdb"));
    addPlaylist(QStringLiteral("no-steps.mdb"), QStringLiteral("../buiten.mdb"));
    addPlaylist(demo, tricky);
    disk.write(path(QStringLiteral("ok/")) + tricky, "klaar");
    ASSERT_TRUE(start());
    open(tricky);
    EXPECT_GT(window->workplace().datList.stepCount(), 0);
    prompts.expectAsk(QStringLiteral("Wenst U het bestand %1 te verwijderen ?").arg(tricky),
                      QStringLiteral("Playlists verwijderen"), true, Preset::No);
    click(window->panels().filePanel->cmdWisNew);
    EXPECT_TRUE(exists(QStringLiteral("buiten.mdb")));
    EXPECT_TRUE(filesIn(QStringLiteral("new")).isEmpty());
    EXPECT_EQ(content(QStringLiteral("ok/") + tricky), "klaar");
    window->panels().filePanel->tabFiles->setCurrentIndex(1);
    prompts.expectAsk(QStringLiteral("Wenst U ALLE afgewerkte playlists te verwijderen ?"),
                      QStringLiteral("Playlists verwijderen"), true, Preset::No);
    click(window->panels().filePanel->cdmWisKlaar);
    EXPECT_TRUE(filesIn(QStringLiteral("ok")).isEmpty());
}

TEST_F(SavingTakes, APlaylistWithABackslashInItsNameIsFinishedUnderThatName) {
    const QString tricky = QStringLiteral("avond\\lijst.mdb");
    addPlaylist(demo, tricky);
    ASSERT_TRUE(start());
    open(tricky);
    row = nextPresentation(0);
    select(row);
    finishAllBut(row);
    record(300);
    prompts.expectAsk(QStringLiteral("Playlist Klaar ?"), QStringLiteral("Playlist overzetten"), true);
    save();
    EXPECT_TRUE(filesIn(QStringLiteral("new")).isEmpty());
    EXPECT_EQ(filesIn(QStringLiteral("ok")).filter(QStringLiteral(".mdb")), QStringList{tricky});
}

TEST_F(SavingTakes, DeletingToDoPlaylistsIgnoresEveryError) {
    addPlaylist(demo, QStringLiteral("een.mdb"));
    ASSERT_TRUE(start());
    files.fail(FaultyFileSystem::Operation::Move, QStringLiteral("een."), ErrorNumber::PermissionDenied);
    open(QStringLiteral("een.mdb"));
    prompts.expectAsk(QStringLiteral("Wenst U het bestand een.mdb te verwijderen ?"),
                      QStringLiteral("Playlists verwijderen"), true, Preset::No);
    click(window->panels().filePanel->cmdWisNew);
    EXPECT_TRUE(exists(QStringLiteral("new/een.mdb")));
    EXPECT_FALSE(window->panels().gridPanel->dbgLijst->isVisible());
}

TEST_F(SavingTakes, DeletingFinishedPlaylistsReportsErrorsAndLeavesTheGrid) {
    addPlaylist(demo, QStringLiteral("een.mdb"));
    disk.write(path(QStringLiteral("ok/klaar.mdb")), "x");
    disk.write(path(QStringLiteral("ok/link.mp3")), "x");
    ASSERT_TRUE(start());
    open(QStringLiteral("een.mdb"));
    window->panels().filePanel->tabFiles->setCurrentIndex(1);
    const QString question = QStringLiteral("Wenst U ALLE afgewerkte playlists te verwijderen ?");
    const QString title = QStringLiteral("Playlists verwijderen");
    files.fail(FaultyFileSystem::Operation::Move, QStringLiteral("klaar."), ErrorNumber::PermissionDenied);
    prompts.expectAsk(question, title, true, Preset::No);
    prompts.expectReport(QStringLiteral("Fout 70 tijdens de uitvoering:"));
    click(window->panels().filePanel->cdmWisKlaar);
    EXPECT_TRUE(exists(QStringLiteral("ok/klaar.mdb")));
    files.heal();
    prompts.expectAsk(question, title, true, Preset::No);
    click(window->panels().filePanel->cdmWisKlaar);
    EXPECT_EQ(filesIn(QStringLiteral("ok")), QStringList{QStringLiteral("link.mp3")});
    EXPECT_TRUE(window->workplace().datList.isOpen());
    EXPECT_FALSE(window->panels().gridPanel->dbgLijst->isHidden());
}

TEST_F(SavingTakes, AnEmptyListAsksNothing) {
    ASSERT_TRUE(start());
    click(window->panels().filePanel->cmdWisNew);
    window->panels().filePanel->tabFiles->setCurrentIndex(1);
    click(window->panels().filePanel->cdmWisKlaar);
}

TEST_F(SavingTakes, TheWindowStaysResponsiveAndASecondClickFilesNothingTwice) {
    openDemo();
    record(60000);
    int pumped = 0;
    QTimer beat;
    QObject::connect(&beat, &QTimer::timeout, [&] {
        ++pumped;
        click(window->panels().savePanel->cmdSave);
        EXPECT_FALSE(window->panels().recorderPanel->cmdRec->isEnabled());
        EXPECT_FALSE(window->panels().playbackPanel->cmdPlay->isEnabled());
        EXPECT_FALSE(window->panels().savePanel->cmdImport->isEnabled());
    });
    beat.start(20);
    save();
    EXPECT_GT(pumped, 2);
    EXPECT_EQ(filesIn(QStringLiteral("ok")).size(), 1);
    EXPECT_TRUE(window->panels().recorderPanel->cmdRec->isEnabled());
    EXPECT_TRUE(window->panels().savePanel->cmdImport->isEnabled());
}

TEST_F(SavingTakes, WhatIsDeletedIsWhatWasAskedAbout) {
    addPlaylist(demo, QStringLiteral("een.mdb"));
    addPlaylist(demo, QStringLiteral("twee.mdb"));
    ASSERT_TRUE(start());
    open(QStringLiteral("een.mdb"));
    prompts.whileOpen([this] { window->panels().filePanel->filNew->clearSelection(); });
    prompts.expectAsk(QStringLiteral("Wenst U het bestand een.mdb te verwijderen ?"),
                      QStringLiteral("Playlists verwijderen"), true, Preset::No);
    click(window->panels().filePanel->cmdWisNew);
    EXPECT_EQ(filesIn(QStringLiteral("new")), QStringList{QStringLiteral("twee.mdb")});
}

TEST_F(SavingTakes, ATakeThatStartsBehindTheQuestionKeepsItsPlaylist) {
    openDemo();
    prompts.whileOpen([this] { window->panels().recorderPanel->cmdRec_Click(); });
    prompts.expectAsk(QStringLiteral("Wenst U het bestand lijst.mdb te verwijderen ?"),
                      QStringLiteral("Playlists verwijderen"), true, Preset::No);
    click(window->panels().filePanel->cmdWisNew);
    EXPECT_TRUE(exists(QStringLiteral("new/lijst.mdb")));
    EXPECT_TRUE(window->workplace().datList.isOpen());
}

TEST_F(SavingTakes, WhileItIsEncodedTheGaugeAndTheHourglassAreShown) {
    openDemo();
    record(60000);
    const Gauge &gauge = *window->panels().savePanel->barProgress;
    int looks = 0;
    QTimer beat;
    QObject::connect(&beat, &QTimer::timeout, [&] {
        ++looks;
        EXPECT_TRUE(gauge.isVisible());
        EXPECT_EQ(gauge.caption(), QStringLiteral("Comprimeert bestand"));
        const QCursor *cursor = QGuiApplication::overrideCursor();
        ASSERT_NE(cursor, nullptr);
        EXPECT_EQ(cursor->shape(), Qt::WaitCursor);
    });
    beat.start(20);
    save();
    beat.stop();
    EXPECT_GT(looks, 2);
    EXPECT_EQ(QGuiApplication::overrideCursor(), nullptr);
    EXPECT_FALSE(gauge.isVisible());
    EXPECT_EQ(gauge.value(), 0);
}

} // namespace orvel
