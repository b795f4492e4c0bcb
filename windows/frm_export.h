#pragma once

#include "widgets/gauge.h"
#include "windows/folder_browser.h"
#include "windows/transfer.h"

#include <QDialog>
#include <QPushButton>

namespace orvel {

/// Hands finished playlists and filed voice tracks on to another folder.
class frmExport : public QDialog {
    Q_OBJECT

  public:
    explicit frmExport(TransferContext context, QWidget *parent = nullptr);

    FolderBrowser *const browser;
    Gauge *const barProgres;
    QPushButton *const cmdExport;
    QPushButton *const cmdStop;
    QLabel *const lblResult;

    /// Called each time before the window opens.
    void Form_Load();
    /// Copies the finished playlists and the filed voice tracks. No source is changed.
    void cmdExport_Click();
    void cmdStop_Click() { close(); }

  private:
    void layOut();

    TransferContext context_;
    PlaylistExport export_;
};

} // namespace orvel
