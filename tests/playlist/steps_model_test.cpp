// What the grid's views are told.
#include "platform/fake/fake_database.h"
#include "windows/steps_model.h"

#include <QAbstractItemModelTester>
#include <QBrush>
#include <QDateTime>
#include <QSignalSpy>

#include <array>
#include <gtest/gtest.h>

namespace orvel {

namespace {

const QString file = QStringLiteral("/new/lijst.mdb");

class Steps : public testing::Test {
  protected:
    Steps() {
        QStringList header;
        for (const StepField &field : stepFields) {
            header << QString::fromLatin1(field.name);
        }
        QList<QVariantList> rows;
        for (int stap = 1; stap <= 4; ++stap) {
            QVariantList row(StepColumnCount, QVariant(0));
            row[ImportedColumn] = false;
            row[StapColumn] = stap;
            row[AtrackColumn] = QStringLiteral("VT%1").arg(stap);
            row[TypeColumn] = PresStep;
            row[IntroColumn] = 6240;
            row[OuttroColumn] = 3360;
            rows << row;
        }
        databases.setTable(file, QStringLiteral("Steps"), header, rows);
    }

    void open() {
        model.rebuild([&] { playlist.close(); });
        model.rebuild([&] { playlist.open(QStringLiteral("/new"), QStringLiteral("lijst.mdb")); });
    }

    FakeDatabaseEngine databases;
    Playlist playlist{databases, [](const QString &) {}};
    StepsModel model{playlist};
    QAbstractItemModelTester tester{&model, QAbstractItemModelTester::FailureReportingMode::Fatal};
    QSignalSpy told{&model, &StepsModel::unreadable};
};

} // namespace

// Intro and outro stood in the grid as thousandths of a second, which nobody talks in.
TEST_F(Steps, TalkTimesAreShownInSecondsAndStayWhatTheyAreInTheFile) {
    open();
    EXPECT_EQ(model.index(0, IntroColumn).data().toString(), QLocale().toString(6.2, 'f', 1));
    EXPECT_EQ(model.index(0, OuttroColumn).data().toString(), QLocale().toString(3.4, 'f', 1));
    EXPECT_EQ(model.index(0, IntroColumn).data(Qt::EditRole).toInt(), 6240);
    EXPECT_EQ(model.index(0, IntroColumn).data(Qt::TextAlignmentRole).toInt(), Qt::AlignRight | Qt::AlignVCenter);
    EXPECT_EQ(model.index(0, StapColumn).data().toString(), QStringLiteral("1"));
}

TEST_F(Steps, AStepThatIsVoicedPerStationTellsForHowMany) {
    open();
    QSignalSpy changed(&model, &StepsModel::dataChanged);
    model.setStations({{1, {2, 4, {QStringLiteral("Noord"), QStringLiteral("Zuid")}}}, {2, {4, 4, {}}}});
    EXPECT_EQ(changed.size(), 2);
    EXPECT_FALSE(model.index(0, ImportedColumn).data().isValid());
    EXPECT_EQ(model.index(1, ImportedColumn).data().toString(), QStringLiteral("2 van 4"));
    EXPECT_EQ(model.index(1, StapColumn).data(Qt::ToolTipRole).toString(),
              QStringLiteral("Nog geen versie voor: Noord, Zuid."));
    EXPECT_EQ(model.index(2, ImportedColumn).data().toString(), QStringLiteral("4 van 4"));
    EXPECT_FALSE(model.index(2, StapColumn).data(Qt::ToolTipRole).isValid());
    model.setStations({});
    EXPECT_FALSE(model.index(1, ImportedColumn).data().isValid());
    EXPECT_EQ(changed.size(), 4);
}

TEST_F(Steps, NothingThatAViewAsksForThrows) {
    open();
    databases.fail(FakeDatabaseEngine::Call::Value, ErrorNumber::DatabaseDamaged);
    const auto askForEverything = [this] {
        for (int row = 0; row < model.rowCount(); ++row) {
            for (int column = 0; column < model.columnCount(); ++column) {
                const QModelIndex cell = model.index(row, column);
                for (int role = Qt::DisplayRole; role <= Qt::SizeHintRole; ++role) {
                    if (role != Qt::ToolTipRole && role != Qt::TextAlignmentRole) {
                        EXPECT_FALSE(cell.data(role).isValid()) << row << ' ' << column << ' ' << role;
                    }
                }
                EXPECT_EQ(cell.data(Qt::ToolTipRole).toString(), describe(ErrorNumber::DatabaseDamaged));
            }
        }
    };
    askForEverything();
    ASSERT_EQ(told.size(), 1);
    EXPECT_EQ(told.first().first().toString(),
              QStringLiteral("Niet alles in deze playlist is leesbaar, zoals OK in rij 1: ") +
                  describe(ErrorNumber::DatabaseDamaged));
    model.rebuild([&] { playlist.refresh(); });
    askForEverything();
    EXPECT_EQ(told.size(), 1) << "the same playlist, read again";
    databases.clearFailure(FakeDatabaseEngine::Call::Value);
    EXPECT_FALSE(model.index(0, StapColumn).data(Qt::ToolTipRole).isValid());
    open();
    databases.fail(FakeDatabaseEngine::Call::Value, ErrorNumber::DatabaseDamaged);
    askForEverything();
    EXPECT_EQ(told.size(), 2) << "opened again";
}

// New colours reset the model: whoever had a row had none any more.
TEST_F(Steps, NewColoursLeaveEveryIndexInPlace) {
    open();
    const QPersistentModelIndex row(model.index(2, StapColumn));
    const QSignalSpy resets(&model, &StepsModel::modelAboutToBeReset);
    const QSignalSpy changes(&model, &StepsModel::dataChanged);
    model.setStyles({{QStringLiteral("Pres"), {0x0000FF, 0xFF0000}}});
    EXPECT_TRUE(resets.isEmpty());
    EXPECT_TRUE(row.isValid());
    ASSERT_EQ(changes.size(), 1);
    EXPECT_EQ(changes.first().at(0).toModelIndex(), model.index(0, 0));
    EXPECT_EQ(changes.first().at(1).toModelIndex(), model.index(3, StepColumnCount - 1));
    EXPECT_EQ(row.data(Qt::BackgroundRole).value<QBrush>().color(), QColor(255, 0, 0));
    EXPECT_EQ(row.data(Qt::ForegroundRole).value<QBrush>().color(), QColor(0, 0, 255));
}

TEST_F(Steps, CaptionsAndLooksAreThoseOfTheTable) {
    open();
    QStringList captions;
    QString alignments;
    QString editable;
    QString ticks;
    for (int column = 0; column < model.columnCount(); ++column) {
        const QModelIndex cell = model.index(1, column);
        captions << model.headerData(column, Qt::Horizontal, Qt::DisplayRole).toString();
        alignments += cell.data(Qt::TextAlignmentRole).isValid() ? u'R' : u'-';
        editable += cell.flags().testFlag(Qt::ItemIsEditable) ? u'E' : u'-';
        ticks += cell.data(Qt::CheckStateRole).isValid() ? u'T' : u'-';
    }
    EXPECT_EQ(captions.join(u' '), QStringLiteral("OK Stap Tijd Uitvoerder Titel Jaar Min Sec Intro Outtro Mixtype "
                                                  "CueStart Cue Mix Atrack id trackid type"));
    EXPECT_EQ(alignments, QStringLiteral("-R---RRRRR-RRR----"));
    EXPECT_EQ(editable, QStringLiteral("----------E-------"));
    EXPECT_EQ(ticks, QStringLiteral("T-----------------"));
    EXPECT_EQ(model.index(1, MixtypeColumn).data().toString(), QStringLiteral("Geen Mix"));
    EXPECT_EQ(model.index(1, AtrackColumn).data().toString(), QStringLiteral("VT2"));
}

TEST_F(Steps, EveryMixTypeHasItsName) {
    open();
    const std::array names = {"Geen Mix", "Normale Mix", "Intro", "Outtro"};
    for (int code = 0; code < 4; ++code) {
        playlist.setValue(0, MixtypeColumn, code);
        EXPECT_EQ(model.index(0, MixtypeColumn).data().toString().toStdString(),
                  names.at(static_cast<std::size_t>(code)));
    }
}

TEST_F(Steps, TheTickIsThereForStepsThatAreDone) {
    open();
    playlist.setValue(1, ImportedColumn, true);
    EXPECT_EQ(model.index(0, ImportedColumn).data(Qt::CheckStateRole), QVariant(Qt::Unchecked));
    EXPECT_EQ(model.index(1, ImportedColumn).data(Qt::CheckStateRole), QVariant(Qt::Checked));
}

} // namespace orvel
