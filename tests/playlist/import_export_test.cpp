// The import and export windows by themselves: what is deleted, what is told, what goes where.
#include "platform/jet/jet_engine.h"
#include "tests/test_platform.h"
#include "windows/frm_export.h"
#include "windows/frm_import.h"

#include <QDir>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace orvel {

namespace {

const QString mayDelete = QStringLiteral("Mogen de import-bestanden gewist worden ?");
const QString deleteTitle = QStringLiteral("Import-bestanden wissen");
const QString copying = QStringLiteral("Copieert....");

QString overwrite(const char *name) {
    return QStringLiteral("Het bestand %1 bestaat al. Wilt U het overschrijven ?").arg(QString::fromLatin1(name));
}

/// The real disk that tells each copy before it is made.
class WatchedFileSystem : public FaultyFileSystem {
  public:
    using FaultyFileSystem::FaultyFileSystem;
    bool copy(const QString &source, const QString &target, const Progress &progress) override {
        if (beforeCopy) {
            beforeCopy();
        }
        return FaultyFileSystem::copy(source, target, progress);
    }
    std::function<void()> beforeCopy;
};

class Moving : public testing::Test, protected TestPlatform<JetEngine, WatchedFileSystem> {
  protected:
    Moving() {
        for (const char *name : {"new", "ok", "stick", "doel", "server"}) {
            QDir(folder.path()).mkdir(QString::fromLatin1(name));
        }
        settings.NewPath = path("new");
        settings.OkPath = path("ok");
        settings.ImportPath = path("stick");
        settings.ExportPath = path("doel");
    }
    [[nodiscard]] QString path(const char *relative) const { return folder.filePath(QString::fromLatin1(relative)); }
    void put(const char *relative, const QByteArray &content = "x") { disk.write(path(relative), content); }
    void putPlaylist(const char *relative) {
        ASSERT_TRUE(
            QFile::copy(QStringLiteral(ORVEL_SOURCE_DIR "/tests/data/databases/access-2003.mdb"), path(relative)));
    }
    [[nodiscard]] QString namesIn(const char *relative) const {
        return QDir(path(relative)).entryList(QDir::Files).join(u' ');
    }
    TransferContext context() {
        return {platform,
                settings,
                drives,
                [this] { ++refreshes; },
                [this](const QString &sentence) { told << sentence; },
                [this] { return takeRuns; }};
    }
    /// Starts an import from the folder of the settings.
    void runImport() {
        frmImport window(context());
        window.Form_Load();
        window.show();
        window.cmdImport_Click();
    }
    /// Exports into the folder of the settings; the sentence in the window.
    QString runExport() {
        frmExport window(context());
        window.Form_Load();
        files.beforeCopy = [&] { gauge << window.barProgres->value(); };
        window.cmdExport_Click();
        gauge << window.barProgres->value();
        files.beforeCopy = {};
        return window.lblResult->text();
    }

    QTemporaryDir folder;
    Settings settings;
    DriveMap drives{files, folder.path()};
    QStringList told;
    int refreshes = 0;
    bool takeRuns = false;
    QList<int> gauge;
};

} // namespace

TEST_F(Moving, EverythingThatHappenedIsToldInOneGo) {
    put("stick/fout.mdb", "Dit is geen playlist.");
    putPlaylist("stick/goed.mdb");
    put("stick/oud.mdb", "van het stokje");
    put("new/oud.mdb", "van gisteren");
    prompts.expectAsk(overwrite("oud.mdb"), copying, false);
    prompts.expectAsk(mayDelete, deleteTitle, true);
    runImport();
    ASSERT_EQ(told.size(), 1);
    EXPECT_EQ(told.first(), QStringLiteral("Geen bruikbare playlist: fout.mdb, oud.mdb. Niet gewist, want niet "
                                           "gekopieerd: oud.mdb."));
    EXPECT_EQ(namesIn("stick"), QStringLiteral("oud.mdb"));
}

TEST_F(Moving, AnImportWithoutAnythingToSaySaysNothing) {
    putPlaylist("stick/goed.mdb");
    prompts.expectAsk(mayDelete, deleteTitle, false);
    runImport();
    EXPECT_TRUE(told.isEmpty());
    EXPECT_EQ(refreshes, 1);
}

TEST_F(Moving, WhatIsInTheToDoFolderAlreadyMayBeDeletedOnTheStick) {
    putPlaylist("stick/een.mdb");
    putPlaylist("new/een.mdb");
    prompts.expectAsk(overwrite("een.mdb"), copying, false);
    prompts.expectAsk(mayDelete, deleteTitle, true);
    runImport();
    EXPECT_EQ(namesIn("stick"), QString());
    EXPECT_EQ(namesIn("new"), QStringLiteral("een.mdb"));
}

TEST_F(Moving, ASourceThatCannotBeReadAgainIsNotDeleted) {
    putPlaylist("stick/een.mdb");
    files.fail(FaultyFileSystem::Operation::Read, QStringLiteral("stick/een.mdb"), ErrorNumber::DeviceError);
    prompts.expectAsk(mayDelete, deleteTitle, true);
    runImport();
    EXPECT_EQ(namesIn("stick"), QStringLiteral("een.mdb"));
    EXPECT_EQ(told.size(), 1);
}

TEST_F(Moving, TheListsShowWhatArrivedAlsoWhenTheDeletionFails) {
    putPlaylist("stick/een.mdb");
    putPlaylist("stick/twee.mdb");
    files.fail(FaultyFileSystem::Operation::Remove, QStringLiteral("twee.mdb"), ErrorNumber::PermissionDenied);
    prompts.expectAsk(mayDelete, deleteTitle, true);
    put("stick/geen.mdb", "geen playlist");
    EXPECT_THROW(runImport(), RuntimeError);
    EXPECT_EQ(refreshes, 1);
    ASSERT_FALSE(told.isEmpty());
    EXPECT_TRUE(told.last().contains(QStringLiteral("geen.mdb")));
    EXPECT_EQ(namesIn("new"), QStringLiteral("een.mdb geen.mdb twee.mdb"));
    EXPECT_EQ(namesIn("stick"), QStringLiteral("twee.mdb"));
}

TEST_F(Moving, TheToDoFolderIsNoSourceByWhateverPath) {
    ASSERT_TRUE(QFile::link(path("new"), path("omweg")));
    putPlaylist("new/een.mdb");
    settings.ImportPath = path("omweg");
    frmImport window(context());
    window.Form_Load();
    window.show();
    window.cmdImport_Click();
    EXPECT_TRUE(window.isVisible());
    EXPECT_FALSE(window.lblResult->text().isEmpty());
    EXPECT_EQ(namesIn("new"), QStringLiteral("een.mdb"));
    window.browser->setFolder(path("stick"));
    EXPECT_TRUE(window.lblResult->text().isEmpty());
}

TEST_F(Moving, ADriveRootOfTheStationForcesItsFolderUnderItsLetter) {
    drives.set(u'e', QStringLiteral("stick"));
    settings.ImportPath = QStringLiteral("E:\\");
    settings.Nodelete = true;
    putPlaylist("stick/een.mdb");
    frmImport window(context());
    window.Form_Load();
    EXPECT_EQ(window.browser->folder(), path("stick"));
    EXPECT_EQ(window.browser->Drive1->currentText(), QStringLiteral("E:"));
    EXPECT_FALSE(window.browser->Drive1->isEnabled());
    EXPECT_FALSE(window.browser->Dir1->isEnabled());
    window.cmdImport_Click();
    EXPECT_EQ(namesIn("new"), QStringLiteral("een.mdb"));
}

TEST_F(Moving, ThreeCharactersForceAFolderAndTwoDoNot) {
    for (const auto &[text, isFree] :
         {std::pair{"", true}, {"E:", true}, {"/x", true}, {"E:\\", false}, {"/xy", false}}) {
        settings.ExportPath = settings.ImportPath = QString::fromLatin1(text);
        frmImport import(context());
        import.Form_Load();
        frmExport exportWindow(context());
        exportWindow.Form_Load();
        for (const FolderBrowser *browser : {import.browser, exportWindow.browser}) {
            EXPECT_EQ(browser->Drive1->isEnabled(), isFree) << text;
            EXPECT_EQ(browser->Dir1->isEnabled(), isFree) << text;
        }
    }
}

TEST_F(Moving, TheGaugeMovesWithEveryFileThatIsExported) {
    put("ok/klaar.mdb");
    put("ok/VT1.mp3");
    put("ok/VT2.mp3");
    put("doel/VT1.mp3", "van gisteren");
    prompts.expectAsk(overwrite("VT1.mp3"), copying, false);
    EXPECT_EQ(runExport(), QStringLiteral("2 van 3 bestanden gekopieerd."));
    EXPECT_EQ(gauge, (QList<int>{0, 2, 3}));
    EXPECT_EQ(disk.read(path("doel/VT1.mp3")), "van gisteren");
}

TEST_F(Moving, InServerModeTheServersVoiceTracksGoAlongToo) {
    put("ok/klaar.mdb");
    put("server/VT7.mp3");
    settings.VoicetrackPath = path("server");
    EXPECT_EQ(runExport(), QStringLiteral("1 van 1 bestanden gekopieerd."));
    settings.ServerMode = true;
    prompts.expectAsk(overwrite("klaar.mdb"), copying, true);
    EXPECT_EQ(runExport(), QStringLiteral("2 van 2 bestanden gekopieerd."));
    EXPECT_EQ(namesIn("doel"), QStringLiteral("klaar.mdb VT7.mp3"));
    EXPECT_EQ(namesIn("server"), QStringLiteral("VT7.mp3"));
}

TEST_F(Moving, ServerModeWithoutAFolderExportsWhatIsHere) {
    settings.ServerMode = true;
    put("ok/klaar.mdb");
    EXPECT_EQ(runExport(), QStringLiteral("1 van 1 bestanden gekopieerd."));
}

TEST_F(Moving, TheFinishedFolderIsNoTarget) {
    put("ok/klaar.mdb");
    settings.ExportPath = path("ok");
    EXPECT_TRUE(runExport().contains(QStringLiteral("andere map")));
    EXPECT_EQ(namesIn("ok"), QStringLiteral("klaar.mdb"));
}

TEST_F(Moving, AfterAFailureTheExportEndsAndNothingOfItIsHalf) {
    put("ok/a.mdb");
    put("ok/b.mdb");
    put("ok/VT1.mp3");
    files.fail(FaultyFileSystem::Operation::Copy, QStringLiteral("b.mdb"), ErrorNumber::DiskFull);
    prompts.expectReport(QStringLiteral("Error: 61. "));
    EXPECT_EQ(runExport(), QStringLiteral("1 van 3 bestanden gekopieerd."));
    EXPECT_EQ(namesIn("doel"), QStringLiteral("a.mdb"));
}

TEST_F(Moving, ATargetThatIsNotThereIsAskedForOnce) {
    put("ok/a.mdb");
    put("ok/VT1.mp3");
    settings.ExportPath = path("weg");
    prompts.expectAsk(QStringLiteral("De map %1 bestaat niet. Wilt U ze maken ?").arg(path("weg")), copying, false,
                      Preset::No);
    EXPECT_EQ(runExport(), QStringLiteral("0 van 2 bestanden gekopieerd."));
    EXPECT_FALSE(QDir(path("weg")).exists());
}

TEST_F(Moving, ASourceThatIsTheImportedFileItselfIsNotDeleted) {
    putPlaylist("stick/een.mdb");
    ASSERT_TRUE(QFile::link(path("stick/een.mdb"), path("new/een.mdb")));
    prompts.expectAsk(overwrite("een.mdb"), copying, false);
    prompts.expectAsk(mayDelete, deleteTitle, true);
    runImport();
    EXPECT_EQ(namesIn("stick"), QStringLiteral("een.mdb"));
    EXPECT_TRUE(told.last().contains(QStringLiteral("Niet gewist")));
}

TEST_F(Moving, WhileATakeRunsNothingIsImported) {
    putPlaylist("stick/een.mdb");
    takeRuns = true;
    runImport();
    EXPECT_EQ(namesIn("new"), QString());
    EXPECT_EQ(namesIn("stick"), QStringLiteral("een.mdb"));
}

TEST_F(Moving, ADriveThatTheStationDoesNotHaveIsNoTarget) {
    put("ok/een.mdb");
    settings.ExportPath = QStringLiteral("Q:\\uit");
    EXPECT_TRUE(runExport().contains(QStringLiteral("niet gevonden")));
    EXPECT_FALSE(QDir(QStringLiteral("Q:")).exists());
}

} // namespace orvel
