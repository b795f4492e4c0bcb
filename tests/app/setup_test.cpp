// The setup dialog.
#include "station.h"

#include <QLabel>
#include <QTimer>

namespace orvel {

namespace {

const QString restart = QStringLiteral("Start het programma opnieuw op");
const QString changed = QStringLiteral("Instellingen gewijzigd");

class Setup : public Station {
  protected:
    void openSetup(const QString &settings = {}) {
        configure(settings);
        ASSERT_TRUE(start());
        window->tlbMain_ButtonClick(4);
        setup = window->findChild<frmSetup *>();
        ASSERT_NE(setup, nullptr);
    }
    void save() {
        prompts.expectMessage(restart, changed, MessageIcon::Information);
        click(setup->cmdSave);
    }
    [[nodiscard]] QString stored() const { return QString::fromUtf8(content(QStringLiteral("orvel.ini"))); }
    [[nodiscard]] bool holds(const QString &line) const { return stored().split(u'\n').contains(line); }

    frmSetup *setup = nullptr;
};

} // namespace

TEST_F(Setup, ShowsTheSettingsOnFourTabs) {
    sound.setOutputs({QStringLiteral("Luidsprekers"), QStringLiteral("Koptelefoon")});
    openSetup(
        QStringLiteral("[Files]\nDatabasepath=/data\nVoiceTrackPath=/server\n[Audio]\nCBuffers=7\nCBuffer_size=4096"
                       "\nCCard=1\nCCallback=2\nMute=1\nBitRate=3\n[Program]\nCountdown=4"));
    EXPECT_TRUE(setup->isVisible());
    EXPECT_FALSE(setup->isModal());
    QStringList tabs;
    for (int tab = 0; tab < setup->tabSetup->count(); ++tab) {
        tabs << setup->tabSetup->tabText(tab);
    }
    EXPECT_EQ(tabs.join(u' '), QStringLiteral("Opties Geluidskaart Algemeen Kleuren"));
    EXPECT_EQ(setup->tabSetup->currentIndex(), 0);
    EXPECT_EQ(setup->txtPath->text(), QStringLiteral("/data"));
    EXPECT_EQ(setup->txtVoice->text(), QStringLiteral("/server"));
    EXPECT_FALSE(setup->chkData->isChecked());
    EXPECT_FALSE(setup->chkServer->isChecked());
    EXPECT_TRUE(setup->chkMute->isChecked());
    EXPECT_EQ(setup->ledCBuf->value(), 7);
    EXPECT_EQ(setup->ledCBufsize->value(), 4096);
    EXPECT_EQ(setup->ledCallback->text(), QStringLiteral("Thread"));
    EXPECT_EQ(setup->ledKaart->text(), QStringLiteral("Koptelefoon"));
    EXPECT_EQ(setup->ledCountDown->value(), 4);
    EXPECT_EQ(setup->cobBitrate->currentText(), QStringLiteral("320 Kbit/Sec"));
    EXPECT_EQ(setup->cobBitrate->count(), 5);
    EXPECT_EQ(setup->cmdSave->toolTip(), QStringLiteral("Bewaar de wijzigingen"));
    EXPECT_EQ(setup->cmdExit->toolTip(), QStringLiteral("Verlaat dit scherm"));
}

TEST_F(Setup, SavingWritesEveryKeyAndAsksForARestart) {
    openSetup(QStringLiteral("; van de technicus\n[Extra]\nIets=1\n[Colors]\nTijdBack=5"));
    setup->txtPath->setText(QStringLiteral("/muziek"));
    setup->txtVoice->setText(QStringLiteral("/stemmen"));
    setup->ledCBufsize->setValue(1024);
    setup->ledCBuf->setValue(12);
    setup->updKaart->setValue(-1);
    setup->updCallback->setValue(1);
    setup->chkMute->setChecked(true);
    setup->cobBitrate->setCurrentIndex(1);
    setup->ledCountDown->setValue(9);
    setup->chkData->setChecked(true);
    setup->chkServer->setChecked(true);
    save();
    EXPECT_TRUE(setup->isVisible());
    for (const char *line : {"; van de technicus", "Iets=1", "Databasepath=/muziek", "VoiceTrackPath=/stemmen",
                             "CBuffer_size=1024", "CBuffers=12", "CCard=-1", "CCallback=1", "Mute=1", "BitRate=1",
                             "Countdown=9", "Network=1", "Server=1", "MusBack=16777215", "PresTxt=0", "TijdBack=5"}) {
        EXPECT_TRUE(holds(QString::fromLatin1(line))) << line << "\n" << stored().toStdString();
    }
    EXPECT_FALSE(stored().contains(QStringLiteral("TijdTxt")));
    EXPECT_EQ(window->workplace().settings.Databasepath, QStringLiteral("/muziek"));
    EXPECT_EQ(window->workplace().settings.VoicetrackPath, QStringLiteral("/stemmen"));
    EXPECT_EQ(window->workplace().settings.Countdown, 9);
    EXPECT_TRUE(window->workplace().settings.ServerMode);
    // The rest waits for the restart.
    EXPECT_FALSE(window->workplace().settings.Network);
    EXPECT_EQ(window->workplace().settings.BitRate, 2);
}

namespace {

const QString noDatabases = QStringLiteral("\u26A0 Nog niet ingevuld: nodig om nummers te kunnen voorbeluisteren.");
const QString noVoices = QStringLiteral("\u26A0 Nog niet ingevuld: nodig om op de server weg te schrijven.");

/// The first minute of a station that nobody set up.
class FirstStart : public Setup {
  protected:
    void startFirst(const QString &commandLine = {}) {
        ASSERT_TRUE(start(commandLine));
        window->showFirstSetup();
        setup = window->findChild<frmSetup *>();
    }
};

} // namespace

TEST_F(FirstStart, WithoutSettingsTheSetupOpensAndSaysWhatIsMissing) {
    startFirst();
    ASSERT_NE(setup, nullptr);
    EXPECT_TRUE(setup->isVisible());
    EXPECT_FALSE(setup->isModal()) << "who wants to record first can";
    EXPECT_EQ(setup->lblPath->text(), noDatabases);
    EXPECT_EQ(setup->lblVoice->text(), noVoices);
    EXPECT_FALSE(setup->txtPath->accessibleDescription().isEmpty());
    setup->txtPath->setText(folder.path());
    EXPECT_EQ(setup->lblPath->text(), QString());
    EXPECT_EQ(setup->txtPath->property("problem").toString(), QString());
    EXPECT_EQ(setup->lblVoice->text(), noVoices) << "each field its own";
    setup->txtVoice->setText(folder.path());
    EXPECT_EQ(setup->lblVoice->text(), QString());
    setup->txtPath->clear();
    EXPECT_EQ(setup->lblPath->text(), noDatabases);
}

TEST_F(FirstStart, WhatIsSavedEmptyIsMeantToBe) {
    configure(QStringLiteral("; nog niets\n[Files]"));
    startFirst();
    ASSERT_NE(setup, nullptr);
    EXPECT_EQ(setup->lblPath->text(), noDatabases);
    save();
    EXPECT_EQ(setup->lblPath->text(), QString());
    EXPECT_EQ(setup->lblVoice->text(), QString());
    startFirst();
    EXPECT_EQ(setup, nullptr) << "now there are settings";
}

TEST_F(FirstStart, IsNoneWhereThereAreSettingsOrOnlyARecorderIsWanted) {
    startFirst(QStringLiteral("-RECORDER"));
    EXPECT_EQ(setup, nullptr);
    configure(QStringLiteral("[Audio]\nBitRate=2"));
    startFirst();
    EXPECT_EQ(setup, nullptr);
}

// The frame was red and nothing said why, but for a tooltip.
TEST_F(Setup, AFolderThatCannotBeUsedSaysSoBesideIt) {
    openSetup(QStringLiteral("[Files]\nDatabasepath=/nergens"));
    EXPECT_EQ(setup->lblPath->text(), QStringLiteral("\u26A0 Deze map bestaat niet."));
    setup->txtPath->setText(folder.path());
    EXPECT_EQ(setup->lblPath->text(), QString());
    setup->chkServer->setChecked(true);
    EXPECT_EQ(setup->lblVoice->text(), QStringLiteral("\u26A0 Deze map bestaat niet."));
}

TEST_F(Setup, SavingTwiceWritesTheSameAndTellsItTwice) {
    openSetup();
    setup->cobBitrate->setCurrentIndex(4);
    save();
    const QString once = stored();
    save();
    EXPECT_EQ(stored(), once);
    EXPECT_EQ(prompts.open(), 0U);
}

TEST_F(Setup, OpenedAgainItShowsWhatWasSaved) {
    openSetup();
    setup->cobBitrate->setCurrentIndex(0);
    setup->ledCBuf->setValue(3);
    save();
    setup->cobBitrate->setCurrentIndex(4);
    click(setup->cmdExit);
    EXPECT_FALSE(setup->isVisible());
    window->tlbMain_ButtonClick(4);
    EXPECT_EQ(window->findChildren<frmSetup *>().size(), 1);
    EXPECT_EQ(setup->cobBitrate->currentIndex(), 0);
    EXPECT_EQ(setup->ledCBuf->value(), 3);
}

TEST_F(Setup, BroughtToTheFrontAgainItKeepsWhatIsBeingChanged) {
    openSetup();
    setup->txtVoice->setText(QStringLiteral("/half getikt"));
    setup->tabSetup->setCurrentIndex(2);
    window->tlbMain_ButtonClick(4);
    EXPECT_EQ(setup->txtVoice->text(), QStringLiteral("/half getikt"));
    EXPECT_EQ(setup->tabSetup->currentIndex(), 2);
}

TEST_F(Setup, AnUnknownCallbackModeLeavesTheDisplayAsItWas) {
    openSetup(QStringLiteral("[Audio]\nCCallback=3"));
    EXPECT_TRUE(setup->ledCallback->text().isEmpty());
    EXPECT_EQ(setup->updCallback->value(), 3);
    setup->updCallback->stepBy(-1);
    EXPECT_EQ(setup->ledCallback->text(), QStringLiteral("Thread"));
    setup->updCallback->stepBy(-1);
    EXPECT_EQ(setup->ledCallback->text(), QStringLiteral("Callback"));
    setup->updCallback->stepBy(-5);
    EXPECT_EQ(setup->ledCallback->text(), QStringLiteral("Windows"));
}

TEST_F(Setup, ABitRateThatIsNotInTheListIsKept) {
    openSetup(QStringLiteral("[Audio]\nBitRate=9"));
    EXPECT_EQ(setup->cobBitrate->currentIndex(), -1);
    save();
    EXPECT_TRUE(holds(QStringLiteral("BitRate=9")));
}

TEST_F(Setup, TheCardSpinnerGoesFromTheDefaultToTheLastOutput) {
    sound.setOutputs({QStringLiteral("Luidsprekers"), QStringLiteral("Koptelefoon")});
    openSetup(QStringLiteral("[Audio]\nCCard=5"));
    EXPECT_TRUE(setup->ledKaart->text().contains(QStringLiteral("5")));
    setup->updKaart->stepBy(1);
    EXPECT_EQ(setup->ledKaart->text(), QStringLiteral("Koptelefoon"));
    setup->updKaart->stepBy(-9);
    EXPECT_EQ(setup->updKaart->value(), -1);
    EXPECT_EQ(setup->ledKaart->text(), QStringLiteral("Standaarduitgang"));
}

TEST_F(Setup, UpdateWaveNeedsAnOutputDevice) {
    sound.setOutputs({QStringLiteral("Een"), QStringLiteral("Twee"), QStringLiteral("Drie")});
    openSetup();
    setup->updKaart->setRange(0, 9);
    setup->UpdateWave();
    EXPECT_EQ(setup->updKaart->minimum(), -1);
    EXPECT_EQ(setup->updKaart->maximum(), 2);
    sound.setOutputs({});
    setup->updKaart->setRange(0, 9);
    prompts.expectMessage(QStringLiteral("Geen geluidskaart gevonden"), QStringLiteral("Foutmelding"),
                          MessageIcon::Exclamation);
    setup->UpdateWave();
    EXPECT_EQ(setup->updKaart->maximum(), 9);
}

TEST_F(Setup, FolderChoosersStartWhereTheTextPointsOrInTheProgramFolder) {
    openSetup();
    const QString instruction = QStringLiteral("Geef de locatie op van de databasebestanden");
    prompts.expectFolder(instruction, folder.path(), QStringLiteral("/gekozen"));
    click(setup->cmdPath);
    EXPECT_EQ(setup->txtPath->text(), QStringLiteral("/gekozen"));
    prompts.expectFolder(instruction, QStringLiteral("/gekozen"), {});
    click(setup->cmdPath);
    EXPECT_EQ(setup->txtPath->text(), QStringLiteral("/gekozen"));
    prompts.expectFolder(QStringLiteral("Geef de locatie op van de voicetracks op de server"), folder.path(),
                         QStringLiteral("/stemmen"));
    click(setup->cmdVoice);
    EXPECT_EQ(setup->txtVoice->text(), QStringLiteral("/stemmen"));
}

TEST_F(Setup, WrongFoldersAreMarkedOnTheSpotAndNotRefused) {
    openSetup();
    EXPECT_TRUE(setup->txtPath->toolTip().isEmpty());
    setup->txtPath->setText(QStringLiteral("/bestaat/niet"));
    EXPECT_EQ(setup->txtPath->toolTip(), QStringLiteral("Deze map bestaat niet."));
    EXPECT_EQ(setup->txtPath->property("problem").toString(), QStringLiteral("true"));
    EXPECT_EQ(setup->txtPath->accessibleDescription(), setup->txtPath->toolTip());
    setup->txtPath->setText(folder.path());
    EXPECT_TRUE(setup->txtPath->toolTip().isEmpty());
    setup->chkData->setChecked(true);
    EXPECT_EQ(setup->txtPath->toolTip(), QStringLiteral("In deze map staat geen digital.mdb."));
    setup->chkServer->setChecked(true);
    EXPECT_EQ(setup->txtVoice->toolTip(), QStringLiteral("Deze map bestaat niet."));
    save();
    EXPECT_TRUE(holds(QStringLiteral("Server=1")));
}

TEST_F(Setup, EveryColourButtonPaintsItsPanelAndTheGridAtOnce) {
    addPlaylist(QStringLiteral("type-codes.mdb"));
    openSetup();
    open(QStringLiteral("type-codes.mdb"));
    const std::vector<std::tuple<const char *, std::int32_t Settings::*>> buttons = {
        {"cmdMuzBack", &Settings::MusBack},     {"cmdMuzTxt", &Settings::MusTxt},
        {"cmdJingBack", &Settings::JingBack},   {"cmdJingTxt", &Settings::jingTxt},
        {"cmdRecBack", &Settings::RecBack},     {"cmdRecTxt", &Settings::RecTxt},
        {"cmdEventBack", &Settings::EventBack}, {"cmdEventTxt", &Settings::EventTxt},
        {"cmdPresBack", &Settings::PresBack},   {"cmdPresTxt", &Settings::PresTxt},
    };
    std::int32_t colour = 0x102030;
    for (const auto &[name, field] : buttons) {
        auto *button = setup->findChild<QPushButton *>(QString::fromLatin1(name));
        ASSERT_NE(button, nullptr) << name;
        colour += 0x010101;
        prompts.expectColour(colour);
        button->click();
        EXPECT_EQ(window->workplace().settings.*field, colour) << name;
    }
    auto *panel = setup->findChild<QLabel *>(QStringLiteral("panMuziek"));
    ASSERT_NE(panel, nullptr);
    // Red is the low byte.
    EXPECT_TRUE(panel->styleSheet().contains(QStringLiteral("rgb(49, 33, 17)"))) << panel->styleSheet().toStdString();
    const StepsModel &steps = window->panels().gridPanel->steps();
    const auto colourOf = [&steps](int row, Qt::ItemDataRole role) {
        return steps.index(row, StapColumn).data(role).value<QBrush>().color();
    };
    // Rows by their type code: music, jingle, advertising, event, presentation.
    int step = 1;
    for (const int row : {1, 3, 10, 4, 2}) {
        EXPECT_EQ(colourOf(row, Qt::BackgroundRole), QColor(0x30 + step, 0x20 + step, 0x10 + step)) << row;
        ++step;
        EXPECT_EQ(colourOf(row, Qt::ForegroundRole), QColor(0x30 + step, 0x20 + step, 0x10 + step)) << row;
        ++step;
    }
}

// A colour that was chosen while a playlist was open took the selected row away: the take was filed and its step never
// marked.
TEST_F(Setup, AChosenColourKeepsTheSelectedStep) {
    addPlaylist(QStringLiteral("type-codes.mdb"));
    openSetup();
    open(QStringLiteral("type-codes.mdb"));
    select(2);
    const QString name = window->workplace().step.VoiceTrackName;
    prompts.expectColour(77);
    setup->findChild<QPushButton *>(QStringLiteral("cmdMuzBack"))->click();
    EXPECT_EQ(window->panels().gridPanel->currentRow(), 2);
    EXPECT_EQ(window->workplace().step.VoiceTrackName, name);
    mark(window->panels().gridPanel->currentRow(), true);
    EXPECT_TRUE(imported(2));
}

TEST_F(Setup, ACancelledColourChangesNothing) {
    openSetup(QStringLiteral("[Colors]\nMusBack=1193046"));
    const auto *panel = setup->findChild<QLabel *>(QStringLiteral("panMuziek"));
    ASSERT_NE(panel, nullptr);
    const QString before = panel->styleSheet();
    EXPECT_TRUE(before.contains(QStringLiteral("rgb(86, 52, 18)"))) << before.toStdString();
    prompts.expectColour(std::nullopt);
    setup->findChild<QPushButton *>(QStringLiteral("cmdMuzBack"))->click();
    EXPECT_EQ(prompts.open(), 0U) << "it was asked";
    EXPECT_EQ(window->workplace().settings.MusBack, 1193046);
    EXPECT_EQ(panel->styleSheet(), before);
}

TEST_F(Setup, ColoursStayForTheRunButNotInTheFile) {
    openSetup(QStringLiteral("[Colors]\nMusBack=1"));
    const QByteArray before = content(QStringLiteral("orvel.ini"));
    prompts.expectColour(77);
    setup->findChild<QPushButton *>(QStringLiteral("cmdMuzBack"))->click();
    click(setup->cmdExit);
    EXPECT_EQ(content(QStringLiteral("orvel.ini")), before);
    EXPECT_EQ(window->workplace().settings.MusBack, 77);
    // Another setting that is saved later takes the colour along.
    window->tlbMain_ButtonClick(4);
    save();
    EXPECT_TRUE(holds(QStringLiteral("MusBack=77")));
}

TEST_F(Setup, ASettingsFileThatCannotBeWrittenIsReportedAndNothingChanges) {
    openSetup();
    setup->ledCountDown->setValue(8);
    files.fail(FaultyFileSystem::Operation::Write, QStringLiteral("orvel.ini"), ErrorNumber::DiskFull);
    prompts.expectReport(QStringLiteral("Fout 61"));
    click(setup->cmdSave);
    EXPECT_EQ(window->workplace().settings.Countdown, 0);
}

// Without digital.mdb the catalogues are off for this run; whoever saved the setup then switched them off for good.
TEST_F(Setup, WhatIsOffForThisRunOnlyIsNotSavedAsOff) {
    configure(QStringLiteral("[Files]\nDatabasepath=/nergens\n[Program]\nNetwork=1"));
    prompts.expectReport(QStringLiteral("Databasebestanden van de server werden niet gevonden"));
    QTimer close;
    QObject::connect(&close, &QTimer::timeout, [&] {
        if (auto *modal = qobject_cast<frmSetup *>(QApplication::activeModalWidget())) {
            EXPECT_TRUE(modal->chkData->isChecked());
            modal->cmdExit->click();
        }
    });
    close.start(10);
    ASSERT_TRUE(start());
    close.stop();
    EXPECT_FALSE(window->workplace().settings.Network);
    window->tlbMain_ButtonClick(4);
    setup = window->findChild<frmSetup *>();
    ASSERT_NE(setup, nullptr);
    save();
    EXPECT_TRUE(holds(QStringLiteral("Network=1"))) << stored().toStdString();
    setup->chkData->setChecked(false);
    save();
    EXPECT_TRUE(holds(QStringLiteral("Network=0")));
    EXPECT_FALSE(window->workplace().settings.Network);
}

TEST_F(Setup, TheServerAndDataBoxesShowTheSettingsAndTheLastRateIsThreeFifty) {
    configure(QStringLiteral("[Files]\nVoiceTrackPath=%1\nDatabasepath=%2")
                  .arg(folder.path(), QStringLiteral(ORVEL_SOURCE_DIR "/samples/station")));
    openSetup(QStringLiteral("[Program]\nNetwork=1\nServer=1\n[Audio]\nBitRate=4"));
    EXPECT_TRUE(setup->chkData->isChecked());
    EXPECT_TRUE(setup->chkServer->isChecked());
    EXPECT_EQ(setup->cobBitrate->currentText(), QStringLiteral("350 Kbit/Sec"));
    setup->chkServer->setChecked(false);
    setup->chkData->setChecked(false);
    save();
    EXPECT_TRUE(holds(QStringLiteral("Server=0")));
    EXPECT_TRUE(holds(QStringLiteral("Network=0")));
    EXPECT_FALSE(window->workplace().settings.ServerMode);
    EXPECT_TRUE(holds(QStringLiteral("BitRate=4")));
}

} // namespace orvel
