// Which files are playlists, and what is remembered about them.
#include "platform/database.h"
#include "platform/jet/jet_engine.h"
#include "platform/runtime_error.h"
#include "playlist/playlist_check.h"

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace orvel {

namespace {

/// The real engine, with a count and with files that somebody holds.
class CountingEngine : public DatabaseEngine {
  public:
    std::unique_ptr<Database> open(const QString &path) override {
        ++opened;
        if (locked) {
            throw RuntimeError(ErrorNumber::DatabaseLocked, path);
        }
        return real_.open(path);
    }
    int opened = 0;
    bool locked = false;

  private:
    JetEngine real_;
};

class Checking : public testing::Test {
  protected:
    void put(const char *fixture, const char *name) {
        const QString target = folder.filePath(QString::fromLatin1(name));
        QFile::remove(target);
        const QString source = QStringLiteral(ORVEL_SOURCE_DIR "/tests/data/databases/") + QString::fromLatin1(fixture);
        ASSERT_TRUE(QFile::copy(source, target));
        QFile::setPermissions(target, QFile::ReadOwner | QFile::WriteOwner);
    }
    void write(const char *name, const QByteArray &content) {
        QFile file(folder.filePath(QString::fromLatin1(name)));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(content);
    }
    QString problem(const char *name) { return check.problem(folder.path(), QString::fromLatin1(name)); }

    QTemporaryDir folder;
    CountingEngine databases;
    PlaylistCheck check{databases};
};

} // namespace

TEST_F(Checking, APlaylistHasNoProblemAndAnotherFileSaysWhy) {
    put("access-2003.mdb", "goed.mdb");
    write("tekst.mdb", "Dit is geen playlist.");
    write("leeg.mdb", "");
    EXPECT_EQ(problem("goed.mdb"), QString());
    EXPECT_TRUE(problem("tekst.mdb").startsWith(describe(ErrorNumber::DatabaseDamaged)));
    EXPECT_FALSE(problem("leeg.mdb").isEmpty());
    EXPECT_FALSE(problem("weg.mdb").isEmpty());
}

TEST_F(Checking, AFileIsReadOnceUntilItChanges) {
    put("access-2003.mdb", "een.mdb");
    write("twee.mdb", "geen playlist");
    for (int round = 0; round < 3; ++round) {
        EXPECT_TRUE(problem("een.mdb").isEmpty());
        EXPECT_FALSE(problem("twee.mdb").isEmpty());
    }
    EXPECT_EQ(databases.opened, 2);
    write("een.mdb", "nu ook niet meer");
    EXPECT_FALSE(problem("een.mdb").isEmpty());
    put("access-2003.mdb", "twee.mdb");
    EXPECT_TRUE(problem("twee.mdb").isEmpty());
}

TEST_F(Checking, AFileThatWasHeldByAnotherProgramIsTriedAgain) {
    put("access-2003.mdb", "een.mdb");
    databases.locked = true;
    EXPECT_TRUE(problem("een.mdb").startsWith(describe(ErrorNumber::DatabaseLocked)));
    databases.locked = false;
    EXPECT_TRUE(problem("een.mdb").isEmpty());
}

} // namespace orvel
