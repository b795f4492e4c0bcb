// The playlist lists and the step grid.
#include "station.h"

#include <QAbstractItemModelTester>
#include <QComboBox>

namespace orvel {

TEST_F(Station, AClickOpensAPlaylistAndShowsItsStepsInOrder) {
    addPlaylist(demo);
    ASSERT_TRUE(start());
    EXPECT_FALSE(window->panels().gridPanel->dbgLijst->isVisible());
    open(demo);
    EXPECT_TRUE(window->panels().gridPanel->dbgLijst->isVisible());
    StepsModel &steps = window->panels().gridPanel->steps();
    const QAbstractItemModelTester tester(&steps, QAbstractItemModelTester::FailureReportingMode::Fatal);
    for (int row = 0; row < steps.rowCount(); ++row) {
        EXPECT_EQ(steps.index(row, StapColumn).data().toInt(), row + 1);
    }
    for (int column = 0; column < StepColumnCount; ++column) {
        EXPECT_EQ(window->panels().gridPanel->dbgLijst->isColumnHidden(column), column > AtrackColumn) << column;
    }
    EXPECT_EQ(steps.headerData(3, Qt::Horizontal, Qt::DisplayRole).toString(), QStringLiteral("Uitvoerder"));
}

TEST_F(Station, OnlyTheMixTypeCanBeEditedAndIsStoredAtOnce) {
    addPlaylist(demo);
    ASSERT_TRUE(start());
    open(demo);
    StepsModel &steps = window->panels().gridPanel->steps();
    for (int column = 0; column < StepColumnCount; ++column) {
        EXPECT_EQ(steps.flags(steps.index(0, column)).testFlag(Qt::ItemIsEditable), column == MixtypeColumn);
    }
    QTableView &grid = *window->panels().gridPanel->dbgLijst;
    grid.edit(steps.index(0, MixtypeColumn));
    auto *cobMixType = grid.findChild<QComboBox *>(QStringLiteral("cobMixType"));
    ASSERT_NE(cobMixType, nullptr);
    EXPECT_EQ(cobMixType->count(), 4);
    EXPECT_EQ(cobMixType->itemText(1), QStringLiteral("Normale Mix"));
    const int other = cobMixType->currentIndex() == 3 ? 0 : 3;
    cobMixType->setCurrentIndex(other);
    Q_EMIT cobMixType->activated(other);
    Playlist fresh(databases, [](const QString &) {});
    fresh.open(path(QStringLiteral("new")), demo);
    EXPECT_EQ(fresh.value(0, MixtypeColumn).toInt(), other);
}

TEST_F(Station, APresentationStepShowsTheTalkOverTimesInTheUsersLocale) {
    addPlaylist(demo);
    ASSERT_TRUE(start());
    open(demo);
    int row = 0;
    while (window->workplace().datList.value(row, TypeColumn).toInt() != PresStep) {
        ++row;
    }
    select(row);
    const int stap = row + 1;
    const int outro = window->workplace().datList.outtro(stap - 1);
    const int intro = window->workplace().datList.intro(stap + 1);
    const StepPanel &panel = *window->panels().stepPanel;
    EXPECT_EQ(window->workplace().step.TalkTotalMs, outro + intro);
    EXPECT_EQ(panel.barRec->maximum(), outro + intro);
    EXPECT_EQ(panel.barRec->value(), outro + intro);
    EXPECT_EQ(panel.barRec->barColour(), QColor(0, 0, 255));
    EXPECT_TRUE(panel.lblIntro->isVisible());
    // 3410 ms before it and 6240 ms behind it.
    EXPECT_EQ(panel.lblOuttro->text(), QStringLiteral("Outtro : 3,4"));
    EXPECT_EQ(panel.lblIntro->text(), QStringLiteral("Intro : 6,2"));
    EXPECT_EQ(panel.lblInOut->text(), QStringLiteral("Totaal : 9,65 sec"));
    EXPECT_EQ(panel.lblBestand->text(), window->workplace().step.VoiceTrackName);
    EXPECT_TRUE(window->panels().recorderPanel->cmdRec->isEnabled());
    EXPECT_FALSE(window->panels().playbackPanel->cmdPlay->isEnabled());
}

TEST_F(Station, AnotherStepHidesTheTimesAndLeavesTheListenButtonAsItWas) {
    addPlaylist(QStringLiteral("pres-first-and-last.mdb"));
    ASSERT_TRUE(start());
    open(QStringLiteral("pres-first-and-last.mdb"));
    select(0);
    // The first step has no outro before it.
    EXPECT_EQ(window->workplace().step.PrevOutroMs, 0);
    EXPECT_EQ(window->workplace().step.TalkTotalMs, window->workplace().datList.intro(2));
    mark(0, true);
    window->panels().gridPanel->dbgLijst_RowColChange();
    select(1);
    EXPECT_FALSE(window->panels().stepPanel->lblIntro->isVisible());
    EXPECT_EQ(window->panels().stepPanel->barRec->value(), 0);
    EXPECT_TRUE(window->panels().playbackPanel->cmdPlay->isEnabled());
    EXPECT_EQ(window->panels().stepPanel->lblBestand->text(), QStringLiteral("geen bestand"));
    EXPECT_FALSE(window->panels().recorderPanel->cmdRec->isEnabled());
    EXPECT_FALSE(window->panels().savePanel->cmdImport->isEnabled());
}

TEST_F(Station, AHundredFiftyStepsAreFineOneMoreIsTooMany) {
    addPlaylist(QStringLiteral("steps-150.mdb"));
    addPlaylist(QStringLiteral("steps-151.mdb"));
    ASSERT_TRUE(start());
    open(QStringLiteral("steps-150.mdb"));
    EXPECT_EQ(window->panels().gridPanel->steps().rowCount(), 150);
    prompts.expectReport(QStringLiteral("Fout 9 tijdens de uitvoering:"));
    open(QStringLiteral("steps-151.mdb"));
    EXPECT_FALSE(window->panels().gridPanel->dbgLijst->isVisible());
    EXPECT_FALSE(window->panels().recorderPanel->cmdRec->isEnabled());
}

TEST_F(Station, AStepOutsideTheTimeTablesIsReported) {
    addPlaylist(QStringLiteral("pres-at-149.mdb"));
    ASSERT_TRUE(start());
    open(QStringLiteral("pres-at-149.mdb"));
    select(148);
    EXPECT_EQ(window->workplace().step.VoiceTrackName, window->workplace().datList.value(148, AtrackColumn).toString());
    EXPECT_TRUE(window->panels().stepPanel->lblIntro->isVisible());
    if (window->workplace().datList.value(149, TypeColumn).toInt() == PresStep) {
        prompts.expectReport(QStringLiteral("Fout 9 "));
        select(149);
    }
}

struct BadPlaylist {
    const char *fixture;
    int errorNumber;
};

class BadPlaylists : public Station, public testing::WithParamInterface<BadPlaylist> {};

TEST_P(BadPlaylists, IsReportedAndNothingChanges) {
    const QString name = QString::fromLatin1(GetParam().fixture);
    addPlaylist(name);
    ASSERT_TRUE(start());
    const QByteArray before = content(QStringLiteral("new/") + name);
    prompts.expectReport(QStringLiteral("Fout %1 tijdens de uitvoering:").arg(GetParam().errorNumber));
    open(name);
    EXPECT_FALSE(window->panels().gridPanel->dbgLijst->isVisible());
    EXPECT_FALSE(window->panels().recorderPanel->cmdRec->isEnabled());
    EXPECT_EQ(content(QStringLiteral("new/") + name), before);
}

INSTANTIATE_TEST_SUITE_P(Fixtures, BadPlaylists,
                         testing::Values(BadPlaylist{"null-intro.mdb", 13}, BadPlaylist{"null-outtro.mdb", 13},
                                         BadPlaylist{"missing-field.mdb", 3265},
                                         BadPlaylist{"no-steps-table.mdb", 3078}),
                         [](const auto &given) {
                             return QString::fromLatin1(given.param.fixture).chopped(4).remove(u'-').toStdString();
                         });

TEST_F(Station, FilesThatAreNoPlaylistsAreReportedAndStay) {
    const QByteArray whole = [] {
        QFile file(QStringLiteral(ORVEL_SOURCE_DIR "/tests/data/databases/access-2003.mdb"));
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }();
    ASSERT_FALSE(whole.isEmpty());
    const QMap<QString, QByteArray> bad = {{QStringLiteral("leeg.mdb"), {}},
                                           {QStringLiteral("tekst.mdb"), "Dit is geen playlist.\n"},
                                           {QStringLiteral("kort.mdb"), whole.left(9000)}};
    for (auto it = bad.begin(); it != bad.end(); ++it) {
        disk.write(path(QStringLiteral("new/") + it.key()), it.value());
    }
    ASSERT_TRUE(start());
    for (auto it = bad.begin(); it != bad.end(); ++it) {
        prompts.expectReport(QStringLiteral("Fout 3343 tijdens de uitvoering:"));
        open(it.key());
        EXPECT_EQ(content(QStringLiteral("new/") + it.key()), it.value());
        EXPECT_EQ(prompts.open(), 0U) << it.key().toStdString();
    }
}

TEST_F(Station, APlaylistRemovedBetweenTheListAndTheClickIsReported) {
    addPlaylist(demo);
    ASSERT_TRUE(start());
    QFile::remove(path(QStringLiteral("new/") + demo));
    prompts.expectReport(QStringLiteral("Fout 53 tijdens de uitvoering:"));
    open(demo);
}

TEST_F(Station, RowsThatCannotBeConvertedAreReported) {
    addPlaylist(QStringLiteral("null-atrack.mdb"));
    ASSERT_TRUE(start());
    open(QStringLiteral("null-atrack.mdb"));
    int row = 0;
    while (row < window->workplace().datList.stepCount() &&
           !window->workplace().datList.value(row, AtrackColumn).isNull()) {
        ++row;
    }
    ASSERT_LT(row, window->workplace().datList.stepCount());
    prompts.expectReport(QStringLiteral("Fout 13 tijdens de uitvoering:"));
    QTableView &grid = *window->panels().gridPanel->dbgLijst;
    if (row > 0) {
        grid.scrollTo(grid.model()->index(row, StapColumn));
        QTest::mouseClick(grid.viewport(), Qt::LeftButton, {},
                          grid.visualRect(grid.model()->index(row, StapColumn)).center());
    } else {
        window->panels().gridPanel->selectRow(1);
        QTest::mouseClick(grid.viewport(), Qt::LeftButton, {},
                          grid.visualRect(grid.model()->index(0, StapColumn)).center());
    }
}

TEST_F(Station, APlaylistWithoutPresentationsKeepsTheCountOfTheOneBefore) {
    addPlaylist(demo);
    addPlaylist(QStringLiteral("no-pres.mdb"));
    ASSERT_TRUE(start());
    open(demo);
    const std::int16_t count = window->workplace().datList.presCount();
    EXPECT_GT(count, 0);
    open(QStringLiteral("no-pres.mdb"));
    EXPECT_EQ(window->workplace().datList.presCount(), count);
}

TEST_F(Station, FieldsInAnotherOrderStandInTheirOwnColumns) {
    addPlaylist(QStringLiteral("fields-other-order.mdb"));
    ASSERT_TRUE(start());
    open(QStringLiteral("fields-other-order.mdb"));
    EXPECT_EQ(window->panels().gridPanel->steps().index(0, StapColumn).data().toInt(), 1);
    EXPECT_EQ(window->workplace().datList.value(0, TypeColumn).toInt(), 1);
}

TEST_F(Station, DoubleClickPreviewsOnlyTracksAndJingles) {
    const QString everyType = QStringLiteral("type-codes.mdb");
    addPlaylist(everyType);
    ASSERT_TRUE(start());
    open(everyType);
    ASSERT_EQ(window->workplace().datList.stepCount(), 61);
    int previews = 0;
    for (int row = 0; row < window->workplace().datList.stepCount(); ++row) {
        select(row);
        const int type = window->workplace().datList.value(row, TypeColumn).toInt();
        ASSERT_EQ(type, row) << "step n has type n - 1";
        const bool wanted = type == 1 || type == 3;
        previews += wanted ? 1 : 0;
        window->panels().gridPanel->dbgLijst_DblClick();
        auto *preview = window->findChild<frmPreview *>();
        EXPECT_EQ(preview != nullptr && preview->isVisible(), wanted) << row;
        if (wanted) {
            EXPECT_EQ(window->workplace().step.PreviewKind, type);
            EXPECT_EQ(window->workplace().step.PreviewTrackId,
                      window->workplace().datList.value(row, TrackidColumn).toInt());
            preview->close();
        }
    }
    EXPECT_EQ(previews, 2);
}

TEST_F(Station, StepTypesHaveTheStationsColours) {
    configure(QStringLiteral("[Colors]\nMusBack=1\nPresBack=2\nJingBack=3\nTijdBack=4\nEventBack=5\nRecBack=6\n"
                             "MusTxt=257\nPresTxt=258\njingTxt=259\nTijdTxt=260\nEventTxt=261\nRecTxt=262"));
    addPlaylist(QStringLiteral("type-codes.mdb"));
    ASSERT_TRUE(start());
    open(QStringLiteral("type-codes.mdb"));
    // Per type code from 0 to 60: t(rack), p(resentation), j(ingle), z for the time, e(vent), r for advertising.
    const QByteArray kinds = ".tpjez....rrrrrr....eeeeee....eeeee.....eeeeeeee..eee........";
    const QByteArray order = "tpjzer";
    const StepsModel &steps = window->panels().gridPanel->steps();
    ASSERT_EQ(steps.rowCount(), kinds.size());
    for (int row = 0; row < steps.rowCount(); ++row) {
        const qsizetype kind = order.indexOf(kinds.at(row));
        for (const int column : {StapColumn, AtrackColumn}) {
            const QVariant back = steps.index(row, column).data(Qt::BackgroundRole);
            const QVariant text = steps.index(row, column).data(Qt::ForegroundRole);
            ASSERT_EQ(back.isValid(), kind >= 0) << row;
            ASSERT_EQ(text.isValid(), kind >= 0) << row;
            if (kind >= 0) {
                // Red is the low byte, green the next one.
                const int number = static_cast<int>(kind) + 1;
                EXPECT_EQ(back.value<QBrush>().color(), QColor(number, 0, 0)) << row;
                EXPECT_EQ(text.value<QBrush>().color(), QColor(number, 1, 0)) << row;
            }
        }
    }
}

// A damaged column gave seven error boxes in five repaints: the grid asks again with every one of them.
TEST_F(Station, AValueThatCannotBeReadIsAnEmptyCellAndToldOnce) {
    addPlaylist(demo);
    const QString file = path(QStringLiteral("new/")) + demo;
    QByteArray damaged = disk.read(file);
    constexpr qsizetype placeOfMinutes = 205034; // where a row has them, in the table's definition
    ASSERT_EQ(damaged.at(placeOfMinutes), '\x0E');
    damaged[placeOfMinutes] = '\x84';
    disk.write(file, damaged);
    ASSERT_TRUE(start());
    open(demo);
    QTableView &grid = *window->panels().gridPanel->dbgLijst;
    const StepsModel &steps = window->panels().gridPanel->steps();
    QStringList unreadable;
    for (int row = 0; row < steps.rowCount(); ++row) {
        for (int column = 0; column < steps.columnCount(); ++column) {
            const QModelIndex cell = steps.index(row, column);
            if (!cell.data(Qt::ToolTipRole).toString().isEmpty()) {
                EXPECT_EQ(cell.data(), QVariant());
                unreadable << QStringLiteral("%1 %2").arg(row).arg(QString::fromLatin1(stepField(column).name));
            }
        }
    }
    // The row in the middle is long enough to have something there.
    EXPECT_EQ(unreadable.join(u','), QStringLiteral("0 LengteMin,1 LengteMin,3 LengteMin,4 LengteMin"));
    const QString told = window->panels().lblStatus->text();
    EXPECT_TRUE(told.startsWith(QStringLiteral("Niet alles in deze playlist is leesbaar, "))) << told.toStdString();
    window->panels().lblStatus->clear();
    for (int repaint = 0; repaint < 5; ++repaint) {
        grid.scrollTo(steps.index(repaint, StapColumn));
        grid.viewport()->repaint();
    }
    EXPECT_EQ(window->panels().lblStatus->text(), QString()) << "told once";
    EXPECT_EQ(prompts.open(), 0U) << "no box";
    open(demo);
    EXPECT_EQ(window->panels().lblStatus->text(), told) << "a playlist that is opened again";
}

TEST_F(Station, ChangingTheTabRefreshesBothLists) {
    ASSERT_TRUE(start());
    addPlaylist(demo, QStringLiteral("É'n \"naam\" met spaties.MDB"));
    disk.write(path(QStringLiteral("ok/klaar.mdb")), "x");
    EXPECT_EQ(window->panels().filePanel->filNew->count(), 0);
    window->panels().filePanel->tabFiles->setCurrentIndex(1);
    EXPECT_EQ(window->panels().filePanel->filNew->count(), 1);
    EXPECT_EQ(window->panels().filePanel->filOK->count(), 1);
    window->panels().filePanel->tabFiles->setCurrentIndex(0);
    open(QStringLiteral("É'n \"naam\" met spaties.MDB"));
    EXPECT_TRUE(window->panels().gridPanel->dbgLijst->isVisible());
}

} // namespace orvel
