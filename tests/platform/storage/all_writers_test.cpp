// Whatever writes a file meets the same disk: one double, and the same faults for takes, MP3 files, databases, settings
// and copies.
#include "platform/fake/faulty_storage.h"
#include "platform/ini_file.h"
#include "platform/jet/jet_engine.h"
#include "platform/lame/system_audio_files.h"
#include "platform/qt/disk_file_system.h"
#include "platform/sndfile/take_writer.h"
#include "tests/platform/audio/full_disk.h"
#include "tests/platform/audio/temp_folder.h"

#include <cerrno>
#include <functional>
#include <gtest/gtest.h>
#include <ostream>

namespace orvel {
namespace {

using test::contentOf;
using test::counting;
using test::errorOf;

/// Something that writes "doel" in a folder where "bron" lies beside it.
struct Writer {
    const char *name;
    /// What is there before; empty: a database.
    QByteArray before;
    std::function<void(Storage &, const QString &folder)> write;
    /// Whether the file is replaced as one step, by a rename after the last byte; others are made first, or changed.
    bool isOneStep = true;
    bool isChangedInPlace = false;
};

void PrintTo(const Writer &writer, std::ostream *out) {
    *out << writer.name;
}

QString target(const QString &folder) {
    return folder + QStringLiteral("/doel");
}

QByteArray bytesOf(const std::vector<std::int16_t> &samples) {
    return {reinterpret_cast<const char *>(samples.data()), static_cast<qsizetype>(samples.size() * 2)};
}

void writeTake(Storage &storage, const QString &folder) {
    TakeWriter writer(target(folder), {}, storage);
    writer.push(counting(44100));
    writer.flush();
    writer.push(counting(100, 44100));
    writer.finish();
}

void writeWav(Storage &storage, const QString &folder) {
    const auto writer = SystemAudioFiles(storage).wavWriter();
    writer->create(target(folder), 44100);
    writer->write(counting(44100));
    writer->close();
}

void writeMp3(Storage &storage, const QString &folder) {
    const auto writer = SystemAudioFiles(storage).mp3Writer();
    writer->setFormat({.sampleRate = 44100, .channels = 2, .kbitPerSecond = 128});
    writer->setInput(44100, 1);
    writer->create(target(folder));
    if (writer->errorState() < 0) {
        throw RuntimeError(ErrorNumber::InternalError); // this writer does not tell why it cannot begin
    }
    writer->write(bytesOf(counting(44100)));
    writer->close();
}

void markStep(Storage &storage, const QString &folder) {
    JetEngine engine(jet::storageOpener(storage));
    const auto steps = engine.open(target(folder))->query(QStringLiteral("SELECT * FROM Steps ORDER BY [Stap]"));
    const bool isMarked = steps->field(QStringLiteral("Imported")).toBool();
    steps->edit();
    steps->setField(steps->fieldIndex(QStringLiteral("Imported")), !isMarked);
    steps->update();
}

void saveSettings(Storage &storage, const QString &folder) {
    DiskFileSystem files(storage);
    IniFile settings(files, target(folder));
    settings.setValue(QStringLiteral("Audio"), QStringLiteral("Format"), QStringLiteral("3"));
    settings.save();
}

void copyFile(Storage &storage, const QString &folder) {
    DiskFileSystem(storage).copy(folder + QStringLiteral("/bron"), target(folder), {});
}

void moveToOtherDisk(Storage &storage, const QString &folder) {
    DiskFileSystem files(storage);
    files.link(folder + QStringLiteral("/bron"), folder + QStringLiteral("/weg"));
    files.move(folder + QStringLiteral("/weg"), target(folder));
}

class EveryWriter : public testing::TestWithParam<Writer> {
  protected:
    EveryWriter() {
        test::writeContent(folder.path("bron"), QByteArray(700'000, 'n'));
        QByteArray before = GetParam().before;
        if (before.isEmpty()) {
            before = contentOf(QStringLiteral(ORVEL_SOURCE_DIR "/tests/data/databases/access-2003.mdb"));
        }
        test::writeContent(doel(), before);
        before_ = before;
    }

    [[nodiscard]] QString doel() const { return target(folder.path()); }
    int error() {
        return errorOf([&] { GetParam().write(storage, folder.path()); });
    }
    /// What the writer makes of the file on a disk without faults; everything is as before afterwards.
    QByteArray made() {
        GetParam().write(systemStorage(), folder.path());
        const QByteArray content = contentOf(doel());
        test::writeContent(doel(), before_);
        return content;
    }
    void expectAsBefore(const QString &when) {
        EXPECT_EQ(contentOf(doel()), before_) << when.toStdString();
        EXPECT_TRUE(QDir(folder.path()).entryList({".orvel*"}, QDir::Files | QDir::Hidden).isEmpty());
    }

    test::TempFolder folder;
    FaultyStorage storage;
    QByteArray before_;
};

TEST_P(EveryWriter, ChangesTheFile) {
    EXPECT_NE(made(), before_);
    EXPECT_EQ(error(), 0);
    EXPECT_NE(contentOf(doel()), before_);
}

TEST_P(EveryWriter, TellsADiskThatIsFullAtAnyByte) {
    const QByteArray whole = made();
    const qsizetype end = GetParam().isChangedInPlace ? 4096 : whole.size();
    for (const qsizetype bytes : {qsizetype{0}, qsizetype{1}, qsizetype{9}, end / 2, end - 1}) {
        storage.fillUpAt(bytes, QStringLiteral("doel"));
        EXPECT_EQ(error(), 61) << bytes;
        if (GetParam().isOneStep || GetParam().isChangedInPlace) {
            expectAsBefore(QString::number(bytes));
        }
        storage.heal();
        test::writeContent(doel(), before_);
    }
    storage.fillUpAt(whole.size());
    EXPECT_EQ(error(), 0) << "what just fits is fine";
    EXPECT_EQ(contentOf(doel()), whole);
}

TEST_P(EveryWriter, TellsAWriteThatFails) {
    storage.fail(FaultyStorage::Call::Write, EIO, QStringLiteral("doel"), 1);
    EXPECT_EQ(error(), 57);
    storage.heal();
    storage.fail(FaultyStorage::Call::Write, ENOTCONN, QStringLiteral("doel"), 1);
    EXPECT_EQ(error(), 71);
}

TEST_P(EveryWriter, TellsASyncThatFails) {
    for (const auto &[code, number] : {std::pair(EIO, 57), std::pair(ENOSPC, 61), std::pair(EDQUOT, 61),
                                       std::pair(ENOTCONN, 71), std::pair(EROFS, 70)}) {
        storage.fail(FaultyStorage::Call::Sync, code, QStringLiteral("doel"));
        EXPECT_EQ(error(), number) << code;
        if (GetParam().isOneStep || GetParam().isChangedInPlace) {
            expectAsBefore(QString::number(code));
        }
        storage.heal();
    }
}

TEST_P(EveryWriter, WorksOnADiskThatCannotSync) {
    const QByteArray whole = made();
    for (const int code : {EINVAL, ENOTSUP, ENOSYS}) {
        test::writeContent(doel(), before_);
        storage.fail(FaultyStorage::Call::Sync, code);
        EXPECT_EQ(error(), 0) << code;
        EXPECT_EQ(contentOf(doel()), whole) << code;
    }
}

TEST_P(EveryWriter, LeavesWhatWasThereWhereItsNewNameIsRefused) {
    if (GetParam().isChangedInPlace) {
        GTEST_SKIP() << "gives nothing a name";
    }
    for (const auto &[code, number] : {std::pair(EACCES, 70), std::pair(EIO, 57), std::pair(ESTALE, 71)}) {
        storage.fail(FaultyStorage::Call::Rename, code, QStringLiteral("doel"));
        const int told = error();
        EXPECT_TRUE(told == number || told == static_cast<int>(ErrorNumber::InternalError)) << code << " " << told;
        expectAsBefore(QString::number(code));
        storage.heal();
        QFile::remove(folder.path("weg"));
    }
}

TEST_P(EveryWriter, TellsWhatADiskSaysOnlyAtTheEnd) {
    if (GetParam().isChangedInPlace) {
        GTEST_SKIP() << "reads back what it wrote instead";
    }
    storage.fail(FaultyStorage::Call::Close, EDQUOT, QStringLiteral("doel"));
    EXPECT_EQ(error(), 61);
    if (GetParam().isOneStep) {
        expectAsBefore(QStringLiteral("close"));
    }
}

INSTANTIATE_TEST_SUITE_P(Storage, EveryWriter,
                         testing::Values(Writer{"take", "oud", writeTake, false}, Writer{"wav", "oud", writeWav, false},
                                         Writer{"mp3", "oud", writeMp3, false},
                                         Writer{"database", {}, markStep, false, true},
                                         Writer{"settings", "[Audio]\r\nFormat=1\r\n", saveSettings},
                                         Writer{"copy", "oud", copyFile}),
                         [](const auto &writer) { return writer.param.name; });

// What another disk gets is copied: a move meets the faults of a copy, and what was to be moved stays.
TEST(MoveToOtherDisk, KeepsTheSourceWhereTheCopyFails) {
    const test::TempFolder folder;
    FaultyStorage storage;
    test::writeContent(folder.path("bron"), QByteArray(1000, 'n'));
    storage.fail(FaultyStorage::Call::Sync, EIO);
    storage.fail(FaultyStorage::Call::Rename, EXDEV, QStringLiteral("doel"));
    EXPECT_EQ(errorOf([&] { moveToOtherDisk(storage, folder.path()); }), 57);
    EXPECT_EQ(contentOf(folder.path("weg")), QByteArray(1000, 'n'));
    EXPECT_FALSE(QFile::exists(folder.path("doel")));
}

TEST(RepairOnABadDisk, TellsASyncThatFails) {
    const test::TempFolder folder;
    FaultyStorage storage;
    writeTake(systemStorage(), folder.path());
    QFile take(target(folder.path()));
    ASSERT_TRUE(take.resize(44 + 2000));
    storage.fail(FaultyStorage::Call::Sync, EIO);
    EXPECT_EQ(errorOf([&] { SystemAudioFiles(storage).repairWav(target(folder.path())); }), 57);
}

} // namespace
} // namespace orvel
