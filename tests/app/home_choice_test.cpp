// In which work folder the program starts, and how it goes on in another one.
#include "app/home_choice.h"
#include "platform/ini_file.h"
#include "station.h"
#include "windows/frm_homes.h"

#include <QScopeGuard>
#include <QShortcut>
#include <QSignalSpy>
#include <QStandardPaths>
#include <QStatusBar>
#include <QTimer>

namespace orvel {

namespace {

/// The test's program lies where no home is; its user's folders are in the temporary one.
class StartingInAHome : public Station {
  protected:
    StartingInAHome() {
        for (const char *name : {"ORVEL_HOME", "XDG_CONFIG_HOME", "HOME"}) {
            before.emplace_back(name, qEnvironmentVariable(name));
        }
        qunsetenv("ORVEL_HOME");
        qputenv("XDG_CONFIG_HOME", QFile::encodeName(path(QStringLiteral("config"))));
        qputenv("HOME", QFile::encodeName(folder.path()));
    }
    ~StartingInAHome() override {
        for (const auto &[name, value] : before) {
            value.isNull() ? qunsetenv(name) : qputenv(name, QFile::encodeName(value));
        }
    }
    std::unique_ptr<HomeChoice> choice() {
        return std::make_unique<HomeChoice>(prompts, std::make_unique<DiskFileSystem>());
    }
    QString makeHome(const char *name) {
        const QString home = path(QString::fromLatin1(name));
        Homes(disk, {}).prepare(home);
        return home;
    }
    /// What is done to the window that asks, as soon as it is open.
    static void whenAsked(const std::function<void(frmHomes &)> &answer) {
        QTimer::singleShot(0, qApp, [answer] { answer(*qobject_cast<frmHomes *>(QApplication::activeModalWidget())); });
    }

  private:
    std::vector<std::pair<const char *, QString>> before;
};

} // namespace

TEST_F(StartingInAHome, WhatTheEnvironmentNamesIsNotAskedNorRemembered) {
    qputenv("ORVEL_HOME", QFile::encodeName(path(QStringLiteral("gegeven"))));
    const auto given = choice();
    EXPECT_TRUE(given->isGiven());
    EXPECT_EQ(given->first(), path(QStringLiteral("gegeven")));
    given->workedIn(given->first());
    EXPECT_FALSE(exists(QStringLiteral("config")));
}

TEST_F(StartingInAHome, TheFirstStartAsksAndTheNextOneKnows) {
    const QString home = makeHome("mijn werkmap");
    QString chosen;
    {
        const auto first = choice();
        EXPECT_FALSE(first->isGiven());
        prompts.expectFolder(QStringLiteral("Kies een werkmap"), QDir::homePath(), home);
        whenAsked([](frmHomes &asking) { asking.cmdExisting_Click(); });
        chosen = first->first();
        EXPECT_EQ(chosen, home);
        first->workedIn(chosen);
    }
    EXPECT_TRUE(exists(QStringLiteral("config/orvel/werkmappen.ini")));
    EXPECT_EQ(choice()->first(), home) << "nothing is asked any more";
}

TEST_F(StartingInAHome, WhoWantsNoneStartsNothing) {
    whenAsked([](frmHomes &asking) { asking.reject(); });
    EXPECT_EQ(choice()->first(), QString());
}

// A stick that is pulled: the program does not begin a new, empty folder in its place.
TEST_F(StartingInAHome, OneThatIsGoneIsAskedAgain) {
    const QString stick = makeHome("stick");
    choice()->workedIn(stick);
    ASSERT_TRUE(QDir(stick).removeRecursively());
    bool told = false;
    whenAsked([&](frmHomes &asking) {
        told = asking.lblNotice->isVisible();
        asking.reject();
    });
    EXPECT_EQ(choice()->first(), QString());
    EXPECT_TRUE(told);
    EXPECT_FALSE(exists(QStringLiteral("stick")));
}

TEST_F(StartingInAHome, AListThatCannotBeWrittenKeepsNobodyFromWorking) {
    QFile file(path(QStringLiteral("config")));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly)); // a file where the folder would be
    prompts.expectReport(QStringLiteral("Fout"));
    choice()->workedIn(makeHome("een"));
}

TEST_F(StartingInAHome, NewOnesLieAmongTheDocumentsAndSamplesWithTheProgram) {
    const HomePlaces installed = homePlaces(disk, QStringLiteral("/niets/usr/bin"));
    EXPECT_EQ(installed.folder,
              QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation) + QStringLiteral("/ORVEL"));
    EXPECT_TRUE(installed.folder.startsWith(folder.path()));
    EXPECT_EQ(installed.sample, QStringLiteral("/niets/usr/share/orvel/voorbeeld"));
    makeHome("programma/voorbeeld");
    EXPECT_EQ(homePlaces(disk, path(QStringLiteral("programma"))).sample, path(QStringLiteral("programma/voorbeeld")));
}

TEST_F(Station, WithoutAChoiceThereIsNothingToSwitch) {
    ASSERT_TRUE(start());
    EXPECT_EQ(window->findChild<QToolButton *>(QStringLiteral("cmdWerkmap")), nullptr);
}

TEST_F(Station, TheProgramEndsHereToGoOnInTheChosenHome) {
    ASSERT_TRUE(start());
    QString answer;
    window->letSwitch([&answer] { return answer; });
    const QSignalSpy ended(window.get(), &frmMain::ended);
    QToolButton *button = window->panels().cmdWerkmap;
    ASSERT_TRUE(button->isVisible());
    EXPECT_TRUE(button->text().contains(QFileInfo(folder.path()).fileName())) << button->text().toStdString();
    button->click();
    EXPECT_TRUE(ended.isEmpty()) << "the presenter stays";
    EXPECT_EQ(window->otherHome(), QString());
    answer = QStringLiteral("/ergens/anders");
    button->click();
    EXPECT_EQ(ended.size(), 1);
    EXPECT_EQ(window->otherHome(), answer);
    EXPECT_TRUE(exists(QStringLiteral("orvel-desk.ini"))) << "the desk is left as it is at every end";
}

TEST_F(Station, ItsKeyStandsOnTheSheetAndTheButton) {
    ASSERT_TRUE(start());
    int asked = 0;
    window->letSwitch([&asked] {
        ++asked;
        return QString();
    });
    EXPECT_TRUE(window->panels().cmdWerkmap->toolTip().endsWith(QStringLiteral("(Ctrl+O)")));
    for (QShortcut *key : window->findChildren<QShortcut *>()) {
        if (key->key() == QKeySequence(Qt::CTRL | Qt::Key_O)) {
            Q_EMIT key->activated();
        }
    }
    EXPECT_EQ(asked, 1);
}

TEST_F(Station, NobodySwitchesWhileATakeRuns) {
    configure(QStringLiteral("[Program]\nCountdown=1"));
    addPlaylist(demo);
    ASSERT_TRUE(start(QStringLiteral("-RECORDER")));
    int asked = 0;
    window->letSwitch([&asked] {
        ++asked;
        return QStringLiteral("/ergens/anders");
    });
    prompts.expectInput(QStringLiteral("Geef een naam voor dit bestand (ZONDER EXTENSIE)"),
                        QStringLiteral("Bestandsnaam"), QStringLiteral("proef"));
    beginRecording();
    ASSERT_FALSE(window->workplace().session.isIdle());
    EXPECT_FALSE(window->panels().cmdWerkmap->isEnabled());
    window->cmdWerkmap_Click();
    EXPECT_EQ(asked, 0);
    click(window->panels().recorderPanel->cmdRec);
    ASSERT_TRUE(window->workplace().session.isIdle());
    EXPECT_TRUE(window->panels().cmdWerkmap->isEnabled());
}

TEST_F(Station, ATakeThatBeganWhileTheQuestionStoodOpenIsNotLeft) {
    ASSERT_TRUE(start(QStringLiteral("-RECORDER")));
    prompts.expectInput(QStringLiteral("Geef een naam voor dit bestand (ZONDER EXTENSIE)"),
                        QStringLiteral("Bestandsnaam"), QStringLiteral("proef"));
    window->letSwitch([this] {
        beginRecording();
        return QStringLiteral("/ergens/anders");
    });
    const QSignalSpy ended(window.get(), &frmMain::ended);
    window->cmdWerkmap_Click();
    EXPECT_TRUE(ended.isEmpty());
    EXPECT_EQ(window->otherHome(), QString());
    EXPECT_FALSE(window->workplace().session.isIdle());
}

} // namespace orvel
