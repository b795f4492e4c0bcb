// Files that are dropped on the main window.
#include "station.h"

#include <QDragEnterEvent>
#include <QDropEvent>
#include <QMimeData>
#include <QUrl>

namespace orvel {

namespace {

class Drop : public Station {
  protected:
    void openDemo() {
        addPlaylist(demo);
        QDir(folder.path()).mkdir(QStringLiteral("bron"));
        ASSERT_TRUE(start());
        open(demo);
        for (int row = 0; row < window->workplace().datList.stepCount(); ++row) {
            if (window->workplace().datList.value(row, TypeColumn).toInt() == PresStep) {
                slots_ << row;
            }
        }
        ASSERT_GE(slots_.size(), 2);
    }
    /// Holds a file over a place, and lets it go; whether it was taken.
    bool drop(QAbstractItemView &view, const QPoint &place, const QString &file) {
        QMimeData data;
        data.setUrls({QUrl::fromLocalFile(file)});
        QDragEnterEvent enters(place, Qt::CopyAction | Qt::MoveAction, &data, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(view.viewport(), &enters);
        hovered = window->panels().lblStatus->text();
        QDropEvent lets(place, Qt::CopyAction | Qt::MoveAction, &data, Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(view.viewport(), &lets);
        QTest::qWait(1); // the handler runs when the other program has its file back
        EXPECT_EQ(lets.dropAction(), Qt::CopyAction) << "the other program must not take its file away";
        return enters.isAccepted() && lets.isAccepted();
    }
    bool dropOnRow(int row, const QString &file) {
        QTableView &grid = *window->panels().gridPanel->dbgLijst;
        return drop(grid, grid.visualRect(grid.model()->index(row, StapColumn)).center(), file);
    }
    [[nodiscard]] QString status() const { return window->panels().lblStatus->text(); }
    QString sample() const { return QStringLiteral(ORVEL_SOURCE_DIR "/samples/station/audio/jingles/002.mp3"); }

    QList<int> slots_;
    QString hovered;
};

} // namespace

TEST_F(Drop, TheSlotUnderThePointerGetsTheFile) {
    openDemo();
    select(slots_.at(0));
    const QString name = window->workplace().datList.value(slots_.at(1), AtrackColumn).toString();
    EXPECT_TRUE(dropOnRow(slots_.at(1), sample()));
    EXPECT_TRUE(hovered.contains(name)) << hovered.toStdString();
    EXPECT_EQ(filesIn(QStringLiteral("ok")), QStringList{name + QStringLiteral(".mp3")});
    EXPECT_TRUE(imported(slots_.at(1)));
    EXPECT_FALSE(imported(slots_.at(0)));
}

TEST_F(Drop, AWrongFileIsRefusedInTheStatusLine) {
    openDemo();
    disk.write(path(QStringLiteral("bron/lees.txt")), "x");
    EXPECT_TRUE(dropOnRow(slots_.at(0), path(QStringLiteral("bron/lees.txt"))));
    EXPECT_EQ(status(), QStringLiteral("lees.txt is geen WAV- of MP3-bestand."));
    EXPECT_TRUE(filesIn(QStringLiteral("ok")).isEmpty());
}

TEST_F(Drop, APlaylistOnTheListIsImported) {
    openDemo();
    ASSERT_TRUE(QFile::copy(QStringLiteral(ORVEL_SOURCE_DIR "/tests/data/databases/unicode.mdb"),
                            path(QStringLiteral("bron/nieuw.mdb"))));
    QListWidget &list = *window->panels().filePanel->filNew;
    EXPECT_TRUE(drop(list, list.viewport()->rect().center(), path(QStringLiteral("bron/nieuw.mdb"))));
    EXPECT_EQ(list.findItems(QStringLiteral("nieuw.mdb"), Qt::MatchExactly).size(), 1);
    EXPECT_TRUE(exists(QStringLiteral("bron/nieuw.mdb")));
    EXPECT_TRUE(drop(list, list.viewport()->rect().center(), sample()));
    EXPECT_EQ(status(), QStringLiteral("002.mp3 is geen playlist."));
}

TEST_F(Drop, NothingIsTakenThroughAModalWindow) {
    openDemo();
    window->tlbMain_ButtonClick(5);
    QDialog modal(window.get());
    modal.setModal(true);
    modal.show();
    ASSERT_NE(QApplication::activeModalWidget(), nullptr);
    EXPECT_FALSE(dropOnRow(slots_.at(0), sample()));
    EXPECT_FALSE(imported(slots_.at(0)));
}

} // namespace orvel
