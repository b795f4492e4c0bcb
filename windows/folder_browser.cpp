#include "windows/folder_browser.h"

#include "platform/file_system.h"
#include "platform/prompts.h"
#include "station/folder_listing.h"
#include "widgets/theme.h"
#include "windows/named.h"
#include "windows/on.h"

#include <QDir>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QKeyEvent>

#include <functional>
#include <utility>

namespace orvel {

namespace {

const QString up = QStringLiteral("..");

/// Enter opens a folder and does nothing else: it must not press the window's default button as well. A single click
/// only selects, also on desktops where it opens things elsewhere.
class FolderList : public QListWidget {
  public:
    FolderList(QWidget *parent, std::function<void()> open) : QListWidget(parent), open_(std::move(open)) {
        on(this, &QListWidget::itemDoubleClicked, this, open_);
    }

  protected:
    void keyPressEvent(QKeyEvent *event) override {
        if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
            event->accept();
            open_();
        } else {
            QListWidget::keyPressEvent(event);
        }
    }

  private:
    std::function<void()> open_;
};

/// A stick that was put in a moment ago is in the list when it drops down.
class DriveList : public QComboBox {
  public:
    DriveList(QWidget *parent, std::function<void()> fill) : QComboBox(parent), fill_(std::move(fill)) {}
    void showPopup() override {
        fill_();
        QComboBox::showPopup();
    }

  private:
    std::function<void()> fill_;
};

QLabel *caption(QWidget *parent, const char *name, const QString &text, QWidget *buddy) {
    auto *label = new QLabel(text, parent);
    label->setObjectName(QString::fromLatin1(name));
    label->setProperty("role", QStringLiteral("muted"));
    label->setBuddy(buddy);
    return label;
}

} // namespace

FolderBrowser::FolderBrowser(FileSystem &files, QStringList patterns, Files shown, QWidget *parent)
    : QWidget(parent), Drive1(new DriveList(this, [this] { fillDrives(); })),
      Dir1(new FolderList(this, [this] { Dir1_Change(); })), File1(new QListWidget(this)),
      cmdBrowse(namedButton(this, "cmdBrowse", tr("&Bladeren..."), tr("Kies de map in een venster van het systeem"))),
      files_(files), patterns_(std::move(patterns)), path_(new QLabel(this)) {
    Drive1->setObjectName(QStringLiteral("Drive1"));
    Drive1->setAccessibleName(QStringLiteral("Schijf"));
    Dir1->setObjectName(QStringLiteral("Dir1"));
    Dir1->setAccessibleName(QStringLiteral("Map"));
    File1->setObjectName(QStringLiteral("File1"));
    File1->setAccessibleName(tr("Bestanden in de map"));
    cmdBrowse->hide();
    layOut(shown);
    fillDrives();
    setFolder(QDir::homePath());
    on(Drive1, &QComboBox::activated, this, &FolderBrowser::Drive1_Change);
    on(cmdBrowse, &QPushButton::clicked, this, &FolderBrowser::cmdBrowse_Click);
    on(File1, &QListWidget::currentRowChanged, this, &FolderBrowser::File1_Click);
}

void FolderBrowser::layOut(Files shown) {
    const int line = fontMetrics().height();
    Dir1->setMinimumSize(line * 12, line * 3);
    path_->setObjectName(QStringLiteral("lblPath"));
    path_->setAccessibleDescription(tr("Gekozen map"));
    path_->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    auto *grid = new QGridLayout(this);
    grid->setContentsMargins(0, 0, 0, 0);
    grid->addWidget(caption(this, "Label1", QStringLiteral("Schijf"), Drive1), 0, 0);
    grid->addWidget(Drive1, 1, 0);
    grid->addWidget(caption(this, "Label2", QStringLiteral("Map"), Dir1), 2, 0);
    grid->addWidget(Dir1, 3, 0);
    auto *place = new QHBoxLayout;
    place->addWidget(cmdBrowse);
    place->addWidget(path_, 1);
    grid->addLayout(place, 4, 0, 1, shown == Files::Shown ? 2 : 1);
    grid->setRowStretch(3, 1);
    if (shown == Files::Hidden) {
        File1->hide();
        return;
    }
    File1->setMinimumSize(line * 15, line * 3);
    grid->addWidget(caption(this, "Label3", tr("Bestanden"), File1), 0, 1);
    grid->addWidget(File1, 1, 1, 3, 1);
    grid->setColumnStretch(1, 1);
}

void FolderBrowser::fillDrives() {
    Drive1->clear();
    Drive1->addItems(files_.drives());
    showDrive();
}

void FolderBrowser::showEvent(QShowEvent *event) {
    QWidget::showEvent(event);
    fillDrives();
}

void FolderBrowser::resizeEvent(QResizeEvent *event) {
    QWidget::resizeEvent(event);
    elidePath();
}

void FolderBrowser::setFolder(const QString &folder) {
    folder_ = folder;
    showDrive();
    refresh();
    Q_EMIT folderChanged(folder_);
}

void FolderBrowser::force(const QString &folder, const QString &drive) {
    forcedDrive_ = drive;
    setFolder(folder);
    Drive1->setEnabled(false);
    Dir1->setEnabled(false);
    cmdBrowse->setEnabled(false);
}

void FolderBrowser::letChoose() {
    Drive1->setEnabled(true);
    Dir1->setEnabled(true);
    cmdBrowse->setEnabled(true);
    setFolder(folder_);
}

void FolderBrowser::showDrive() {
    if (forcedDrive_.isEmpty()) {
        QStringList drives;
        for (int index = 0; index < Drive1->count(); ++index) {
            drives << Drive1->itemText(index);
        }
        Drive1->setCurrentIndex(driveOf(folder_, drives));
        return;
    }
    if (Drive1->findText(forcedDrive_, Qt::MatchStartsWith) < 0) {
        Drive1->addItem(forcedDrive_);
    }
    Drive1->setCurrentIndex(Drive1->findText(forcedDrive_, Qt::MatchStartsWith));
}

void FolderBrowser::showPath() {
    const QString path = QDir::toNativeSeparators(folder_);
    const bool isThere = files_.folderExists(folder_);
    setStyleProperty(*path_, "role", isThere ? QString() : QStringLiteral("attention"));
    path_->setToolTip(isThere ? path : tr("Deze map is niet gevonden: %1").arg(path));
    elidePath();
}

void FolderBrowser::elidePath() {
    path_->setText(path_->fontMetrics().elidedText(path_->toolTip(), Qt::ElideMiddle, path_->width()));
}

void FolderBrowser::refresh() {
    showPath();
    fillFolders();
    fillFiles();
}

void FolderBrowser::fillFolders() {
    Dir1->clear();
    if (!QDir(folder_).isRoot()) {
        Dir1->addItem(up);
    }
    Dir1->addItems(files_.folders(folder_));
}

void FolderBrowser::fillFiles() {
    File1->clear();
    File1->addItems(filesIn(files_, folder_, patterns_));
    Q_EMIT fileSelected({});
}

QStringList FolderBrowser::files() const {
    QStringList names;
    for (int row = 0; row < File1->count(); ++row) {
        names << File1->item(row)->text();
    }
    return names;
}

QString FolderBrowser::selectedFile() const {
    return File1->currentItem() == nullptr ? QString() : File1->currentItem()->text();
}

void FolderBrowser::Drive1_Change() {
    setFolder(Drive1->currentText());
}

void FolderBrowser::letBrowse(Prompts &prompts) {
    prompts_ = &prompts;
    cmdBrowse->show();
}

void FolderBrowser::cmdBrowse_Click() {
    // The dialog reads its folder in the window's thread: one that gives no answer is left alone.
    const QString start = files_.folderExists(folder_) ? folder_ : QDir::homePath();
    const QString chosen = prompts_->folder(tr("Kies een map"), start);
    if (!chosen.isEmpty()) {
        setFolder(chosen);
    }
}

void FolderBrowser::Dir1_Change() {
    const QListWidgetItem *chosen = Dir1->currentItem();
    if (chosen == nullptr) {
        return;
    }
    const QString name = chosen->text();
    const QString left = name == up ? QDir(folder_).dirName() : QString();
    setFolder(QDir::cleanPath(folder_ + u'/' + name));
    // On the way up the folder that was left stays selected.
    const QList<QListWidgetItem *> back = Dir1->findItems(left, Qt::MatchExactly);
    Dir1->setCurrentRow(back.isEmpty() ? 0 : Dir1->row(back.first()));
}

void FolderBrowser::File1_Click() {
    Q_EMIT fileSelected(selectedFile());
}

} // namespace orvel
