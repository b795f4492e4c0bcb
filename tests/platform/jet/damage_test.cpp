#include "platform/jet/jet_engine.h"
#include "tests/platform/jet/exercise.h"
#include "tests/platform/jet/jet_builder.h"
#include "tests/platform/jet/jet_test_support.h"
#include "tests/platform/jet/memory_disk.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFileInfo>

#include <algorithm>
#include <random>
#include <sys/resource.h>

namespace orvel::test {
namespace {

Bytes bytesOf(const QString &path) {
    const QByteArray content = readAll(path);
    return {content.begin(), content.end()};
}

/// Databases to be damaged: one of each generation, and those with rows, maps and indexes out of the ordinary.
std::vector<Bytes> seeds() {
    std::vector<Bytes> result;
    for (const char *name : {"access-2003.mdb", "access-2007.accdb", "moved-rows.mdb", "deleted-rows.mdb",
                             "indexed.mdb", "unicode.mdb", "steps-150.mdb", "stations-null-digit.mdb"}) {
        result.push_back(bytesOf(fixture(QString::fromLatin1(name))));
    }
    if (QFileInfo::exists(access97())) {
        result.push_back(bytesOf(access97()));
    }
    for (const bool jet3 : {true, false}) {
        JetBuilder builder(jet3);
        builder.columns = {{.name = "Memo", .type = 12, .number = 0, .fixed = false, .place = 0},
                           {.name = "Getal", .type = 4, .number = 1, .place = 0, .length = 4},
                           {.name = "Geld", .type = 5, .number = 2, .place = 4, .length = 8},
                           {.name = "Vlag", .type = 1, .number = 3, .place = 0, .length = 1}};
        const std::uint32_t last = builder.addLongValue(little(0, 4) + Bytes(200, 'b'));
        const std::uint32_t first = builder.addLongValue(little(last, 4) + Bytes(200, 'a'));
        for (unsigned i = 0; i < 20; ++i) {
            builder.addRow(builder.row({{0, JetBuilder::memo(400, 0, first)}, {1, little(i, 4)}, {3, {}}}));
        }
        builder.mapOfMaps = true;
        result.push_back(builder.build());
    }
    return result;
}

/// The pages that say where things are make up a small part of a file; most of the damage should hit them.
std::size_t somewhere(const Bytes &bytes, std::mt19937 &random) {
    const std::size_t pageSize = bytes[0x14] == 0 ? 2048 : 4096;
    const std::size_t page = random() % std::max<std::size_t>(1, bytes.size() / pageSize);
    const std::size_t within = random() % 2 == 0 ? random() % 64 : random() % pageSize;
    return std::min(page * pageSize + within, bytes.size() - 1);
}

void damage(Bytes &bytes, std::mt19937 &random) {
    constexpr std::uint8_t awkward[] = {0x00, 0x01, 0x3f, 0x40, 0x7f, 0x80, 0xc0, 0xfe, 0xff};
    const unsigned count = 1 + random() % 8;
    for (unsigned i = 0; i < count; ++i) {
        std::uint8_t &byte = bytes[somewhere(bytes, random)];
        byte = random() % 2 == 0 ? static_cast<std::uint8_t>(byte ^ (1U << (random() % 8)))
                                 : awkward[random() % std::size(awkward)];
    }
}

long peakKiB() {
    struct rusage usage = {};
    ::getrusage(RUSAGE_SELF, &usage);
    return usage.ru_maxrss;
}

TEST(DamagedDatabases, UndamagedSeedsGiveValues) {
    for (const Bytes &seed : seeds()) {
        EXPECT_GT(exerciseDatabase(seed), 0);
    }
}

TEST(DamagedDatabases, EveryTruncationGivesRowsOrAnError) {
    for (const Bytes &seed : seeds()) {
        const std::size_t step = std::max<std::size_t>(1, seed.size() / 150) | 1U;
        for (std::size_t length = 0; length < seed.size(); length += step) {
            exerciseDatabase(std::span(seed).first(length));
        }
    }
}

TEST(DamagedDatabases, ATruncatedPlaylistNeverLosesStepsInSilence) {
    for (const char *name : {"access-2003.mdb", "moved-rows.mdb", "steps-150.mdb"}) {
        const Bytes whole = bytesOf(fixture(QString::fromLatin1(name)));
        const QString statement = QStringLiteral("SELECT * FROM Steps");
        MemoryDisk disk(whole);
        JetEngine engine(disk.opener());
        const int steps = engine.open({})->query(statement)->recordCount();
        int errors = 0;
        for (std::size_t length = whole.size(); length > 0; length -= std::min<std::size_t>(length, 1021)) {
            disk.content.resize(length);
            try {
                EXPECT_EQ(engine.open({})->query(statement)->recordCount(), steps) << length;
            } catch (const RuntimeError &error) {
                EXPECT_EQ(error.number(), ErrorNumber::DatabaseDamaged);
                ++errors;
            }
        }
        EXPECT_GT(errors, 50);
    }
}

TEST(DamagedDatabases, RandomDamageGivesRowsOrAnErrorInLittleTimeAndMemory) {
    std::mt19937 random(19971);
    const std::vector<Bytes> originals = seeds();
    const long before = peakKiB();
    qint64 slowest = 0;
    for (int round = 0; round < 3000; ++round) {
        Bytes bytes = originals[static_cast<std::size_t>(round) % originals.size()];
        damage(bytes, random);
        QElapsedTimer timer;
        timer.start();
        exerciseDatabase(bytes);
        slowest = std::max(slowest, timer.elapsed());
    }
    EXPECT_LT(slowest, 5000);
    EXPECT_LT(peakKiB() - before, 200 * 1024);
}

TEST(DamagedDatabases, NoiseForStatementsIsRefused) {
    std::mt19937 random(4);
    const std::string pieces[] = {"SELECT", "*",  "FROM",  "[",  "]", "Steps", "WHERE",    "=",
                                  "-",      "12", "ORDER", "BY", ";", "'",     "\xc3\xa9", "9999999999999999999",
                                  " "};
    for (int round = 0; round < 5000; ++round) {
        std::string text;
        for (auto i = random() % 12; i > 0; --i) {
            text += pieces[random() % std::size(pieces)] + (random() % 2 == 0 ? " " : "");
        }
        const Bytes bytes = plain(text);
        exerciseStatement(bytes);
    }
}

} // namespace
} // namespace orvel::test
