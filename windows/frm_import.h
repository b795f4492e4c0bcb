#pragma once

#include "windows/folder_browser.h"
#include "windows/transfer.h"

#include <QDialog>
#include <QPushButton>

namespace orvel {

/// Fetches playlists from a folder or a medium into the to-do folder.
class frmImport : public QDialog {
    Q_OBJECT

  public:
    explicit frmImport(TransferContext context, QWidget *parent = nullptr);

    FolderBrowser *const browser;
    QPushButton *const cmdImport;
    QPushButton *const cmdStop;
    QLabel *const lblResult;

    /// Called each time before the window opens.
    void Form_Load();
    void cmdImport_Click();
    void cmdStop_Click() { close(); }

  private:
    void layOut();

    TransferContext context_;
    PlaylistImport import_;
};

} // namespace orvel
