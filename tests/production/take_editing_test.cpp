#include "platform/runtime_error.h"
#include "production/take_editing.h"
#include "tests/desk.h"

#include <QFile>

namespace orvel {

namespace {

using Operation = FaultyFileSystem::Operation;
using Samples = TakeEdit::Samples;

const QString link = QStringLiteral("LINK1");

TakeEdit adding(std::int16_t steps) {
    return {QStringLiteral("plus %1").arg(steps), [steps](Samples samples, int) {
                for (std::int16_t &sample : samples) {
                    sample = static_cast<std::int16_t>(sample + steps);
                }
                return samples;
            }};
}

} // namespace

class TakeEditingTest : public Desk {
  protected:
    TakeEditingTest() { put(Samples(4410, 1000)); }

    void put(const Samples &samples) {
        const auto writer = realAudioFiles.wavWriter();
        writer->create(places.take(link), 44100);
        writer->write(samples);
        writer->close();
    }
    [[nodiscard]] QByteArray content() const {
        QFile file(places.take(link));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }
    [[nodiscard]] Samples samples(const QString &file = {}) {
        const auto reader = realAudioFiles.reader();
        reader->open(file.isEmpty() ? places.take(link) : file);
        EXPECT_EQ(reader->sampleRate(), 44100);
        Samples all;
        for (QByteArray block = reader->readBlock(); !block.isEmpty(); block = reader->readBlock()) {
            const auto *first = reinterpret_cast<const std::int16_t *>(block.constData());
            all.insert(all.end(), first, first + block.size() / 2);
        }
        reader->close();
        return all;
    }

    TakeEditing editing{platform, places, recovery};
};

TEST_F(TakeEditingTest, AnEditIsUndoneAndDoneAgainBitForBit) {
    const QByteArray original = content();
    EXPECT_TRUE(editing.apply(link, adding(1)));
    const QByteArray once = content();
    EXPECT_TRUE(editing.apply(link, adding(10)));
    const QByteArray twice = content();
    EXPECT_EQ(samples(), Samples(4410, 1011));
    EXPECT_EQ(editing.undoable(link), QStringLiteral("plus 10"));
    EXPECT_EQ(editing.redoable(link), QString());
    editing.undo(link);
    EXPECT_EQ(content(), once);
    EXPECT_EQ(editing.undoable(link), QStringLiteral("plus 1"));
    EXPECT_EQ(editing.redoable(link), QStringLiteral("plus 10"));
    editing.undo(link);
    EXPECT_EQ(content(), original);
    EXPECT_EQ(editing.undoable(link), QString());
    EXPECT_EQ(editing.redoable(link), QStringLiteral("plus 1"));
    editing.undo(link); // there is nothing
    EXPECT_EQ(content(), original);
    editing.redo(link);
    editing.redo(link);
    EXPECT_EQ(content(), twice);
    editing.redo(link);
    EXPECT_EQ(content(), twice);
    for (int i = 0; i < 3; ++i) {
        editing.undo(link);
        editing.undo(link);
        EXPECT_EQ(content(), original);
        editing.redo(link);
        EXPECT_EQ(content(), once);
        editing.redo(link);
        EXPECT_EQ(content(), twice);
    }
    EXPECT_EQ(filesIn(QStringLiteral("temp2")).size(), 2);
}

TEST_F(TakeEditingTest, WhatWasUndoneIsGoneAfterAnotherEdit) {
    editing.apply(link, adding(1));
    editing.apply(link, adding(10));
    editing.undo(link);
    editing.apply(link, adding(100));
    EXPECT_EQ(editing.redoable(link), QString());
    EXPECT_EQ(editing.undoable(link), QStringLiteral("plus 100"));
    EXPECT_EQ(samples(), Samples(4410, 1101));
    EXPECT_EQ(filesIn(QStringLiteral("temp2")).size(), 2);
    editing.undo(link);
    EXPECT_EQ(samples(), Samples(4410, 1001));
    editing.undo(link);
    EXPECT_EQ(samples(), Samples(4410, 1000));
}

TEST_F(TakeEditingTest, WhatChangesOrLeavesNothingIsNoEdit) {
    const QByteArray original = content();
    EXPECT_FALSE(editing.apply(link, adding(0)));
    EXPECT_FALSE(editing.apply(link, {QStringLiteral("weg"), [](const Samples &, int) { return Samples(); }}));
    EXPECT_FALSE(editing.apply(link, trimBoth(3000, 1000)));
    EXPECT_EQ(content(), original);
    EXPECT_EQ(editing.undoable(link), QString());
    EXPECT_TRUE(filesIn(QStringLiteral("temp2")).isEmpty());
}

TEST_F(TakeEditingTest, BothEndsAreCutOffWithAShortFade) {
    editing.apply(link, trimBoth(1000, 4000));
    EXPECT_EQ(editing.undoable(link), QStringLiteral("Begin en einde bijgesneden"));
    const Samples trimmed = samples();
    ASSERT_EQ(trimmed.size(), 3000U);
    EXPECT_LT(trimmed.front(), 20);
    EXPECT_EQ(trimmed[88], 1000);
    EXPECT_EQ(trimmed[3000 - 89], 1000);
    EXPECT_LT(trimmed.back(), 20);
}

TEST_F(TakeEditingTest, EveryTakeHasItsOwnEdits) {
    editing.apply(link, adding(1));
    EXPECT_EQ(editing.undoable(QStringLiteral("LINK2")), QString());
    editing.undo(QStringLiteral("LINK2"));
    editing.forget(QStringLiteral("LINK2"));
    EXPECT_EQ(samples(), Samples(4410, 1001));
    EXPECT_EQ(editing.undoable(link), QStringLiteral("plus 1"));
}

// The take as it was recorded is never lost: it goes where what was recorded and not filed goes.
TEST_F(TakeEditingTest, AForgottenTakeLeavesOnlyWhatWasRecorded) {
    editing.apply(link, adding(1));
    editing.apply(link, adding(10));
    editing.apply(link, adding(100));
    editing.undo(link);
    editing.forget(link);
    EXPECT_TRUE(filesIn(QStringLiteral("temp2")).isEmpty());
    ASSERT_EQ(recovery.kept().size(), 1U);
    EXPECT_EQ(samples(recovery.kept().front().path), Samples(4410, 1000));
    EXPECT_EQ(editing.undoable(link), QString());
    EXPECT_EQ(editing.redoable(link), QString());
    EXPECT_EQ(samples(), Samples(4410, 1011));
}

TEST_F(TakeEditingTest, WhatWasUndoneToTheBeginningLeavesNothing) {
    editing.apply(link, adding(1));
    editing.undo(link);
    editing.forget(link);
    EXPECT_TRUE(filesIn(QStringLiteral("temp2")).isEmpty());
    EXPECT_TRUE(recovery.kept().empty()) << "the take itself is what was recorded";
}

TEST_F(TakeEditingTest, OfVeryManyEditsTheFirstOnesCannotBeUndone) {
    for (std::size_t i = 0; i < TakeEditing::mostSteps + 2; ++i) {
        editing.apply(link, adding(1));
    }
    for (std::size_t i = 0; i < TakeEditing::mostSteps + 2; ++i) {
        editing.undo(link);
    }
    EXPECT_EQ(samples(), Samples(4410, 1002));
    ASSERT_EQ(recovery.kept().size(), 2U);
    EXPECT_EQ(samples(recovery.kept().back().path), Samples(4410, 1000));
}

TEST_F(TakeEditingTest, WhateverFailsLeavesTheTakeAndItsEditsAsTheyWere) {
    editing.apply(link, adding(1));
    editing.apply(link, adding(10));
    editing.undo(link);
    const QByteArray before = content();
    const QStringList files2 = filesIn(QStringLiteral("temp2"));
    const auto expectAsBefore = [&](const char *what) {
        files.heal();
        audioFiles.faults = {};
        EXPECT_EQ(content(), before) << what;
        EXPECT_EQ(filesIn(QStringLiteral("temp2")), files2) << what;
        EXPECT_EQ(editing.undoable(link), QStringLiteral("plus 1")) << what;
        EXPECT_EQ(editing.redoable(link), QStringLiteral("plus 10")) << what;
    };
    audioFiles.faults.create = true;
    EXPECT_THROW(editing.apply(link, adding(100)), RuntimeError);
    expectAsBefore("no file can be made");
    audioFiles.faults.write = 0;
    EXPECT_THROW(editing.apply(link, adding(100)), RuntimeError);
    expectAsBefore("disk full");
    audioFiles.faults.closeFull = true;
    EXPECT_THROW(editing.apply(link, adding(100)), RuntimeError);
    expectAsBefore("disk full at the end");
    audioFiles.faults.readBlock = 0;
    EXPECT_THROW(editing.apply(link, adding(100)), RuntimeError);
    expectAsBefore("the take cannot be read");
    for (const Operation operation : {Operation::Link, Operation::Move}) {
        files.fail(operation, QStringLiteral("LINK1"), ErrorNumber::DiskFull);
        EXPECT_THROW(editing.apply(link, adding(100)), RuntimeError);
        expectAsBefore("an edit that cannot take its place");
        files.fail(operation, QStringLiteral("LINK1"), ErrorNumber::DiskFull);
        EXPECT_THROW(editing.undo(link), RuntimeError);
        expectAsBefore("undoing");
        files.fail(operation, QStringLiteral("LINK1"), ErrorNumber::DiskFull);
        EXPECT_THROW(editing.redo(link), RuntimeError);
        expectAsBefore("doing again");
    }
    editing.redo(link);
    EXPECT_EQ(samples(), Samples(4410, 1011));
}

TEST_F(TakeEditingTest, ATakeThatIsNotThereIsToldAndNothingIsMade) {
    QFile::remove(places.take(link));
    EXPECT_THROW(editing.apply(link, adding(1)), RuntimeError);
    EXPECT_TRUE(filesIn(QStringLiteral("temp2")).isEmpty());
}

// An earlier run was broken off: what lies in the way may be all there is of a take.
TEST_F(TakeEditingTest, WhatLiesInTheWayGoesToRecovery) {
    QFile::copy(places.take(link), places.stageOutput(link));
    QFile::copy(places.take(link), places.takeVersion(link, 1));
    editing.apply(link, adding(1));
    EXPECT_EQ(recovery.kept().size(), 1U);
    EXPECT_TRUE(exists(QStringLiteral("temp2/LINK1.versie-1.wav")));
    editing.undo(link);
    EXPECT_EQ(samples(), Samples(4410, 1000));
}

TEST_F(TakeEditingTest, AFiledTakeAndOneThatIsRecordedAnewTellThatTheyEnd) {
    QStringList ended;
    takes.ended = [&](const QString &name) { ended << name; };
    select(link1);
    record(500);
    EXPECT_EQ(ended, QStringList{link});
    saving.cmdSave_Click();
    EXPECT_EQ(ended, (QStringList{link, link}));
}

// A program that ended in the middle: its take is whole, and what lies beside it is not lost.
TEST_F(TakeEditingTest, AfterACrashTheVersionsAreInRecovery) {
    JournalEntry entry;
    entry.name = link;
    entry.playlist = QStringLiteral("avond.mdb");
    entry.stap = 2;
    entry.phase = JournalEntry::Phase::Kept;
    journal.write(entry);
    editing.apply(link, adding(1));
    editing.apply(link, adding(10));
    QFile::copy(places.take(link), path(QStringLiteral("temp2/LINK12.versie-1.wav")));
    TakeStore later{files, places, journal, recovery, "later"};
    const auto waiting = Unfinished({platform, settings, places, recovery, journal, later, marks, tell}).settle(false);
    EXPECT_EQ(waiting.size(), 1U);
    EXPECT_EQ(samples(), Samples(4410, 1011));
    EXPECT_EQ(filesIn(QStringLiteral("temp2")), QStringList{QStringLiteral("LINK12.versie-1.wav")}) << "another take's";
    EXPECT_EQ(recovery.kept().size(), 2U);
}

} // namespace orvel
