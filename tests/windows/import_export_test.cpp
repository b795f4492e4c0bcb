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
                recovery,
                [this](const QStringList &names) {
                    ++refreshes;
                    replaced << names;
                },
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
    Recovery recovery{files, folder.path()};
    QStringList told;
    QStringList replaced;
    int refreshes = 0;
    bool takeRuns = false;
    QList<int> gauge;
};

} // namespace

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
    prompts.expectOverwrite(overwrite("VT1.mp3"), copying, false);
    EXPECT_EQ(runExport(), QStringLiteral("2 van 3 bestanden gekopieerd."));
    EXPECT_EQ(gauge, (QList<int>{0, 2, 3}));
    EXPECT_EQ(disk.read(path("doel/VT1.mp3")), "van gisteren");
}

TEST_F(Moving, TheFinishedFolderIsNoTarget) {
    put("ok/klaar.mdb");
    settings.ExportPath = path("ok");
    EXPECT_TRUE(runExport().contains(QStringLiteral("andere map")));
    EXPECT_EQ(namesIn("ok"), QStringLiteral("klaar.mdb"));
}

TEST_F(Moving, ADriveThatTheStationDoesNotHaveIsNoTarget) {
    put("ok/een.mdb");
    settings.ExportPath = QStringLiteral("Q:\\uit");
    EXPECT_TRUE(runExport().contains(QStringLiteral("niet gevonden")));
    EXPECT_FALSE(QDir(QStringLiteral("Q:")).exists());
}

TEST_F(Moving, WhileATakeRunsNothingIsImported) {
    putPlaylist("stick/een.mdb");
    takeRuns = true;
    runImport();
    EXPECT_EQ(namesIn("new"), QString());
    EXPECT_EQ(namesIn("stick"), QStringLiteral("een.mdb"));
}

} // namespace orvel
