// The takes that are recorded and not filed: whose they are, what becomes of earlier ones, and who may use a name.
#include "tests/desk.h"

namespace orvel {

namespace {

using Operation = FaultyFileSystem::Operation;
using Phase = JournalEntry::Phase;

class KeepingTakes : public Desk {
  protected:
    /// What the recorder leaves.
    void recordInto(const Take &into, int frames, std::int16_t sample = 1000) {
        const auto writer = realAudioFiles.wavWriter();
        writer->create(places.take(into.name()), 44100);
        writer->write(std::vector<std::int16_t>(static_cast<std::size_t>(frames), sample));
        writer->close();
    }
    [[nodiscard]] QByteArray sound(const Take &of) const { return disk.read(places.take(of.name())); }
    [[nodiscard]] std::optional<JournalEntry> entry() const { return journal.entry(take.name()); }
    /// A take that was recorded yesterday.
    JournalEntry putEarlier() {
        recordInto(take, 1000, 77);
        JournalEntry earlier{take.name(),
                             take.step.playlist,
                             take.step.stap,
                             Phase::Kept,
                             true,
                             {},
                             QStringLiteral("2026-11-20T20:00:00")};
        journal.write(earlier);
        return earlier;
    }

    const Take take{Take::Kind::Playlist, {QStringLiteral("avond.mdb"), 2, QStringLiteral("LINK1")}, {}};
    TakeStore beside{files, places, journal, recovery, "zij"};
};

} // namespace

TEST_F(KeepingTakes, ANameHasOneUser) {
    EXPECT_TRUE(takes.reserve(take.name()));
    EXPECT_TRUE(takes.reserve(take.name())) << "it has it already";
    EXPECT_FALSE(beside.reserve(take.name()));
    EXPECT_TRUE(beside.reserve(QStringLiteral("ANDER")));
    takes.forget(take.name());
    EXPECT_TRUE(beside.reserve(take.name()));
    EXPECT_FALSE(takes.reserve(take.name()));
}

TEST_F(KeepingTakes, ANameIsFreeWhenItsProgramEnds) {
    {
        TakeStore gone{files, places, journal, recovery, "weg"};
        ASSERT_TRUE(gone.reserve(take.name()));
        EXPECT_EQ(disk.read(places.takeLock(take.name())), "weg") << "people can read who has it";
    }
    EXPECT_TRUE(takes.reserve(take.name()));
}

TEST_F(KeepingTakes, ANameThatLeavesItsFolderIsRefused) {
    try {
        static_cast<void>(takes.reserve(QStringLiteral("../LINK1")));
        ADD_FAILURE();
    } catch (const RuntimeError &error) {
        EXPECT_EQ(error.number(), ErrorNumber::BadFileName);
    }
}

TEST_F(KeepingTakes, ATakeIsOfItsOwnStepOnly) {
    EXPECT_FALSE(takes.isKept(take));
    putEarlier();
    EXPECT_TRUE(takes.isKept(take));
    Take other = take;
    other.step.stap = 4;
    EXPECT_FALSE(takes.isKept(other)) << "another step of that name";
    other = take;
    other.step.playlist = QStringLiteral("nacht.mdb");
    EXPECT_FALSE(takes.isKept(other));
    other = {Take::Kind::Recorder, {{}, 0, take.name()}, {}};
    EXPECT_FALSE(takes.isKept(other));
    journal.remove(take.name());
    EXPECT_TRUE(takes.isKept(other)) << "nobody knows whose it is";
}

TEST_F(KeepingTakes, ATakeWithoutSoundIsNone) {
    recordInto(take, 0);
    EXPECT_FALSE(takes.isKept(take));
    disk.write(places.take(take.name()), "");
    EXPECT_FALSE(takes.isKept(take));
    recordInto(take, 1);
    EXPECT_TRUE(takes.isKept(take));
}

TEST_F(KeepingTakes, TheJournalFollowsATake) {
    takes.begin(take);
    ASSERT_TRUE(entry());
    EXPECT_EQ(entry()->phase, Phase::Recording);
    EXPECT_EQ(entry()->playlist, QStringLiteral("avond.mdb"));
    EXPECT_EQ(entry()->stap, 2);
    const QDateTime begun = QDateTime::fromString(entry()->begun, Qt::ISODate);
    EXPECT_LT(std::abs(begun.secsTo(QDateTime::currentDateTime())), 60);
    recordInto(take, 1000);
    takes.keep(take);
    EXPECT_EQ(entry()->phase, Phase::Kept);
    takes.forget(take.name());
    EXPECT_FALSE(entry());
    EXPECT_TRUE(exists(QStringLiteral("temp/LINK1.wav"))) << "the files are not its business";
}

TEST_F(KeepingTakes, ATakeKeepsTheTimeOfItsBeginning) {
    takes.begin(take);
    JournalEntry early = *entry();
    early.begun = QStringLiteral("2026-11-21T19:00:00");
    journal.write(early);
    recordInto(take, 1000);
    takes.keep(take);
    EXPECT_EQ(entry()->begun, early.begun);
}

TEST_F(KeepingTakes, AnEarlierTakeGoesToRecovery) {
    putEarlier();
    const QByteArray before = sound(take);
    takes.begin(take);
    EXPECT_FALSE(exists(QStringLiteral("temp/LINK1.wav")));
    const auto kept = recovery.kept();
    ASSERT_EQ(kept.size(), 1U);
    EXPECT_EQ(disk.read(kept.front().path), before);
    recordInto(take, 2000);
    takes.keep(take);
    EXPECT_EQ(recovery.kept().size(), 1U) << "and stays there";
}

TEST_F(KeepingTakes, WhenNothingWasRecordedTheEarlierTakeComesBack) {
    const JournalEntry earlier = putEarlier();
    const QByteArray before = sound(take);
    takes.begin(take);
    recordInto(take, 0);
    takes.abandon(take);
    EXPECT_EQ(sound(take), before);
    EXPECT_EQ(entry(), earlier);
    EXPECT_TRUE(recovery.kept().empty());
    EXPECT_TRUE(takes.isKept(take));
}

TEST_F(KeepingTakes, WithoutAnEarlierOneNothingIsLeft) {
    ASSERT_TRUE(takes.reserve(take.name()));
    takes.begin(take);
    recordInto(take, 0);
    takes.abandon(take);
    EXPECT_TRUE(filesIn(QStringLiteral("temp")).isEmpty());
    EXPECT_TRUE(filesIn(QStringLiteral("journal")).isEmpty()) << "nor is the name in use";
    EXPECT_TRUE(beside.reserve(take.name()));
}

TEST_F(KeepingTakes, WhatWasRecordedAllTheSameIsNotThrownAway) {
    putEarlier();
    takes.begin(take);
    recordInto(take, 500, 5);
    const QByteArray recorded = sound(take);
    takes.abandon(take);
    EXPECT_EQ(sound(take), recorded);
    EXPECT_EQ(recovery.kept().size(), 1U) << "the earlier one is not gone either";
}

TEST_F(KeepingTakes, OneThatWasKeptComesBackForNoOther) {
    putEarlier();
    takes.begin(take);
    recordInto(take, 1000);
    takes.keep(take);
    ASSERT_TRUE(QFile::remove(places.take(take.name())));
    takes.abandon(take);
    EXPECT_FALSE(exists(QStringLiteral("temp/LINK1.wav")));
}

// The folder for recovery refused the earlier take: it stayed in its place, but the journal forgot whose it was, and
// after a restart it was not offered.
TEST_F(KeepingTakes, AStartThatCannotKeepTheEarlierTakeChangesNothing) {
    const JournalEntry earlier = putEarlier();
    const QByteArray before = sound(take);
    files.fail(Operation::Move, QStringLiteral("herstel"), ErrorNumber::DiskFull);
    EXPECT_THROW(takes.begin(take), RuntimeError);
    takes.abandon(take);
    EXPECT_EQ(sound(take), before);
    EXPECT_EQ(entry(), earlier);
}

TEST_F(KeepingTakes, AStartThatCannotBeWrittenDownChangesNothing) {
    const JournalEntry earlier = putEarlier();
    const QByteArray before = sound(take);
    files.fail(Operation::Write, QStringLiteral("journal"), ErrorNumber::DiskFull);
    EXPECT_THROW(takes.begin(take), RuntimeError);
    takes.abandon(take);
    EXPECT_EQ(sound(take), before);
    EXPECT_EQ(entry(), earlier);
}

TEST_F(KeepingTakes, AJournalThatCannotBeWrittenOffersTheTakeAsUnfinished) {
    takes.begin(take);
    recordInto(take, 1000);
    files.fail(Operation::Write, QStringLiteral("journal"), ErrorNumber::DiskFull);
    EXPECT_NO_THROW(takes.keep(take));
    EXPECT_EQ(entry()->phase, Phase::Recording);
    EXPECT_TRUE(takes.isKept(take));
}

TEST_F(KeepingTakes, AnEarlierTakeThatCannotComeBackIsStillInRecovery) {
    putEarlier();
    takes.begin(take);
    files.fail(Operation::Move, QStringLiteral("temp"), ErrorNumber::PermissionDenied);
    EXPECT_NO_THROW(takes.abandon(take));
    EXPECT_EQ(recovery.kept().size(), 1U);
}

} // namespace orvel
