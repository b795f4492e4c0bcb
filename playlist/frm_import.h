#pragma once

#include "playlist/folder_browser.h"
#include "playlist/transfer.h"

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

    /// Called each time before the window opens.
    void Form_Load();
    void cmdImport_Click();
    void cmdStop_Click() { close(); }

  private:
    [[nodiscard]] bool isToDoFolder(const QString &source) const;
    void tellWhatIsNoPlaylist(const QStringList &names);
    void offerDeletion(const QString &source);
    [[nodiscard]] bool isSafe(const QString &source, const QString &name) const;

    TransferContext context_;
};

} // namespace orvel
