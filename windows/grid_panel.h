#pragma once

#include "playlist/current_step.h"
#include "playlist/playlist.h"
#include "playlist/voice_tracks.h"
#include "windows/mix_type.h"
#include "windows/steps_model.h"

#include <QGroupBox>
#include <QLabel>
#include <QTableView>

namespace orvel {

/// The step grid of the open playlist. Moving through it sets the current step.
class GridPanel : public QGroupBox {
    Q_OBJECT

  public:
    GridPanel(Playlist &playlist, CurrentStep &step, const VoiceTracks &tracks, QWidget *parent = nullptr);

    QTableView *const dbgLijst;
    QLabel *const lblEmpty; ///< what to do next, as long as there is no playlist to see

    [[nodiscard]] StepsModel &steps() { return model_; }

    /// Opens a playlist of the to-do folder and selects its first step. Throws what Playlist::open() throws; the grid
    /// then stays hidden.
    void openPlaylist(const QString &newPath, const QString &name);
    /// Lets the playlist's file go; no step is selected any more.
    void closePlaylist();
    /// Reads the playlist again and keeps the selected row.
    void refresh();
    /// Without its title, and with lower rows.
    void setDense(bool dense);
    /// A row of the playlist was changed.
    void showChanged(int row);
    /// Row of the selected step, -1 without one.
    [[nodiscard]] int currentRow() const { return dbgLijst->currentIndex().row(); }
    /// Its neighbours are seen as well.
    void selectRow(int row);
    /// Order, widths and which ones are hidden, as the header keeps them.
    /// Nothing as long as the presenter has left them alone.
    [[nodiscard]] QByteArray columns() const;
    void restoreColumns(const QByteArray &columns);

    void dbgLijst_RowColChange();
    void dbgLijst_SelChange();
    void dbgLijst_DblClick();

  Q_SIGNALS:
    /// Another step is the current one, or none.
    void stepSelected();
    /// A music track or jingle was double-clicked.
    void previewWanted();

  protected:
    void resizeEvent(QResizeEvent *event) override;
    bool eventFilter(QObject *watched, QEvent *event) override;

  private:
    void currentRowChanged();
    void showMissing();
    /// A link is spoken between two items: both are seen.
    void showNeighbours();
    void watchColumns();
    void chooseColumns(const QPoint &place);

    Playlist &playlist_;
    CurrentStep &step_;
    const VoiceTracks &tracks_;
    StepsModel model_;
    MixTypeDelegate mixTypes_;
    bool areColumnsSet_ = false; ///< the presenter moved, hid or resized one
};

} // namespace orvel
