// The desk as a whole: its keys, its shape, and what it remembers.
#include "station.h"
#include "windows/frm_keys.h"
#include "windows/grid_columns.h"

#include <QHeaderView>
#include <QMenu>
#include <QShortcut>
#include <QTabBar>

namespace orvel {

namespace {

constexpr int firstLink = 1; // rows of access-2003.mdb

class TheDesk : public Station {
  protected:
    void openDemo(const QString &settings = QStringLiteral("[Program]\nCountdown=3")) {
        addPlaylist(demo);
        configure(settings);
        ASSERT_TRUE(start());
        window->show();
        open(demo);
    }
    void activate() {
        window->activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(window.get()));
    }
    void press(int key) {
        activate();
        QTest::keyClick(window->focusWidget() != nullptr ? window->focusWidget() : window.get(), Qt::Key(key));
        QCoreApplication::processEvents();
    }
    [[nodiscard]] SessionState state() const { return window->workplace().session.state(); }
    [[nodiscard]] QString statusLine() const { return window->panels().lblStatus->text(); }
    [[nodiscard]] QTableView &grid() const { return *window->panels().gridPanel->dbgLijst; }
    [[nodiscard]] bool isFolded() const {
        const QTabWidget &tab = *window->panels().tabRec;
        return tab.height() <= tab.tabBar()->sizeHint().height();
    }
    void restart() {
        window->close();
        window.reset();
        ASSERT_TRUE(start());
        window->show();
        QCoreApplication::processEvents();
    }
};

} // namespace

TEST_F(TheDesk, ThreeKeysMakeALinkAndTheNextOneIsReady) {
    openDemo(QStringLiteral("[Program]\nCountdown=0"));
    press(Qt::Key_F6);
    const int row = window->panels().gridPanel->currentRow();
    ASSERT_EQ(row, firstLink);
    window->panels().filePanel->filNew->setFocus(); // wherever the focus is
    press(Qt::Key_F5);
    timers.advance(1000);
    ASSERT_EQ(state(), SessionState::Recording);
    sound.deliver(44100);
    timers.advance(1000);
    press(Qt::Key_F5);
    ASSERT_EQ(state(), SessionState::Idle);
    press(Qt::Key_F4);
    EXPECT_TRUE(imported(row));
    EXPECT_EQ(filesIn(QStringLiteral("ok")).size(), 1);
    EXPECT_NE(window->panels().gridPanel->currentRow(), row);
    EXPECT_TRUE(window->panels().recorderPanel->cmdRec->hasFocus());
}

TEST_F(TheDesk, EscapeCallsTheCountDownOffAndTheStepIsAsBefore) {
    openDemo();
    select(firstLink);
    mark(firstLink, true);
    press(Qt::Key_F5);
    ASSERT_EQ(state(), SessionState::CountingDown);
    EXPECT_FALSE(imported(firstLink)) << "a step that is recorded anew is not done";
    press(Qt::Key_Escape);
    EXPECT_EQ(state(), SessionState::Idle);
    EXPECT_TRUE(imported(firstLink));
    EXPECT_EQ(statusLine(), QStringLiteral("De aftelling is afgebroken."));
    timers.advance(10000);
    EXPECT_EQ(state(), SessionState::Idle);
    EXPECT_TRUE(filesIn(QStringLiteral("temp")).isEmpty());
}

// The button is disabled while a take is processed: the focus went on to Multi - voice, which the next space bar then
// switched.
TEST_F(TheDesk, TheFocusStaysOnTheRecordButtonWhenATakeIsReady) {
    openDemo(QStringLiteral("[Program]\nCountdown=0"));
    select(firstLink);
    activate();
    QPushButton &button = *window->panels().recorderPanel->cmdRec;
    button.setFocus();
    press(Qt::Key_Space);
    timers.advance(1000);
    ASSERT_EQ(state(), SessionState::Recording);
    sound.deliver(44100);
    timers.advance(1000);
    press(Qt::Key_Space);
    ASSERT_EQ(state(), SessionState::Idle);
    EXPECT_TRUE(button.hasFocus());
}

TEST_F(TheDesk, EscapeDoesNothingToARunningTake) {
    openDemo(QStringLiteral("[Program]\nCountdown=0"));
    select(firstLink);
    beginRecording();
    press(Qt::Key_Escape);
    EXPECT_EQ(state(), SessionState::Recording);
}

TEST_F(TheDesk, AKeyDoesWhatItsButtonMay) {
    openDemo();
    select(0); // a music track
    ASSERT_FALSE(window->panels().recorderPanel->cmdRec->isEnabled());
    press(Qt::Key_F5);
    press(Qt::Key_F4);
    press(Qt::Key_F3);
    EXPECT_EQ(state(), SessionState::Idle);
    EXPECT_FALSE(imported(firstLink));
}

TEST_F(TheDesk, EveryKeyStandsOnTheSheetAndOnItsButton) {
    openDemo();
    const auto shortcuts = window->findChildren<QShortcut *>();
    press(Qt::Key_F1);
    auto *sheet = window->findChild<frmKeys *>();
    ASSERT_NE(sheet, nullptr);
    EXPECT_TRUE(sheet->isVisible());
    QStringList keys;
    for (int row = 0; row < sheet->lstKeys->rowCount(); ++row) {
        keys << sheet->lstKeys->item(row, 0)->text();
        EXPECT_FALSE(sheet->lstKeys->item(row, 1)->text().isEmpty());
    }
    EXPECT_EQ(keys.size(), shortcuts.size());
    for (const QShortcut *shortcut : shortcuts) {
        EXPECT_TRUE(keys.contains(shortcut->key().toString(QKeySequence::NativeText)));
    }
    EXPECT_EQ(QSet<QString>(keys.begin(), keys.end()).size(), keys.size()) << "one key for each thing";
    EXPECT_EQ(window->panels().recorderPanel->cmdRec->toolTip(), QStringLiteral("Opname starten/stoppen (F5)"));
    EXPECT_TRUE(window->panels().savePanel->cmdSave->toolTip().endsWith(QStringLiteral("(F4)")));
    EXPECT_TRUE(window->panels().playbackPanel->cmdPlay->toolTip().endsWith(QStringLiteral("(F3)")));
}

TEST_F(TheDesk, TheTitleAndTheListTellWhatIsOpenAndHowFarItIs) {
    ASSERT_TRUE(start());
    EXPECT_EQ(window->windowTitle(), QStringLiteral("ORVEL"));
    openDemo();
    const Progress before = progressOf(window->workplace().datList);
    ASSERT_GT(before.links, before.done);
    const QString name = QStringLiteral("access-2003");
    EXPECT_EQ(window->windowTitle(), name + QStringLiteral(": ") + toText(before) + QStringLiteral(" - ORVEL"));
    select(firstLink);
    window->workplace().marks.mark({demo, 2, window->workplace().step.VoiceTrackName}, true);
    window->workplace().view.changed();
    EXPECT_NE(window->windowTitle().indexOf(QStringLiteral("%1 van").arg(before.done + 1)), -1);
    const QListWidgetItem *item = window->panels().filePanel->filNew->item(0);
    EXPECT_EQ(item->text(), demo) << "its name is its name";
    EXPECT_EQ(item->data(Qt::AccessibleDescriptionRole).toString(), toText(progressOf(window->workplace().datList)));
    window->workplace().view.closePlaylist();
    EXPECT_EQ(window->windowTitle(), QStringLiteral("ORVEL"));
    EXPECT_FALSE(item->data(Qt::UserRole).isValid());
}

// With the arrow keys the list pointed at one playlist while the grid showed another one.
TEST_F(TheDesk, TheListNeverPointsAtAnotherPlaylistThanTheGridShows) {
    addPlaylist(demo, QStringLiteral("een.mdb"));
    addPlaylist(demo, QStringLiteral("twee.mdb"));
    configure(QStringLiteral("[Program]\nCountdown=0"));
    ASSERT_TRUE(start());
    window->show();
    open(QStringLiteral("een.mdb"));
    QListWidget &list = *window->panels().filePanel->filNew;
    activate();
    list.setFocus();
    QTest::keyClick(&list, Qt::Key_Down);
    EXPECT_EQ(list.currentItem()->text(), QStringLiteral("twee.mdb"));
    EXPECT_EQ(window->workplace().datList.fileName(), QStringLiteral("twee.mdb"));
}

// The tab key made the first playlist the current one without selecting it, and Enter did nothing.
TEST_F(TheDesk, EnterOpensThePlaylistThatTheTabKeyCameTo) {
    addPlaylist(demo);
    configure(QStringLiteral("[Program]\nCountdown=0"));
    ASSERT_TRUE(start());
    window->show();
    activate();
    QListWidget &list = *window->panels().filePanel->filNew;
    list.setFocus(Qt::TabFocusReason);
    ASSERT_TRUE(list.selectedItems().isEmpty());
    QTest::keyClick(&list, Qt::Key_Return);
    EXPECT_EQ(window->workplace().datList.fileName(), demo);
    EXPECT_EQ(list.selectedItems().size(), 1);
}

TEST_F(TheDesk, AnEmptyGridSaysWhatToDoNext) {
    configure(QStringLiteral("[Program]\nCountdown=0"));
    ASSERT_TRUE(start());
    window->show();
    const QLabel &hint = *window->panels().gridPanel->lblEmpty;
    EXPECT_TRUE(hint.isVisible());
    EXPECT_EQ(hint.text(), QStringLiteral("Er zijn geen playlists. Haal ze binnen met de knop Importeren."));
    addPlaylist(demo);
    window->panels().filePanel->refreshNew();
    window->workplace().view.changed();
    EXPECT_EQ(hint.text(), QStringLiteral("Kies links een playlist."));
    open(demo);
    QCoreApplication::processEvents();
    EXPECT_FALSE(hint.isVisible());
    window->panels().gridPanel->dbgLijst->hide();
    QCoreApplication::processEvents();
    EXPECT_TRUE(hint.isVisible());
    EXPECT_EQ(hint.geometry(), window->panels().gridPanel->dbgLijst->geometry()) << "in its place";
}

TEST_F(TheDesk, TheLampOfMultivoiceSaysWhetherItIsOn) {
    openDemo();
    const Lamp &lamp = *window->panels().savePanel->ledMulti;
    EXPECT_EQ(lamp.accessibleName(), QStringLiteral("Multivoice staat uit"));
    window->workplace().saving.cmdMultivoice_Click();
    EXPECT_EQ(lamp.accessibleName(), QStringLiteral("Multivoice staat aan"));
}

TEST_F(TheDesk, ThePanelFoldsDownToItsTabsAndATabBringsItBack) {
    openDemo();
    const auto settle = [] { QCoreApplication::processEvents(); };
    const bool before = isFolded();
    press(Qt::Key_F9);
    settle();
    EXPECT_NE(isFolded(), before);
    press(Qt::Key_F9);
    settle();
    EXPECT_EQ(isFolded(), before);
    if (!isFolded()) {
        click(window->panels().cmdFold);
        settle();
    }
    ASSERT_TRUE(isFolded());
    QTabBar &tabs = *window->panels().tabRec->tabBar();
    QTest::mouseClick(&tabs, Qt::LeftButton, {}, tabs.tabRect(1).center());
    settle();
    EXPECT_FALSE(isFolded());
    EXPECT_EQ(window->panels().tabRec->currentIndex(), 1);
}

TEST_F(TheDesk, FitsASmallWindowAndShowsTheSlotBetweenItsNeighbours) {
    openDemo();
    for (const bool folded : {true, false}) {
        if (isFolded() != folded) {
            press(Qt::Key_F9);
        }
        window->resize(1000, 640);
        QCoreApplication::processEvents();
        EXPECT_EQ(window->size(), QSize(1000, 640)) << folded << " " << window->minimumSizeHint().height();
        for (const int row : {firstLink, grid().model()->rowCount() - 2}) {
            select(row);
            for (const int seen : {row - 1, row, row + 1}) {
                const QRect place = grid().visualRect(grid().model()->index(seen, StapColumn));
                EXPECT_TRUE(grid().viewport()->rect().contains(place)) << folded << " " << row << " " << seen;
            }
        }
    }
}

TEST_F(TheDesk, ShowsFourteenStepsOnAnOrdinarySmallScreen) {
    openDemo();
    if (!isFolded()) {
        press(Qt::Key_F9);
    }
    window->resize(1280, 800);
    QCoreApplication::processEvents();
    EXPECT_GE(grid().viewport()->height() / grid().verticalHeader()->defaultSectionSize(), 14);
}

TEST_F(TheDesk, PerformerAndTitleTakeTheRoomThatIsLeft) {
    openDemo();
    window->resize(1280, 800);
    QCoreApplication::processEvents();
    const int narrow = grid().columnWidth(stepColumn("Titel"));
    window->resize(2400, 800);
    QCoreApplication::processEvents();
    EXPECT_GT(grid().columnWidth(stepColumn("Titel")), narrow + 100);
    EXPECT_GT(grid().columnWidth(stepColumn("artiest")), narrow + 100);
    EXPECT_NEAR(grid().horizontalHeader()->length(), grid().viewport()->width(), 2);
    window->resize(1280, 800);
    QCoreApplication::processEvents();
    EXPECT_EQ(grid().columnWidth(stepColumn("Titel")), narrow);
}

TEST_F(TheDesk, ColumnsAreHiddenFromTheHeadersMenuButNeverAll) {
    openDemo();
    const auto toggle = [this](int column) {
        QMenu menu;
        fillColumnMenu(menu, grid());
        for (QAction *action : menu.actions()) {
            if (action->text() == QLatin1String(stepField(column).caption)) {
                EXPECT_EQ(action->isChecked(), !grid().isColumnHidden(column));
                action->trigger();
            }
        }
    };
    toggle(stepColumn("Jaartal"));
    EXPECT_TRUE(grid().isColumnHidden(stepColumn("Jaartal")));
    toggle(stepColumn("Jaartal"));
    EXPECT_FALSE(grid().isColumnHidden(stepColumn("Jaartal")));
    for (int column = 0; column < StepColumnCount; ++column) {
        toggle(column);
    }
    int shown = 0;
    for (int column = 0; column < StepColumnCount; ++column) {
        shown += grid().isColumnHidden(column) ? 0 : 1;
    }
    EXPECT_EQ(shown, 1);
    EXPECT_TRUE(grid().isColumnHidden(TypeColumn)) << "what only the program needs is never offered";
}

TEST_F(TheDesk, IsFoundAsItWasLeft) {
    openDemo();
    window->resize(1111, 702);
    window->panels().lists->setSizes({400, 700});
    QCoreApplication::processEvents();
    const QList<int> sizes = window->panels().lists->sizes();
    grid().horizontalHeader()->moveSection(grid().horizontalHeader()->visualIndex(stepColumn("Titel")), 0);
    const bool folded = isFolded();
    press(Qt::Key_F9);
    restart();
    EXPECT_EQ(window->size(), QSize(1111, 702));
    EXPECT_EQ(window->panels().lists->sizes(), sizes);
    EXPECT_EQ(grid().horizontalHeader()->visualIndex(stepColumn("Titel")), 0);
    EXPECT_NE(isFolded(), folded);
    EXPECT_EQ(window->workplace().datList.fileName(), demo);
    EXPECT_EQ(window->panels().filePanel->filNew->currentItem()->text(), demo);
    EXPECT_TRUE(grid().isVisible());
    EXPECT_TRUE(grid().isColumnHidden(TypeColumn));
}

TEST_F(TheDesk, APlaylistThatIsGoneOrBrokenIsNotMissedAtTheStart) {
    openDemo();
    window->close();
    window.reset();
    disk.write(path(QStringLiteral("new/") + demo), "geen database");
    ASSERT_TRUE(start());
    EXPECT_FALSE(window->workplace().datList.isOpen());
    window->close();
    window.reset();
    disk.remove(path(QStringLiteral("new/") + demo));
    ASSERT_TRUE(start());
    EXPECT_EQ(window->windowTitle(), QStringLiteral("ORVEL"));
}

TEST_F(TheDesk, AStationThatCannotBeWrittenIsLeftWithoutAWord) {
    openDemo();
    files.fail(FaultyFileSystem::Operation::Write, QStringLiteral("orvel-desk.ini"), ErrorNumber::PermissionDenied);
    window->close();
}

} // namespace orvel
