// What the windows that choose a folder show of it.
#include "platform/qt/disk_file_system.h"
#include "station/folder_listing.h"
#include "tests/platform/audio/temp_folder.h"

#include <gtest/gtest.h>

namespace orvel {

TEST(FolderListing, NamesFilesOnceInTheOrderOfTheAlphabetWhateverTheirCase) {
    const test::TempFolder folder;
    for (const char *name : {"b.WAV", "a.mp3", "C.wav", "brief.txt"}) {
        test::writeContent(folder.path(name), "x");
    }
    const DiskFileSystem disk;
    const QStringList wanted{QStringLiteral("a.mp3"), QStringLiteral("b.WAV"), QStringLiteral("C.wav")};
    EXPECT_EQ(filesIn(disk, folder.path(), {QStringLiteral("*.wav"), QStringLiteral("*.mp3")}), wanted);
    EXPECT_EQ(filesIn(disk, folder.path(), {QStringLiteral("*.wav"), QStringLiteral("*.*"), QStringLiteral("*.mp3")})
                  .count(QStringLiteral("b.WAV")),
              1);
    EXPECT_TRUE(filesIn(disk, folder.path("nergens"), {QStringLiteral("*")}).isEmpty());
    EXPECT_TRUE(filesIn(disk, folder.path(), {}).isEmpty());
}

TEST(FolderListing, AFolderIsOnTheDeepestDriveAboveIt) {
    const QStringList drives{QStringLiteral("/"), QStringLiteral("/media/stick"), QStringLiteral("/media/stick2")};
    EXPECT_EQ(driveOf(QStringLiteral("/home/jan"), drives), 0);
    EXPECT_EQ(driveOf(QStringLiteral("/media/stick"), drives), 1);
    EXPECT_EQ(driveOf(QStringLiteral("/media/stick/muziek"), drives), 1);
    EXPECT_EQ(driveOf(QStringLiteral("/media/stick2/muziek"), drives), 2);
    EXPECT_EQ(driveOf(QStringLiteral("/media/stick22"), drives), 0);
    EXPECT_EQ(driveOf(QStringLiteral("C:/muziek"), drives), -1);
    EXPECT_EQ(driveOf(QStringLiteral("c:/muziek"), {QStringLiteral("D:/"), QStringLiteral("C:/")}), 1);
    EXPECT_EQ(driveOf(QStringLiteral("/home"), {}), -1);
}

} // namespace orvel
