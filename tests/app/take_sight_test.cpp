// The take in sight: its outline, how it fits, and what stands around it.
#include "station.h"
#include "tests/dsp/sound.h"
#include "windows/edit_panel.h"
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

    [[nodiscard]] QPushButton &again() const { return *window->panels().takesPanel->cmdOpnieuw; }
    [[nodiscard]] QPushButton &dry() const { return *window->panels().takesPanel->cmdDroog; }
    [[nodiscard]] QString status() const { return window->panels().lblStatus->text(); }
    [[nodiscard]] TakeMarks marks() const { return window->workplace().marksInSight(); }
    /// Half a second of a quiet room, a word of a second, half a second of the room; loud: at full scale in the word's
    /// middle.
    void speak(bool loud) {
        beginRecording();
        Samples take = pinkNoise(6, testRate / 2);
        Samples word = tone(300, 9000, testRate);
        if (loud) {
            word.at(testRate / 2) = 32767;
        }
        take.insert(take.end(), word.begin(), word.end());
        const Samples room = pinkNoise(6, testRate / 2);
        take.insert(take.end(), room.begin(), room.end());
        for (std::size_t at = 0; at < take.size(); at += testRate / 25) {
            sound.deliver(std::span(take).subspan(at, std::min<std::size_t>(testRate / 25, take.size() - at)));
            sound.flush();
            timers.advance(40);
        }
    }
    void stopAndLook() {
        click(window->panels().recorderPanel->cmdRec);
        timers.advance(100);
    }

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
    EXPECT_FALSE(takes.cmdNextTake->isVisible()) << "one take is no choice";
    EXPECT_TRUE(takes.cmdOpnieuw->isVisible()) << "but it can be worked on anew";
    record(1500);
    ASSERT_TRUE(takes.cmdNextTake->isVisible());
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

// --- as it was recorded

TEST_F(TakeInSight, TheStagesWorkOnTheOriginalAgainAndThatIsUndone) {
    configure(QStringLiteral("[AudioProcessor]\nNorm=90"));
    openDemo();
    EXPECT_FALSE(again().isEnabled());
    record(2000);
    ASSERT_TRUE(again().isEnabled());
    EXPECT_TRUE(again().toolTip().endsWith(QStringLiteral("(Shift+F11)"))) << again().toolTip().toStdString();
    const QString file = window->workplace().listening.file().mid(folder.path().size() + 1);
    const QByteArray before = content(file);
    auto *norm = window->findChild<QAbstractButton *>(QStringLiteral("chkNorm"));
    ASSERT_NE(norm, nullptr);
    norm->setChecked(!norm->isChecked());
    window->activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(window.get()));
    QTest::keyClick(window.get(), Qt::Key_F11, Qt::ShiftModifier);
    QCoreApplication::processEvents();
    EXPECT_EQ(status(), QStringLiteral("Opnieuw bewerkt vanaf de droge opname."));
    EXPECT_NE(content(file), before);
    click(window->panels().editPanel->cmdUndo);
    EXPECT_EQ(content(file), before);
    EXPECT_FALSE(window->panels().recorderPanel->lblProcess->isVisible());
    click(window->panels().playbackPanel->cmdPlay);
    EXPECT_FALSE(again().isEnabled());
}

TEST_F(TakeInSight, ASwitchWhileListeningLetsTheDryTakeBeHeard) {
    openDemo();
    record(2000);
    EXPECT_FALSE(dry().isEnabled()) << "nothing is heard";
    click(window->panels().playbackPanel->cmdPlay);
    ASSERT_TRUE(dry().isEnabled());
    EXPECT_EQ(dry().text(), QStringLiteral("○ Droog"));
    click(&dry());
    EXPECT_TRUE(dry().isChecked());
    EXPECT_EQ(dry().text(), QStringLiteral("● Droog"));
    EXPECT_EQ(dry().accessibleDescription(), QStringLiteral("De droge opname is te horen"));
    click(&dry());
    EXPECT_FALSE(dry().isChecked());
    click(&dry());
    click(window->panels().playbackPanel->cmdPlay);
    EXPECT_FALSE(dry().isChecked()) << "off by itself";
    EXPECT_FALSE(dry().isEnabled());
}

// --- marks

TEST_F(TakeInSight, SpeechAndClipsAreMarkedWhileItIsRecordedAndAfterwards) {
    openDemo();
    speak(true);
    ASSERT_EQ(window->workplace().session.state(), SessionState::Recording);
    ASSERT_EQ(marks().clips.size(), 1U);
    EXPECT_NEAR(marks().clips.front(), 1000, 20);
    ASSERT_EQ(marks().speech.size(), 1U);
    EXPECT_NEAR(marks().speech.front().begin, 500, 20);
    EXPECT_NEAR(marks().speech.front().end, 1500, 20);
    EXPECT_TRUE(wave().toolTip().contains(QStringLiteral("te luid bij: 1,0 s"))) << wave().toolTip().toStdString();
    EXPECT_EQ(wave().accessibleDescription(), wave().toolTip());
    stopAndLook();
    ASSERT_EQ(marks().clips.size(), 1U);
    EXPECT_NEAR(marks().clips.front(), 1000, 20);
    ASSERT_EQ(marks().speech.size(), 1U);
    EXPECT_NEAR(marks().speech.front().end, 1500, 20);
    Q_EMIT wave().cutWanted(400, 1800);
    timers.advance(100);
    ASSERT_EQ(marks().clips.size(), 1U);
    EXPECT_NEAR(marks().clips.front(), 600, 20) << "where it is in the take now";
    EXPECT_NEAR(marks().speech.front().begin, 100, 20);
}

TEST_F(TakeInSight, MarksBelongToTheirTake) {
    openDemo();
    speak(true);
    stopAndLook();
    speak(false);
    EXPECT_TRUE(marks().clips.empty()) << "this one is not too loud";
    stopAndLook();
    EXPECT_TRUE(marks().clips.empty());
    EXPECT_FALSE(wave().toolTip().contains(QStringLiteral("te luid")));
    click(window->panels().takesPanel->cmdNextTake);
    EXPECT_EQ(marks().clips.size(), 1U);
    EXPECT_TRUE(wave().toolTip().contains(QStringLiteral("te luid")));
    select(link + 2);
    EXPECT_EQ(marks(), TakeMarks()) << "another step has no take";
    EXPECT_EQ(wave().toolTip(), QString());
    select(link);
    EXPECT_EQ(marks().clips.size(), 1U);
    click(window->panels().savePanel->cmdSave);
    select(link);
    EXPECT_EQ(marks(), TakeMarks()) << "a voice track has none";
}

TEST_F(TakeInSight, AfterARestartAndAfterAChoiceATakeHasItsSentenceAndLoudness) {
    openDemo();
    speak(false);
    stopAndLook();
    const QString sentence = window->panels().editPanel->lblSpraak->accessibleName();
    const QString loudnessText = window->panels().lblLoudness->text();
    ASSERT_TRUE(sentence.startsWith(QStringLiteral("Spraak 0,5 tot 1,5 s"))) << sentence.toStdString();
    ASSERT_TRUE(loudnessText.contains(QStringLiteral("LUFS")));
    record(3000);
    ASSERT_NE(window->panels().lblLoudness->text(), loudnessText);
    click(window->panels().takesPanel->cmdNextTake);
    EXPECT_EQ(window->panels().editPanel->lblSpraak->accessibleName(), sentence);
    EXPECT_EQ(window->panels().lblLoudness->text(), loudnessText);
    window.reset();
    ASSERT_TRUE(start());
    if (auto *offered = window->findChild<frmUnfiled *>()) {
        click(offered->cmdLeave);
    }
    open(demo);
    select(link);
    EXPECT_EQ(window->panels().editPanel->lblSpraak->accessibleName(), sentence);
    EXPECT_EQ(window->panels().lblLoudness->text(), loudnessText);
    EXPECT_EQ(marks().speech.size(), 1U);
}

} // namespace orvel
