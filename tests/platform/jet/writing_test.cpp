#include "platform/jet/jet_engine.h"
#include "tests/platform/jet/jet_test_support.h"
#include "tests/platform/jet/memory_disk.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <bit>
#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

namespace orvel::test {
namespace {

std::unique_ptr<RecordSet> openSteps(const QString &path) {
    return JetEngine().open(path)->query(QStringLiteral("SELECT * FROM Steps"));
}

void change(RecordSet &rows, int row, const QString &field, const QVariant &value) {
    rows.moveTo(row);
    rows.edit();
    rows.setField(rows.fieldIndex(field), value);
    rows.update();
}

struct Difference {
    qsizetype bytes = 0;
    int bits = 0;
};

Difference difference(const QByteArray &a, const QByteArray &b) {
    Difference result;
    EXPECT_EQ(a.size(), b.size());
    for (qsizetype i = 0; i < std::min(a.size(), b.size()); ++i) {
        const auto bits = static_cast<unsigned char>(a.at(i) ^ b.at(i));
        result.bytes += bits != 0 ? 1 : 0;
        result.bits += std::popcount(bits);
    }
    return result;
}

const QString imported = QStringLiteral("Imported");
const QString mixtype = QStringLiteral("mixtype");

/// Every kind of playlist that there is a sample of.
QStringList playlists() {
    QStringList paths;
    const QStringList names = QDir(fixture({})).entryList({QStringLiteral("*.Steps.tsv")}, QDir::Files, QDir::Name);
    for (const QString &name : names) {
        paths += fixture(name.chopped(QStringLiteral(".Steps.tsv").size()));
    }
    return paths + QStringList(access97());
}

class EveryPlaylist : public ::testing::TestWithParam<QString> {
  protected:
    void SetUp() override {
        if (!QFileInfo::exists(GetParam())) {
            GTEST_SKIP() << "not here: " << GetParam().toStdString();
        }
    }
};

INSTANTIATE_TEST_SUITE_P(Fixtures, EveryPlaylist, ::testing::ValuesIn(playlists()), [](const auto &parameter) {
    return QFileInfo(parameter.param)
        .fileName()
        .replace(QLatin1Char('-'), QLatin1Char('_'))
        .replace(QLatin1Char('.'), QLatin1Char('_'))
        .toStdString();
});

TEST_P(EveryPlaylist, TurnsOneBitForEachMarkAndBack) {
    const WorkCopy copy(GetParam());
    const QByteArray original = copy.content();
    const auto rows = openSteps(copy.path());
    for (int row = 0; row < rows->recordCount(); ++row) {
        const bool before = rows->value(row, rows->fieldIndex(imported)).toBool();
        change(*rows, row, imported, !before);
        EXPECT_EQ(rows->field(imported), QVariant(!before));
        const Difference marked = difference(original, copy.content());
        EXPECT_EQ(marked.bytes, 1) << row;
        EXPECT_EQ(marked.bits, 1) << row;
        change(*rows, row, imported, before);
        EXPECT_EQ(difference(original, copy.content()).bytes, 0) << row;
    }
}

TEST_P(EveryPlaylist, ChangesNothingElseThatOthersRead) {
    const WorkCopy copy(GetParam());
    const auto rows = openSteps(copy.path());
    const bool theyDouble = GetParam().contains(QStringLiteral("moved-rows"));
    if (rows->recordCount() == 0) {
        return;
    }
    const int last = rows->recordCount() - 1;
    const bool before = rows->value(last, rows->fieldIndex(imported)).toBool();
    const QStringList theirsBefore = exported(copy.path(), QStringLiteral("Steps"));
    const QStringList oursBefore = exportLines(*rows);
    change(*rows, last, imported, !before);

    const QStringList oursAfter = exportLines(*openSteps(copy.path()));
    const QStringList theirsAfter = exported(copy.path(), QStringLiteral("Steps"));
    ASSERT_EQ(oursAfter.size(), oursBefore.size());
    for (qsizetype line = 0; line < oursAfter.size(); ++line) {
        EXPECT_EQ(oursAfter.at(line) == oursBefore.at(line), line != last + 1) << line;
        EXPECT_TRUE(theirsAfter.contains(oursAfter.at(line))) << oursAfter.at(line).toStdString();
    }
    if (!theyDouble) {
        EXPECT_EQ(theirsAfter, oursAfter);
    }
    EXPECT_EQ(theirsAfter.size(), theirsBefore.size());
}

TEST_P(EveryPlaylist, ChangesTheMixtype) {
    const WorkCopy copy(GetParam());
    const auto rows = openSteps(copy.path());
    if (rows->recordCount() == 0) {
        return;
    }
    const QByteArray original = copy.content();
    const int column = rows->fieldIndex(mixtype);
    const QVariant before = rows->value(0, column);
    const int wanted = before.toInt() == 3 ? 1 : 3;
    if (GetParam().contains(QStringLiteral("mixtype-indexed"))) {
        rows->edit();
        EXPECT_EQ(errorOf([&] { rows->setField(column, wanted); }), 3164);
        EXPECT_EQ(copy.content(), original);
        return;
    }
    change(*rows, 0, mixtype, wanted);
    EXPECT_EQ(openSteps(copy.path())->value(0, column), QVariant(wanted));
    // The low byte of the number; where it was null, the bit that says so too.
    EXPECT_EQ(difference(original, copy.content()).bytes, before.isNull() ? 2 : 1);
    EXPECT_TRUE(exported(copy.path(), QStringLiteral("Steps")).contains(exportLines(*rows).at(1)));
}

TEST(JetWriting, ANumberOfTwoBytesChangesBoth) {
    const WorkCopy copy(fixture(QStringLiteral("access-2003.mdb")));
    const QByteArray original = copy.content();
    const auto rows = openSteps(copy.path());
    change(*rows, 0, mixtype, -2);
    EXPECT_EQ(rows->field(mixtype), QVariant(-2));
    EXPECT_EQ(difference(original, copy.content()).bytes, 2);
    EXPECT_TRUE(exported(copy.path(), QStringLiteral("Steps")).contains(exportLines(*rows).at(1)));
}

TEST(JetWriting, StoringTheSameValueLeavesTheFileAlone) {
    const WorkCopy copy(fixture(QStringLiteral("access-2003.mdb")));
    const QByteArray original = copy.content();
    const auto rows = openSteps(copy.path());
    change(*rows, 0, imported, rows->field(imported));
    EXPECT_EQ(copy.content(), original);
}

TEST(JetWriting, AFileMarkedReadOnlyOpensButDoesNotChange) {
    const WorkCopy copy(fixture(QStringLiteral("access-2003.mdb")));
    const QByteArray original = copy.content();
    QFile::setPermissions(copy.path(), QFileDevice::ReadOwner | QFileDevice::ReadGroup | QFileDevice::ReadOther);
    const auto rows = openSteps(copy.path());
    EXPECT_EQ(rows->recordCount(), 5);
    EXPECT_EQ(errorOf([&] { change(*rows, 0, imported, false); }), 70);
    EXPECT_EQ(rows->field(imported), QVariant(true));
    EXPECT_EQ(copy.content(), original);
}

/// Another program: a file description of its own, which is what locks belong to.
class OtherProgram {
  public:
    explicit OtherProgram(const QString &path, bool create = false)
        : fd_(::open(QFile::encodeName(path).constData(), O_RDWR | (create ? O_CREAT : 0), 0666)) {
        EXPECT_GE(fd_, 0);
    }
    OtherProgram(const OtherProgram &) = delete;
    OtherProgram &operator=(const OtherProgram &) = delete;
    OtherProgram(OtherProgram &&) = delete;
    OtherProgram &operator=(OtherProgram &&) = delete;
    ~OtherProgram() { ::close(fd_); }

    void lockFile() const { EXPECT_EQ(::flock(fd_, LOCK_SH), 0); }
    void lockRecord() const {
        struct flock range = {};
        range.l_type = F_WRLCK;
        range.l_whence = SEEK_SET;
        range.l_start = 0x10000001;
        range.l_len = 1;
        EXPECT_EQ(::fcntl(fd_, F_OFD_SETLK, &range), 0);
    }
    void overwrite(off_t at, char byte) const { EXPECT_EQ(::pwrite(fd_, &byte, 1, at), 1); }

  private:
    int fd_;
};

class UsedByOthers : public ::testing::Test {
  protected:
    void expectLocked() {
        const QByteArray original = copy_.content();
        EXPECT_EQ(errorOf([&] { change(*rows_, 0, imported, false); }), 3260);
        EXPECT_EQ(copy_.content(), original);
    }
    void expectFree() { EXPECT_NO_THROW(change(*rows_, 0, imported, false)); }
    [[nodiscard]] QString beside(const char *name) const {
        return copy_.folder() + QLatin1Char('/') + QString::fromLatin1(name);
    }

    WorkCopy copy_{fixture(QStringLiteral("access-2003.mdb")), QStringLiteral("Lijst.mdb")};
    std::unique_ptr<RecordSet> rows_ = openSteps(copy_.path());
};

TEST_F(UsedByOthers, AHeldFileIsNotChanged) {
    {
        const OtherProgram other(copy_.path());
        other.lockFile();
        expectLocked();
    }
    {
        const OtherProgram other(copy_.path());
        other.lockRecord();
        expectLocked();
    }
    expectFree();
}

TEST_F(UsedByOthers, AFileWhoseLockFileIsHeldIsNotChanged) {
    for (const char *name : {"Lijst.ldb", "LIJST.LDB", "lijst.laccdb"}) {
        {
            const OtherProgram other(beside(name), true);
            other.lockFile();
            expectLocked();
        }
        const OtherProgram other(beside(name));
        other.lockRecord();
        expectLocked();
    }
    expectFree();
}

TEST_F(UsedByOthers, LeftOverAndForeignLockFilesDoNotCount) {
    const OtherProgram leftOver(beside("Lijst.ldb"), true);
    const OtherProgram foreign(beside("Lijst2.ldb"), true);
    foreign.lockFile();
    // A file name need not be text.
    const QByteArray odd = copy_.folder().toUtf8() + "/\xff\xfe.ldb";
    const int fd = ::open(odd.constData(), O_RDWR | O_CREAT, 0666);
    EXPECT_GE(fd, 0);
    ::close(fd);
    expectFree();
    EXPECT_EQ(::unlink(odd.constData()), 0);
}

TEST_F(UsedByOthers, APageThatChangedMeanwhileIsNotWritten) {
    const OtherProgram other(copy_.path());
    const auto second = openSteps(copy_.path());
    change(*second, 4, imported, false);
    expectLocked();
    rows_->refresh();
    expectFree();
}

TEST_F(UsedByOthers, ADefinitionThatChangedMeanwhileIsNotTrusted) {
    // "mixtype" becomes another name; the rows stay as they are.
    const QString name = QStringLiteral("mixtype");
    const QByteArray stored(reinterpret_cast<const char *>(name.utf16()), 2 * name.size());
    const qsizetype at = copy_.content().indexOf(stored);
    ASSERT_GT(at, 0);
    const OtherProgram other(copy_.path());
    other.overwrite(at, 'M');
    expectLocked();
}

TEST_F(UsedByOthers, AChangeElsewhereInTheFileDoesNotMatter) {
    const OtherProgram other(copy_.path());
    other.overwrite(copy_.content().size() - 1, 'x');
    expectFree();
}

TEST_F(UsedByOthers, ARemovedFileIsAnErrorButWhatWasReadStays) {
    ASSERT_TRUE(QFile::remove(copy_.path()));
    EXPECT_EQ(errorOf([&] { change(*rows_, 0, imported, false); }), 53);
    EXPECT_EQ(errorOf([&] { rows_->refresh(); }), 53);
    EXPECT_EQ(rows_->recordCount(), 5);
    EXPECT_EQ(rows_->value(4, 0), QVariant(true));
}

TEST_F(UsedByOthers, AReplacedFileIsAnError) {
    const auto database = JetEngine().open(copy_.path());
    const QByteArray same = copy_.content();
    ASSERT_TRUE(QFile::remove(copy_.path()));
    writeAll(copy_.path(), same);
    expectLocked();
    EXPECT_EQ(errorOf([&] { rows_->refresh(); }), 75);
    EXPECT_EQ(errorOf([&] { (void)database->query(QStringLiteral("SELECT * FROM Steps")); }), 75);
    EXPECT_EQ(rows_->recordCount(), 5);
}

class FailingDisk : public ::testing::Test {
  protected:
    static std::vector<std::uint8_t> bytesOf(const QByteArray &content) { return {content.begin(), content.end()}; }

    void expectUnchanged(int error) {
        EXPECT_EQ(errorOf([&] { change(*rows_, 0, imported, false); }), error);
        EXPECT_TRUE(disk_.content == original_);
        EXPECT_EQ(rows_->field(imported), QVariant(true));
        // The next attempt works.
        change(*rows_, 0, imported, false);
        EXPECT_FALSE(disk_.content == original_);
    }

    std::vector<std::uint8_t> original_ = bytesOf(readAll(fixture(QStringLiteral("access-2003.mdb"))));
    MemoryDisk disk_{original_};
    std::unique_ptr<RecordSet> rows_ =
        JetEngine(disk_.opener()).open(QStringLiteral("x.mdb"))->query(QStringLiteral("SELECT * FROM Steps"));
};

TEST_F(FailingDisk, AWriteThatStopsHalfwayIsUndone) {
    disk_.writeFailsAfter = 2500;
    expectUnchanged(61);
}

TEST_F(FailingDisk, ASyncThatFailsUndoesTheWrite) {
    disk_.syncFails = true;
    expectUnchanged(57);
}

TEST_F(FailingDisk, ADiskThatGivesSomethingElseBackIsNoticed) {
    disk_.forgetsWrites = true;
    expectUnchanged(75);
}

TEST_F(FailingDisk, EveryUpdateIsSynced) {
    change(*rows_, 0, imported, false);
    EXPECT_EQ(disk_.syncs, 1);
}

} // namespace
} // namespace orvel::test
