// The work folders of a user: which one the program works in, which are remembered, and new ones.
#include "platform/fake/fake_database.h"
#include "platform/ini_file.h"
#include "platform/runtime_error.h"
#include "station/homes.h"
#include "tests/test_platform.h"

#include <QDir>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace orvel {

namespace {

using Operation = FaultyFileSystem::Operation;

class TheHomes : public testing::Test, protected TestPlatform<FakeDatabaseEngine> {
  protected:
    [[nodiscard]] QString path(const QString &relative) const { return folder.filePath(relative); }
    [[nodiscard]] QString setting(const QString &home, const char *section, const char *key) {
        return IniFile(disk, home + QStringLiteral("/orvel.ini"))
            .value(QString::fromLatin1(section), QString::fromLatin1(key));
    }
    QString makeFolder(const QString &relative) {
        disk.makeFolder(path(relative));
        return path(relative);
    }

    QTemporaryDir folder;
    QString listFile = path(QStringLiteral("config/orvel/werkmappen.ini"));
    HomePlaces places{listFile, path(QStringLiteral("Documenten/ORVEL")),
                      QStringLiteral(ORVEL_SOURCE_DIR "/samples/station")};
    Homes homes{files, places};
};

QStringList everythingIn(const QString &folder) {
    QStringList found;
    for (const QString &name : QDir(folder).entryList(QDir::Files)) {
        found << name;
    }
    for (const QString &name : QDir(folder).entryList(QDir::Dirs | QDir::NoDotAndDotDot)) {
        for (const QString &inside : everythingIn(folder + u'/' + name)) {
            found << name + u'/' + inside;
        }
    }
    return found;
}

} // namespace

TEST_F(TheHomes, WhatTheEnvironmentNamesIsGivenWhateverLiesThere) {
    makeFolder(QStringLiteral("programma/new"));
    EXPECT_EQ(givenHome(files, path(QStringLiteral("weg/")), path(QStringLiteral("programma"))),
              path(QStringLiteral("weg")));
    EXPECT_EQ(givenHome(files, QStringLiteral("naast"), QString()), QDir::currentPath() + QStringLiteral("/naast"));
}

TEST_F(TheHomes, AProgramFolderIsGivenWhereItIsAHomeThatCanBeWritten) {
    const QString program = makeFolder(QStringLiteral("stick"));
    EXPECT_EQ(givenHome(files, {}, program), QString()) << "a program that was installed";
    EXPECT_TRUE(QDir(program).isEmpty(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot));
    disk.write(program + QStringLiteral("/orvel.ini"), "");
    EXPECT_EQ(givenHome(files, {}, program), program);
    EXPECT_EQ(QDir(program).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot).size(), 1);
    files.fail(Operation::Write, program, ErrorNumber::PermissionDenied);
    EXPECT_EQ(givenHome(files, {}, program), QString()) << "its owner keeps it closed";
}

TEST_F(TheHomes, PlaylistsToDoMakeAHomeAsWell) {
    const QString program = makeFolder(QStringLiteral("stick"));
    EXPECT_FALSE(isHome(files, program));
    makeFolder(QStringLiteral("stick/new"));
    EXPECT_TRUE(isHome(files, program));
    EXPECT_EQ(givenHome(files, {}, program), program);
    EXPECT_FALSE(isHome(files, path(QStringLiteral("stick die weg is"))));
}

TEST_F(TheHomes, TheOneUsedLastComesFirstAndNoneTwice) {
    EXPECT_TRUE(homes.all().isEmpty());
    homes.use(path(QStringLiteral("een")));
    homes.use(path(QStringLiteral("twee; en \"nog\" een = drie")));
    homes.use(path(QStringLiteral("vier ")));
    homes.use(path(QStringLiteral("een/")));
    EXPECT_EQ(homes.all(), QStringList({path(QStringLiteral("een")), path(QStringLiteral("vier ")),
                                        path(QStringLiteral("twee; en \"nog\" een = drie"))}));
    EXPECT_EQ(Homes(disk, places).all(), homes.all()) << "the next start knows as much";
}

TEST_F(TheHomes, OneThatIsForgottenKeepsItsFolder) {
    const QString one = homes.make(QStringLiteral("Een"));
    const QString two = homes.make(QStringLiteral("Twee"));
    homes.use(one);
    homes.use(two);
    homes.forget(two);
    EXPECT_EQ(homes.all(), QStringList(one));
    EXPECT_TRUE(homes.isThere(two));
    homes.forget(one);
    EXPECT_TRUE(homes.all().isEmpty());
    homes.use(two);
    EXPECT_EQ(homes.all(), QStringList(two));
}

TEST_F(TheHomes, OneThatIsAwayStaysInTheList) {
    homes.use(path(QStringLiteral("stick")));
    EXPECT_EQ(homes.all().size(), 1);
    EXPECT_FALSE(homes.isThere(homes.all().first()));
}

// A stick that is pulled leaves the place where it was mounted, and nothing in it.
TEST_F(TheHomes, AnEmptyFolderIsNoHome) {
    EXPECT_FALSE(homes.isThere(makeFolder(QStringLiteral("mnt"))));
}

TEST_F(TheHomes, ANewOneIsReadyToWorkInWithoutCatalogues) {
    const QString home = homes.make(QStringLiteral(" Radio Voorbeeld "));
    EXPECT_EQ(home, path(QStringLiteral("Documenten/ORVEL/Radio Voorbeeld")));
    EXPECT_TRUE(homes.isThere(home));
    EXPECT_EQ(everythingIn(home), QStringList({QStringLiteral("orvel.ini"), QStringLiteral("rep/play0.rpt")}));
    EXPECT_TRUE(disk.folderExists(home + QStringLiteral("/new")));
    EXPECT_TRUE(disk.folderExists(home + QStringLiteral("/ok")));
    EXPECT_EQ(setting(home, "Program", "Network"), QStringLiteral("0"));
    EXPECT_EQ(setting(home, "Files", "Databasepath"), QString());
    EXPECT_EQ(setting(home, "Files", "VoiceTrackPath"), QString());
    EXPECT_EQ(setting(home, "Program", "Countdown"), QStringLiteral("3"));
    EXPECT_FALSE(disk.read(home + QStringLiteral("/orvel.ini")).contains('@'));
}

TEST_F(TheHomes, WhatLiesInAFolderThatBecomesOneStays) {
    const QString home = makeFolder(QStringLiteral("oud"));
    disk.write(home + QStringLiteral("/orvel.ini"), "[Program]\nCountdown=7\nNetwork=1\n");
    makeFolder(QStringLiteral("oud/rep"));
    disk.write(home + QStringLiteral("/rep/play0.rpt"), "eigen");
    makeFolder(QStringLiteral("oud/new"));
    disk.write(home + QStringLiteral("/new/a.mdb"), "lijst");
    homes.prepare(home);
    EXPECT_EQ(disk.read(home + QStringLiteral("/orvel.ini")), "[Program]\nCountdown=7\nNetwork=1\n");
    EXPECT_EQ(disk.read(home + QStringLiteral("/rep/play0.rpt")), "eigen");
    EXPECT_EQ(disk.read(home + QStringLiteral("/new/a.mdb")), "lijst");
}

TEST_F(TheHomes, AFolderBecomesOneOnlyWhenThePresenterWantsIt) {
    const QString plain = makeFolder(QStringLiteral("server/orvel"));
    const QString question =
        QStringLiteral("In de map %1 heeft ORVEL nog niet gewerkt.\n\nEr een werkmap van maken?").arg(plain);
    const Verbs verbs{QStringLiteral("&Maak een werkmap"), QStringLiteral("&Annuleer")};
    prompts.expectAsk(question, QStringLiteral("Werkmap kiezen"), false, Preset::Yes, verbs);
    EXPECT_FALSE(homes.adopt(prompts, plain));
    EXPECT_TRUE(QDir(plain).isEmpty());
    prompts.expectAsk(question, QStringLiteral("Werkmap kiezen"), true, Preset::Yes, verbs);
    EXPECT_TRUE(homes.adopt(prompts, plain));
    EXPECT_TRUE(homes.isThere(plain));
    EXPECT_TRUE(homes.adopt(prompts, plain)) << "now it is one, and nothing is asked";
}

TEST_F(TheHomes, ANameThatWouldLeaveTheFolderIsRefused) {
    for (const char *name : {"..", "a/b", "../../weg", "."}) {
        EXPECT_THROW(static_cast<void>(homes.make(QString::fromLatin1(name))), RuntimeError) << name;
    }
    EXPECT_TRUE(everythingIn(folder.path()).isEmpty());
}

TEST_F(TheHomes, WithoutSamplesANewOneHasSettingsAllTheSame) {
    Homes bare(files, {listFile, places.folder, path(QStringLiteral("niets"))});
    EXPECT_FALSE(bare.hasSample());
    EXPECT_FALSE(Homes(files, {listFile, places.folder, {}}).hasSample());
    const QString home = bare.make(QStringLiteral("Kaal"));
    EXPECT_EQ(setting(home, "Program", "Network"), QStringLiteral("0"));
    EXPECT_TRUE(bare.isThere(home));
}

TEST_F(TheHomes, TheSampleIsCopiedWholeAndKnowsItsFolder) {
    ASSERT_TRUE(homes.hasSample());
    const QString home = homes.makeSample();
    EXPECT_EQ(home, path(QStringLiteral("Documenten/ORVEL/Voorbeeld")));
    EXPECT_EQ(everythingIn(home), everythingIn(places.sample));
    EXPECT_GT(everythingIn(home).size(), 15);
    EXPECT_EQ(setting(home, "Files", "Databasepath"), home);
    EXPECT_EQ(setting(home, "Files", "VoiceTrackPath"), home + QStringLiteral("/voicetracks"));
    EXPECT_TRUE(disk.folderExists(home + QStringLiteral("/voicetracks")));
}

TEST_F(TheHomes, ASecondSampleTouchesNothingOfTheFirst) {
    const QString first = homes.makeSample();
    disk.write(first + QStringLiteral("/orvel.ini"), "eigen");
    EXPECT_EQ(homes.makeSample(), first + QStringLiteral(" 2"));
    EXPECT_EQ(homes.makeSample(), first + QStringLiteral(" 3"));
    EXPECT_EQ(disk.read(first + QStringLiteral("/orvel.ini")), "eigen");
}

TEST_F(TheHomes, AFullDiskIsTold) {
    files.fail(Operation::Copy, QStringLiteral("Voorbeeld"), ErrorNumber::DiskFull);
    EXPECT_THROW(static_cast<void>(homes.makeSample()), RuntimeError);
    files.fail(Operation::Write, QStringLiteral("werkmappen.ini"), ErrorNumber::DiskFull);
    EXPECT_THROW(homes.use(path(QStringLiteral("een"))), RuntimeError);
}

} // namespace orvel
