#include "platform/runtime_error.h"
#include "production/processing_chain.h"
#include "production/retouching.h"
#include "production/take_findings.h"
#include "recording/flac_packer.h"
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
        onChanged = [this] { retouching.look(); };
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
    /// The stages run on the take after the stop, as they do in the program.
    void processTakes() {
        process = [this](const QString &wav) { chain.AudioProcessing(wav); };
    }
    /// Speaks, and is brought to 50 % by the normalisation, with 0.5 s of the silence before it cut off by hand.
    void speakProcessAndCut() {
        wishes.set("UseNorm", 1);
        wishes.set("Norm", 50);
        processTakes();
        select(link1);
        speakTwice(2000);
        ASSERT_TRUE(retouching.edit(trimBoth(500 * millisecond, 6000 * millisecond)));
    }
    [[nodiscard]] Samples samplesOf(const QString &file) {
        const auto reader = realAudioFiles.reader();
        reader->open(file);
        Samples all;
        for (QByteArray block = reader->readBlock(); !block.isEmpty(); block = reader->readBlock()) {
            const auto *first = reinterpret_cast<const std::int16_t *>(block.constData());
            all.insert(all.end(), first, first + block.size() / 2);
        }
        return all;
    }

    ProcessorSettings wishes = processorKeys();
    LoudnessGoal goal;
    ProcessingChain chain{{platform, places.programFolder(), [this] { return wishes; }, recovery, [](bool) {}, tell,
                           [this] { return goal; }}};
    TakeEditing editing{platform, places, recovery};
    TakeFindings findings{platform, places, [] {}};
    Retouching retouching{{platform, places, step, session, editing, findings, takes, [this] { return chain.wishes(); },
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

// --- the stages again

TEST_F(RetouchingTest, TheStagesRunAgainOnWhatWasRecordedWithWhatIsSetNow) {
    speakProcessAndCut();
    const QByteArray cut = content();
    const Samples recordedTake = samplesOf(takes.shelf().dry(session.currentTake()));
    ASSERT_NEAR(peakOf(recordedTake), 8000, 50);
    ASSERT_TRUE(may().cmdOpnieuw);
    wishes.set("Norm", 90);
    processes.clear();
    retouching.cmdOpnieuw_Click();
    EXPECT_EQ(processes, (QStringList{QStringLiteral("on"), QStringLiteral("off")}));
    EXPECT_EQ(samplesOf(path(wavOf1)).size(), recordedTake.size()) << "what was cut off by hand is there again";
    EXPECT_NEAR(peakOf(samplesOf(path(wavOf1))), 0.9 * 32767, 3);
    EXPECT_TRUE(told.last().startsWith(QStringLiteral("Opnieuw bewerkt vanaf de droge opname. Wat u zelf deed "
                                                      "(Begin en einde bijgesneden) is daarmee vervangen")))
        << told.last().toStdString();
    EXPECT_EQ(retouching.sentence(), QStringLiteral("Spraak 1,0 tot 5,5 s, 3,5 s vóór de zang"));
    const QByteArray again = content();
    retouching.cmdUndo_Click();
    EXPECT_EQ(content(), cut);
    EXPECT_EQ(told.last(), QStringLiteral("Ongedaan gemaakt: Opnieuw bewerkt."));
    retouching.cmdRedo_Click();
    EXPECT_EQ(content(), again);
    EXPECT_EQ(samplesOf(takes.shelf().dry(session.currentTake())), recordedTake) << "the original stays what it is";
    EXPECT_TRUE(filesIn(QStringLiteral("temp2")).filter(QStringLiteral("ruw")).isEmpty());
}

TEST_F(RetouchingTest, TheStagesGiveWhatTheyGiveAfterAStopLoudnessAmongThem) {
    goal.target = -20;
    for (const char *key : {"UseAmp", "UseComp", "UseTrim"}) {
        wishes.set(key, 1);
    }
    wishes.set("Amp", 4);
    wishes.set("CompTresh", -30);
    wishes.set("CompRate", 40);
    wishes.set("Trim", -50);
    select(link1);
    speakTwice(2000);
    process = [](const QString &) {};
    const Samples dry = samplesOf(path(wavOf1));
    retouching.cmdOpnieuw_Click();
    const Samples again = samplesOf(path(wavOf1));
    EXPECT_LT(again.size(), dry.size() - 900 * millisecond) << "trimmed";
    EXPECT_NEAR(loudness.measure(again, testRate)->lufs, -20, 0.2);
    retouching.cmdUndo_Click();
    chain.AudioProcessing(path(wavOf1));
    EXPECT_EQ(samplesOf(path(wavOf1)), again);
}

TEST_F(RetouchingTest, AgainAndAgainThereIsNothingOfOnesOwnThatIsReplaced) {
    speakProcessAndCut();
    retouching.cmdOpnieuw_Click();
    wishes.set("Norm", 80);
    retouching.cmdOpnieuw_Click();
    EXPECT_EQ(told.last(), QStringLiteral("Opnieuw bewerkt vanaf de droge opname."));
    const QByteArray before = content();
    retouching.cmdOpnieuw_Click();
    EXPECT_EQ(told.last(), QStringLiteral("De bewerking geeft hetzelfde: de opname is zoals ze was."));
    EXPECT_EQ(content(), before);
}

TEST_F(RetouchingTest, APackedOriginalIsAsGood) {
    speakProcessAndCut();
    FlacPacker packer(platform);
    const QString dry = takes.shelf().dry(session.currentTake());
    packer.pack(dry, TakeShelf::packed(dry));
    timers.advance(5000);
    ASSERT_TRUE(takes.shelf().dry(session.currentTake()).endsWith(QStringLiteral(".flac")));
    wishes.set("Norm", 90);
    retouching.cmdOpnieuw_Click();
    EXPECT_NEAR(peakOf(samplesOf(path(wavOf1))), 0.9 * 32767, 3);
}

TEST_F(RetouchingTest, WithoutAnOriginalOrWhileSomethingRunsThereIsNothingToWorkOn) {
    speakProcessAndCut();
    ASSERT_TRUE(may().cmdOpnieuw);
    listening.cmdPlay_Click();
    EXPECT_FALSE(may().cmdOpnieuw);
    listening.cmdPlay_Click();
    EXPECT_TRUE(may().cmdOpnieuw);
    disk.remove(takes.shelf().dry(session.currentTake()));
    EXPECT_FALSE(may().cmdOpnieuw);
    const QByteArray before = content();
    retouching.cmdOpnieuw_Click();
    EXPECT_EQ(content(), before);
    startTake();
    EXPECT_FALSE(may().cmdOpnieuw);
}

TEST_F(RetouchingTest, WhateverFailsOnTheWayLeavesTheTakeAsItWas) {
    speakProcessAndCut();
    wishes.set("Norm", 90);
    const QByteArray cut = content();
    const auto expectAsBefore = [&](const char *what) {
        audioFiles.faults = {};
        files.heal();
        EXPECT_EQ(content(), cut) << what;
        EXPECT_EQ(retouching.undoable(), QStringLiteral("Begin en einde bijgesneden")) << what;
        EXPECT_EQ(session.state(), SessionState::Idle) << what;
        EXPECT_TRUE(may().cmdOpnieuw && may().cmdSave) << what;
        EXPECT_EQ(processes.last(), QStringLiteral("off")) << what;
    };
    audioFiles.faults.write = 0;
    EXPECT_THROW(retouching.cmdOpnieuw_Click(), RuntimeError);
    expectAsBefore("a full disk");
    audioFiles.faults.closeFull = true;
    EXPECT_THROW(retouching.cmdOpnieuw_Click(), RuntimeError);
    expectAsBefore("a full disk at the end");
    files.fail(Operation::Move, QStringLiteral("LINK1"), ErrorNumber::DiskFull);
    EXPECT_THROW(retouching.cmdOpnieuw_Click(), RuntimeError);
    expectAsBefore("the result cannot take its place");
    QFile(takes.shelf().dry(session.currentTake())).resize(20);
    EXPECT_THROW(retouching.cmdOpnieuw_Click(), RuntimeError);
    expectAsBefore("the original is no sound");
}

TEST_F(RetouchingTest, AStageThatSilencesTheTakeIsTold) {
    speakProcessAndCut();
    wishes.set("Norm", 0);
    retouching.cmdOpnieuw_Click();
    EXPECT_TRUE(told.last().endsWith(QStringLiteral("Normalisatie heeft de opname onhoorbaar gemaakt.")))
        << told.last().toStdString();
    retouching.cmdUndo_Click();
    EXPECT_GT(peakOf(samplesOf(path(wavOf1))), 10000);
}

// --- what is known of a take that was not recorded just now

TEST_F(RetouchingTest, AnotherTakeFromTheShelfHasItsOwnSentenceAndLoudness) {
    select(link1);
    speakTwice(2000);
    const double first = findings.of(QStringLiteral("LINK1"))->loudness->lufs;
    speakTwice(1000);
    EXPECT_EQ(retouching.sentence(), QStringLiteral("Spraak 1,0 tot 3,5 s, 5,5 s vóór de zang"));
    session.choose(1);
    EXPECT_EQ(retouching.sentence(), QStringLiteral("Spraak 1,0 tot 5,5 s, 3,5 s vóór de zang"));
    EXPECT_EQ(findings.of(QStringLiteral("LINK1"))->loudness->lufs, first);
}

TEST_F(RetouchingTest, ATakeThatWaitsFromTheLastRunHasItsSentence) {
    select(link1);
    speakTwice(2000);
    TakeFindings nothingYet{platform, places, [] {}};
    Retouching restarted{{platform, places, step, session, editing, nothingYet, takes,
                          [this] { return chain.wishes(); }, [](bool) {}, tell}};
    EXPECT_EQ(restarted.sentence(), QString());
    select(link2);
    restarted.look();
    EXPECT_EQ(restarted.sentence(), QString()) << "there is no take";
    select(link1);
    restarted.look();
    EXPECT_EQ(restarted.sentence(), QStringLiteral("Spraak 1,0 tot 5,5 s, 3,5 s vóór de zang"));
    EXPECT_TRUE(nothingYet.of(QStringLiteral("LINK1"))->loudness);
}

} // namespace orvel
