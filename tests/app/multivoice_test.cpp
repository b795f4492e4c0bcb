// One step voiced once per station, and the station chooser.
#include "platform/runtime_error.h"
#include "station.h"

#include <QTimer>

namespace orvel {

namespace {

const QString ready = QStringLiteral("Bent U klaar met deze inteksting ?");
const QString title = QStringLiteral("Multivoice inteksting");

class Multivoice : public Station {
  protected:
    void openDemo(const QString &settings = {}, const QString &stations = QStringLiteral("stations-numeric.mdb")) {
        configure(settings);
        copyStations(stations);
        addPlaylist(QStringLiteral("access-2003.mdb"));
        ASSERT_TRUE(start());
        open(QStringLiteral("access-2003.mdb"));
        while (window->workplace().datList.value(row, TypeColumn).toInt() != PresStep) {
            ++row;
        }
        select(row);
        name = window->workplace().step.VoiceTrackName;
        click(window->panels().savePanel->cmdMultivoice);
    }
    void copyStations(const QString &fixture) const {
        ASSERT_TRUE(QFile::copy(QStringLiteral(ORVEL_SOURCE_DIR "/tests/data/databases/") + fixture,
                                path(QStringLiteral("syncstations.mdb"))));
    }
    [[nodiscard]] frmStation *chooser() const {
        const auto open = window->findChildren<frmStation *>();
        for (frmStation *one : open) {
            if (one->isVisible()) {
                return one;
            }
        }
        return nullptr;
    }
    void save() { click(window->panels().savePanel->cmdSave); }
    void chooseCode(const QString &code) {
        QComboBox &stations = *chooser()->cobStation;
        for (int index = 0; index < stations.count(); ++index) {
            if (stations.model()->index(index, 1).data().toString() == code) {
                stations.setCurrentIndex(index);
                return;
            }
        }
        FAIL() << code.toStdString();
    }
    void saveFor(const QString &code, bool isLast) {
        save();
        chooseCode(code);
        prompts.expectAsk(ready, title, isLast);
        click(chooser()->cmdSave);
    }
    [[nodiscard]] QStringList filed() const { return filesIn(QStringLiteral("ok")); }
    [[nodiscard]] bool isOn() const { return window->panels().savePanel->ledMulti->isLit(); }
    [[nodiscard]] QStringList codes() const {
        QStringList all;
        const QComboBox &stations = *chooser()->cobStation;
        for (int index = 0; index < stations.count(); ++index) {
            all << stations.itemText(index) + u' ' + stations.model()->index(index, 1).data().toString();
        }
        return all;
    }

    int row = 0;
    QString name;
};

} // namespace

TEST_F(Multivoice, TheButtonSwitchesTheModeAndNothingElse) {
    openDemo();
    EXPECT_TRUE(isOn());
    click(window->panels().savePanel->cmdMultivoice);
    EXPECT_FALSE(isOn());
}

TEST_F(Multivoice, WithoutAStationListTheModeCannotBeSwitchedOn) {
    ASSERT_TRUE(start());
    EXPECT_FALSE(window->panels().savePanel->cmdMultivoice->isEnabled());
    click(window->panels().savePanel->cmdMultivoice);
    EXPECT_FALSE(isOn());
}

TEST_F(Multivoice, SavingAsksForTheStation) {
    openDemo();
    record(300);
    save();
    ASSERT_NE(chooser(), nullptr);
    EXPECT_FALSE(chooser()->isModal());
    EXPECT_EQ(chooser()->windowTitle(), QStringLiteral("Selecteer een station"));
    EXPECT_TRUE(imported(row));
    EXPECT_TRUE(window->panels().savePanel->cmdSave->isEnabled());
    EXPECT_TRUE(filed().isEmpty());
    EXPECT_TRUE(exists(QStringLiteral("temp/") + name + QStringLiteral(".wav")));
}

TEST_F(Multivoice, TheListBeginsWithTheGeneralEntryThenTheStationsByName) {
    openDemo();
    record(300);
    save();
    EXPECT_EQ(chooser()->cobStation->currentIndex(), -1);
    const QStringList all = codes();
    EXPECT_EQ(all.first(), QStringLiteral("Algemeen 999"));
    ASSERT_EQ(all.size(), 4);
    QStringList sorted = all.mid(1);
    sorted.sort(Qt::CaseInsensitive);
    EXPECT_EQ(all.mid(1), sorted);
    for (const QString &entry : all) {
        EXPECT_EQ(entry.section(u' ', -1).size(), 3) << entry.toStdString();
    }
}

TEST_F(Multivoice, AnEmptyStationTableLeavesTheGeneralEntry) {
    openDemo({}, QStringLiteral("stations-empty.mdb"));
    record(300);
    save();
    EXPECT_EQ(codes(), QStringList{QStringLiteral("Algemeen 999")});
}

TEST_F(Multivoice, AStationWithoutADigitIsListedWithWhatItHas) {
    openDemo({}, QStringLiteral("stations-null-digit.mdb"));
    record(300);
    save();
    EXPECT_EQ(codes().size(), 2);
}

TEST_F(Multivoice, WithoutAChoiceTheChooserAsksForOneAndStays) {
    openDemo();
    record(300);
    save();
    prompts.expectMessage(QStringLiteral("Kies eerst een station !"), QStringLiteral("Ontbrekende gegevens"),
                          MessageIcon::Exclamation);
    click(chooser()->cmdSave);
    ASSERT_NE(chooser(), nullptr);
    EXPECT_EQ(chooser()->focusWidget(), chooser()->cobStation);
    EXPECT_TRUE(filed().isEmpty());
}

TEST_F(Multivoice, TwoVersionsGetTheirStationsPrefixes) {
    openDemo({}, QStringLiteral("stations-numeric.mdb"));
    record(300);
    save();
    QStringList own;
    const QStringList all = codes();
    for (const QString &entry : all.mid(1)) {
        const QString code = entry.section(u' ', -1);
        if (code != QStringLiteral("000") && code != QStringLiteral("999")) {
            own << code;
        }
    }
    ASSERT_GE(own.size(), 2);
    chooseCode(own.at(0));
    prompts.expectAsk(ready, title, false);
    click(chooser()->cmdSave);
    EXPECT_EQ(chooser(), nullptr);
    EXPECT_TRUE(isOn());
    EXPECT_TRUE(window->panels().savePanel->cmdSave->isEnabled());
    EXPECT_TRUE(filesIn(QStringLiteral("temp")).isEmpty());
    record(300);
    saveFor(own.at(1), true);
    QStringList expected = {own.at(0) + name + QStringLiteral(".mp3"), own.at(1) + name + QStringLiteral(".mp3")};
    expected.sort();
    EXPECT_EQ(filed(), expected);
    EXPECT_FALSE(isOn());
    EXPECT_FALSE(window->panels().savePanel->cmdSave->isEnabled());
    EXPECT_TRUE(filesIn(QStringLiteral("herstel")).filter(QStringLiteral(".wav")).isEmpty());
    EXPECT_EQ(window->panels().gridPanel->currentRow(), window->workplace().datList.firstUnfinished());
}

TEST_F(Multivoice, GeneralVersionsHaveNoPrefix) {
    for (const char *code : {"999", "000"}) {
        SCOPED_TRACE(code);
        if (!window) {
            openDemo();
        }
        select(row);
        if (!window->workplace().saving.isMultivoice()) {
            window->workplace().saving.cmdMultivoice_Click();
        };
        record(300);
        prompts.expectAsk(ready, title, false);
        EXPECT_TRUE(window->workplace().saving.ExternalSave(QString::fromLatin1(code)));
        EXPECT_EQ(filed(), QStringList{name + QStringLiteral(".mp3")});
        QFile::remove(path(QStringLiteral("ok/") + filed().first()));
    }
}

TEST_F(Multivoice, WithAServerVersionsGoThereOnly) {
    QDir(folder.path()).mkdir(QStringLiteral("server"));
    openDemo(QStringLiteral("[Files]\nVoiceTrackPath=%1/server\n[Program]\nServer=1").arg(folder.path()));
    record(300);
    prompts.expectAsk(ready, title, true);
    window->workplace().saving.ExternalSave(QStringLiteral("012"));
    EXPECT_EQ(filesIn(QStringLiteral("server")), QStringList{QStringLiteral("012") + name + QStringLiteral(".mp3")});
    EXPECT_TRUE(filed().isEmpty());
}

TEST_F(Multivoice, WithoutATakeOnAServerTheQuestionIsStillAsked) {
    QDir(folder.path()).mkdir(QStringLiteral("server"));
    openDemo(QStringLiteral("[Files]\nVoiceTrackPath=%1/server\n[Program]\nServer=1").arg(folder.path()));
    window->panels().savePanel->cmdSave->setEnabled(true);
    saveFor(QStringLiteral("999"), false);
    EXPECT_TRUE(filesIn(QStringLiteral("server")).isEmpty());
    EXPECT_TRUE(window->panels().lblStatus->text().contains(QStringLiteral("geen opname")));
}

TEST_F(Multivoice, WithoutATakeALocalSaveEndsTheProgramWithAReport) {
    openDemo();
    window->panels().savePanel->cmdSave->setEnabled(true);
    save();
    chooseCode(QStringLiteral("999"));
    prompts.expectReport(QStringLiteral("Fout 53"));
    click(chooser()->cmdSave);
    EXPECT_EQ(static_cast<OrvelApplication *>(QCoreApplication::instance())->exitCode(), 1);
}

TEST_F(Multivoice, AnUnreadableStationListEndsTheProgramWithAReport) {
    openDemo();
    record(300);
    disk.write(path(QStringLiteral("syncstations.mdb")), "geen database");
    prompts.expectReport(QStringLiteral("Fout 3343"));
    save();
    EXPECT_EQ(chooser(), nullptr);
    EXPECT_TRUE(exists(QStringLiteral("temp/") + name + QStringLiteral(".wav")));
}

TEST_F(Multivoice, TheListIsReadAnewForEveryVersion) {
    openDemo({}, QStringLiteral("stations-empty.mdb"));
    record(300);
    saveFor(QStringLiteral("999"), false);
    QFile::remove(path(QStringLiteral("syncstations.mdb")));
    copyStations(QStringLiteral("stations-numeric.mdb"));
    record(300);
    save();
    EXPECT_EQ(codes().size(), 4);
}

TEST_F(Multivoice, ARunningTakeIsNotSaved) {
    openDemo(QStringLiteral("[Program]\nCountdown=0"));
    record(300);
    save();
    ASSERT_NE(chooser(), nullptr);
    chooseCode(QStringLiteral("999"));
    beginRecording();
    click(chooser()->cmdSave);
    ASSERT_NE(chooser(), nullptr);
    EXPECT_TRUE(filed().isEmpty());
    EXPECT_TRUE(sound.recorder().isRecording());
}

TEST_F(Multivoice, TheModeSurvivesAnotherStepAndClosingTheChooserLeavesTheTake) {
    openDemo();
    record(300);
    save();
    chooser()->close();
    EXPECT_TRUE(window->panels().savePanel->cmdSave->isEnabled());
    EXPECT_FALSE(imported(row)) << "nothing was filed";
    EXPECT_TRUE(exists(QStringLiteral("temp/") + name + QStringLiteral(".wav")));
    select(0);
    EXPECT_TRUE(isOn());
}

TEST_F(Multivoice, AConversionThatFailsKeepsTheTake) {
    QDir(folder.path()).mkdir(QStringLiteral("server"));
    openDemo(QStringLiteral("[Files]\nVoiceTrackPath=%1/server\n[Program]\nServer=1").arg(folder.path()));
    record(300);
    audioFiles.faults.create = true;
    save();
    chooser()->cobStation->setCurrentIndex(0);
    click(chooser()->cmdSave);
    EXPECT_TRUE(exists(QStringLiteral("temp/") + name + QStringLiteral(".wav")));
    EXPECT_FALSE(imported(row));
    EXPECT_TRUE(window->panels().savePanel->cmdSave->isEnabled());
    EXPECT_TRUE(window->panels().lblStatus->text().contains(QStringLiteral("blijft klaarstaan")));
}

TEST_F(Multivoice, TheChooserStaysWhileItsVersionIsConverted) {
    openDemo();
    record(60000);
    save();
    chooseCode(QStringLiteral("999"));
    int tries = 0;
    QTimer impatience;
    QObject::connect(&impatience, &QTimer::timeout, [&] {
        if (chooser() != nullptr && window->panels().savePanel->barProgress->isVisible()) {
            ++tries;
            chooser()->close();
            EXPECT_NE(chooser(), nullptr);
        }
    });
    impatience.start(20);
    prompts.expectAsk(ready, title, true);
    click(chooser()->cmdSave);
    EXPECT_GT(tries, 0);
    EXPECT_EQ(chooser(), nullptr);
    EXPECT_EQ(filed(), QStringList{name + QStringLiteral(".mp3")});
}

TEST_F(Multivoice, ChooserAndRowTellWhichStationsHaveTheirVersion) {
    openDemo();
    record(300);
    save();
    QString own;
    int places = 0;
    const QComboBox &stations = *chooser()->cobStation;
    for (int index = 1; index < stations.count(); ++index) {
        const QString code = stations.model()->index(index, 1).data().toString();
        ++places;
        own = code != QStringLiteral("000") ? code : own;
    }
    const QTableWidget *list = chooser()->versions->lstVersions;
    ASSERT_EQ(list->rowCount(), places + 1);
    EXPECT_FALSE(list->item(0, 1)->text().contains(QStringLiteral("ingesproken")));
    chooseCode(own);
    prompts.expectAsk(ready, title, true);
    click(chooser()->cmdSave);
    EXPECT_EQ(window->panels().gridPanel->steps().index(row, ImportedColumn).data().toString(),
              QStringLiteral("1 van %1").arg(places));
    EXPECT_TRUE(window->panels().lblStatus->text().startsWith(QStringLiteral("Van %1 is er nog geen versie").arg(name)))
        << window->panels().lblStatus->text().toStdString();
}

} // namespace orvel
