// The stations that a version of a take can be saved for.
#include "platform/fake/fake_database.h"
#include "station/places.h"
#include "station/station_list.h"

#include <gtest/gtest.h>

namespace orvel {

namespace {

class TheStationList : public testing::Test {
  protected:
    void set(const QList<QVariantList> &rows) {
        databases.setTable(places.stationList(), QStringLiteral("Stations"),
                           {QStringLiteral("stationname"), QStringLiteral("digit1"), QStringLiteral("digit2"),
                            QStringLiteral("digit3")},
                           rows);
    }

    FakeDatabaseEngine databases;
    Places places{QStringLiteral("/station")};
};

} // namespace

TEST_F(TheStationList, BeginsWithTheGeneralOneAndGoesOnByName) {
    set({{QStringLiteral("Zulu"), QStringLiteral("1"), QStringLiteral("2"), QStringLiteral("3")},
         {QStringLiteral(" Alfa "), 0, 4, QStringLiteral(" 5 ")}});
    const std::vector<NetworkStation> wanted{{QStringLiteral("Algemeen"), QStringLiteral("999")},
                                             {QStringLiteral("Alfa"), QStringLiteral("045")},
                                             {QStringLiteral("Zulu"), QStringLiteral("123")}};
    EXPECT_EQ(stationList(databases, places), wanted);
}

TEST_F(TheStationList, MayBeEmpty) {
    set({});
    EXPECT_EQ(stationList(databases, places).size(), 1U);
}

TEST_F(TheStationList, OneThatCannotBeReadIsToldByWhoReadsIt) {
    EXPECT_THROW(static_cast<void>(stationList(databases, places)), RuntimeError);
}

TEST_F(TheStationList, VersionsHaveTheirStationsCodeInFrontButTheGeneralOne) {
    EXPECT_EQ(versionName(QStringLiteral("LINK1"), QStringLiteral("012")), QStringLiteral("012LINK1"));
    EXPECT_EQ(versionName(QStringLiteral("LINK1"), QStringLiteral("000")), QStringLiteral("LINK1"));
    EXPECT_EQ(versionName(QStringLiteral("LINK1"), QStringLiteral("999")), QStringLiteral("LINK1"));
}

TEST_F(TheStationList, AStationWithoutACodeCannotBeChosen) {
    set({{QStringLiteral("Beta"), QStringLiteral(" "), QVariant(), QStringLiteral("")}});
    EXPECT_EQ(stationProblem(stationList(databases, places).back()),
              QStringLiteral("Het station Beta heeft geen code in de stationslijst. Kies een ander station."));
    EXPECT_EQ(stationProblem({}), QStringLiteral("Kies eerst een station !"));
    EXPECT_EQ(stationProblem({QStringLiteral("Alfa"), QStringLiteral("045")}), QString());
}

} // namespace orvel
