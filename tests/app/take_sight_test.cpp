// The take in sight: its outline, how it fits, and what stands around it.
#include "station.h"
#include "windows/takes_panel.h"

#include <QToolButton>

namespace orvel {

namespace {

class TakeInSight : public Station {
  protected:
    void openDemo() {
        addPlaylist(demo);
        configure(QStringLiteral("[Program]\nCountdown=0"));
        ASSERT_TRUE(start());
        window->show();
        open(demo);
        select(link);
    }
    [[nodiscard]] StepPanel &panel() const { return *window->panels().stepPanel; }
    [[nodiscard]] Waveform &wave() const { return *panel().wavTake; }
    [[nodiscard]] const CurrentStep &step() const { return window->workplace().step; }
    [[nodiscard]] const Peaks &peaks() const { return window->workplace().picture.peaks(); }

    static constexpr int link = 1; // row of the demo playlist's first slot
};

} // namespace

TEST_F(TakeInSight, TheOutlineGrowsWhileItIsRecordedAndStaysAfterTheStop) {
    openDemo();
    EXPECT_EQ(wave().length(), 0);
    EXPECT_NEAR(wave().shownSpan(), step().TalkTotalMs, 1) << "on the bar's time axis";
    beginRecording();
    sound.deliver(44100);
    sound.flush();
    timers.advance(1000);
    EXPECT_NEAR(wave().length(), 1000, 60);
    sound.deliver(44100);
    sound.flush();
    timers.advance(1000);
    EXPECT_NEAR(wave().length(), 2000, 60);
    click(window->panels().recorderPanel->cmdRec);
    timers.advance(100);
    EXPECT_NEAR(wave().length(), 2000, 1);
    EXPECT_GT(peaks().between(0, 44100).high, 0.01F);
}

TEST_F(TakeInSight, AnotherStepsTakeIsNotShown) {
    openDemo();
    record(1500);
    timers.advance(100);
    ASSERT_NEAR(wave().length(), 1500, 1);
    select(0);
    EXPECT_EQ(wave().length(), 0);
    select(link);
    timers.advance(100);
    EXPECT_NEAR(wave().length(), 1500, 1);
}

TEST_F(TakeInSight, TheFiguresTellHowMuchIsLeftAndHowMuchTooLongItIs) {
    openDemo();
    const int total = step().TalkTotalMs;
    ASSERT_GT(total, 2000);
    EXPECT_TRUE(panel().lblTalk->text().contains(QStringLiteral("nog")));
    beginRecording();
    sound.deliver(44100);
    timers.advance(1000);
    const auto seconds = [](int ms) { return QString::number((ms + 50) / 100 / 10.0, 'f', 1).replace(u'.', u','); };
    EXPECT_TRUE(panel().lblTalk->text().endsWith(QStringLiteral("nog %1 s").arg(seconds(total - 1000))))
        << panel().lblTalk->text().toStdString();
    timers.advance(total + 300);
    EXPECT_EQ(panel().lblTalk->text(), QStringLiteral("■ 1,3 s te lang"));
    select(0);
    EXPECT_EQ(panel().lblTalk->text(), QStringLiteral("■ 1,3 s te lang")) << "the take belongs to its step";
}

TEST_F(TakeInSight, TheNeighboursStandAboveIt) {
    openDemo();
    const Playlist &list = window->workplace().datList;
    EXPECT_TRUE(panel().lblPrevious->text().contains(list.value(link - 1, stepColumn("Titel")).toString()));
    EXPECT_TRUE(panel().lblNext->text().contains(list.value(link + 1, stepColumn("Titel")).toString()));
    select(0);
    EXPECT_TRUE(panel().lblPrevious->text().isEmpty());
}

TEST_F(TakeInSight, AClickListensFromThere) {
    openDemo();
    record(2000);
    timers.advance(100);
    Q_EMIT wave().seekWanted(1200);
    EXPECT_EQ(window->workplace().session.state(), SessionState::Listening);
    EXPECT_EQ(sound.player(0).position(), 1200);
    Q_EMIT wave().seekWanted(300);
    EXPECT_EQ(sound.player(0).position(), 300);
    timers.advance(10);
    EXPECT_EQ(wave().value(), 300);
}

TEST_F(TakeInSight, AClickWhereNothingMayBeHeardDoesNothing) {
    openDemo();
    Q_EMIT wave().seekWanted(500);
    EXPECT_EQ(window->workplace().session.state(), SessionState::Idle);
    beginRecording();
    Q_EMIT wave().seekWanted(500);
    EXPECT_EQ(window->workplace().session.state(), SessionState::Recording);
}

/// A second take of the very same size was not read anew.
TEST_F(TakeInSight, ASecondTakeShowsItsOwnOutline) {
    openDemo();
    record(1000);
    timers.advance(100);
    const float before = peaks().between(0, 44100).high;
    beginRecording();
    const std::vector<std::int16_t> soft(44100, 200);
    sound.deliver(soft);
    timers.advance(1000);
    click(window->panels().recorderPanel->cmdRec);
    timers.advance(100);
    EXPECT_NE(peaks().between(0, 44100).high, before);
    EXPECT_NEAR(peaks().between(0, 44100).high, 200 / 32768.0, 1e-3);
}

TEST_F(TakeInSight, TheTakesOfAStepStandBelowItAndAKeyGoesThroughThem) {
    openDemo();
    TakesPanel &takes = *window->panels().takesPanel;
    record(1000);
    EXPECT_FALSE(takes.isVisible()) << "one take is no choice";
    record(1500);
    ASSERT_TRUE(takes.isVisible());
    const auto buttons = [&takes] {
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        return takes.findChildren<QToolButton *>();
    };
    EXPECT_EQ(buttons().size(), 3) << "two, and the one for the next";
    timers.advance(100);
    EXPECT_NEAR(wave().length(), 1500, 1);
    click(takes.cmdNextTake);
    timers.advance(100);
    EXPECT_NEAR(wave().length(), 1000, 1);
    click(window->panels().savePanel->cmdSave);
    EXPECT_TRUE(imported(link));
    select(link);
    QStringList texts;
    for (const QToolButton *button : buttons()) {
        texts << button->text();
    }
    EXPECT_TRUE(texts.contains(QStringLiteral("● Take 1 · 1,0 s ✓ bewaard"))) << texts.join(u'|').toStdString();
    EXPECT_TRUE(texts.contains(QStringLiteral("Take 2 · 1,5 s")));
    select(0);
    EXPECT_FALSE(takes.isVisible());
}

TEST_F(TakeInSight, OriginalsArePackedBesideTheWork) {
    openDemo();
    record(1000);
    timers.advance(1000);
    EXPECT_EQ(filesIn(QStringLiteral("takes")).filter(QStringLiteral(".flac")).size(), 1);
    EXPECT_TRUE(filesIn(QStringLiteral("takes")).filter(QStringLiteral("droog.wav")).isEmpty());
}

TEST_F(TakeInSight, WhatIsCutOffCanBeUndone) {
    openDemo();
    record(2000);
    timers.advance(100);
    const QByteArray whole = content(window->workplace().listening.file().mid(folder.path().size() + 1));
    ASSERT_FALSE(whole.isEmpty());
    Q_EMIT wave().scrubbed(500); // a handle is dragged, and heard
    EXPECT_EQ(window->workplace().session.state(), SessionState::Listening);
    Q_EMIT wave().cutWanted(500, 1750);
    EXPECT_EQ(window->workplace().session.state(), SessionState::Idle);
    timers.advance(100);
    EXPECT_NEAR(wave().length(), 1250, 1);
    window->workplace().retouching.cmdUndo_Click();
    timers.advance(100);
    EXPECT_NEAR(wave().length(), 2000, 1);
    EXPECT_EQ(content(window->workplace().listening.file().mid(folder.path().size() + 1)), whole);
}

TEST_F(TakeInSight, AVoiceTrackIsNotCut) {
    openDemo();
    record(1000);
    click(window->panels().savePanel->cmdSave);
    select(link);
    const QByteArray filed = content(QStringLiteral("ok/") + filesIn(QStringLiteral("ok")).constFirst());
    Q_EMIT wave().cutWanted(100, 500);
    EXPECT_EQ(content(QStringLiteral("ok/") + filesIn(QStringLiteral("ok")).constFirst()), filed);
}

} // namespace orvel
