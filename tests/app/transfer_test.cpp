// Importing playlists and exporting what is finished.
#include "station.h"

namespace orvel {

namespace {

const QString mayDelete = QStringLiteral("Mogen de import-bestanden gewist worden ?");
const QString deleteTitle = QStringLiteral("Import-bestanden wissen");
const QString copyingOut = QStringLiteral("Copieert....");

class Transfer : public Station {
  protected:
    Transfer() {
        for (const char *name : {"stick", "stick/onder", "doel"}) {
            QDir(folder.path()).mkdir(QString::fromLatin1(name));
        }
    }
    void putOnStick(const QString &name, const QString &fixture = QStringLiteral("access-2003.mdb")) {
        const QString target = path(QStringLiteral("stick/") + name);
        ASSERT_TRUE(QFile::copy(QStringLiteral(ORVEL_SOURCE_DIR "/tests/data/databases/") + fixture, target));
        QFile::setPermissions(target, QFile::ReadOwner | QFile::WriteOwner);
    }
    void openImport(const QString &settings = {}) {
        configure(settings);
        ASSERT_TRUE(start());
        window->tlbMain_ButtonClick(2);
        import = window->findChild<frmImport *>();
        ASSERT_NE(import, nullptr);
    }
    void openExport(const QString &settings = {}) {
        configure(settings);
        ASSERT_TRUE(start());
        window->tlbMain_ButtonClick(3);
        exportWindow = window->findChild<frmExport *>();
        ASSERT_NE(exportWindow, nullptr);
    }
    [[nodiscard]] QString forced() const {
        return QStringLiteral("[Files]\nImportPath=") + path(QStringLiteral("stick"));
    }
    [[nodiscard]] QListWidgetItem *toDo(const QString &name) const {
        const auto found = window->panels().filePanel->filNew->findItems(name, Qt::MatchExactly);
        return found.isEmpty() ? nullptr : found.first();
    }

    frmImport *import = nullptr;
    frmExport *exportWindow = nullptr;
};

} // namespace

// The name was taken for a path: the import said that the copy was missing, and left the source.
TEST_F(Transfer, ABackslashInANameIsACharacterLikeAnyOther) {
    const QString tricky = QStringLiteral("een\\twee.mdb");
    putOnStick(tricky);
    openImport(forced());
    prompts.expectAsk(mayDelete, deleteTitle, true, Preset::No);
    click(import->cmdImport);
    EXPECT_TRUE(filesIn(QStringLiteral("stick")).isEmpty());
    EXPECT_EQ(filesIn(QStringLiteral("new")), QStringList{tricky});
    ASSERT_NE(toDo(tricky), nullptr);
    EXPECT_TRUE(toDo(tricky)->toolTip().isEmpty()) << "it is a playlist like any other";
}

TEST_F(Transfer, PlaylistsAreCopiedAndTheSourcesDeletedOnYes) {
    putOnStick(QStringLiteral("een.mdb"));
    putOnStick(QStringLiteral("twee.MDB"));
    disk.write(path(QStringLiteral("stick/lees.txt")), "tekst");
    openImport(forced());
    EXPECT_TRUE(import->isVisible());
    EXPECT_FALSE(import->isModal());
    EXPECT_EQ(import->browser->files(),
              (QStringList{QStringLiteral("een.mdb"), QStringLiteral("lees.txt"), QStringLiteral("twee.MDB")}));
    prompts.expectAsk(mayDelete, deleteTitle, true, Preset::No);
    click(import->cmdImport);
    EXPECT_EQ(filesIn(QStringLiteral("new")), (QStringList{QStringLiteral("een.mdb"), QStringLiteral("twee.MDB")}));
    EXPECT_EQ(filesIn(QStringLiteral("stick")), QStringList{QStringLiteral("lees.txt")});
    EXPECT_NE(toDo(QStringLiteral("een.mdb")), nullptr);
    EXPECT_FALSE(import->isVisible());
}

TEST_F(Transfer, NoKeepsTheSources) {
    putOnStick(QStringLiteral("een.mdb"));
    openImport(forced());
    prompts.expectAsk(mayDelete, deleteTitle, false, Preset::No);
    click(import->cmdImport);
    EXPECT_EQ(filesIn(QStringLiteral("stick")), QStringList{QStringLiteral("een.mdb")});
    EXPECT_EQ(filesIn(QStringLiteral("new")), QStringList{QStringLiteral("een.mdb")});
}

TEST_F(Transfer, WithNodeleteNothingIsAskedAndNothingDeleted) {
    putOnStick(QStringLiteral("een.mdb"));
    openImport(forced() + QStringLiteral("\nNodelete=1"));
    click(import->cmdImport);
    EXPECT_EQ(filesIn(QStringLiteral("stick")), QStringList{QStringLiteral("een.mdb")});
}

TEST_F(Transfer, AnEmptyFolderCopiesNothingAndStillAsks) {
    openImport(forced());
    prompts.expectAsk(mayDelete, deleteTitle, true, Preset::No);
    click(import->cmdImport);
    EXPECT_TRUE(filesIn(QStringLiteral("new")).isEmpty());
}

TEST_F(Transfer, AFileWhoseCopyWasNotWantedIsNotDeleted) {
    putOnStick(QStringLiteral("een.mdb"));
    addPlaylist(QStringLiteral("unicode.mdb"), QStringLiteral("een.mdb"));
    openImport(forced());
    prompts.expectOverwrite(QStringLiteral("Het bestand een.mdb bestaat al. Wilt U het overschrijven ?"), copyingOut,
                            false);
    prompts.expectAsk(mayDelete, deleteTitle, true, Preset::No);
    click(import->cmdImport);
    EXPECT_EQ(filesIn(QStringLiteral("stick")), QStringList{QStringLiteral("een.mdb")});
    EXPECT_TRUE(window->panels().lblStatus->text().contains(QStringLiteral("een.mdb")));
}

TEST_F(Transfer, AFileWhoseCopyFailedIsNotDeleted) {
    putOnStick(QStringLiteral("een.mdb"));
    openImport(forced());
    files.fail(FaultyFileSystem::Operation::Copy, QStringLiteral("een.mdb"), ErrorNumber::DiskFull);
    prompts.expectReport(QStringLiteral("Error: 61. "));
    prompts.expectAsk(mayDelete, deleteTitle, true, Preset::No);
    click(import->cmdImport);
    EXPECT_EQ(filesIn(QStringLiteral("stick")), QStringList{QStringLiteral("een.mdb")});
}

TEST_F(Transfer, ADeletionThatFailsIsReported) {
    putOnStick(QStringLiteral("een.mdb"));
    openImport(forced());
    files.fail(FaultyFileSystem::Operation::Remove, QStringLiteral("een.mdb"), ErrorNumber::PermissionDenied);
    prompts.expectAsk(mayDelete, deleteTitle, true, Preset::No);
    prompts.expectReport(QStringLiteral("Fout 70"));
    click(import->cmdImport);
    EXPECT_EQ(filesIn(QStringLiteral("new")), QStringList{QStringLiteral("een.mdb")});
}

TEST_F(Transfer, AFileThatIsNoPlaylistIsNamedAndGreyed) {
    putOnStick(QStringLiteral("goed.mdb"));
    disk.write(path(QStringLiteral("stick/fout.mdb")), "Dit is geen playlist.");
    openImport(forced() + QStringLiteral("\nNodelete=1"));
    click(import->cmdImport);
    EXPECT_TRUE(window->panels().lblStatus->text().contains(QStringLiteral("fout.mdb")));
    EXPECT_FALSE(window->panels().lblStatus->text().contains(QStringLiteral("goed.mdb")));
    ASSERT_NE(toDo(QStringLiteral("fout.mdb")), nullptr);
    EXPECT_FALSE(toDo(QStringLiteral("fout.mdb"))->toolTip().isEmpty());
    EXPECT_TRUE(toDo(QStringLiteral("goed.mdb"))->toolTip().isEmpty());
}

TEST_F(Transfer, AForcedPathCannotBeChanged) {
    openImport(forced());
    EXPECT_EQ(import->browser->folder(), path(QStringLiteral("stick")));
    EXPECT_FALSE(import->browser->Drive1->isEnabled());
    EXPECT_FALSE(import->browser->Dir1->isEnabled());
}

TEST_F(Transfer, APathOfTwoCharactersLeavesTheChoiceFree) {
    openImport(QStringLiteral("[Files]\nImportPath=E:"));
    EXPECT_TRUE(import->browser->Drive1->isEnabled());
    EXPECT_TRUE(import->browser->Dir1->isEnabled());
}

TEST_F(Transfer, ADriveLetterOfTheStationIsItsFolder) {
    openImport(QStringLiteral("[Files]\nImportPath=E:\\onder\n[Drives]\nE=stick"));
    EXPECT_EQ(import->browser->folder(), path(QStringLiteral("stick/onder")));
}

TEST_F(Transfer, FoldersAreOpenedByADoubleClickAndLeftByTheDots) {
    openImport();
    FolderBrowser &browser = *import->browser;
    browser.setFolder(path(QStringLiteral("stick")));
    ASSERT_EQ(browser.Dir1->count(), 2);
    EXPECT_EQ(browser.Dir1->item(0)->text(), QStringLiteral(".."));
    browser.Dir1->setCurrentRow(1);
    EXPECT_EQ(browser.folder(), path(QStringLiteral("stick")));
    browser.Dir1_Change();
    EXPECT_EQ(browser.folder(), path(QStringLiteral("stick/onder")));
    browser.Dir1->setCurrentRow(0);
    QTest::keyClick(browser.Dir1, Qt::Key_Return);
    EXPECT_EQ(browser.folder(), path(QStringLiteral("stick")));
}

TEST_F(Transfer, AnotherDriveShowsItsRoot) {
    openImport();
    FolderBrowser &browser = *import->browser;
    browser.setFolder(path(QStringLiteral("stick")));
    const int root = browser.Drive1->findText(QStringLiteral("/"));
    ASSERT_GE(root, 0);
    browser.Drive1->setCurrentIndex(root);
    browser.Drive1_Change();
    EXPECT_EQ(browser.folder(), QStringLiteral("/"));
    EXPECT_TRUE(browser.Dir1->findItems(QStringLiteral(".."), Qt::MatchExactly).isEmpty());
}

TEST_F(Transfer, TheToDoFolderCannotBeImportedIntoItself) {
    addPlaylist(QStringLiteral("access-2003.mdb"));
    openImport(QStringLiteral("[Files]\nImportPath=") + path(QStringLiteral("new")));
    click(import->cmdImport);
    EXPECT_EQ(filesIn(QStringLiteral("new")), QStringList{QStringLiteral("access-2003.mdb")});
    EXPECT_FALSE(import->lblResult->text().isEmpty());
}

TEST_F(Transfer, LeavingTheWindowsChangesNothing) {
    putOnStick(QStringLiteral("een.mdb"));
    openImport(forced());
    click(import->cmdStop);
    EXPECT_FALSE(import->isVisible());
    EXPECT_TRUE(filesIn(QStringLiteral("new")).isEmpty());
    window->tlbMain_ButtonClick(2);
    EXPECT_EQ(window->findChildren<frmImport *>().size(), 1);
}

TEST_F(Transfer, ExportCopiesFinishedPlaylistsAndVoiceTracksAndMovesTheGauge) {
    disk.write(path(QStringLiteral("ok/klaar.mdb")), "playlist");
    disk.write(path(QStringLiteral("ok/VT1.mp3")), "stem 1");
    disk.write(path(QStringLiteral("ok/VT2.mp3")), "stem 2");
    disk.write(path(QStringLiteral("ok/notities.txt")), "niet mee");
    openExport(QStringLiteral("[Files]\nExportPath=") + path(QStringLiteral("doel")));
    click(exportWindow->cmdExport);
    EXPECT_EQ(filesIn(QStringLiteral("doel")).join(u' '), QStringLiteral("klaar.mdb VT1.mp3 VT2.mp3"));
    EXPECT_EQ(filesIn(QStringLiteral("ok")).size(), 4);
    EXPECT_EQ(exportWindow->barProgres->value(), exportWindow->barProgres->maximum());
    EXPECT_TRUE(exportWindow->lblResult->text().contains(QStringLiteral("3 van 3")));
    EXPECT_TRUE(exportWindow->isVisible());
}

TEST_F(Transfer, ExportWithoutAnythingFinishedSaysSo) {
    openExport(QStringLiteral("[Files]\nExportPath=") + path(QStringLiteral("doel")));
    click(exportWindow->cmdExport);
    EXPECT_FALSE(exportWindow->lblResult->text().isEmpty());
    EXPECT_TRUE(filesIn(QStringLiteral("doel")).isEmpty());
}

TEST_F(Transfer, AnExportThatFailsTellsAndCountsWhatArrived) {
    disk.write(path(QStringLiteral("ok/klaar.mdb")), "playlist");
    disk.write(path(QStringLiteral("ok/VT1.mp3")), "stem 1");
    openExport(QStringLiteral("[Files]\nExportPath=") + path(QStringLiteral("doel")));
    files.fail(FaultyFileSystem::Operation::Copy, QStringLiteral("VT1"), ErrorNumber::DiskFull);
    prompts.expectReport(QStringLiteral("Error: 61. "));
    click(exportWindow->cmdExport);
    EXPECT_TRUE(exportWindow->lblResult->text().contains(QStringLiteral("1 van 2")));
    EXPECT_EQ(content(QStringLiteral("ok/VT1.mp3")), "stem 1");
}

TEST_F(Transfer, APlaylistThatIsImportedOverTheOpenOneIsOpenedAnew) {
    addPlaylist(QStringLiteral("access-2003.mdb"), QStringLiteral("een.mdb"));
    openImport(forced());
    import->close();
    open(QStringLiteral("een.mdb"));
    select(2);
    putOnStick(QStringLiteral("een.mdb"), QStringLiteral("steps-150.mdb"));
    window->tlbMain_ButtonClick(2);
    prompts.expectOverwrite(QStringLiteral("Het bestand een.mdb bestaat al. Wilt U het overschrijven ?"), copyingOut,
                            true);
    prompts.expectAsk(mayDelete, deleteTitle, false, Preset::No);
    click(import->cmdImport);
    EXPECT_EQ(window->workplace().datList.stepCount(), 150);
    EXPECT_EQ(window->panels().gridPanel->currentRow(), 2);
    mark(window->panels().gridPanel->currentRow(), true); // nobody is in the way
}

// Every import opened the playlist anew: what was recorded but not saved could no longer be listened to.
TEST_F(Transfer, AnImportOfOtherPlaylistsLeavesTheTakeThatIsNotSaved) {
    addPlaylist(QStringLiteral("access-2003.mdb"), QStringLiteral("een.mdb"));
    putOnStick(QStringLiteral("twee.mdb"));
    openImport(forced());
    open(QStringLiteral("een.mdb"));
    while (!window->workplace().step.StepSelected) {
        select(window->panels().gridPanel->currentRow() + 1);
    }
    record(500);
    ASSERT_TRUE(window->panels().playbackPanel->cmdPlay->isEnabled());
    const int row = window->panels().gridPanel->currentRow();
    prompts.expectAsk(mayDelete, deleteTitle, false, Preset::No);
    click(import->cmdImport);
    EXPECT_NE(toDo(QStringLiteral("twee.mdb")), nullptr);
    EXPECT_TRUE(window->panels().playbackPanel->cmdPlay->isEnabled());
    EXPECT_TRUE(window->panels().savePanel->cmdSave->isEnabled());
    EXPECT_EQ(window->panels().gridPanel->currentRow(), row);
}

// The playlist was opened anew under a take that had begun while the import asked its question.
TEST_F(Transfer, ATakeThatBeganDuringTheQuestionIsUntouched) {
    for (const char *question : {"delete", "overwrite"}) {
        const bool overwrites = QLatin1String(question) == QLatin1String("overwrite");
        QFile::remove(path(QStringLiteral("new/een.mdb")));
        QFile::remove(path(QStringLiteral("stick/een.mdb")));
        addPlaylist(QStringLiteral("access-2003.mdb"), QStringLiteral("een.mdb"));
        openImport(forced());
        open(QStringLiteral("een.mdb"));
        while (!window->workplace().step.StepSelected) {
            select(window->panels().gridPanel->currentRow() + 1);
        }
        putOnStick(overwrites ? QStringLiteral("een.mdb") : QStringLiteral("twee.mdb"),
                   QStringLiteral("steps-150.mdb"));
        const QByteArray list = content(QStringLiteral("new/een.mdb"));
        const QString take = window->workplace().step.VoiceTrackName;
        prompts.whileOpen([this] { beginRecording(); });
        if (overwrites) {
            prompts.expectOverwrite(QStringLiteral("Het bestand een.mdb bestaat al. Wilt U het overschrijven ?"),
                                    copyingOut, true);
            prompts.expectOverwrite(QStringLiteral("Het bestand twee.mdb bestaat al. Wilt U het overschrijven ?"),
                                    copyingOut, false);
        }
        prompts.expectAsk(mayDelete, deleteTitle, false, Preset::No);
        click(import->cmdImport);
        EXPECT_TRUE(sound.recorder().isRecording());
        EXPECT_TRUE(window->workplace().step.StepSelected);
        EXPECT_EQ(window->workplace().step.VoiceTrackName, take);
        EXPECT_LT(window->workplace().datList.stepCount(), 150);
        EXPECT_EQ(content(QStringLiteral("new/een.mdb")).size(), list.size());
        sound.deliver(44100);
        timers.advance(1000);
        click(window->panels().recorderPanel->cmdRec);
        EXPECT_TRUE(exists(QStringLiteral("temp/") + take + QStringLiteral(".wav")));
    }
}

TEST_F(Transfer, FinishedPlaylistsCanBeDeletedWhileATakeRunsAndTheOthersSayWhyNot) {
    addPlaylist(QStringLiteral("access-2003.mdb"), QStringLiteral("een.mdb"));
    disk.write(path(QStringLiteral("ok/klaar.mdb")), "playlist");
    ASSERT_TRUE(start());
    open(QStringLiteral("een.mdb"));
    while (!window->workplace().step.StepSelected) {
        select(window->panels().gridPanel->currentRow() + 1);
    }
    beginRecording();
    FilePanel &lists = *window->panels().filePanel;
    click(lists.cmdWisNew);
    EXPECT_TRUE(window->panels().lblStatus->text().contains(QStringLiteral("Er loopt een opname")));
    lists.tabFiles->setCurrentIndex(1);
    prompts.expectAsk(QStringLiteral("Wenst U ALLE afgewerkte playlists te verwijderen ?"),
                      QStringLiteral("Playlists verwijderen"), true, Preset::No);
    click(lists.cdmWisKlaar);
    EXPECT_EQ(lists.filOK->count(), 0);
    EXPECT_TRUE(filesIn(QStringLiteral("ok")).isEmpty());
    EXPECT_EQ(filesIn(QStringLiteral("herstel")).filter(QStringLiteral("klaar.")).size(), 1);
    EXPECT_TRUE(sound.recorder().isRecording());
    EXPECT_TRUE(window->workplace().datList.isOpen());
}

TEST_F(Transfer, WhileATakeRunsNoOtherPlaylistIsOpenedAndTheListsStandStill) {
    addPlaylist(QStringLiteral("access-2003.mdb"), QStringLiteral("een.mdb"));
    addPlaylist(QStringLiteral("steps-150.mdb"), QStringLiteral("twee.mdb"));
    ASSERT_TRUE(start());
    open(QStringLiteral("een.mdb"));
    while (!window->workplace().step.StepSelected) {
        select(window->panels().gridPanel->currentRow() + 1);
    }
    beginRecording();
    open(QStringLiteral("twee.mdb"));
    EXPECT_EQ(window->workplace().datList.fileName(), QStringLiteral("een.mdb"));
    disk.write(path(QStringLiteral("ok/klaar.mdb")), "playlist");
    FilePanel &lists = *window->panels().filePanel;
    lists.tabFiles->setCurrentIndex(1);
    EXPECT_EQ(lists.filOK->count(), 0);
    sound.deliver(44100);
    timers.advance(1000);
    click(window->panels().recorderPanel->cmdRec);
    lists.tabFiles->setCurrentIndex(0);
    EXPECT_EQ(lists.filOK->count(), 1);
    open(QStringLiteral("twee.mdb"));
    EXPECT_EQ(window->workplace().datList.fileName(), QStringLiteral("twee.mdb"));
}

} // namespace orvel
