// Playlists as they come from other programs: every kind of file, every oddity, with what the presenter sees.
#include "platform/runtime_error.h"
#include "station.h"

#include <QComboBox>
#include <QFileInfo>

#include <algorithm>

namespace orvel {

namespace {

const QString databases_ = QStringLiteral(ORVEL_SOURCE_DIR "/tests/data/databases/");

/// The rows that an independent library reads from a playlist, in step order: field name (lower case) to text.
std::vector<QMap<QString, QString>> independentRows(const QString &tsvPath) {
    QFile file(tsvPath);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << tsvPath.toStdString();
    QStringList lines = QString::fromUtf8(file.readAll()).split(u'\n', Qt::SkipEmptyParts);
    QStringList names;
    for (const QString &column : lines.takeFirst().split(u'\t')) {
        names << column.section(u':', 0, 0).toLower();
    }
    std::vector<QMap<QString, QString>> rows;
    for (const QString &line : lines) {
        const QStringList values = line.split(u'\t');
        QMap<QString, QString> row;
        for (qsizetype i = 0; i < names.size(); ++i) {
            row.insert(names.at(i), values.value(i));
        }
        rows.push_back(row);
    }
    std::stable_sort(rows.begin(), rows.end(), [](const auto &a, const auto &b) {
        return a[QStringLiteral("stap")].toInt() < b[QStringLiteral("stap")].toInt();
    });
    return rows;
}

QString described(const QVariant &value) {
    if (value.isNull()) {
        return QStringLiteral("\\N");
    }
    return value.typeId() == QMetaType::QDateTime ? value.toDateTime().toString(QStringLiteral("yyyy-MM-ddTHH:mm"))
                                                  : value.toString();
}

/// What the grid shows for a value that an independent reader gives.
QString shownFor(const QString &field, const QString &value) {
    if (value == QStringLiteral("\\N") || field == QStringLiteral("imported")) {
        return {};
    }
    if (field == QStringLiteral("tijd")) {
        EXPECT_TRUE(value.startsWith(QStringLiteral("1899-12-30T"))) << value.toStdString();
        return value.mid(11);
    }
    if (field == QStringLiteral("intro") || field == QStringLiteral("outtro")) {
        const qint64 tenths = (value.toLongLong() + 50) / 100;
        return QStringLiteral("%1,%2").arg(tenths / 10).arg(tenths % 10);
    }
    const QStringList mixTypes = {QStringLiteral("Geen Mix"), QStringLiteral("Normale Mix"), QStringLiteral("Intro"),
                                  QStringLiteral("Outtro")};
    return field == QStringLiteral("mixtype") ? mixTypes.value(value.toInt(), value) : value;
}

class Fixtures : public Station {
  protected:
    void openFixture(const QString &name) {
        addPlaylist(name);
        ASSERT_TRUE(start());
        open(name);
    }
    void clickRow(int row) {
        QTableView &grid = *window->panels().gridPanel->dbgLijst;
        const QModelIndex cell = grid.model()->index(row, StapColumn);
        grid.scrollTo(cell);
        QTest::mouseClick(grid.viewport(), Qt::LeftButton, {}, grid.visualRect(cell).center());
    }
    /// Chooses a mix type in the grid's drop-down.
    void chooseMixType(int row, int code) {
        QTableView &grid = *window->panels().gridPanel->dbgLijst;
        const QModelIndex cell = grid.model()->index(row, MixtypeColumn);
        grid.setCurrentIndex(cell);
        grid.edit(cell);
        auto *cobMixType = grid.findChild<QComboBox *>(QStringLiteral("cobMixType"));
        ASSERT_NE(cobMixType, nullptr);
        cobMixType->setCurrentIndex(code);
        Q_EMIT cobMixType->activated(code);
    }
    [[nodiscard]] QString storedMixTypes(const QString &name) const {
        Playlist fresh(const_cast<JetEngine &>(databases), [](const QString &) {});
        fresh.open(path(QStringLiteral("new")), name);
        QStringList codes;
        for (int row = 0; row < fresh.stepCount(); ++row) {
            codes << described(fresh.value(row, MixtypeColumn));
        }
        return codes.join(u' ');
    }
};

class ReadableFixtures : public Fixtures, public testing::WithParamInterface<const char *> {};

} // namespace

TEST_P(ReadableFixtures, TheGridShowsWhatAnIndependentReaderSeesAndNothingIsChanged) {
    // The content decides what a file is, and the list shows *.mdb.
    const QString fixture = QString::fromLatin1(GetParam());
    const QString name = QFileInfo(fixture).baseName() + QStringLiteral(".mdb");
    addPlaylist(fixture, name);
    ASSERT_TRUE(start());
    open(name);
    const auto rows = independentRows(databases_ + fixture + QStringLiteral(".Steps.tsv"));
    ASSERT_EQ(window->workplace().datList.stepCount(), static_cast<int>(rows.size()));
    ASSERT_FALSE(rows.empty());
    const QAbstractItemModel &grid = *window->panels().gridPanel->dbgLijst->model();
    ASSERT_EQ(grid.rowCount(), static_cast<int>(rows.size()));
    for (int row = 0; row < grid.rowCount(); ++row) {
        for (int column = 0; column < grid.columnCount(); ++column) {
            const QString field = QString::fromLatin1(stepField(column).name).toLower();
            const QString theirs = rows.at(static_cast<std::size_t>(row)).value(field);
            const QModelIndex cell = grid.index(row, column);
            EXPECT_EQ(described(window->workplace().datList.value(row, column)), theirs)
                << row << ' ' << field.toStdString();
            EXPECT_EQ(cell.data().toString(), shownFor(field, theirs)) << row << ' ' << field.toStdString();
            if (field == QStringLiteral("imported")) {
                EXPECT_EQ(cell.data(Qt::CheckStateRole).toInt() == Qt::Checked, theirs == QStringLiteral("true"));
            }
        }
    }
    EXPECT_TRUE(window->panels().gridPanel->dbgLijst->isVisible());
    QFile original(databases_ + fixture);
    ASSERT_TRUE(original.open(QIODevice::ReadOnly));
    EXPECT_EQ(content(QStringLiteral("new/") + name), original.readAll());
}

INSTANTIATE_TEST_SUITE_P(Files, ReadableFixtures,
                         testing::Values("access-2003.mdb", "access-2007.accdb", "all-imported.mdb", "deleted-rows.mdb",
                                         "empty-atrack.mdb", "fields-other-order.mdb", "indexed.mdb",
                                         "mixtype-indexed.mdb", "moved-rows.mdb", "no-pres.mdb", "null-atrack.mdb",
                                         "null-mixtype.mdb", "pres-at-149.mdb", "pres-first-and-last.mdb",
                                         "rows-out-of-order.mdb", "stap-with-gaps.mdb", "steps-150.mdb",
                                         "text-trackid.mdb", "type-codes.mdb", "unicode.mdb"),
                         [](const auto &given) {
                             return QString::fromLatin1(given.param).section(u'.', 0, 0).remove(u'-').toStdString();
                         });

TEST_F(Fixtures, APlaylistOfJetThreeOpensAndIsMarked) {
    const QString source = QStringLiteral(ORVEL_SOURCE_DIR "/../shared/fixtures/access-97.mdb");
    if (!QFileInfo::exists(source)) {
        GTEST_SKIP() << "access-97.mdb is not on this machine";
    }
    const QString name = QStringLiteral("oud.mdb");
    ASSERT_TRUE(QFile::copy(source, path(QStringLiteral("new/") + name)));
    QFile::setPermissions(path(QStringLiteral("new/") + name), QFile::ReadOwner | QFile::WriteOwner);
    ASSERT_TRUE(start());
    open(name);
    const auto rows = independentRows(source + QStringLiteral(".Steps.tsv"));
    ASSERT_EQ(window->workplace().datList.stepCount(), static_cast<int>(rows.size()));
    for (int row = 0; row < window->workplace().datList.stepCount(); ++row) {
        EXPECT_EQ(described(window->workplace().datList.value(row, AtrackColumn)),
                  rows.at(static_cast<std::size_t>(row))[QStringLiteral("atrack")]);
    }
    const QByteArray before = content(QStringLiteral("new/") + name);
    const bool wasImported = imported(1);
    select(1);
    mark(window->panels().gridPanel->currentRow(), !wasImported);
    const QByteArray after = content(QStringLiteral("new/") + name);
    ASSERT_EQ(before.size(), after.size());
    int changed = 0;
    for (qsizetype i = 0; i < before.size(); ++i) {
        changed += before.at(i) == after.at(i) ? 0 : 1;
    }
    EXPECT_EQ(changed, 1);
}

TEST_F(Fixtures, APlaylistWithoutStepsOpensEmptyAndSelectsNothing) {
    addPlaylist(QStringLiteral("no-steps.mdb"));
    ASSERT_TRUE(start());
    open(QStringLiteral("no-steps.mdb"));
    EXPECT_EQ(window->panels().gridPanel->steps().rowCount(), 0);
    EXPECT_FALSE(window->workplace().step.StepSelected);
    EXPECT_FALSE(window->panels().recorderPanel->cmdRec->isEnabled());
}

TEST_F(Fixtures, AStepWithATextForItsTrackNumberIsReportedWhereTheNumberIsNeeded) {
    openFixture(QStringLiteral("text-trackid.mdb"));
    // A number that stands in a text is a number.
    clickRow(0);
    EXPECT_EQ(window->workplace().step.PreviewTrackId, 12);
    // A presentation step needs none.
    clickRow(1);
    EXPECT_EQ(window->workplace().step.VoiceTrackName, QStringLiteral("VT2"));
    prompts.expectReport(QStringLiteral("Fout 13 tijdens de uitvoering:"));
    clickRow(2);
    EXPECT_EQ(prompts.open(), 0U);
    EXPECT_FALSE(window->workplace().step.StepSelected);
}

TEST_F(Fixtures, AnEmptyMixTypeIsShownBlankAndCanBeSet) {
    const QString name = QStringLiteral("null-mixtype.mdb");
    openFixture(name);
    EXPECT_TRUE(window->panels().gridPanel->steps().index(0, MixtypeColumn).data().toString().isEmpty());
    chooseMixType(0, 2);
    EXPECT_TRUE(storedMixTypes(name).startsWith(QStringLiteral("2 \\N"))) << storedMixTypes(name).toStdString();
    EXPECT_EQ(window->panels().gridPanel->steps().index(0, MixtypeColumn).data().toString(), QStringLiteral("Intro"));
}

TEST_F(Fixtures, AMixTypeThatIsIndexedIsRefusedAndNothingChanges) {
    const QString name = QStringLiteral("mixtype-indexed.mdb");
    openFixture(name);
    const QByteArray before = content(QStringLiteral("new/") + name);
    const int present = window->workplace().datList.value(0, MixtypeColumn).toInt();
    EXPECT_THROW(window->panels().gridPanel->steps().setData(
                     window->panels().gridPanel->steps().index(0, MixtypeColumn), present == 3 ? 0 : 3),
                 RuntimeError);
    EXPECT_EQ(content(QStringLiteral("new/") + name), before);
    EXPECT_EQ(window->workplace().datList.value(0, MixtypeColumn).toInt(), present);
    // The mark is in no index: recording and saving work.
    mark(window->panels().gridPanel->currentRow(), true);
    EXPECT_TRUE(imported(window->panels().gridPanel->currentRow()));
}

TEST_F(Fixtures, StepNumbersWithGapsGetTheTimesOfOtherPositions) {
    openFixture(QStringLiteral("stap-with-gaps.mdb"));
    // Steps 2, 5, 9 and 14 stand at positions 1 to 4; step 5 reads positions 4 and 6.
    clickRow(1);
    ASSERT_EQ(window->workplace().step.VoiceTrackName, QStringLiteral("VT5"));
    EXPECT_EQ(window->workplace().step.PrevOutroMs, 2000);
    EXPECT_EQ(window->workplace().step.NextIntroMs, 0);
    EXPECT_EQ(window->workplace().step.TalkTotalMs, 2000);
}

TEST_F(Fixtures, AnEmptyFileNameIsAFileName) {
    openFixture(QStringLiteral("empty-atrack.mdb"));
    clickRow(1);
    EXPECT_TRUE(window->workplace().step.StepSelected);
    EXPECT_TRUE(window->workplace().step.VoiceTrackName.isEmpty());
    EXPECT_TRUE(window->panels().recorderPanel->cmdRec->isEnabled());
}

TEST_F(Fixtures, MovedAndDeletedRowsKeepTheirPlaceWhenTheyAreMarked) {
    for (const char *fixture : {"moved-rows.mdb", "deleted-rows.mdb", "indexed.mdb", "unicode.mdb"}) {
        const QString name = QString::fromLatin1(fixture);
        addPlaylist(name);
    }
    ASSERT_TRUE(start());
    for (const char *fixture : {"moved-rows.mdb", "deleted-rows.mdb", "indexed.mdb", "unicode.mdb"}) {
        const QString name = QString::fromLatin1(fixture);
        open(name);
        const int last = window->workplace().datList.stepCount() - 1;
        select(last);
        const bool before = imported(last);
        mark(window->panels().gridPanel->currentRow(), !before);
        window->panels().gridPanel->refresh();
        auto rows = independentRows(databases_ + name + QStringLiteral(".Steps.tsv"));
        rows.back()[QStringLiteral("imported")] = before ? QStringLiteral("false") : QStringLiteral("true");
        ASSERT_EQ(window->workplace().datList.stepCount(), static_cast<int>(rows.size())) << fixture;
        for (int row = 0; row <= last; ++row) {
            for (int column = 0; column < StepColumnCount; ++column) {
                const QString field = QString::fromLatin1(stepField(column).name).toLower();
                EXPECT_EQ(described(window->workplace().datList.value(row, column)),
                          rows.at(static_cast<std::size_t>(row))[field])
                    << fixture << ' ' << row << ' ' << field.toStdString();
            }
        }
    }
}

} // namespace orvel
