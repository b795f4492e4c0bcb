// How the presenter left the desk.
#include "platform/fake/faulty_file_system.h"
#include "platform/qt/disk_file_system.h"
#include "platform/runtime_error.h"
#include "settings/desk_memory.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace orvel {

namespace {

class TheDesksMemory : public testing::Test {
  protected:
    QTemporaryDir folder;
    DiskFileSystem disk;
    FaultyFileSystem files{disk};
};

} // namespace

TEST_F(TheDesksMemory, IsAsItWasLeft) {
    EXPECT_EQ(loadDesk(files, folder.path()), DeskMemory()) << "the first start";
    const DeskMemory left{QByteArray("\0\xFF = \n", 6),           "lijsten", "",   true,
                          QStringLiteral("avond 20 \"uur\".mdb"), 50000,     true, 12345};
    saveDesk(files, folder.path(), left);
    EXPECT_EQ(loadDesk(files, folder.path()), left);
    const DeskMemory other{"a", "b", "c", false, QString(), 0, false, 0};
    saveDesk(files, folder.path(), other);
    EXPECT_EQ(loadDesk(files, folder.path()), other);
}

TEST_F(TheDesksMemory, HasAFileOfItsOwnAndLeavesTheSettingsAlone) {
    files.write(folder.filePath(QStringLiteral("orvel.ini")), "[Program]\nBitRate=2\n");
    saveDesk(files, folder.path(), {});
    EXPECT_EQ(files.read(folder.filePath(QStringLiteral("orvel.ini"))), "[Program]\nBitRate=2\n");
    EXPECT_EQ(files.list(folder.path(), QStringLiteral("*")).size(), 2);
}

TEST_F(TheDesksMemory, OneThatCannotBeReadIsForgotten) {
    saveDesk(files, folder.path(), {"a", "b", "c", true, QStringLiteral("uur.mdb")});
    files.fail(FaultyFileSystem::Operation::Read, folder.path(), ErrorNumber::PathAccess);
    EXPECT_EQ(loadDesk(files, folder.path()), DeskMemory());
}

TEST_F(TheDesksMemory, AVolumeThatIsNoneIsTheFirstOne) {
    EXPECT_EQ(loadDesk(files, folder.path()).cueVolume, 16384);
    for (const char *volume : {"hard", "-1", "65536", ""}) {
        files.write(folder.filePath(QStringLiteral("orvel-desk.ini")), QByteArray("[Desk]\nCueVolume=") + volume);
        EXPECT_EQ(loadDesk(files, folder.path()).cueVolume, 16384) << volume;
    }
}

} // namespace orvel
