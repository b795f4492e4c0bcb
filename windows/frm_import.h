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
    void copyPlaylists(const QString &source);
    /// One sentence about the files that are no playlists; empty without one.
    [[nodiscard]] QString unusable(const QStringList &names);
    /// One sentence about the files that were kept; empty when nothing was kept or deleted.
    QString offerDeletion(const QString &source);
    /// False, and the file stays, when it turns out to be the imported one itself. Throws what deleting throws.
    [[nodiscard]] bool removeSource(const QString &source, const QString &name) const;
    void tell(QStringList sentences) const;
    [[nodiscard]] bool isSafe(const QString &source, const QString &name) const;

    TransferContext context_;
};

} // namespace orvel
