// What is on the screen while the program starts.
#include "app/start.h"
#include "station.h"

namespace orvel {

// The main window was shown before it loaded, and covered the splash.
TEST_F(Station, WhileItLoadsTheSplashIsTheOnlyWindow) {
    configure(QStringLiteral("[Files]\nDatabasepath=%1\n[Program]\nNetwork=1").arg(folder.path()));
    disk.write(path(QStringLiteral("digital.mdb")), "geen database");
    ASSERT_TRUE(QFile::copy(QStringLiteral(ORVEL_SOURCE_DIR "/samples/station/jingles.mdb"),
                            path(QStringLiteral("jingles.mdb"))));
    frmSplash splash;
    splash.show();
    window = std::make_unique<frmMain>(platform, folder.path(), QString());
    prompts.whileOpen([&] {
        EXPECT_TRUE(splash.isVisible());
        EXPECT_FALSE(window->isVisible());
    });
    prompts.expectReport(QStringLiteral("Fout"));
    EXPECT_TRUE(startUnderSplash(*window, splash));
    EXPECT_FALSE(splash.isVisible());
    EXPECT_TRUE(window->isVisible());
    EXPECT_NE(window->workplace().catalogues.datJingles, nullptr)
        << "a damaged catalogue keeps the other one closed no more";
    EXPECT_TRUE(window->workplace().settings.Network);
}

TEST_F(Station, WhenTheProgramMustEndItsWindowIsNeverSeen) {
    sound.plug({});
    sound.audioRecord().refresh();
    frmSplash splash;
    splash.show();
    window = std::make_unique<frmMain>(platform, folder.path(), QString());
    prompts.expectReport(QStringLiteral("Geen geluidskaart gevonden !"));
    EXPECT_FALSE(startUnderSplash(*window, splash));
    EXPECT_FALSE(splash.isVisible());
    EXPECT_FALSE(window->isVisible());
}

} // namespace orvel
