// The drive, folder and file lists, on a real disk with drives that come and go.
#include "platform/fake/fake_prompts.h"
#include "platform/qt/disk_file_system.h"
#include "windows/folder_browser.h"

#include <QDir>
#include <QLabel>
#include <QPushButton>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QVBoxLayout>

#include <gtest/gtest.h>

namespace orvel {

namespace {

/// The real disk with the drives that a test mounts.
class Drives : public DiskFileSystem {
  public:
    [[nodiscard]] QStringList drives() const override { return mounted; }
    QStringList mounted = {QStringLiteral("/")};
};

QStringList texts(const QListWidget &list) {
    QStringList all;
    for (int row = 0; row < list.count(); ++row) {
        all << list.item(row)->text();
    }
    return all;
}

class Browsing : public testing::Test {
  protected:
    Browsing() {
        for (const char *name : {"muziek", "Archief", "muziek/nieuw", ".verborgen"}) {
            QDir(folder.path()).mkdir(QString::fromLatin1(name));
        }
        for (const char *name : {"b.wav", "A.WAV", "c.Mp3", "lees.txt", "muziek/x.mp3"}) {
            disk.write(path(name), "x");
        }
    }
    [[nodiscard]] QString path(const char *relative) const { return folder.filePath(QString::fromLatin1(relative)); }
    static QPoint middleOf(const QListWidget &list, int row) { return list.visualItemRect(list.item(row)).center(); }

    QTemporaryDir folder;
    Drives disk;
    FolderBrowser browser{disk, {QStringLiteral("*.WAV"), QStringLiteral("*.MP3")}, FolderBrowser::Files::Shown};
};

} // namespace

TEST_F(Browsing, ItBeginsInTheHomeFolder) {
    EXPECT_EQ(browser.folder(), QDir::homePath());
}

TEST_F(Browsing, FoldersAndFilesOfTheFolderAreListedInOneOrder) {
    browser.setFolder(folder.path());
    EXPECT_EQ(texts(*browser.Dir1).join(u' '), QStringLiteral(".. Archief muziek"));
    EXPECT_EQ(browser.files().join(u' '), QStringLiteral("A.WAV b.wav c.Mp3"));
}

TEST_F(Browsing, AFileThatTwoPatternsMatchIsListedOnce) {
    FolderBrowser twice(disk, {QStringLiteral("*.wav"), QStringLiteral("b.*")}, FolderBrowser::Files::Shown);
    twice.setFolder(folder.path());
    EXPECT_EQ(twice.files().join(u' '), QStringLiteral("A.WAV b.wav"));
}

TEST_F(Browsing, AClickSelectsADoubleClickOpensAndTheDotsGoUp) {
    browser.setFolder(folder.path());
    browser.show();
    const QSignalSpy changes(&browser, &FolderBrowser::folderChanged);
    QListWidget &list = *browser.Dir1;
    QTest::mouseClick(list.viewport(), Qt::LeftButton, {}, middleOf(list, 2));
    EXPECT_EQ(list.currentRow(), 2);
    EXPECT_EQ(browser.folder(), folder.path());
    QTest::mouseDClick(list.viewport(), Qt::LeftButton, {}, middleOf(list, 2));
    EXPECT_EQ(browser.folder(), path("muziek"));
    EXPECT_EQ(browser.files(), QStringList{QStringLiteral("x.mp3")});
    QTest::mouseClick(list.viewport(), Qt::LeftButton, {}, middleOf(list, 0));
    QTest::mouseDClick(list.viewport(), Qt::LeftButton, {}, middleOf(list, 0));
    EXPECT_EQ(browser.folder(), folder.path());
    // The folder that was left is where the presenter goes on.
    EXPECT_EQ(list.currentItem()->text(), QStringLiteral("muziek"));
    EXPECT_EQ(changes.size(), 2);
}

TEST_F(Browsing, EnterOpensAFolderAndPressesNoButton) {
    QDialog window;
    auto *start = new QPushButton(&window);
    start->setDefault(true);
    const QSignalSpy presses(start, &QPushButton::clicked);
    auto *inside = new FolderBrowser(disk, {}, FolderBrowser::Files::Hidden, &window);
    (new QVBoxLayout(&window))->addWidget(inside);
    window.show();
    inside->setFolder(folder.path());
    inside->Dir1->setCurrentRow(1);
    for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Enter}) {
        QTest::keyClick(inside->Dir1, key);
    }
    // Into the folder and, as ".." is selected there, out again.
    EXPECT_EQ(inside->folder(), folder.path());
    QTest::keyClick(inside->Dir1, Qt::Key_Return);
    EXPECT_EQ(inside->folder(), path("Archief"));
    EXPECT_EQ(presses.size(), 0);
}

TEST_F(Browsing, ADriveIsTheOneThatTheFolderIsOn) {
    disk.mounted = {QStringLiteral("/"), folder.path(), folder.path() + QStringLiteral("/muz")};
    browser.show();
    browser.setFolder(path("muziek"));
    EXPECT_EQ(browser.Drive1->currentText(), folder.path());
    browser.setFolder(QStringLiteral("/usr"));
    EXPECT_EQ(browser.Drive1->currentText(), QStringLiteral("/"));
}

TEST_F(Browsing, AStickThatIsPutInLaterIsInTheListWhenItDropsDown) {
    browser.setFolder(folder.path());
    browser.show();
    disk.mounted << path("muziek");
    EXPECT_EQ(browser.Drive1->count(), 1);
    browser.Drive1->showPopup();
    EXPECT_EQ(browser.Drive1->count(), 2);
    EXPECT_EQ(browser.Drive1->currentText(), QStringLiteral("/"));
    browser.Drive1->hidePopup();
    browser.hide();
    disk.mounted.removeLast();
    browser.show();
    EXPECT_EQ(browser.Drive1->count(), 1);
}

TEST_F(Browsing, ChoosingADriveShowsItsTopFolder) {
    disk.mounted << folder.path();
    browser.show();
    browser.setFolder(QStringLiteral("/usr"));
    QTest::keyClick(browser.Drive1, Qt::Key_Down);
    EXPECT_EQ(browser.folder(), folder.path());
    QTest::keyClick(browser.Drive1, Qt::Key_Up);
    EXPECT_EQ(browser.folder(), QStringLiteral("/"));
    EXPECT_FALSE(texts(*browser.Dir1).contains(QStringLiteral("..")));
}

TEST_F(Browsing, AFolderThatIsNotThereIsEmptyAndSaidToBeMissing) {
    browser.resize(2000, 400);
    browser.show();
    browser.setFolder(path("weg"));
    auto *shown = browser.findChild<QLabel *>(QStringLiteral("lblPath"));
    EXPECT_TRUE(shown->text().contains(QStringLiteral("niet gevonden"))) << shown->text().toStdString();
    EXPECT_TRUE(browser.files().isEmpty());
    EXPECT_EQ(texts(*browser.Dir1), QStringList{QStringLiteral("..")});
    browser.Dir1->setCurrentRow(0);
    browser.Dir1_Change();
    EXPECT_EQ(browser.folder(), folder.path());
    EXPECT_EQ(shown->text(), folder.path());
}

TEST_F(Browsing, AFolderThatGoesAwayBetweenTwoClicksDoesNoHarm) {
    browser.setFolder(folder.path());
    QDir(path("Archief")).removeRecursively();
    browser.Dir1->setCurrentRow(1);
    browser.Dir1_Change();
    EXPECT_TRUE(browser.files().isEmpty());
}

TEST_F(Browsing, ALongPathIsShortenedInTheMiddleAndWholeInItsHint) {
    browser.setFolder(folder.path());
    browser.show();
    auto *shown = browser.findChild<QLabel *>(QStringLiteral("lblPath"));
    const QString deep = folder.path() + QString(40, u'm') + QString(40, u'w');
    QDir().mkdir(deep);
    browser.resize(400, 400);
    browser.setFolder(deep);
    EXPECT_LE(shown->fontMetrics().horizontalAdvance(shown->text()), shown->width());
    EXPECT_EQ(shown->toolTip(), deep);
    const QString narrow = shown->text();
    browser.resize(3000, 400);
    EXPECT_EQ(shown->text(), deep);
    EXPECT_NE(narrow, deep);
    QDir().rmdir(deep);
}

TEST_F(Browsing, AForcedFolderCannotBeLeft) {
    disk.mounted << path("muziek");
    browser.show();
    browser.force(folder.path());
    EXPECT_FALSE(browser.Drive1->isEnabled());
    EXPECT_FALSE(browser.Dir1->isEnabled());
    EXPECT_EQ(browser.Drive1->currentText(), QStringLiteral("/"));
    QTest::mouseDClick(browser.Dir1->viewport(), Qt::LeftButton, {}, middleOf(*browser.Dir1, 1));
    EXPECT_EQ(browser.folder(), folder.path());
    browser.force(folder.path(), QStringLiteral("E:"));
    EXPECT_EQ(browser.Drive1->currentText(), QStringLiteral("E:"));
    browser.hide();
    browser.show();
    EXPECT_EQ(browser.Drive1->currentText(), QStringLiteral("E:"));
    EXPECT_EQ(browser.Drive1->count(), 3);
}

TEST_F(Browsing, TheSelectedFileIsToldAndForgottenWithItsFolder) {
    browser.setFolder(folder.path());
    const QSignalSpy selections(&browser, &FolderBrowser::fileSelected);
    browser.selectFile(1);
    EXPECT_EQ(browser.selectedFile(), QStringLiteral("b.wav"));
    EXPECT_EQ(selections.last().first().toString(), QStringLiteral("b.wav"));
    browser.setFolder(path("muziek"));
    EXPECT_TRUE(browser.selectedFile().isEmpty());
    EXPECT_TRUE(selections.last().first().toString().isEmpty());
}

TEST_F(Browsing, EveryListHasItsCaptionAndItsName) {
    EXPECT_EQ(browser.findChild<QLabel *>(QStringLiteral("Label1"))->text(), QStringLiteral("Schijf"));
    EXPECT_EQ(browser.findChild<QLabel *>(QStringLiteral("Label2"))->text(), QStringLiteral("Map"));
    const FolderBrowser noFiles(disk, {}, FolderBrowser::Files::Hidden);
    EXPECT_TRUE(noFiles.File1->isHidden());
    for (const QWidget *list : {static_cast<QWidget *>(browser.Drive1), static_cast<QWidget *>(browser.Dir1),
                                static_cast<QWidget *>(browser.File1)}) {
        EXPECT_FALSE(list->accessibleName().isEmpty());
    }
}

TEST_F(Browsing, TheSystemsOwnDialogIsOfferedBesideTheLists) {
    FakePrompts prompts;
    browser.show();
    EXPECT_FALSE(browser.cmdBrowse->isVisible());
    browser.letBrowse(prompts);
    EXPECT_TRUE(browser.cmdBrowse->isVisible());
    browser.setFolder(folder.path());
    prompts.expectFolder(QStringLiteral("Kies een map"), folder.path(), path("muziek"));
    browser.cmdBrowse->click();
    EXPECT_EQ(browser.folder(), path("muziek"));
    EXPECT_EQ(texts(*browser.File1).join(u' '), QStringLiteral("x.mp3"));
    prompts.expectFolder(QStringLiteral("Kies een map"), path("muziek"), QString());
    browser.cmdBrowse->click();
    EXPECT_EQ(browser.folder(), path("muziek")) << "the dialog was cancelled";
    browser.setFolder(path("weg"));
    prompts.expectFolder(QStringLiteral("Kies een map"), QDir::homePath(), QString());
    browser.cmdBrowse->click();
    browser.force(folder.path());
    EXPECT_FALSE(browser.cmdBrowse->isEnabled()) << "the settings say which";
    browser.letChoose();
    EXPECT_TRUE(browser.cmdBrowse->isEnabled());
}

} // namespace orvel
