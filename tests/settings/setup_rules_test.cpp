// What the setup dialog decides, without the dialog.
#include "platform/fake/faulty_file_system.h"
#include "platform/qt/disk_file_system.h"
#include "settings/setup_rules.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace orvel {

namespace {

const QString noFolder = QStringLiteral("Deze map bestaat niet.");

/// A server that stands still.
class Stalled : public FaultyFileSystem {
  public:
    using FaultyFileSystem::FaultyFileSystem;
    [[nodiscard]] qint64 fileSize(const QString &path) const override {
        throw RuntimeError(ErrorNumber::DiskNotReady, path);
    }
};

} // namespace

TEST(SetupRules, TheFolderOfTheCataloguesNeedsTracksOnlyWhenTheyAreUsed) {
    const QTemporaryDir folder;
    DiskFileSystem files;
    EXPECT_EQ(databaseFolderProblem(files, QString(), false), QString());
    EXPECT_EQ(databaseFolderProblem(files, folder.filePath(QStringLiteral("weg")), false), noFolder);
    EXPECT_EQ(databaseFolderProblem(files, folder.path(), false), QString());
    EXPECT_EQ(databaseFolderProblem(files, folder.path(), true), QStringLiteral("In deze map staat geen digital.mdb."));
    files.write(folder.filePath(QStringLiteral("digital.mdb")), "x");
    EXPECT_EQ(databaseFolderProblem(files, folder.path(), true), QString());
}

TEST(SetupRules, TheServersFolderMayBeEmptyUnlessItIsUsed) {
    const QTemporaryDir folder;
    const DiskFileSystem files;
    EXPECT_EQ(voiceFolderProblem(files, QString(), false), QString());
    EXPECT_EQ(voiceFolderProblem(files, QString(), true), noFolder);
    EXPECT_EQ(voiceFolderProblem(files, folder.filePath(QStringLiteral("weg")), false), noFolder);
    EXPECT_EQ(voiceFolderProblem(files, folder.path(), true), QString());
}

// The desktop's own chooser reads the folder in the window's thread: with a server that stood still all did.
TEST(SetupRules, AChooserBeginsWhereTheTextSaysUnlessNobodyAnswersThere) {
    const QTemporaryDir folder;
    DiskFileSystem disk;
    const QString program = QStringLiteral("/programma");
    EXPECT_EQ(chooserStart(disk, QString(), program), program);
    EXPECT_EQ(chooserStart(disk, folder.path(), program), folder.path());
    EXPECT_EQ(chooserStart(disk, QStringLiteral("/nergens"), program), QStringLiteral("/nergens"));
    EXPECT_EQ(chooserStart(Stalled(disk), folder.path(), program), program);
}

TEST(SetupRules, NumbersHaveNames) {
    EXPECT_EQ(callbackName(0), QStringLiteral("Windows"));
    EXPECT_EQ(callbackName(1), QStringLiteral("Callback"));
    EXPECT_EQ(callbackName(2), QStringLiteral("Thread"));
    EXPECT_EQ(callbackName(3), QString());
    EXPECT_EQ(callbackName(-1), QString());
    const QStringList outputs = {QStringLiteral("Een"), QStringLiteral("Twee")};
    EXPECT_EQ(outputName(outputs, -1), QStringLiteral("Standaarduitgang"));
    EXPECT_EQ(outputName(outputs, 1), QStringLiteral("Twee"));
    EXPECT_EQ(outputName(outputs, 2), QStringLiteral("Kaart 2 ontbreekt"));
    EXPECT_EQ(outputName({}, -1), QStringLiteral("Standaarduitgang"));
}

TEST(SetupRules, ABitRateThatIsNotInTheListIsKeptUntilOneIsChosen) {
    EXPECT_EQ(chosenBitRate(-1, 9), 9);
    EXPECT_EQ(chosenBitRate(0, 9), 0);
    EXPECT_EQ(chosenBitRate(4, 2), 4);
}

TEST(SetupRules, FoldersCountdownAndServerAreInForceAtOnceAndTheRestIsNot) {
    Settings saved;
    saved.Databasepath = QStringLiteral("/d");
    saved.VoicetrackPath = QStringLiteral("/v");
    saved.Countdown = 9;
    saved.ServerMode = true;
    saved.Network = true;
    saved.Mute = true;
    saved.BitRate = 4;
    saved.CCard = saved.CBuffers = saved.Cbuffer_size = saved.CCallBack = 1;
    Settings inForce;
    applySetup(saved, inForce);
    EXPECT_EQ(inForce.Databasepath, QStringLiteral("/d"));
    EXPECT_EQ(inForce.VoicetrackPath, QStringLiteral("/v"));
    EXPECT_EQ(inForce.Countdown, 9);
    EXPECT_TRUE(inForce.ServerMode);
    EXPECT_FALSE(inForce.Network || inForce.Mute);
    EXPECT_EQ(inForce.BitRate + inForce.CCard + inForce.CBuffers + inForce.Cbuffer_size + inForce.CCallBack, 0);
}

} // namespace orvel
