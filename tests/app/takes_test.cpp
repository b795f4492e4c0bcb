#include "station.h"

namespace orvel {

namespace {

class Takes : public Station {
  protected:
    void openDemo() {
        addPlaylist(demo);
        configure(QStringLiteral("[Program]\nCountdown=0"));
        ASSERT_TRUE(start());
        open(demo);
        first = slotAfter(-1);
        second = slotAfter(first);
    }
    /// The next slot that is to be recorded.
    int slotAfter(int row) {
        const Playlist &steps = window->workplace().datList;
        while (++row < steps.stepCount()) {
            if (steps.value(row, TypeColumn).toInt() == PresStep && !steps.value(row, ImportedColumn).toBool()) {
                return row;
            }
        }
        ADD_FAILURE() << "no slot left";
        return 0;
    }
    [[nodiscard]] QString name(int row) { return window->workplace().datList.value(row, AtrackColumn).toString(); }
    [[nodiscard]] bool canSave() const { return window->panels().savePanel->cmdSave->isEnabled(); }
    frmUnfiled *offered() { return window->findChild<frmUnfiled *>(); }

    int first = 0;
    int second = 0;
};

} // namespace

TEST_F(Takes, RecordSelectAnotherStepSaveTheFirst) {
    openDemo();
    select(first);
    record(500);
    select(second);
    EXPECT_FALSE(canSave());
    select(first);
    ASSERT_TRUE(canSave());
    click(window->panels().savePanel->cmdSave);
    EXPECT_TRUE(imported(first));
    EXPECT_FALSE(imported(second));
    EXPECT_TRUE(exists(QStringLiteral("ok/") + name(first) + QStringLiteral(".mp3")));
}

TEST_F(Takes, AColourThatIsChosenMeanwhileChangesNothingOfTheTake) {
    // The model was reset without a current row: the take was filed and its step never marked.
    openDemo();
    select(first);
    record(500);
    window->workplace().settings.MusBack = 0x123456;
    window->panels().gridPanel->steps().setStyles(applyStepStyles(window->workplace().settings));
    EXPECT_EQ(window->panels().gridPanel->currentRow(), first);
    click(window->panels().savePanel->cmdSave);
    EXPECT_TRUE(imported(first));
}

TEST_F(Takes, WhatWasNotSavedIsOfferedAtTheNextStartAndSavedForItsStep) {
    openDemo();
    select(first);
    record(500);
    const QString track = name(first);
    window.reset();
    ASSERT_TRUE(start());
    ASSERT_NE(offered(), nullptr);
    EXPECT_TRUE(offered()->isVisible());
    ASSERT_EQ(offered()->lstTakes->rowCount(), 1);
    EXPECT_EQ(offered()->lstTakes->item(0, 0)->text(), track);
    click(offered()->cmdPlay);
    EXPECT_EQ(sound.player(sound.playerCount() - 1).file(), path(QStringLiteral("temp/") + track + ".wav"));
    click(offered()->cmdSave);
    EXPECT_TRUE(exists(QStringLiteral("ok/") + track + QStringLiteral(".mp3")));
    EXPECT_TRUE(filesIn(QStringLiteral("temp")).isEmpty());
    open(demo);
    EXPECT_TRUE(imported(first));
    window.reset();
    ASSERT_TRUE(start());
    EXPECT_EQ(offered(), nullptr) << "there is nothing left";
}

TEST_F(Takes, WhatIsLeftWaitsForItsStep) {
    openDemo();
    select(first);
    record(500);
    window.reset();
    ASSERT_TRUE(start());
    click(offered()->cmdLeave);
    open(demo);
    select(second);
    EXPECT_FALSE(canSave());
    select(first);
    EXPECT_TRUE(canSave());
    EXPECT_TRUE(window->panels().playbackPanel->cmdPlay->isEnabled());
}

TEST_F(Takes, ASecondProgramOnTheStationIsToldWhoseItIsAndChangesNothing) {
    openDemo();
    const QByteArray settingsFile = content(QStringLiteral("orvel.ini"));
    std::unique_ptr<frmMain> owner = std::move(window);
    prompts.expectWait(QStringLiteral("Deze werkmap is in gebruik door "), false);
    EXPECT_FALSE(start());
    EXPECT_EQ(content(QStringLiteral("orvel.ini")), settingsFile);
    window.reset();
    prompts.expectWait(QStringLiteral("Deze werkmap is in gebruik door "), true);
    prompts.whileOpen([&owner] { owner.reset(); });
    EXPECT_TRUE(start()) << "it goes on when the other one is gone";
}

TEST_F(Takes, ThePlainRecorderRunsBesideItButNotUnderANameInUse) {
    openDemo();
    select(first);
    click(window->panels().recorderPanel->cmdRec);
    const QString track = name(first);
    std::unique_ptr<frmMain> desk = std::move(window);
    ASSERT_TRUE(start(QStringLiteral("-RECORDER")));
    prompts.expectInput(QStringLiteral("Geef een naam voor dit bestand (ZONDER EXTENSIE)"),
                        QStringLiteral("Bestandsnaam"), track);
    prompts.expectReport(QStringLiteral("Een ander ORVEL-venster gebruikt de naam ") + track);
    click(window->panels().recorderPanel->cmdRec);
    EXPECT_FALSE(window->workplace().session.countsDown());
}

TEST_F(Takes, AMarkedSlotWithoutItsVoiceTrackIsSeenInTheGridAndOnPaper) {
    openDemo();
    mark(first, true);
    const QModelIndex cell = window->panels().gridPanel->steps().index(first, ImportedColumn);
    EXPECT_FALSE(cell.data(Qt::DecorationRole).isNull());
    EXPECT_TRUE(cell.data(Qt::ToolTipRole).toString().contains(name(first) + QStringLiteral(".mp3 staat niet in")));
    const Workplace &work = window->workplace();
    const auto missing = [&] {
        return Printing(platform, work.places, work.step, work.datList, work.tracks)
            .values()[QStringLiteral("steps")]
            .toList()
            .at(first)
            .toMap()[QStringLiteral("missing")]
            .toBool();
    };
    EXPECT_TRUE(missing());
    disk.write(path(QStringLiteral("ok/") + name(first) + QStringLiteral(".mp3")), "klank");
    window->panels().gridPanel->refresh();
    EXPECT_TRUE(window->panels().gridPanel->steps().index(first, ImportedColumn).data(Qt::DecorationRole).isNull());
    EXPECT_FALSE(missing());
}

TEST_F(Takes, TheExitButtonWritesTheSettingsOnce) {
    // The button and the close that follows it both wrote: two boxes for an unwritable file.
    openDemo();
    files.fail(FaultyFileSystem::Operation::Write, QStringLiteral("orvel.ini"), ErrorNumber::DiskFull);
    prompts.expectReport(QStringLiteral("Fout 61 "));
    window->tlbMain_ButtonClick(6);
    window->close();
}

TEST_F(Takes, TheEndOfTheSessionClosesTheTakeAndItIsOffered) {
    openDemo();
    select(first);
    beginRecording();
    sound.deliver(44100);
    window->endSession();
    EXPECT_FALSE(sound.recorder().isRecording());
    window.reset();
    ASSERT_TRUE(start());
    ASSERT_NE(offered(), nullptr);
    EXPECT_EQ(offered()->lstTakes->rowCount(), 1);
}

} // namespace orvel
