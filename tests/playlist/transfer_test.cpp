// Importing and exporting: what is copied, replaced, deleted and told.
#include "platform/jet/jet_engine.h"
#include "playlist/transfer.h"
#include "tests/test_platform.h"

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

class Transferring : public testing::Test, protected TestPlatform<JetEngine> {
  protected:
    Transferring() {
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
                recovery,
                [this](const QStringList &names) {
                    ++refreshes;
                    replaced << names;
                },
                [this](const QString &sentence) { told << sentence; },
                [this] { return takeRuns; }};
    }
    /// Imports from the folder of the settings.
    void runImport() {
        PlaylistImport import(context());
        ASSERT_EQ(import.refusal(settings.ImportPath), QString());
        import.run(settings.ImportPath);
    }
    /// Exports into the folder of the settings; the sentence about the result.
    QString runExport() {
        PlaylistExport what(context());
        EXPECT_EQ(what.refusal(settings.ExportPath), QString());
        return what.run(settings.ExportPath, [] {});
    }

    QTemporaryDir folder;
    Settings settings;
    DriveMap drives{files, folder.path()};
    Recovery recovery{files, folder.path()};
    QStringList told;
    QStringList replaced;
    int refreshes = 0;
    bool takeRuns = false;
};

} // namespace

TEST_F(Transferring, EverythingThatHappenedIsToldInOneGo) {
    put("stick/fout.mdb", "Dit is geen playlist.");
    putPlaylist("stick/goed.mdb");
    put("stick/oud.mdb", "van het stokje");
    put("new/oud.mdb", "van gisteren");
    prompts.expectOverwrite(overwrite("oud.mdb"), copying, false);
    prompts.expectAsk(mayDelete, deleteTitle, true, Preset::No);
    runImport();
    ASSERT_EQ(told.size(), 1);
    EXPECT_EQ(told.first(), QStringLiteral("Geen bruikbare playlist: fout.mdb, oud.mdb. Niet gewist, want niet "
                                           "gekopieerd: oud.mdb."));
    EXPECT_EQ(namesIn("stick"), QStringLiteral("oud.mdb"));
}

TEST_F(Transferring, AnImportWithoutAnythingToSaySaysNothing) {
    putPlaylist("stick/goed.mdb");
    prompts.expectAsk(mayDelete, deleteTitle, false, Preset::No);
    runImport();
    EXPECT_TRUE(told.isEmpty());
    EXPECT_EQ(refreshes, 1);
}

TEST_F(Transferring, WhatIsInTheToDoFolderAlreadyMayBeDeletedOnTheStick) {
    putPlaylist("stick/een.mdb");
    putPlaylist("new/een.mdb");
    prompts.expectOverwrite(overwrite("een.mdb"), copying, false);
    prompts.expectAsk(mayDelete, deleteTitle, true, Preset::No);
    runImport();
    EXPECT_EQ(namesIn("stick"), QString());
    EXPECT_EQ(namesIn("new"), QStringLiteral("een.mdb"));
}

TEST_F(Transferring, ASourceThatCannotBeReadAgainIsNotDeleted) {
    putPlaylist("stick/een.mdb");
    files.fail(FaultyFileSystem::Operation::Read, QStringLiteral("stick/een.mdb"), ErrorNumber::DeviceError);
    prompts.expectAsk(mayDelete, deleteTitle, true, Preset::No);
    runImport();
    EXPECT_EQ(namesIn("stick"), QStringLiteral("een.mdb"));
    EXPECT_EQ(told.size(), 1);
}

TEST_F(Transferring, TheListsShowWhatArrivedAlsoWhenTheDeletionFails) {
    putPlaylist("stick/een.mdb");
    putPlaylist("stick/twee.mdb");
    files.fail(FaultyFileSystem::Operation::Remove, QStringLiteral("twee.mdb"), ErrorNumber::PermissionDenied);
    prompts.expectAsk(mayDelete, deleteTitle, true, Preset::No);
    put("stick/geen.mdb", "geen playlist");
    EXPECT_THROW(runImport(), RuntimeError);
    EXPECT_EQ(refreshes, 1);
    ASSERT_FALSE(told.isEmpty());
    EXPECT_TRUE(told.last().contains(QStringLiteral("geen.mdb")));
    EXPECT_EQ(namesIn("new"), QStringLiteral("een.mdb geen.mdb twee.mdb"));
    EXPECT_EQ(namesIn("stick"), QStringLiteral("twee.mdb"));
}

TEST_F(Transferring, InServerModeTheServersVoiceTracksGoAlongToo) {
    put("ok/klaar.mdb");
    put("server/VT7.mp3");
    settings.VoicetrackPath = path("server");
    EXPECT_EQ(runExport(), QStringLiteral("1 van 1 bestanden gekopieerd."));
    settings.ServerMode = true;
    prompts.expectOverwrite(overwrite("klaar.mdb"), copying, true);
    EXPECT_EQ(runExport(), QStringLiteral("2 van 2 bestanden gekopieerd."));
    EXPECT_EQ(namesIn("doel"), QStringLiteral("klaar.mdb VT7.mp3"));
    EXPECT_EQ(namesIn("server"), QStringLiteral("VT7.mp3"));
}

TEST_F(Transferring, ServerModeWithoutAFolderExportsWhatIsHere) {
    settings.ServerMode = true;
    put("ok/klaar.mdb");
    EXPECT_EQ(runExport(), QStringLiteral("1 van 1 bestanden gekopieerd."));
}

TEST_F(Transferring, AfterAFailureTheExportEndsAndNothingOfItIsHalf) {
    put("ok/a.mdb");
    put("ok/b.mdb");
    put("ok/VT1.mp3");
    files.fail(FaultyFileSystem::Operation::Copy, QStringLiteral("b.mdb"), ErrorNumber::DiskFull);
    prompts.expectReport(QStringLiteral("Error: 61. "));
    EXPECT_EQ(runExport(), QStringLiteral("1 van 3 bestanden gekopieerd."));
    EXPECT_EQ(namesIn("doel"), QStringLiteral("a.mdb"));
}

TEST_F(Transferring, ATargetThatIsNotThereIsAskedForOnce) {
    put("ok/a.mdb");
    put("ok/VT1.mp3");
    settings.ExportPath = path("weg");
    prompts.expectAsk(QStringLiteral("De map %1 bestaat niet. Wilt U ze maken ?").arg(path("weg")), copying, false,
                      Preset::No, {QStringLiteral("&Maak de map"), QStringLiteral("Maak &geen map")});
    EXPECT_EQ(runExport(), QStringLiteral("0 van 2 bestanden gekopieerd."));
    EXPECT_FALSE(QDir(path("weg")).exists());
}

TEST_F(Transferring, ASourceThatIsTheImportedFileItselfIsNotDeleted) {
    putPlaylist("stick/een.mdb");
    ASSERT_TRUE(QFile::link(path("stick/een.mdb"), path("new/een.mdb")));
    prompts.expectOverwrite(overwrite("een.mdb"), copying, false);
    prompts.expectAsk(mayDelete, deleteTitle, true, Preset::No);
    runImport();
    EXPECT_EQ(namesIn("stick"), QStringLiteral("een.mdb"));
    EXPECT_TRUE(told.last().contains(QStringLiteral("Niet gewist")));
}

// What an import replaced was gone.
TEST_F(Transferring, APlaylistThatIsReplacedIsKeptFirst) {
    put("stick/een.mdb", "nieuw");
    put("stick/twee.mdb", "nieuw");
    put("new/een.mdb", "oud");
    settings.Nodelete = true;
    prompts.expectOverwrite(overwrite("een.mdb"), copying, true);
    runImport();
    EXPECT_EQ(disk.read(path("new/een.mdb")), "nieuw");
    ASSERT_EQ(recovery.kept().size(), 1U);
    EXPECT_EQ(recovery.kept().front().name, QStringLiteral("een.mdb"));
    EXPECT_EQ(disk.read(recovery.kept().front().path), "oud");
    EXPECT_EQ(replaced, QStringList{QStringLiteral("een.mdb")}) << "the other one is new";
}

TEST_F(Transferring, OnlyWhatWasReallyReplacedCountsAsReplaced) {
    for (const char *name : {"nee.mdb", "vol.mdb"}) {
        put((QByteArray("stick/") + name).constData(), "nieuw");
        put((QByteArray("new/") + name).constData(), "oud");
    }
    settings.Nodelete = true;
    files.fail(FaultyFileSystem::Operation::Copy, QStringLiteral("new/vol.mdb"), ErrorNumber::DiskFull);
    prompts.expectOverwrite(overwrite("nee.mdb"), copying, false);
    prompts.expectOverwrite(overwrite("vol.mdb"), copying, true);
    prompts.expectReport(QStringLiteral("Error: 61. "));
    runImport();
    EXPECT_TRUE(replaced.isEmpty());
    EXPECT_EQ(disk.read(path("new/vol.mdb")), "oud");
}

TEST_F(Transferring, WhatCouldNotBeKeptIsToldAndImported) {
    put("stick/een.mdb", "nieuw");
    put("new/een.mdb", "oud");
    settings.Nodelete = true;
    files.fail(FaultyFileSystem::Operation::Copy, QStringLiteral("herstel"), ErrorNumber::PermissionDenied);
    prompts.expectOverwrite(overwrite("een.mdb"), copying, true);
    runImport();
    EXPECT_EQ(disk.read(path("new/een.mdb")), "nieuw");
    ASSERT_EQ(told.size(), 1);
    EXPECT_TRUE(told.first().startsWith(QStringLiteral("Van een.mdb is geen kopie bewaard in de map herstel")));
}

// The playlist of a take that was started behind the question was replaced under it.
TEST_F(Transferring, ATakeThatStartsBehindTheQuestionKeepsItsPlaylist) {
    put("stick/een.mdb", "nieuw");
    put("new/een.mdb", "oud");
    put("stick/twee.mdb", "nieuw");
    prompts.whileOpen([this] { takeRuns = true; });
    prompts.expectOverwrite(overwrite("een.mdb"), copying, true);
    prompts.expectAsk(mayDelete, deleteTitle, true, Preset::No);
    runImport();
    EXPECT_EQ(disk.read(path("new/een.mdb")), "oud");
    EXPECT_EQ(disk.read(path("new/twee.mdb")), "nieuw") << "it stands in nobody's way";
    EXPECT_EQ(namesIn("stick"), QStringLiteral("een.mdb"));
    EXPECT_TRUE(replaced.isEmpty());
    ASSERT_EQ(told.size(), 1);
    EXPECT_TRUE(told.first().startsWith(QStringLiteral("Niet overschreven, want er loopt een opname: een.mdb.")));
}

TEST_F(Transferring, NothingIsImportedFromTheToDoFolderOrWhileATakeRuns) {
    PlaylistImport import(context());
    EXPECT_EQ(import.refusal(path("stick")), QString());
    EXPECT_FALSE(import.refusal(path("new/../new")).isEmpty());
    takeRuns = true;
    EXPECT_TRUE(import.refusal(path("stick")).contains(QStringLiteral("opname")));
}

TEST_F(Transferring, WhereNothingCanBeExportedTo) {
    PlaylistExport what(context());
    EXPECT_TRUE(what.refusal(path("doel")).contains(QStringLiteral("niets afgewerkt")));
    put("ok/VT1.mp3");
    EXPECT_EQ(what.count(), 1);
    EXPECT_EQ(what.refusal(path("doel")), QString());
    EXPECT_TRUE(what.refusal(QStringLiteral("Q:/uit")).contains(QStringLiteral("niet gevonden")));
    EXPECT_TRUE(what.refusal(path("ok")).contains(QStringLiteral("andere map")));
}

TEST_F(Transferring, OnlyPathsOfThreeCharactersAndMoreForceAFolder) {
    for (const char *free : {"", "E:", "/x"}) {
        EXPECT_FALSE(forcedFolder(QString::fromLatin1(free), drives)) << free;
    }
    drives.set(u'e', QStringLiteral("stick"));
    const auto root = forcedFolder(QStringLiteral("E:\\"), drives);
    ASSERT_TRUE(root);
    EXPECT_EQ(root->folder, path("stick"));
    EXPECT_EQ(root->drive, QStringLiteral("E:"));
    EXPECT_EQ(forcedFolder(path("doel"), drives)->folder, path("doel"));
    EXPECT_EQ(forcedFolder(path("doel"), drives)->drive, QString());
}

TEST(TransferPaths, ADriveRootLosesItsSeparator) {
    EXPECT_EQ(withoutRootSeparator(QStringLiteral("E:\\")), QStringLiteral("E:"));
    EXPECT_EQ(withoutRootSeparator(QStringLiteral("/ab")), QStringLiteral("/ab"));
    EXPECT_EQ(withoutRootSeparator(QStringLiteral("E:\\x")), QStringLiteral("E:\\x"));
}

TEST_F(Transferring, PlaylistsThatAreDroppedAreImportedAndTheirSourcesStay) {
    putPlaylist("stick/een.mdb");
    putPlaylist("stick/TWEE.MDB");
    putPlaylist("stick/niet.mdb");
    PlaylistImport import(context());
    const QStringList dropped{path("stick/een.mdb"), path("stick/TWEE.MDB")};
    ASSERT_EQ(import.refusalOf(dropped), QString());
    EXPECT_EQ(import.forecast(dropped), QStringLiteral("Laat los om 2 playlists te importeren."));
    import.runFiles(dropped);
    EXPECT_EQ(namesIn("new"), QStringLiteral("een.mdb TWEE.MDB"));
    EXPECT_EQ(namesIn("stick"), QStringLiteral("een.mdb niet.mdb TWEE.MDB"));
    EXPECT_EQ(refreshes, 1);
    EXPECT_TRUE(told.isEmpty());
}

TEST_F(Transferring, APlaylistThatIsThereIsOverwrittenByADropOnlyOnYes) {
    putPlaylist("stick/een.mdb");
    put("new/een.mdb", "van gisteren");
    PlaylistImport import(context());
    prompts.expectOverwrite(overwrite("een.mdb"), copying, false);
    import.runFiles({path("stick/een.mdb")});
    EXPECT_EQ(disk.read(path("new/een.mdb")), "van gisteren");
    prompts.expectOverwrite(overwrite("een.mdb"), copying, true);
    import.runFiles({path("stick/een.mdb")});
    EXPECT_EQ(disk.read(path("new/een.mdb")), disk.read(path("stick/een.mdb")));
    EXPECT_EQ(replaced, QStringList{QStringLiteral("een.mdb")});
    EXPECT_EQ(recovery.kept().size(), 1U);
}

TEST_F(Transferring, WhatIsNoPlaylistOrIsThereAlreadyIsRefusedInWords) {
    put("stick/lees.txt");
    put("stick/fout.mdb", "Dit is geen playlist.");
    put("new/hier.mdb");
    PlaylistImport import(context());
    EXPECT_EQ(import.refusalOf({path("stick/fout.mdb"), path("stick/lees.txt")}),
              QStringLiteral("lees.txt is geen playlist."));
    EXPECT_EQ(import.forecast({path("stick/lees.txt")}), QStringLiteral("lees.txt is geen playlist."));
    EXPECT_EQ(import.refusalOf({path("stick")}), QStringLiteral("stick is geen playlist."));
    EXPECT_EQ(import.refusalOf({path("new/hier.mdb")}),
              QStringLiteral("Deze map is zelf de map met te bewerken playlists."));
    EXPECT_EQ(import.refusalOf({}), QStringLiteral("Hier horen playlists."));
    takeRuns = true;
    EXPECT_EQ(import.refusalOf({path("stick/fout.mdb")}),
              QStringLiteral("Er loopt een opname. Importeer als die gestopt is."));
    takeRuns = false;
    import.runFiles({path("stick/fout.mdb")});
    EXPECT_EQ(told, QStringList{QStringLiteral("Geen bruikbare playlist: fout.mdb.")});
}

} // namespace orvel
