#include "platform/jet/jet_engine.h"
#include "platform/jet/rc4.h"
#include "tests/platform/jet/jet_builder.h"
#include "tests/platform/jet/jet_test_support.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>

#include <sys/stat.h>

namespace orvel::test {
namespace {

std::unique_ptr<RecordSet> openSteps(const QString &path) {
    return JetEngine().open(path)->query(QStringLiteral("SELECT * FROM Steps"));
}

class OpeningBadFiles : public ::testing::Test {
  protected:
    int errorOfFile(const QByteArray &content) {
        const QString path = folder_.filePath(QStringLiteral("lijst.mdb"));
        writeAll(path, content);
        return errorOf([&] { (void)openSteps(path); });
    }

    /// A database whose first page was changed under its encoding.
    template <typename Change>
    QByteArray withHeader(const QString &name, const Change &change) {
        QByteArray content = readAll(fixture(name));
        const std::span<std::uint8_t> coded(reinterpret_cast<std::uint8_t *>(content.data()) + 0x18, 128);
        jet::rc4(0x6b39dac7, coded);
        change(content);
        jet::rc4(0x6b39dac7, coded);
        return content;
    }

    QTemporaryDir folder_;
};

TEST_F(OpeningBadFiles, WhatIsNoDatabaseIsRefused) {
    EXPECT_EQ(errorOfFile({}), 3343);
    EXPECT_EQ(errorOfFile("Dit is gewoon tekst.\n"), 3343);
    EXPECT_EQ(errorOfFile(QByteArray(100000, 'x')), 3343);
    EXPECT_EQ(errorOfFile(QByteArray(100000, '\0')), 3343);
    EXPECT_EQ(errorOfFile(readAll(fixture(QStringLiteral("steps-150.mdb"))).left(20)), 3343);
}

TEST_F(OpeningBadFiles, AMissingFileOrFolderIsNotFound) {
    EXPECT_EQ(errorOf([&] { (void)JetEngine().open(folder_.filePath(QStringLiteral("niets.mdb"))); }), 53);
    EXPECT_EQ(errorOf([&] { (void)JetEngine().open(folder_.filePath(QStringLiteral("geen/niets.mdb"))); }), 53);
    EXPECT_EQ(errorOf([&] { (void)JetEngine().open({}); }), 53);
}

TEST_F(OpeningBadFiles, AFolderOrAPipeIsNoDatabase) {
    EXPECT_EQ(errorOf([&] { (void)JetEngine().open(folder_.path()); }), 3343);
    const QString pipe = folder_.filePath(QStringLiteral("pijp.mdb"));
    ASSERT_EQ(::mkfifo(QFile::encodeName(pipe).constData(), 0666), 0);
    EXPECT_EQ(errorOf([&] { (void)JetEngine().open(pipe); }), 3343);
}

TEST_F(OpeningBadFiles, APasswordIsToldInWords) {
    const QByteArray content =
        withHeader(QStringLiteral("access-2003.mdb"), [](QByteArray &bytes) { bytes[0x42] = 'x'; });
    EXPECT_EQ(errorOfFile(content), 70);
    try {
        (void)openSteps(folder_.filePath(QStringLiteral("lijst.mdb")));
    } catch (const RuntimeError &error) {
        EXPECT_EQ(error.description(), QStringLiteral("Geen toegang: de database is beveiligd met een wachtwoord"));
        EXPECT_EQ(error.file(), folder_.filePath(QStringLiteral("lijst.mdb")));
    }
}

TEST_F(OpeningBadFiles, AnEncryptionOfItsOwnIsRefused) {
    EXPECT_EQ(errorOfFile(withHeader(QStringLiteral("access-2007.accdb"), [](QByteArray &bytes) { bytes[0x3e] = 1; })),
              70);
}

TEST_F(OpeningBadFiles, AVersionFromTheFutureIsRefused) {
    QByteArray content = readAll(fixture(QStringLiteral("access-2007.accdb")));
    content[0x14] = 7;
    EXPECT_EQ(errorOfFile(content), 3343);
}

TEST_F(OpeningBadFiles, EveryKnownVersionIsReadAndWritten) {
    // Files of Access 2019, version 6, were refused as unknown.
    for (char version = 1; version <= 6; ++version) {
        const WorkCopy copy(fixture(QStringLiteral("access-2007.accdb")));
        QByteArray content = copy.content();
        content[0x14] = version;
        writeAll(copy.path(), content);
        SCOPED_TRACE(int{version});
        const auto rows = openSteps(copy.path());
        EXPECT_EQ(exportLines(*rows), exported(copy.path(), QStringLiteral("Steps")));
        const bool before = rows->field(0).toBool();
        rows->edit();
        rows->setField(0, !before);
        rows->update();
        EXPECT_EQ(openSteps(copy.path())->field(0), QVariant(!before));
        EXPECT_EQ(exportLines(*rows), exported(copy.path(), QStringLiteral("Steps")));
    }
}

TEST_F(OpeningBadFiles, ContentDecidesNotTheName) {
    const WorkCopy copy(fixture(QStringLiteral("access-2007.accdb")), QStringLiteral("Lijst van „café”.mdb"));
    EXPECT_EQ(openSteps(copy.path())->recordCount(), 5);
}

TEST_F(OpeningBadFiles, NamesThatHaveNoPlaceOnDiskAreRefused) {
    EXPECT_EQ(errorOf([&] { (void)JetEngine().open(QString(QChar(0xd800))); }), 52);
}

TEST(JetOpening, MissingTablesAndFieldsAreToldByName) {
    EXPECT_EQ(errorOf([] { (void)openSteps(fixture(QStringLiteral("no-steps-table.mdb"))); }), 3078);
    EXPECT_EQ(errorOf([] { (void)openSteps(fixture(QStringLiteral("stations-empty.mdb"))); }), 3078);
    const auto rows = openSteps(fixture(QStringLiteral("missing-field.mdb")));
    EXPECT_EQ(errorOf([&] { (void)rows->field(QStringLiteral("Outtro")); }), 3265);
}

TEST(JetOpening, NullsSortFirstAndTextWithoutCase) {
    const auto rows = JetEngine()
                          .open(fixture(QStringLiteral("unicode.mdb")))
                          ->query(QStringLiteral("SELECT * FROM Steps ORDER BY Titel"));
    QStringList titles;
    for (int row = 0; row < rows->recordCount(); ++row) {
        titles += rows->value(row, rows->fieldIndex(QStringLiteral("Titel"))).toString();
    }
    EXPECT_EQ(titles, QStringList({QStringLiteral("ÀÉÎÕÜ ßñç"), QStringLiteral("Één café, naïef – €5"),
                                   QStringLiteral("Œuvre “citaat”"), QStringLiteral("Ночь над городом"),
                                   QStringLiteral("夜の駅")}));
}

} // namespace
} // namespace orvel::test
