#include "platform/runtime_error.h"
#include "production/retouching.h"
#include "tests/desk.h"
#include "tests/dsp/sound.h"
#include "tests/dsp/speech.h"

#include <QFile>

namespace orvel {

namespace {

using Operation = FaultyFileSystem::Operation;

constexpr std::size_t millisecond = testRate / 1000;

} // namespace

/// The slot's outro has 4 s, the next item's intro 5: the vocals begin at 9 s.
class RetouchingTest : public Desk {
  protected:
    RetouchingTest() {
        onRecorded = [this](const QString &name) { retouching.recorded(name); };
        edits = [this](const QString &name) { return retouching.facts(name); };
        takes.ended = [this](const QString &name) { retouching.ended(name); };
    }

    /// Records a second of silence, a word of so many milliseconds, half a second of silence, and another one.
    void speakTwice(std::size_t milliseconds) {
        startTake();
        Samples take(1000 * millisecond);
        for (const std::size_t silence : {500U, 300U}) {
            const Samples word = tone(300, 8000, milliseconds * millisecond);
            take.insert(take.end(), word.begin(), word.end());
            take.resize(take.size() + silence * millisecond);
        }
        sound.deliver(take);
        timers.advance(static_cast<std::int64_t>(take.size()) * 1000 / testRate);
        session.cmdRec_Click();
    }
    [[nodiscard]] QByteArray content() const {
        QFile file(path(wavOf1));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    QStringList processes;
    TakeEditing editing{platform, places, recovery};
    Retouching retouching{{platform, places, step, session, editing,
                           [this](bool visible) {
                               processes << (visible ? QStringLiteral("on") : QStringLiteral("off"));
                               EXPECT_FALSE(may().cmdRec || may().cmdSave || may().cmdFit);
                           },
                           tell}};
};

TEST_F(RetouchingTest, AfterTheStopOneSentenceTellsWhereSpeechIs) {
    select(link1);
    EXPECT_EQ(retouching.sentence(), QString());
    EXPECT_FALSE(may().cmdFit);
    speakTwice(2000);
    EXPECT_EQ(retouching.sentence(), QStringLiteral("Spraak 1,0 tot 5,5 s, 3,5 s vóór de zang"));
    EXPECT_TRUE(may().cmdFit);
    EXPECT_FALSE(may().cmdUndo);
    startTake();
    EXPECT_EQ(retouching.sentence(), QString()) << "another one is recorded";
    session.cmdRec_Click(); // nothing came from the microphone
    select(link2);
    EXPECT_EQ(retouching.sentence(), QString()) << "another slot's take";
    EXPECT_FALSE(may().cmdFit);
    select(link1);
    EXPECT_EQ(retouching.sentence(), QStringLiteral("Spraak 1,0 tot 5,5 s, 3,5 s vóór de zang"));
}

TEST_F(RetouchingTest, ATakeIsMadeToFitUndoneAndFittedAgain) {
    select(link1);
    speakTwice(4200);
    EXPECT_EQ(retouching.sentence(), QStringLiteral("Spraak 1,0 tot 9,9 s, 0,9 s over de intro"));
    const QByteArray recordedTake = content();
    retouching.cmdFit_Click();
    EXPECT_EQ(told.last(), QStringLiteral("Past op de intro: 1,0 s stilte vooraf weg."));
    EXPECT_EQ(retouching.sentence(), QStringLiteral("Spraak 0,0 tot 8,9 s, 0,1 s vóór de zang"));
    EXPECT_EQ(processes, (QStringList{QStringLiteral("on"), QStringLiteral("off")}));
    EXPECT_EQ(retouching.undoable(), QStringLiteral("Past op de intro"));
    EXPECT_TRUE(may().cmdUndo && may().cmdSave && may().cmdFit && may().cmdRec);
    EXPECT_FALSE(may().cmdRedo);
    const QByteArray fitted = content();
    retouching.cmdUndo_Click();
    EXPECT_EQ(told.last(), QStringLiteral("Ongedaan gemaakt: Past op de intro."));
    EXPECT_EQ(content(), recordedTake);
    EXPECT_EQ(retouching.sentence(), QStringLiteral("Spraak 1,0 tot 9,9 s, 0,9 s over de intro"));
    EXPECT_TRUE(may().cmdRedo);
    EXPECT_FALSE(may().cmdUndo);
    retouching.cmdRedo_Click();
    EXPECT_EQ(told.last(), QStringLiteral("Opnieuw gedaan: Past op de intro."));
    EXPECT_EQ(content(), fitted);
    EXPECT_EQ(session.state(), SessionState::Idle);
    EXPECT_EQ(shownRow, link1);
}

TEST_F(RetouchingTest, WhatCannotFitIsToldAndNothingCanBeUndone) {
    select(link1);
    speakTwice(5500);
    const QByteArray recordedTake = content();
    retouching.cmdFit_Click();
    EXPECT_EQ(told.last(), QStringLiteral("Past niet: nog 2,0 s te lang."));
    EXPECT_EQ(content(), recordedTake);
    EXPECT_FALSE(may().cmdUndo);
    EXPECT_TRUE(may().cmdSave);
}

TEST_F(RetouchingTest, WithoutAnIntroThereIsNothingToFit) {
    select(link2); // a slot follows
    step.NextIntroMs = 0;
    session.cmdRec_Click();
    step.NextIntroMs = 0;
    timers.advance(3000);
    Samples take = tone(300, 8000, 2000 * millisecond);
    take.resize(take.size() + 500 * millisecond);
    sound.deliver(take);
    session.cmdRec_Click();
    step.NextIntroMs = 0;
    EXPECT_EQ(retouching.sentence(), QStringLiteral("Spraak 0,0 tot 2,0 s"));
    EXPECT_FALSE(may().cmdFit);
    const qsizetype before = told.size();
    retouching.cmdFit_Click();
    EXPECT_EQ(told.size(), before);
}

TEST_F(RetouchingTest, AnotherEditIsUndoneTheSameWay) {
    select(link1);
    speakTwice(2000);
    const QByteArray recordedTake = content();
    EXPECT_TRUE(retouching.edit(trimBoth(900 * millisecond, 5600 * millisecond)));
    EXPECT_EQ(retouching.sentence(), QStringLiteral("Spraak 0,1 tot 4,6 s, 4,4 s vóór de zang"));
    retouching.cmdUndo_Click();
    EXPECT_EQ(told.last(), QStringLiteral("Ongedaan gemaakt: Begin en einde bijgesneden."));
    EXPECT_EQ(content(), recordedTake);
}

TEST_F(RetouchingTest, AFullDiskLeavesTheTakeAndTheDeskAsTheyWere) {
    select(link1);
    speakTwice(4200);
    const QByteArray recordedTake = content();
    audioFiles.faults.write = 0;
    EXPECT_THROW(retouching.cmdFit_Click(), RuntimeError);
    audioFiles.faults = {};
    EXPECT_EQ(content(), recordedTake);
    EXPECT_EQ(session.state(), SessionState::Idle);
    EXPECT_EQ(processes, (QStringList{QStringLiteral("on"), QStringLiteral("off")}));
    EXPECT_TRUE(may().cmdSave && may().cmdFit);
    EXPECT_FALSE(may().cmdUndo);
    retouching.cmdFit_Click();
    EXPECT_TRUE(may().cmdUndo);
    files.fail(Operation::Move, QStringLiteral("LINK1"), ErrorNumber::DiskFull);
    const QByteArray fitted = content();
    EXPECT_THROW(retouching.cmdUndo_Click(), RuntimeError);
    files.heal();
    EXPECT_EQ(content(), fitted);
    EXPECT_TRUE(may().cmdUndo);
}

TEST_F(RetouchingTest, AFiledTakeAndANewOneBeginAnew) {
    select(link1);
    speakTwice(4200);
    retouching.cmdFit_Click();
    speakTwice(4200);
    EXPECT_FALSE(may().cmdUndo) << "recorded anew";
    EXPECT_EQ(retouching.sentence(), QStringLiteral("Spraak 1,0 tot 9,9 s, 0,9 s over de intro"));
    EXPECT_TRUE(filesIn(QStringLiteral("temp2")).isEmpty());
    retouching.cmdFit_Click();
    saving.cmdSave_Click();
    EXPECT_TRUE(exists(mp3Of1));
    select(link1);
    EXPECT_FALSE(may().cmdUndo || may().cmdFit);
    EXPECT_EQ(retouching.sentence(), QString());
    EXPECT_TRUE(filesIn(QStringLiteral("temp2")).isEmpty());
}

TEST_F(RetouchingTest, ARecordingThatIsBrokenOffGivesTheEditedTakeBackWithItsUndo) {
    select(link1);
    speakTwice(4200);
    retouching.cmdFit_Click();
    const QByteArray fitted = content();
    startTake();
    session.cmdRec_Click(); // nothing came from the microphone
    EXPECT_EQ(content(), fitted);
    EXPECT_TRUE(may().cmdUndo);
}

TEST_F(RetouchingTest, ATakeThatCannotBeReadHasNoSentence) {
    select(link1);
    audioFiles.faults.readBlock = 0;
    speakTwice(1000);
    audioFiles.faults = {};
    EXPECT_EQ(retouching.sentence(), QString());
    EXPECT_TRUE(may().cmdSave);
}

} // namespace orvel
