#pragma once

#include "playlist/current_step.h"
#include "playlist/playlist.h"
#include "windows/mix_type.h"
#include "windows/step_panel.h"
#include "windows/steps_model.h"

#include <QGroupBox>
#include <QTableView>

namespace orvel {

/// The step grid of the open playlist. Moving through it sets the current step.
class GridPanel : public QGroupBox {
    Q_OBJECT

  public:
    GridPanel(Playlist &playlist, CurrentStep &step, StepPanel &stepPanel, QWidget *parent = nullptr);

    QTableView *const dbgLijst;

    [[nodiscard]] StepsModel &steps() { return model_; }

    /// Opens a playlist of the to-do folder and selects its first step. Throws what Playlist::open() throws; the grid
    /// then stays hidden.
    void openPlaylist(const QString &newPath, const QString &name);
    /// Lets the playlist's file go; no step is selected any more.
    void closePlaylist();
    /// Reads the playlist again and keeps the selected row.
    void refresh();
    /// Row of the selected step, -1 without one.
    [[nodiscard]] int currentRow() const { return dbgLijst->currentIndex().row(); }
    void selectRow(int row);
    /// Marks the selected step as done or not done; nothing happens without one.
    void setCurrentImported(bool imported);
    /// Whether the selected step is marked as done; false without one.
    [[nodiscard]] bool currentImported() const;

    /// Shows the talk-over times of the selected step. Throws SubscriptOutOfRange for steps outside the time tables.
    void dbgLijst_RowColChange();
    /// Takes over the selected step's file name. Throws TypeMismatch.
    void dbgLijst_SelChange();
    void dbgLijst_DblClick();

  Q_SIGNALS:
    /// A step was selected: whether it has a file name.
    void stepFileChanged(bool hasFile);
    /// A presentation step was selected: whether its voice track exists.
    void playAllowed(bool allowed);
    /// A music track or jingle was double-clicked.
    void previewWanted();

  private:
    void currentRowChanged();
    void showTalkOver(int stap);

    Playlist &playlist_;
    CurrentStep &step_;
    StepPanel &stepPanel_;
    StepsModel model_;
    MixTypeDelegate mixTypes_;
};

} // namespace orvel
