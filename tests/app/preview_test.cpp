// The cue player for tracks and jingles.
#include "platform/runtime_error.h"
#include "station.h"

#include <QWheelEvent>

namespace orvel {

namespace {

const QString drives = QStringLiteral("[Drives]\nM=audio\n");

class PreviewWindow : public Station {
  protected:
    PreviewWindow() {
        QDir(folder.path()).mkpath(QStringLiteral("audio/muziek"));
        QDir(folder.path()).mkpath(QStringLiteral("audio/jingles"));
    }

    void copy(const QString &sample, const QString &target) const {
        ASSERT_TRUE(QFile::copy(QStringLiteral(ORVEL_SOURCE_DIR "/") + sample, path(target))) << sample.toStdString();
    }
    void startStation(const QString &catalogue = QStringLiteral("samples/station/digital.mdb")) {
        copy(catalogue, QStringLiteral("digital.mdb"));
        copy(QStringLiteral("samples/station/jingles.mdb"), QStringLiteral("jingles.mdb"));
        copy(QStringLiteral("samples/station/audio/muziek/0001.mp3"), QStringLiteral("audio/muziek/0001.mp3"));
        copy(QStringLiteral("samples/station/audio/jingles/002.mp3"), QStringLiteral("audio/jingles/002.mp3"));
        configure(drives + QStringLiteral("[Program]\nNetwork=1\n[Files]\nDatabasepath=") + folder.path());
        ASSERT_TRUE(start());
    }
    void show(int kind, int track) {
        window->workplace().step.PreviewKind = static_cast<std::int16_t>(kind);
        window->workplace().step.PreviewTrackId = track;
        Q_EMIT window->panels().gridPanel->previewWanted();
        preview = window->findChild<frmPreview *>();
        ASSERT_NE(preview, nullptr);
    }
    FakeWavePlayer &player() { return sound.player(sound.playerCount() - 1); }

    frmPreview *preview = nullptr;
};

} // namespace

TEST_F(PreviewWindow, AMusicTrackIsLoadedThroughTheDriveMap) {
    startStation();
    show(TrackStep, 1);
    EXPECT_TRUE(preview->isVisible());
    EXPECT_TRUE(preview->isModal());
    EXPECT_EQ(player().file(), path(QStringLiteral("audio/muziek/0001.mp3")));
    EXPECT_EQ(preview->ledTitle->text(),
              window->workplace().catalogues.datTracks->field(QStringLiteral("titel")).toString());
    EXPECT_EQ(preview->ledArtist->text(),
              window->workplace().catalogues.datTracks->field(QStringLiteral("artiest")).toString());
    EXPECT_FALSE(preview->ledTitle->text().isEmpty());
    EXPECT_EQ(preview->sliPlay->maximum(), player().length());
    EXPECT_EQ(preview->lcdSec->seconds(), player().length() / 1000 % 60);
    EXPECT_EQ(player().volume(), 16384);
}

TEST_F(PreviewWindow, AJingleShowsItsDescription) {
    startStation();
    show(JingleStep, 2);
    EXPECT_EQ(player().file(), path(QStringLiteral("audio/jingles/002.mp3")));
    EXPECT_EQ(preview->ledArtist->text(),
              window->workplace().catalogues.datJingles->field(QStringLiteral("Omschrijving")).toString());
}

TEST_F(PreviewWindow, PlayStartsTheTrackAndStopLeavesTheDisplayFollowing) {
    startStation();
    show(TrackStep, 1);
    click(preview->playButton);
    EXPECT_EQ(player().state(), WavePlayer::playing);
    player().play(3000);
    timers.advance(10);
    EXPECT_EQ(preview->sliPlay->value(), 3000);
    const int remaining = player().length() - 3000;
    EXPECT_EQ(preview->lcdMin->seconds(), remaining / 60000);
    EXPECT_EQ(preview->lcdSec->seconds(), remaining / 1000 % 60);
    EXPECT_EQ(preview->lcdMsec->seconds(), remaining % 1000);
    click(preview->stopButton);
    EXPECT_NE(player().state(), WavePlayer::playing);
    timers.advance(10);
    EXPECT_EQ(preview->sliPlay->value(), 0);
}

TEST_F(PreviewWindow, PlayWhilePlayingStartsTheTrackAnew) {
    startStation();
    show(TrackStep, 1);
    preview->cmdPlay_ButtonClick(frmPreview::PlayCode);
    player().play(3000);
    preview->cmdPlay_ButtonClick(frmPreview::PlayCode);
    EXPECT_EQ(player().position(), 0);
    EXPECT_EQ(player().starts(), 2);
    preview->cmdPlay_ButtonClick(3);
    EXPECT_EQ(player().state(), WavePlayer::playing);
}

TEST_F(PreviewWindow, DraggingMovesTheTimeOnlyWhenTheSliderIsReleased) {
    startStation();
    show(TrackStep, 1);
    click(preview->playButton);
    player().play(1000);
    timers.advance(10);
    const int secondsBefore = preview->lcdSec->seconds();
    preview->sliPlay->setSliderDown(true);
    preview->sliPlay->setSliderPosition(9000);
    player().play(2000);
    timers.advance(10);
    EXPECT_EQ(preview->lcdSec->seconds(), secondsBefore);
    EXPECT_EQ(preview->sliPlay->sliderPosition(), 9000);
    preview->sliPlay->setSliderDown(false);
    EXPECT_EQ(player().position(), 9000);
    EXPECT_EQ(player().state(), WavePlayer::playing);
    timers.advance(10);
    EXPECT_EQ(preview->lcdSec->seconds(), (player().length() - 9000) / 1000 % 60);
}

TEST_F(PreviewWindow, AKeyOnTheSliderSeeks) {
    startStation();
    show(TrackStep, 1);
    QTest::keyClick(preview->sliPlay, Qt::Key_End);
    EXPECT_EQ(player().position(), player().length());
}

TEST_F(PreviewWindow, TheKnobSetsTheCueVolume) {
    startStation();
    show(TrackStep, 1);
    preview->volCue->setValue(50000);
    EXPECT_EQ(player().volume(), 50000);
}

TEST_F(PreviewWindow, OpensAtTheVolumeThatWasUsedLastAlsoAfterARestart) {
    startStation();
    show(TrackStep, 1);
    preview->volCue->setValue(50000);
    preview->close();
    show(JingleStep, 2);
    EXPECT_EQ(player().volume(), 50000);
    preview->close();
    window->close();
    ASSERT_TRUE(start());
    show(TrackStep, 1);
    EXPECT_EQ(preview->volCue->value(), 50000);
    EXPECT_EQ(player().volume(), 50000);
}

TEST_F(PreviewWindow, PausesAndGoesOnAndSaysWhatItsTimeIs) {
    startStation();
    show(TrackStep, 1);
    EXPECT_EQ(preview->findChild<QLabel *>(QStringLiteral("lblNog"))->text(), QStringLiteral("nog"));
    EXPECT_FALSE(preview->pauseButton->isEnabled());
    click(preview->playButton);
    player().play(3000);
    click(preview->pauseButton);
    EXPECT_NE(player().state(), WavePlayer::playing);
    EXPECT_EQ(preview->pauseButton->text(), QStringLiteral("&Verder"));
    click(preview->pauseButton);
    EXPECT_EQ(player().state(), WavePlayer::playing);
    EXPECT_EQ(player().position(), 3000);
    EXPECT_EQ(preview->pauseButton->text(), QStringLiteral("&Pauze"));
    player().play(600000);
    EXPECT_FALSE(preview->pauseButton->isEnabled()) << "the end";
}

TEST_F(PreviewWindow, TextsScrollFromTwentyFiveCharactersOn) {
    startStation(QStringLiteral("tests/data/databases/scroll-titles.mdb"));
    show(TrackStep, 1);
    EXPECT_EQ(preview->ledTitle->text().size(), 24);
    EXPECT_FALSE(preview->ledTitle->autoScroll());
    EXPECT_FALSE(preview->ledArtist->autoScroll());
    preview->LaadSpeler(2);
    EXPECT_EQ(preview->ledTitle->text().size(), 25);
    EXPECT_TRUE(preview->ledTitle->autoScroll());
    EXPECT_TRUE(preview->ledArtist->autoScroll());
}

TEST_F(PreviewWindow, AnUnknownTrackLeavesWhatWasShown) {
    startStation();
    show(TrackStep, 1);
    const QString title = preview->ledTitle->text();
    preview->LaadSpeler(99999);
    EXPECT_EQ(preview->ledTitle->text(), title);
    EXPECT_EQ(player().file(), path(QStringLiteral("audio/muziek/0001.mp3")));
}

TEST_F(PreviewWindow, AMissingFileIsToldInTheWindowOnly) {
    startStation();
    show(TrackStep, 2);
    EXPECT_TRUE(preview->lblProblem->text().contains(QStringLiteral("werd niet gevonden")));
    EXPECT_FALSE(preview->playButton->isEnabled());
    EXPECT_TRUE(player().file().isEmpty());
    preview->LaadSpeler(1);
    EXPECT_TRUE(preview->lblProblem->text().isEmpty());
    EXPECT_TRUE(preview->playButton->isEnabled());
}

TEST_F(PreviewWindow, ABrokenFileIsToldInTheWindowOnly) {
    startStation();
    QFile broken(path(QStringLiteral("audio/muziek/0002.mp3")));
    ASSERT_TRUE(broken.open(QIODevice::WriteOnly));
    broken.write("dit is geen muziek");
    broken.close();
    show(TrackStep, 2);
    EXPECT_TRUE(preview->lblProblem->text().contains(QStringLiteral("niet leesbaar")));
    EXPECT_EQ(preview->sliPlay->maximum(), 0);
}

TEST_F(PreviewWindow, WithoutCataloguesTheWindowOpensEmpty) {
    ASSERT_TRUE(start());
    show(TrackStep, 1);
    EXPECT_TRUE(preview->isVisible());
    EXPECT_TRUE(preview->ledTitle->text().isEmpty());
    EXPECT_TRUE(player().file().isEmpty());
}

TEST_F(PreviewWindow, ClosingStopsTheSound) {
    startStation();
    show(TrackStep, 1);
    click(preview->playButton);
    preview->close();
    EXPECT_NE(player().state(), WavePlayer::playing);
    show(JingleStep, 2);
    EXPECT_EQ(window->findChildren<frmPreview *>().size(), 1);
    EXPECT_EQ(player().file(), path(QStringLiteral("audio/jingles/002.mp3")));
}

TEST_F(PreviewWindow, TheMetersShowWhatIsPlayed) {
    startStation();
    show(TrackStep, 1);
    click(preview->playButton);
    player().setPeaks({0.1F, 1.0F});
    timers.advance(40);
    EXPECT_NEAR(preview->MMLevelX1->levelDb(), -20.0, 0.1);
    EXPECT_TRUE(preview->MMLevelX2->isClipped());
}

TEST_F(PreviewWindow, PageKeysAndTheWheelSeekByUsefulSteps) {
    startStation();
    show(TrackStep, 1);
    QTest::keyClick(preview->sliPlay, Qt::Key_PageUp);
    EXPECT_EQ(player().position(), 10000);
    QTest::keyClick(preview->sliPlay, Qt::Key_Left);
    EXPECT_EQ(player().position(), 9000);
    const QPointF middle = preview->sliPlay->rect().center();
    QWheelEvent wheel(middle, preview->sliPlay->mapToGlobal(middle), {}, {0, 120}, Qt::NoButton, Qt::NoModifier,
                      Qt::NoScrollPhase, false);
    QApplication::sendEvent(preview->sliPlay, &wheel);
    EXPECT_GT(player().position(), 9000);
}

TEST_F(PreviewWindow, ClosingWithTheSliderInHandEndsTheDrag) {
    startStation();
    show(TrackStep, 1);
    preview->sliPlay->setSliderDown(true);
    preview->reject();
    show(TrackStep, 1);
    click(preview->playButton);
    player().play(3000);
    timers.advance(10);
    EXPECT_EQ(preview->sliPlay->value(), 3000);
}

TEST_F(PreviewWindow, SoundThatBreaksOffIsTold) {
    startStation();
    show(TrackStep, 1);
    click(preview->playButton);
    player().breakOff();
    EXPECT_TRUE(preview->lblProblem->text().contains(QStringLiteral("afgebroken")));
    click(preview->playButton);
    EXPECT_TRUE(preview->lblProblem->text().isEmpty());
    player().play(60000);
    EXPECT_TRUE(preview->lblProblem->text().isEmpty()) << "the end is no break";
}

TEST_F(PreviewWindow, APlayerThatCannotStartIsReportedAndTheWindowStays) {
    startStation();
    show(TrackStep, 1);
    player().failNextStart();
    prompts.expectReport(QStringLiteral("Fout 57"));
    click(preview->playButton);
    EXPECT_TRUE(preview->isVisible());
    click(preview->playButton);
    EXPECT_EQ(player().state(), WavePlayer::playing);
}

TEST_F(PreviewWindow, CataloguesThatWereReplacedAreOpenedAnew) {
    startStation();
    show(TrackStep, 1);
    preview->reject();
    const QString catalogue = path(QStringLiteral("digital.mdb"));
    copy(QStringLiteral("tests/data/databases/scroll-titles.mdb"), QStringLiteral("nieuw.mdb"));
    disk.move(path(QStringLiteral("nieuw.mdb")), catalogue);
    show(TrackStep, 1);
    EXPECT_TRUE(preview->isVisible());
    EXPECT_EQ(preview->ledTitle->text().size(), 24) << "the new catalogue's title";
}

TEST_F(PreviewWindow, AnUnknownTrackAtTheFirstOpeningShowsNothing) {
    startStation();
    show(TrackStep, 99999);
    EXPECT_TRUE(preview->ledTitle->text().isEmpty());
    EXPECT_TRUE(player().file().isEmpty());
    EXPECT_TRUE(preview->lblProblem->text().isEmpty());
}

// A missing catalogue of jingles closed the one of the tracks as well, and switched both off in the settings.
TEST_F(PreviewWindow, WithoutTheJinglesTracksArePreviewedAndNothingIsSwitchedOff) {
    copy(QStringLiteral("samples/station/digital.mdb"), QStringLiteral("digital.mdb"));
    copy(QStringLiteral("samples/station/audio/muziek/0001.mp3"), QStringLiteral("audio/muziek/0001.mp3"));
    copy(QStringLiteral("samples/station/audio/jingles/002.mp3"), QStringLiteral("audio/jingles/002.mp3"));
    configure(drives + QStringLiteral("[Program]\nNetwork=1\n[Files]\nDatabasepath=") + folder.path());
    prompts.expectMessage(RuntimeError(ErrorNumber::FileNotFound, path(QStringLiteral("jingles.mdb"))).report(),
                          QStringLiteral("Foutmelding"), MessageIcon::Exclamation);
    ASSERT_TRUE(start());
    EXPECT_TRUE(window->workplace().settings.Network);
    EXPECT_EQ(window->workplace().catalogues.datJingles, nullptr);
    show(TrackStep, 1);
    EXPECT_EQ(player().file(), path(QStringLiteral("audio/muziek/0001.mp3")));
    EXPECT_TRUE(preview->lblProblem->text().isEmpty());
    preview->close();
    show(JingleStep, 2);
    EXPECT_TRUE(preview->isVisible());
    EXPECT_TRUE(preview->lblProblem->text().contains(QStringLiteral("jingles.mdb")));
    EXPECT_FALSE(preview->playButton->isEnabled());
    EXPECT_TRUE(preview->ledTitle->text().isEmpty());
    preview->close();
    copy(QStringLiteral("samples/station/jingles.mdb"), QStringLiteral("jingles.mdb"));
    show(JingleStep, 2);
    EXPECT_EQ(player().file(), path(QStringLiteral("audio/jingles/002.mp3")));
    preview->close();
    window->tlbMain_ButtonClick(4);
    auto *setup = window->findChild<frmSetup *>();
    prompts.expectMessage(QStringLiteral("Start het programma opnieuw op"), QStringLiteral("Instellingen gewijzigd"),
                          MessageIcon::Information);
    click(setup->cmdSave);
    EXPECT_TRUE(content(QStringLiteral("orvel.ini")).contains("Network=1"));
}

TEST_F(PreviewWindow, TheWindowAsksForTheOutputOfTheSettingsOnlyWithTheNetwork) {
    const QString audio = QStringLiteral("[Audio]\nCCard=1\nCBuffer_size=4096\nCBuffers=7\nCCallback=2\n");
    configure(audio);
    startStation();
    show(TrackStep, 1);
    EXPECT_EQ(player().output().device, 1);
    EXPECT_EQ(player().output().bufferSize, 4096);
    EXPECT_EQ(player().output().buffers, 7);
    EXPECT_EQ(player().output().callBackMode, 2);
    preview->close();
    window->workplace().settings.Network = false;
    window->workplace().settings.CCard = 0;
    show(TrackStep, 1);
    EXPECT_EQ(player().output().device, 1) << "left as it was";
}

TEST_F(PreviewWindow, ADoubleClickOpensItForTracksAndJinglesButNotWhileATakeRuns) {
    addPlaylist(QStringLiteral("type-codes.mdb"));
    startStation();
    open(QStringLiteral("type-codes.mdb"));
    GridPanel &grid = *window->panels().gridPanel;
    int opened = 0;
    int presentation = -1;
    int track = -1;
    QObject::connect(&grid, &GridPanel::previewWanted, [&] { ++opened; });
    const auto typeOf = [&](int row) { return window->workplace().datList.value(row, TypeColumn).toInt(); };
    for (int row = 0; row < window->workplace().datList.stepCount(); ++row) {
        const bool isHeard = typeOf(row) == TrackStep || typeOf(row) == JingleStep;
        select(row);
        window->workplace().step.previewAllowed = true;
        const int before = opened;
        Q_EMIT grid.dbgLijst->doubleClicked(grid.dbgLijst->currentIndex());
        EXPECT_EQ(opened - before, isHeard ? 1 : 0) << "kind " << typeOf(row);
        if (auto *shown = window->findChild<frmPreview *>()) {
            shown->close();
        }
        track = isHeard ? row : track;
        presentation = typeOf(row) == PresStep ? row : presentation;
    }
    ASSERT_GE(track, 0);
    ASSERT_GE(presentation, 0);
    select(presentation);
    ASSERT_TRUE(window->workplace().step.StepSelected);
    beginRecording();
    select(track);
    const int before = opened;
    Q_EMIT grid.dbgLijst->doubleClicked(grid.dbgLijst->currentIndex());
    EXPECT_EQ(opened, before);
    click(window->panels().recorderPanel->cmdRec);
}

} // namespace orvel
