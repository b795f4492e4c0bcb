// When the network's tracks and jingles are opened, and what is told.
#include "platform/fake/fake_database.h"
#include "playlist/step_types.h"
#include "recording/catalogues.h"
#include "settings/settings.h"
#include "tests/platform/audio/temp_folder.h"
#include "tests/test_platform.h"

#include <gtest/gtest.h>

namespace orvel {

namespace {

class TheCatalogues : public testing::Test, protected TestPlatform<FakeDatabaseEngine> {
  protected:
    TheCatalogues() {
        settings.Network = true;
        settings.Databasepath = folder.path();
    }
    /// Whether a file of this name is there for the disk is one thing, what the database engine knows another.
    void add(const char *file, const char *table) {
        test::writeContent(folder.path(file), "database");
        databases.setTable(folder.path(file), QString::fromLatin1(table), {QStringLiteral("TrackNr")}, {{2}, {1}});
    }

    test::TempFolder folder;
    Settings settings;
    Catalogues catalogues{platform, settings};
};

} // namespace

TEST_F(TheCatalogues, AreBothOpenedInTheOrderOfTheirNumbers) {
    add("digital.mdb", "Audio");
    add("jingles.mdb", "jingles");
    EXPECT_TRUE(catalogues.open());
    for (const int kind : {TrackStep, JingleStep}) {
        ASSERT_NE(catalogues.of(kind), nullptr);
        catalogues.of(kind)->moveFirst();
        EXPECT_EQ(catalogues.of(kind)->field(QStringLiteral("TrackNr")).toInt(), 1);
    }
    EXPECT_EQ(catalogues.of(TrackStep), catalogues.datTracks.get());
    EXPECT_EQ(catalogues.of(JingleStep), catalogues.datJingles.get());
}

TEST_F(TheCatalogues, AreLeftAloneWithoutTheNetwork) {
    settings.Network = false;
    EXPECT_TRUE(catalogues.open()) << "nothing is missing";
    EXPECT_TRUE(databases.opened().isEmpty());
}

TEST_F(TheCatalogues, WithoutTheTracksTheNetworkIsOffAndTheSetupIsWanted) {
    add("jingles.mdb", "jingles");
    prompts.expectMessage(
        QStringLiteral("Databasebestanden van de server werden niet gevonden, controleer instellingen !"),
        QStringLiteral("Foutmelding"), MessageIcon::Exclamation);
    EXPECT_FALSE(catalogues.open());
    EXPECT_FALSE(settings.Network);
    EXPECT_EQ(catalogues.of(JingleStep), nullptr);
}

TEST_F(TheCatalogues, OneThatCannotBeOpenedIsToldAndTheOtherOneIsOpen) {
    add("digital.mdb", "Audio");
    prompts.expectMessage(RuntimeError(ErrorNumber::FileNotFound, folder.path("jingles.mdb")).report(),
                          QStringLiteral("Foutmelding"), MessageIcon::Exclamation);
    EXPECT_TRUE(catalogues.open());
    EXPECT_TRUE(settings.Network) << "nothing is switched off";
    EXPECT_NE(catalogues.of(TrackStep), nullptr);
    EXPECT_EQ(catalogues.of(JingleStep), nullptr);
}

TEST_F(TheCatalogues, OneThatCannotBeOpenedAnewIsClosed) {
    add("digital.mdb", "Audio");
    catalogues.reopen(TrackStep);
    databases.fail(FakeDatabaseEngine::Call::Open, ErrorNumber::DiskNotReady);
    EXPECT_THROW(catalogues.reopen(TrackStep), RuntimeError);
    EXPECT_EQ(catalogues.of(TrackStep), nullptr);
}

} // namespace orvel
