#pragma once

#include <QComboBox>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QStringList>

namespace orvel {

class FileSystem;
class Prompts;

/// The drive, folder and file lists of a window that reads from or writes to a folder of the presenter's choice.
class FolderBrowser : public QWidget {
    Q_OBJECT

  public:
    enum class Files { Shown, Hidden };

    /// patterns: of the files to show, for instance {"*.wav", "*.mp3"}, without regard to case. The user's home folder
    /// is the first one shown.
    FolderBrowser(FileSystem &files, QStringList patterns, Files shown, QWidget *parent = nullptr);

    QComboBox *const Drive1;
    QListWidget *const Dir1;
    QListWidget *const File1;
    QPushButton *const cmdBrowse; ///< the system's own dialog; hidden until letBrowse()

    [[nodiscard]] QString folder() const { return folder_; }
    /// Shows a folder, also one that does not exist (it is empty then), and its drive.
    void setFolder(const QString &folder);
    /// Drive and folder can no longer be changed. drive: what the drive list shows, empty for the folder's own.
    void force(const QString &folder, const QString &drive = {});
    /// Drive and folder can be changed; the folder is read again.
    void letChoose();
    /// Offers the system's own dialog beside the lists.
    void letBrowse(Prompts &prompts);
    /// Names in the list's order.
    [[nodiscard]] QStringList files() const;
    /// Name of the selected file; empty without one.
    [[nodiscard]] QString selectedFile() const;
    void selectFile(int row) { File1->setCurrentRow(row); }
    /// Reads the folder again.
    void refresh();

    void Drive1_Change();
    void cmdBrowse_Click();
    void Dir1_Change();
    void File1_Click();

  Q_SIGNALS:
    void folderChanged(const QString &folder);
    /// Empty when no file is selected any more.
    void fileSelected(const QString &name);

  protected:
    void showEvent(QShowEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

  private:
    void fillDrives();
    void fillFolders();
    void fillFiles();
    void showDrive();
    void showPath();
    void elidePath();
    void layOut(Files shown);

    FileSystem &files_;
    Prompts *prompts_ = nullptr;
    QStringList patterns_;
    QLabel *path_;
    QString folder_;
    QString forcedDrive_;
};

} // namespace orvel
