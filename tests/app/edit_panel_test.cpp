// A recorded link that is made to fit the intro, on the window.
#include "station.h"
#include "tests/dsp/sound.h"
#include "windows/edit_panel.h"

namespace orvel {

namespace {

constexpr int linkRow = 1;      // of access-2003.mdb
constexpr double vocals = 9.65; // s: an outro of 3.41, an intro of 6.24
constexpr std::size_t second = testRate;

class EditingOnTheDesk : public Station {
  protected:
    EditingOnTheDesk() {
        addPlaylist(demo);
        configure(QStringLiteral("[Program]\nCountdown=0"));
    }
    void openDemo() {
        ASSERT_TRUE(start());
        window->show();
        open(demo);
        select(linkRow);
    }
    /// A second of silence, a word of four seconds, 0.7 s of silence, a word of so many seconds.
    void speak(std::size_t seconds) {
        Samples take(second);
        for (const std::size_t length : {std::size_t{4}, seconds}) {
            const Samples word = tone(300, 8000, length * second);
            take.insert(take.end(), word.begin(), word.end());
            take.resize(take.size() + second * 7 / 10);
        }
        beginRecording();
        sound.deliver(take);
        timers.advance(static_cast<std::int64_t>(take.size()) * 1000 / testRate);
        click(window->panels().recorderPanel->cmdRec);
    }
    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = {}) {
        window->activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(window.get()));
        QTest::keyClick(window->focusWidget() != nullptr ? window->focusWidget() : window.get(), key, modifiers);
        QCoreApplication::processEvents();
    }
    [[nodiscard]] const EditPanel &panel() const { return *window->panels().editPanel; }
    [[nodiscard]] QString sentence() const {
        EXPECT_EQ(panel().lblSpraak->text().replace(u'\n', u' '), panel().lblSpraak->accessibleName());
        return panel().lblSpraak->accessibleName();
    }
    [[nodiscard]] QString statusLine() const { return window->panels().lblStatus->text(); }
    [[nodiscard]] QByteArray take() const {
        const QStringList takes = filesIn(QStringLiteral("temp"));
        return takes.size() == 1 ? content(QStringLiteral("temp/") + takes.front()) : QByteArray();
    }
};

} // namespace

TEST_F(EditingOnTheDesk, OneKeyFitsTheTakeAndTwoOthersUndoThatAndDoItAgain) {
    openDemo();
    EXPECT_FALSE(panel().cmdFit->isEnabled());
    EXPECT_EQ(sentence(), QString());
    speak(5);
    EXPECT_EQ(sentence(), QStringLiteral("Spraak 1,0 tot 10,7 s, 1,1 s over de intro"));
    EXPECT_TRUE(panel().cmdFit->isEnabled());
    EXPECT_FALSE(panel().cmdUndo->isEnabled());
    const QByteArray recorded = take();
    ASSERT_FALSE(recorded.isEmpty());
    press(Qt::Key_F11);
    EXPECT_EQ(statusLine(), QStringLiteral("Past op de intro: 1,0 s stilte vooraf weg, pauzes 0,2 s korter."));
    EXPECT_EQ(sentence(), QStringLiteral("Spraak 0,0 tot 9,6 s, 0,1 s vóór de zang"));
    const QByteArray fitted = take();
    press(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(take(), recorded);
    EXPECT_EQ(sentence(), QStringLiteral("Spraak 1,0 tot 10,7 s, 1,1 s over de intro"));
    EXPECT_FALSE(panel().cmdUndo->isEnabled());
    press(Qt::Key_Y, Qt::ControlModifier);
    EXPECT_EQ(take(), fitted);
    EXPECT_TRUE(panel().cmdUndo->isEnabled());
    EXPECT_FALSE(panel().cmdRedo->isEnabled());
    EXPECT_FALSE(window->panels().recorderPanel->lblProcess->isVisible());
}

TEST_F(EditingOnTheDesk, WhatIsFiledIsTheFittedTake) {
    openDemo();
    speak(5);
    click(panel().cmdFit);
    click(window->panels().savePanel->cmdSave);
    EXPECT_TRUE(imported(linkRow));
    EXPECT_FALSE(panel().cmdFit->isEnabled() || panel().cmdUndo->isEnabled());
    EXPECT_EQ(sentence(), QString());
    const QStringList filed = filesIn(QStringLiteral("ok"));
    ASSERT_EQ(filed.size(), 1);
    // The encoder puts something before and behind the sound, which ffmpeg takes off again.
    const QString heard = path(QStringLiteral("gehoord.wav"));
    output(QStringLiteral("ffmpeg"), {QStringLiteral("-v"), QStringLiteral("error"), QStringLiteral("-i"),
                                      path(QStringLiteral("ok/") + filed.front()), heard});
    const double length = output(QStringLiteral("soxi"), {QStringLiteral("-D"), heard}).toDouble();
    EXPECT_NEAR(length, vocals - 0.05, 0.03) << "the last word ends 0.1 s before the vocals, 0.05 s of silence stay";
}

TEST_F(EditingOnTheDesk, WhatCannotFitIsToldByHowMuch) {
    openDemo();
    speak(8);
    const QByteArray recorded = take();
    click(panel().cmdFit);
    EXPECT_TRUE(statusLine().startsWith(QStringLiteral("Past niet: nog "))) << statusLine().toStdString();
    EXPECT_EQ(take(), recorded);
    EXPECT_FALSE(panel().cmdUndo->isEnabled());
}

TEST_F(EditingOnTheDesk, AFullDiskIsToldAndTheTakeStays) {
    openDemo();
    speak(5);
    const QByteArray recorded = take();
    audioFiles.faults.write = 0;
    prompts.expectReport(QStringLiteral("Fout 61 tijdens de uitvoering:\n\nDe schijf is vol"));
    click(panel().cmdFit);
    audioFiles.faults = {};
    EXPECT_EQ(take(), recorded);
    EXPECT_TRUE(panel().cmdFit->isEnabled());
    EXPECT_TRUE(window->panels().savePanel->cmdSave->isEnabled());
}

// The buttons stand on rows that are there anyway, and the sentence where the notices of a running take are.
TEST_F(EditingOnTheDesk, NothingOfItMakesTheWindowLargerOrMovesWhenTheSentenceComes) {
    openDemo();
    const Panels &panels = window->panels();
    const auto middle = [&](QWidget *button) { return button->mapTo(window.get(), button->rect().center()).y(); };
    for (const QSize size : {QSize(1000, 640), QSize(1280, 800)}) {
        window->resize(size);
        speak(5);
        QTest::qWait(20); // rows find their places one after the other
        EXPECT_EQ(window->size(), size);
        EXPECT_NEAR(middle(panel().cmdFit), middle(panels.playbackPanel->cmdPlay), 1);
        EXPECT_EQ(middle(panels.playbackPanel->cmdPlay) == middle(panels.savePanel->cmdSave), size.width() == 1280);
        const QLabel &label = *panel().lblSpraak;
        EXPECT_GE(label.height(), label.sizeHint().height()) << "the whole sentence is to be read";
        const QRect withSentence = panels.recorderPanel->geometry();
        const auto place = [&](QWidget *widget) { return widget->mapTo(window.get(), QPoint()); };
        const QPoint onWindow = place(panels.recorderPanel->cmdRec);
        select(linkRow + 2);
        QTest::qWait(20);
        EXPECT_EQ(sentence(), QString());
        // A take brings the row of the step's takes, which another step has not: the lists give way to it.
        const QRect without = panels.recorderPanel->geometry();
        EXPECT_EQ(QRect(withSentence.topLeft(), without.size()), withSentence);
        EXPECT_EQ(place(panels.recorderPanel->cmdRec), onWindow);
        select(linkRow);
    }
}

} // namespace orvel
