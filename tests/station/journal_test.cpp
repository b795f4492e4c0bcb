#include "platform/fake/fake_database.h"
#include "station/journal.h"
#include "station/places.h"
#include "tests/test_platform.h"

#include <QDir>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace orvel {

namespace {

class AJournal : public testing::Test, protected TestPlatform<FakeDatabaseEngine> {
  protected:
    AJournal() { QDir(folder.path()).mkdir(QStringLiteral("journal")); }

    QTemporaryDir folder;
    Places places{folder.path()};
    Journal journal{files, places};
    JournalEntry entry{
        QStringLiteral("É'n naam?"),     QStringLiteral("avond.mdb"),          7, JournalEntry::Phase::Filing, true,
        QStringLiteral("/x/ok/een.mp3"), QStringLiteral("2026-11-21T20:00:00")};
};

} // namespace

TEST_F(AJournal, SaysAfterARestartWhatWasWritten) {
    journal.write(entry);
    EXPECT_EQ(Journal(files, places).entry(entry.name), entry);
    JournalEntry other = entry;
    other.name = QStringLiteral("ander");
    journal.write(other);
    ASSERT_EQ(journal.entries().size(), 2U);
    journal.remove(entry.name);
    EXPECT_FALSE(journal.entry(entry.name));
    EXPECT_EQ(journal.entries().front(), other);
}

TEST_F(AJournal, AnEntryThatCannotBeWrittenLeavesTheOneBefore) {
    journal.write(entry);
    files.fail(FaultyFileSystem::Operation::Write, QStringLiteral(".take"), ErrorNumber::DiskFull);
    JournalEntry next = entry;
    next.phase = JournalEntry::Phase::Kept;
    EXPECT_THROW(journal.write(next), RuntimeError);
    EXPECT_EQ(journal.entry(entry.name), entry);
}

TEST_F(AJournal, WhatIsNoEntryIsPassedOver) {
    disk.write(places.journalEntry(QStringLiteral("stuk")), "{\"name\":");
    disk.write(places.journalEntry(QStringLiteral("leeg")), "");
    disk.write(places.journalEntry(QStringLiteral("fase")), R"({"name":"fase","phase":"slaapt"})");
    disk.write(places.journalEntry(QStringLiteral("hernoemd")), R"({"name":"ander","phase":"kept"})");
    EXPECT_TRUE(journal.entries().empty());
}

} // namespace orvel
