// Catalogues lie on a server: opening and looking things up must not stop the window.
#include "platform/away/away_raw_file.h"
#include "platform/fake/fake_prompts.h"
#include "platform/jet/error.h"
#include "platform/jet/jet_engine.h"
#include "platform/runtime_error.h"
#include "tests/platform/away/gate.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QThread>

#include <gtest/gtest.h>

namespace orvel {

namespace {

const QString databases = QStringLiteral(ORVEL_SOURCE_DIR "/tests/data/databases/");

/// Every value of a table, row by row.
QStringList contentOf(DatabaseEngine &engine, const QString &path) {
    const auto steps = engine.open(path)->query(QStringLiteral("SELECT * FROM Steps ORDER BY [Stap]"));
    QStringList all;
    for (int row = 0; row < steps->recordCount(); ++row) {
        for (int column = 0; column < steps->fieldCount(); ++column) {
            all << steps->value(row, column).toString();
        }
    }
    return all;
}

class AwayDatabase : public testing::Test {
  protected:
    [[nodiscard]] QString copyOf(const QString &name) const {
        const QString path = folder.filePath(name);
        QFile::copy(databases + name, path);
        QFile::setPermissions(path, QFile::ReadOwner | QFile::WriteOwner);
        return path;
    }

    QTemporaryDir folder;
    FakePrompts prompts;
    AwayWork work{prompts};
    JetEngine direct;
    JetEngine away{awayOpener(work, QStringLiteral("/nergens"))};
};

} // namespace

TEST_F(AwayDatabase, HoldsWhatItHoldsWhenItIsReadDirectly) {
    for (const char *name : {"access-2003.mdb", "steps-150.mdb", "moved-rows.mdb", "unicode.mdb"}) {
        const QString path = copyOf(QString::fromLatin1(name));
        const QStringList expected = contentOf(direct, path);
        EXPECT_FALSE(expected.isEmpty()) << name;
        EXPECT_EQ(contentOf(away, path), expected) << name;
    }
    EXPECT_TRUE(prompts.waitedFor.isEmpty());
}

TEST_F(AwayDatabase, IsWrittenLikeAnyOther) {
    const QString here = copyOf(QStringLiteral("access-2003.mdb"));
    const QString there = folder.filePath(QStringLiteral("daar.mdb"));
    QFile::copy(here, there);
    const auto mark = [](DatabaseEngine &engine, const QString &path) {
        const auto steps = engine.open(path)->query(QStringLiteral("SELECT * FROM Steps ORDER BY [Stap]"));
        steps->moveTo(2);
        const bool isMarked = steps->field(QStringLiteral("Imported")).toBool();
        steps->edit();
        steps->setField(steps->fieldIndex(QStringLiteral("Imported")), !isMarked);
        steps->update();
    };
    mark(direct, here);
    mark(away, there);
    QFile one(here);
    QFile other(there);
    ASSERT_TRUE(one.open(QIODevice::ReadOnly) && other.open(QIODevice::ReadOnly));
    EXPECT_EQ(one.readAll(), other.readAll());
}

TEST_F(AwayDatabase, AMissingFileIsMissing) {
    try {
        static_cast<void>(away.open(folder.filePath(QStringLiteral("weg.mdb"))));
        FAIL() << "nothing was thrown";
    } catch (const RuntimeError &error) {
        EXPECT_EQ(error.number(), ErrorNumber::FileNotFound);
    }
}

TEST_F(AwayDatabase, AServerThatHangsIsNotWaitedForWhenThePresenterGoesOn) {
    const auto gate = std::make_shared<test::Gate>();
    const QString path = copyOf(QStringLiteral("access-2003.mdb"));
    // The opener of the real file, behind the gate.
    gate->close();
    prompts.patience = 10;
    try {
        work.run(folder.path(), [gate] { gate->pass(); });
        FAIL() << "nothing was thrown";
    } catch (const RuntimeError &error) {
        EXPECT_EQ(error.number(), ErrorNumber::DiskNotReady);
    }
    try {
        static_cast<void>(away.open(path));
        FAIL() << "nothing was thrown";
    } catch (const RuntimeError &error) {
        EXPECT_TRUE(error.description().contains(QStringLiteral("geen antwoord"))) << error.what();
    }
    gate->open();
    QThread::msleep(100);
    EXPECT_NO_THROW(static_cast<void>(away.open(path)));
}

} // namespace orvel
