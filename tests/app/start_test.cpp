// From the start of the program to its end.
#include "station.h"
#include "windows/version.h"

#include <QTimer>
#include <QToolBar>

namespace orvel {

namespace {

const QString noServer =
    QStringLiteral("Databasebestanden van de server werden niet gevonden, controleer instellingen !");
const QString noVoiceTracks =
    QStringLiteral("Locatie van voicetracks op de server werd niet gevonden, controleer instellingen !");

} // namespace

TEST_F(Station, WithoutASoundCardTheProgramEndsAndWritesNothing) {
    configure(QStringLiteral("[Audio]\nRecCard=3"));
    const QByteArray before = content(QStringLiteral("orvel.ini"));
    sound.plug({});
    sound.audioRecord().refresh();
    prompts.expectMessage(QStringLiteral("Geen geluidskaart gevonden !"), QStringLiteral("Fatale fout"),
                          MessageIcon::Critical);
    EXPECT_FALSE(start());
    EXPECT_EQ(content(QStringLiteral("orvel.ini")), before);
}

/// PipeWire makes itself an output when there is no card; what records it was taken for a microphone, and a silent take
/// was recorded.
TEST_F(Station, WhatRecordsAnOutputIsNoSoundCard) {
    configure(QStringLiteral("[Audio]\nRecCard=0"));
    const QByteArray before = content(QStringLiteral("orvel.ini"));
    Card monitor{QStringLiteral("m"), QStringLiteral("Monitor of Dummy Output"), {QStringLiteral("Ingang")}};
    monitor.isMonitor = true;
    sound.plug({monitor});
    sound.audioRecord().refresh();
    prompts.expectMessage(QStringLiteral("Geen geluidskaart gevonden !"), QStringLiteral("Fatale fout"),
                          MessageIcon::Critical);
    EXPECT_FALSE(start());
    EXPECT_EQ(content(QStringLiteral("orvel.ini")), before);
}

// The window was wider than a screen of 1280 where the desktop's letters and frames are broad: 1277 at the least here,
// 1307 on Wayland.
TEST_F(Station, TheWindowFitsASmallScreenWithRoomToSpare) {
    ASSERT_TRUE(start());
    EXPECT_LE(window->minimumSizeHint().width(), 1160);
    EXPECT_LE(window->minimumSizeHint().height(), 700);
    EXPECT_LE(window->width(), 1240);
    // What tells that a take runs keeps its place and is whole.
    for (QLabel *notice : {window->panels().recorderPanel->lblOpname, window->panels().recorderPanel->lblProcess}) {
        notice->show();
        QCoreApplication::processEvents();
        EXPECT_GE(notice->width(), notice->sizeHint().width()) << notice->text().toStdString();
        EXPECT_GE(notice->height(), notice->sizeHint().height()) << notice->text().toStdString();
        notice->hide();
    }
}

TEST_F(Station, ABitRateOutsideTheTableLeavesTheWriterWithoutAFormat) {
    configure(QStringLiteral("[Audio]\nBitRate=7"));
    ASSERT_TRUE(start());
    EXPECT_EQ(window->workplace().filing.format().kbitPerSecond, 0);
}

TEST_F(Station, BitRateFourIsWrittenAsThreeHundredTwentyUnlessFreeFormatIsWanted) {
    configure(QStringLiteral("[Audio]\nBitRate=4"));
    ASSERT_TRUE(start());
    EXPECT_EQ(window->workplace().filing.format().kbitPerSecond, 320);
    configure(QStringLiteral("FreeFormat=1"));
    ASSERT_TRUE(start());
    EXPECT_EQ(window->workplace().filing.format().kbitPerSecond, 350);
    EXPECT_TRUE(window->workplace().filing.format().freeFormat);
}

TEST_F(Station, ARecordingCardPastTheListSelectsTheFirstOne) {
    configure(QStringLiteral("[Audio]\nRecCard=9"));
    ASSERT_TRUE(start());
    EXPECT_EQ(window->panels().cardPanel->cobKaart->currentIndex(), 0);
    EXPECT_EQ(sound.recorderDevice(), 0);
}

TEST_F(Station, TheChosenCardIsTheRecorders) {
    Card first;
    first.key = first.name = QStringLiteral("Een");
    Card second;
    second.key = second.name = QStringLiteral("Twee");
    sound.plug({first, second});
    sound.audioRecord().refresh();
    configure(QStringLiteral("[Audio]\nRecCard=1"));
    ASSERT_TRUE(start());
    EXPECT_EQ(window->panels().cardPanel->cobKaart->count(), 2);
    EXPECT_EQ(window->panels().cardPanel->cobKaart->currentText(), QStringLiteral("Twee"));
    EXPECT_EQ(sound.recorderDevice(), 1);
    EXPECT_EQ(sound.playerDevice(), 1);
}

TEST_F(Station, OnlyTheWholeArgumentStartsTheRecorder) {
    ASSERT_TRUE(start(QStringLiteral("-recorder")));
    EXPECT_TRUE(window->workplace().session.mode.RecorderOnly);
    EXPECT_FALSE(window->panels().filePanel->tabFiles->isEnabled());
    EXPECT_FALSE(window->panels().gridPanel->dbgLijst->isEnabled());
    EXPECT_FALSE(window->panels().savePanel->cmdImport->isEnabled());
    EXPECT_TRUE(window->panels().recorderPanel->cmdRec->isEnabled());
    EXPECT_FALSE(window->panels().tlbMain->actions().at(2)->isEnabled());
    EXPECT_TRUE(window->panels().tlbMain->actions().at(3)->isEnabled());
    ASSERT_TRUE(start(QStringLiteral("-RECORDER x")));
    EXPECT_FALSE(window->workplace().session.mode.RecorderOnly);
    EXPECT_TRUE(window->panels().filePanel->tabFiles->isEnabled());
}

TEST_F(Station, WithoutTheNetworkNoCatalogueIsOpened) {
    configure(QStringLiteral("[Program]\nNetwork=0"));
    ASSERT_TRUE(start());
    EXPECT_EQ(window->workplace().catalogues.datTracks, nullptr);
    EXPECT_EQ(window->workplace().catalogues.datJingles, nullptr);
}

TEST_F(Station, WithTheNetworkBothCataloguesAreOpened) {
    configure(QStringLiteral("[Files]\nDatabasepath=%1\n[Program]\nNetwork=1")
                  .arg(QStringLiteral(ORVEL_SOURCE_DIR "/samples/station")));
    ASSERT_TRUE(start());
    ASSERT_NE(window->workplace().catalogues.datTracks, nullptr);
    ASSERT_NE(window->workplace().catalogues.datJingles, nullptr);
    EXPECT_TRUE(window->workplace().catalogues.datTracks->findFirst(QStringLiteral("tracknr=3")));
    EXPECT_EQ(window->workplace().catalogues.datTracks->field(QStringLiteral("PATH")).toString(),
              QStringLiteral("M:\\muziek\\0003.mp3"));
}

TEST_F(Station, BothServerChecksComplainOneAfterTheOther) {
    configure(
        QStringLiteral("[Files]\nDatabasepath=/nergens\nVoicetrackPath=/nergens/ook\n[Program]\nNetwork=1\nServer=1"));
    prompts.expectMessage(noServer, QStringLiteral("Foutmelding"), MessageIcon::Exclamation);
    prompts.expectMessage(noVoiceTracks, QStringLiteral("Foutmelding"), MessageIcon::Exclamation);
    // Each time the setup dialog keeps the start waiting until it is closed.
    int setups = 0;
    QTimer close;
    QObject::connect(&close, &QTimer::timeout, [&] {
        auto *setup = qobject_cast<frmSetup *>(QApplication::activeModalWidget());
        if (setup != nullptr) {
            ++setups;
            EXPECT_EQ(setup->parentWidget(), window.get());
            setup->cmdExit->click();
        }
    });
    close.start(10);
    ASSERT_TRUE(start());
    EXPECT_EQ(setups, 2);
    EXPECT_FALSE(window->workplace().settings.Network);
    EXPECT_TRUE(window->workplace().settings.ServerMode);
}

TEST_F(Station, MultivoiceNeedsTheStationList) {
    ASSERT_TRUE(start());
    EXPECT_FALSE(window->panels().savePanel->cmdMultivoice->isEnabled());
    QFile::copy(QStringLiteral(ORVEL_SOURCE_DIR "/samples/station/syncstations.mdb"),
                path(QStringLiteral("syncstations.mdb")));
    ASSERT_TRUE(start());
    EXPECT_TRUE(window->panels().savePanel->cmdMultivoice->isEnabled());
}

TEST_F(Station, MissingFoldersAreMade) {
    for (const char *name : {"new", "ok", "temp", "temp2"}) {
        QDir(folder.path()).rmdir(QString::fromLatin1(name));
    }
    ASSERT_TRUE(start());
    for (const char *name : {"new", "ok", "temp", "temp2"}) {
        EXPECT_TRUE(exists(QString::fromLatin1(name))) << name;
    }
}

TEST_F(Station, TheToolbarHasItsSixTooltips) {
    ASSERT_TRUE(start());
    QStringList tips;
    const QList<QAction *> actions = window->panels().tlbMain->actions();
    for (const QAction *action : actions) {
        tips.append(action->toolTip());
    }
    EXPECT_EQ(tips, (QStringList{
                        QStringLiteral("Aktieve playlist afdrukken"), QStringLiteral("Playlists importeren vanaf disk"),
                        QStringLiteral("Afgewerkte playlists exporteren"), QStringLiteral("Programma instellingen"),
                        QStringLiteral("Informatie over dit programma"), QStringLiteral("Verlaat het programma")}));
}

TEST_F(Station, ClosingTheWindowWritesTheProcessorAndTheCard) {
    configure(QStringLiteral("; eigen regel\n[AudioProcessor]\nOnbekend=x"));
    ASSERT_TRUE(start());
    window->panels().processorPanel->findChild<LedSpin *>(QStringLiteral("ledRevDelay"))->setValue(250);
    window->panels().processorPanel->findChild<QCheckBox *>(QStringLiteral("chkComp"))->setChecked(true);
    EXPECT_TRUE(window->close());
    const QByteArray written = content(QStringLiteral("orvel.ini"));
    EXPECT_TRUE(written.contains("RevDelay=250"));
    EXPECT_TRUE(written.contains("UseComp=1"));
    EXPECT_TRUE(written.contains("RecCard=0"));
    EXPECT_TRUE(written.startsWith("; eigen regel\n[AudioProcessor]\nOnbekend=x"));
    ASSERT_TRUE(start());
    EXPECT_EQ(window->panels().processorPanel->findChild<LedSpin *>(QStringLiteral("ledRevDelay"))->value(), 250);
    EXPECT_TRUE(window->panels().processorPanel->findChild<QCheckBox *>(QStringLiteral("chkComp"))->isChecked());
}

// A gain of 800 dB went from the settings file into the sound.
TEST_F(Station, AKnobOutsideItsLimitsIsSetToTheLimitAndTold) {
    configure(QStringLiteral("[AudioProcessor]\nAmp=800\nNorm=70"));
    ASSERT_TRUE(start());
    EXPECT_EQ(window->panels().processorPanel->findChild<LedSpin *>(QStringLiteral("ledAmp"))->value(), 15);
    EXPECT_EQ(window->panels().processorPanel->findChild<LedSpin *>(QStringLiteral("ledNorm"))->value(), 70);
    EXPECT_EQ(window->panels().lblStatus->text(),
              QStringLiteral("Buiten de grenzen in orvel.ini: Versterking Niveau van 800 naar 15."));
}

TEST_F(Station, TheExitButtonWritesAndEnds) {
    ASSERT_TRUE(start());
    bool ended = false;
    QObject::connect(window.get(), &frmMain::ended, [&] { ended = true; });
    window->tlbMain_ButtonClick(6);
    EXPECT_TRUE(ended);
    EXPECT_TRUE(content(QStringLiteral("orvel.ini")).contains("RecCard=0"));
}

TEST_F(Station, ASettingsFileThatCannotBeWrittenDoesNotKeepTheWindowOpen) {
    ASSERT_TRUE(start());
    files.fail(FaultyFileSystem::Operation::Write, QStringLiteral("orvel.ini"), ErrorNumber::DiskFull);
    prompts.expectReport(QStringLiteral("Fout 61 tijdens de uitvoering:"));
    EXPECT_TRUE(window->close());
}

TEST_F(Station, ClosingTheSplashEarlyDoesNotDisturbTheStart) {
    frmSplash splash;
    splash.show();
    EXPECT_EQ(splash.lblVersion->text(),
              QStringLiteral("%1.%2.%3").arg(versionMajor).arg(versionMinor).arg(versionRevision));
    QTest::keyClick(&splash, Qt::Key_Space);
    EXPECT_FALSE(splash.isVisible());
    window = std::make_unique<frmMain>(platform, folder.path(), QString());
    window->setSplash(&splash);
    EXPECT_TRUE(window->Form_Load());
}

TEST_F(Station, TheSplashClosesOnItsLogoAndWhenLoadingEnds) {
    frmSplash splash;
    splash.show();
    QTest::mouseClick(splash.imgLogo, Qt::LeftButton);
    EXPECT_FALSE(splash.isVisible());
    splash.show();
    window = std::make_unique<frmMain>(platform, folder.path(), QString());
    window->setSplash(&splash);
    ASSERT_TRUE(window->Form_Load());
    EXPECT_FALSE(splash.isVisible());
}

// A station on a read-only disk started as if nothing was the matter, and refused when the presenter had spoken.
TEST_F(Station, AStationThatCannotBeWrittenIsToldAtTheStart) {
    files.fail(FaultyFileSystem::Operation::Write, QStringLiteral("/temp/"), ErrorNumber::PermissionDenied);
    prompts.expectMessage(QStringLiteral("ORVEL kan niet schrijven in de map %1 (Geen toegang).\n\nOpnemen en bewaren "
                                         "lukt niet zolang dat zo is.")
                              .arg(path(QStringLiteral("temp"))),
                          QStringLiteral("Foutmelding"), MessageIcon::Exclamation);
    EXPECT_TRUE(start());
    for (const char *name : {"new", "ok", "temp", "temp2"}) {
        EXPECT_TRUE(QDir(path(QString::fromLatin1(name))).entryList(QDir::Files | QDir::Hidden).isEmpty()) << name;
    }
}

TEST_F(Station, AFolderThatCannotBeMadeIsToldAtTheStart) {
    ASSERT_TRUE(QDir(folder.path()).rmdir(QStringLiteral("temp2")));
    files.fail(FaultyFileSystem::Operation::MakeFolder, QStringLiteral("temp2"), ErrorNumber::PermissionDenied);
    ASSERT_TRUE(QDir(folder.path()).rmdir(QStringLiteral("temp")));
    files.fail(FaultyFileSystem::Operation::Write, QStringLiteral("/new/"), ErrorNumber::PermissionDenied);
    prompts.expectReport(QStringLiteral("ORVEL kan niet schrijven in de map %1 (").arg(path(QStringLiteral("new"))));
    EXPECT_TRUE(start());
    EXPECT_TRUE(exists(QStringLiteral("temp"))) << "the others are made all the same";
}

TEST_F(Station, TheDeskStartsWithTheFirstTabAndACountOfFour) {
    ASSERT_TRUE(start());
    EXPECT_EQ(window->panels().tabRec->currentIndex(), 0);
    EXPECT_EQ(window->workplace().session.CountdownLeft, 4);
}

// Only the third button was looked at: printing and importing worked in the plain recorder.
TEST_F(Station, TheRecorderHasNoPrintingImportOrExport) {
    ASSERT_TRUE(start(QStringLiteral("-RECORDER")));
    const QList<QAction *> buttons = window->panels().tlbMain->actions();
    for (const int index : {1, 2, 3}) {
        EXPECT_FALSE(buttons.at(index - 1)->isEnabled()) << index;
    }
    for (const int index : {4, 5, 6}) {
        EXPECT_TRUE(buttons.at(index - 1)->isEnabled()) << index;
    }
    ASSERT_TRUE(start());
    for (const QAction *button : window->panels().tlbMain->actions()) {
        EXPECT_TRUE(button->isEnabled()) << button->text().toStdString();
    }
}

} // namespace orvel
