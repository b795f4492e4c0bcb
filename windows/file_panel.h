#pragma once

#include "platform/platform.h"
#include "playlist/current_step.h"
#include "playlist/deletion.h"
#include "playlist/playlist_check.h"
#include "playlist/progress.h"
#include "settings/settings.h"
#include "windows/grid_panel.h"

#include <QGroupBox>
#include <QListWidget>
#include <QPushButton>
#include <QTabWidget>

namespace orvel {

/// The list of playlists to do and the list of finished ones, each with its delete button.
class FilePanel : public QGroupBox {
    Q_OBJECT

  public:
    /// tell: one sentence for the status line.
    FilePanel(Platform &platform, const Settings &settings, const CurrentStep &step, GridPanel &grid,
              Recovery &recovery, std::function<void(const QString &sentence)> tell, QWidget *parent = nullptr);

    QTabWidget *const tabFiles;
    QListWidget *const filNew;
    QPushButton *const cmdWisNew;
    QListWidget *const filOK;
    QPushButton *const cdmWisKlaar;
    QPushButton *const cmdHerstellen;

    /// Show the folders' present playlists; a selected one that is still there stays selected. A to-do file that cannot
    /// be opened as a playlist is greyed, with the reason as its tooltip.
    void refreshNew();
    /// Without its title.
    void setDense(bool dense);
    void refreshOk();
    /// Opens a playlist to do, as a click would. Throws what opening throws.
    void open(const QString &name);
    /// The playlist that is open, or none, with how far it is.
    void showOpen(const QString &name, const Progress &progress);

    void tabFiles_Click();
    void filNew_Click();
    void cmdWisNew_Click();
    void cdmWisKlaar_Click();

  Q_SIGNALS:
    /// The presenter wants to see what the recovery folder keeps.
    void recoverWanted();

  private:
    void refill(QListWidget &list, const QString &folder);
    void greyUnusable();

    FileSystem &files_;
    PlaylistCheck check_;
    const Settings &settings_;
    const CurrentStep &step_;
    GridPanel &grid_;
    Deletion deletion_;
    QString open_; ///< the playlist that the grid shows
    Progress progress_;
};

} // namespace orvel
