// Which stations can be chosen, and which are refused.
#include "platform/fake/fake_database.h"
#include "tests/platform/audio/temp_folder.h"
#include "tests/test_platform.h"
#include "windows/frm_station.h"

#include <QLabel>

#include <gtest/gtest.h>

namespace orvel {

namespace {

class Stations : public testing::Test, protected TestPlatform<FakeDatabaseEngine> {
  protected:
    Stations() {
        databases.setTable(folder.path(QStringLiteral("syncstations.mdb")), QStringLiteral("Stations"),
                           {QStringLiteral("stationname"), QStringLiteral("digit1"), QStringLiteral("digit2"),
                            QStringLiteral("digit3")},
                           {{QStringLiteral("Alfa"), QVariant(), QVariant(), QVariant()},
                            {QStringLiteral("Beta"), QStringLiteral(" "), QStringLiteral(""), QStringLiteral(" ")},
                            {QStringLiteral("Gamma"), QStringLiteral("0"), QVariant(), QStringLiteral("2")}});
    }

    test::TempFolder folder;
    QStringList saved;
};

} // namespace

// A station without digits filed its version under the plain name, over the general one.
TEST_F(Stations, AStationWithoutACodeIsRefused) {
    frmStation window(platform, folder.path(), [this](const QString &code) {
        saved << code;
        return true;
    });
    window.show();
    for (const char *name : {"Alfa", "Beta"}) {
        window.cobStation->setCurrentText(QString::fromLatin1(name));
        prompts.expectMessage(
            QStringLiteral("Het station %1 heeft geen code in de stationslijst. Kies een ander station.")
                .arg(QLatin1String(name)),
            QStringLiteral("Ontbrekende gegevens"), MessageIcon::Exclamation);
        window.cmdSave_Click();
        EXPECT_TRUE(window.isVisible());
    }
    EXPECT_TRUE(saved.isEmpty());
    window.cobStation->setCurrentText(QStringLiteral("Gamma"));
    window.cmdSave_Click();
    EXPECT_EQ(saved, QStringList{QStringLiteral("02")});
    EXPECT_FALSE(window.isVisible());
}

TEST_F(Stations, TheQuestionNamesTheChooser) {
    const frmStation window(platform, folder.path(), [](const QString &) { return true; });
    const QString question = QStringLiteral("Kies het station waarvoor deze presentatie bedoeld is");
    const auto labels = window.findChildren<QLabel *>();
    ASSERT_EQ(labels.size(), 1);
    EXPECT_EQ(labels.first()->text(), question);
    EXPECT_EQ(labels.first()->buddy(), window.cobStation);
    EXPECT_EQ(window.cobStation->accessibleName(), question);
}

} // namespace orvel
