// What was measured of each recording card, in the settings file among everything else.
#include "platform/fake/faulty_file_system.h"
#include "settings/card_delays.h"
#include "tests/settings/settings_fixture.h"

namespace orvel {

namespace {

using Delays = test::SettingsFile;
using test::contentOf;
using test::errorOf;

const QString usbCard = QStringLiteral("USB = kaart [2]");
const QString deskCard = QStringLiteral("Mengtafel");

} // namespace

TEST_F(Delays, ACardThatWasNotMeasuredHasNone) {
    CardDelays delays(disk, folder.path());
    delays.load();
    EXPECT_FALSE(delays.of(deskCard));
    EXPECT_FALSE(delays.of({}));
}

TEST_F(Delays, EachCardKeepsItsOwnByItsName) {
    writeFile("; van de zender\r\n[Audio]\r\nRecCardName=Mengtafel\r\n");
    CardDelays delays(disk, folder.path());
    delays.keep(usbCard, 12.34);
    delays.keep(deskCard, -201.06);
    EXPECT_EQ(contentOf(path), "; van de zender\r\n[Audio]\r\nRecCardName=Mengtafel\r\n\r\n"
                               "[Delays]\r\n1=12.3 USB = kaart [2]\r\n2=-201.1 Mengtafel\r\n");
    delays.keep(QStringLiteral(" USB =  kaart [2]"), 15);
    CardDelays again(disk, folder.path());
    again.load();
    EXPECT_EQ(again.of(usbCard), 15.0);
    EXPECT_EQ(again.of(deskCard), -201.1);
    EXPECT_FALSE(again.of(QStringLiteral("USB")));
    EXPECT_EQ(contentOf(path).count("USB"), 1);
}

TEST_F(Delays, WhatCannotBeReadIsAsGoodAsNotMeasured) {
    writeFile("[Delays]\n1=Mengtafel\n2=\n3=nan Kaart\n4=12,5 Komma\n5=7\nx=8 Stokje\n");
    CardDelays delays(disk, folder.path());
    delays.load();
    for (const char *card : {"Mengtafel", "Kaart", "Komma", ""}) {
        EXPECT_FALSE(delays.of(QString::fromLatin1(card))) << card;
    }
    EXPECT_EQ(delays.of(QStringLiteral("Stokje")), 8.0);
    delays.keep(deskCard, 3);
    EXPECT_EQ(delays.of(deskCard), 3.0);
    EXPECT_TRUE(contentOf(path).contains("1=Mengtafel\n")) << "what somebody wrote there stays";
}

TEST_F(Delays, WhatCouldNotBeWrittenIsToldAndNotUsed) {
    FaultyFileSystem broken(disk);
    CardDelays delays(broken, folder.path());
    broken.fail(FaultyFileSystem::Operation::Write, path, ErrorNumber::DiskFull);
    EXPECT_EQ(errorOf([&] { delays.keep(deskCard, 3); }), 61);
    EXPECT_FALSE(delays.of(deskCard));
}

} // namespace orvel
