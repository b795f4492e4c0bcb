// Which stations can be chosen, and which are refused.
#include "platform/fake/fake_database.h"
#include "tests/platform/audio/temp_folder.h"
#include "tests/test_platform.h"
#include "windows/frm_station.h"

#include <QLabel>
#include <QTest>

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

TEST_F(Stations, TheChooserTellsWhoHasItsVersionHowLongItIsAndPlaysIt) {
    const auto writer = realAudioFiles.wavWriter();
    writer->create(folder.path("02L.wav"), 44100);
    writer->write(std::vector<std::int16_t>(44100 * 7, 1000));
    writer->close();
    const std::vector<StationVersion> versions{
        {{QStringLiteral("Algemeen"), QStringLiteral("999")}, folder.path("L.wav"), false},
        {{QStringLiteral("Gamma"), QStringLiteral("02")}, folder.path("02L.wav"), true}};
    frmStation window(
        platform, folder.path(), [](const QString &) { return true; }, [&] { return versions; });
    window.show();
    QTableWidget &list = *window.versions->lstVersions;
    ASSERT_EQ(list.rowCount(), 2);
    EXPECT_TRUE(list.item(0, 1)->text().contains(QStringLiteral("nog niet")));
    EXPECT_TRUE(list.item(1, 1)->text().contains(QStringLiteral("ingesproken")));
    EXPECT_EQ(window.cobStation->currentIndex(), -1) << "nothing is chosen by itself";
    EXPECT_FALSE(window.versions->cmdPlay->isEnabled());
    for (int looks = 0; looks < 200 && list.item(1, 2)->text() == QStringLiteral("..."); ++looks) {
        QTest::qWait(10);
        timers.advance(100);
    }
    EXPECT_EQ(list.item(1, 2)->text(), QLocale().toString(7.0, 'f', 1) + QStringLiteral(" s"));
    EXPECT_TRUE(list.item(0, 2)->text().isEmpty());
    list.selectRow(0);
    EXPECT_FALSE(window.versions->cmdPlay->isEnabled());
    EXPECT_EQ(window.cobStation->currentText(), QStringLiteral("Algemeen"));
    list.selectRow(1);
    EXPECT_EQ(window.cobStation->currentText(), QStringLiteral("Gamma"));
    window.versions->cmdPlay->click();
    EXPECT_EQ(sound.player(0).file(), folder.path("02L.wav"));
    EXPECT_EQ(sound.player(0).state(), WavePlayer::playing);
    window.versions->cmdPlay->click();
    EXPECT_NE(sound.player(0).state(), WavePlayer::playing);
    window.versions->cmdPlay->click();
    window.close();
    EXPECT_NE(sound.player(0).state(), WavePlayer::playing);
}

} // namespace orvel
