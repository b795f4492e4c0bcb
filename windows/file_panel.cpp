#include "windows/file_panel.h"

#include "platform/file_system.h"
#include "station/ignore_errors.h"
#include "station/paths.h"
#include "widgets/theme.h"
#include "windows/named.h"
#include "windows/on.h"
#include "windows/scrollable.h"

#include <QGuiApplication>
#include <QSignalBlocker>
#include <QStyledItemDelegate>
#include <QVBoxLayout>

namespace orvel {

namespace {

const QString playlistPattern = QStringLiteral("*.mdb");

QListWidget *fileList(QWidget *parent, const char *name, const QString &accessibleName) {
    auto *list = new QListWidget(parent);
    list->setObjectName(QString::fromLatin1(name));
    list->setAccessibleName(accessibleName);
    list->setUniformItemSizes(true);
    list->setMinimumHeight(list->fontMetrics().height() * 2); // small screens
    return list;
}

QString selectedName(const QListWidget &list) {
    const QList<QListWidgetItem *> selected = list.selectedItems();
    return selected.isEmpty() ? QString() : selected.first()->text();
}

ShownPlaylists shown(const QListWidget &list, const QString &folder) {
    QStringList names;
    for (int row = 0; row < list.count(); ++row) {
        names << list.item(row)->text();
    }
    return {folder, names, selectedName(list)};
}

constexpr int progressRole = Qt::UserRole;

/// The open playlist stands out, with how far it is behind its name.
class PlaylistDelegate : public QStyledItemDelegate {
  public:
    using QStyledItemDelegate::QStyledItemDelegate;

  protected:
    void initStyleOption(QStyleOptionViewItem *option, const QModelIndex &index) const override {
        QStyledItemDelegate::initStyleOption(option, index);
        // What cannot be opened says so by more than its colour; why not is its tooltip.
        if (index.data(Qt::ToolTipRole).isValid()) {
            option->text.prepend(QStringLiteral("\u26A0 "));
        }
        const QVariant progress = index.data(progressRole);
        if (progress.isValid()) {
            option->font.setBold(true);
            option->text +=
                progress.toString().isEmpty() ? QString() : QStringLiteral(" · %1").arg(progress.toString());
        }
    }
};

QWidget *page(QListWidget *list, QPushButton *deleteButton) {
    auto *made = new QWidget;
    auto *layout = new QVBoxLayout(made);
    const int margin = made->fontMetrics().height() / 3;
    layout->setContentsMargins(margin, margin, margin, margin);
    layout->addWidget(list);
    layout->addWidget(deleteButton);
    return made;
}

} // namespace

FilePanel::FilePanel(Platform &platform, const Settings &settings, const CurrentStep &step, GridPanel &grid,
                     Recovery &recovery, std::function<void(const QString &sentence)> tell, QWidget *parent)
    : QGroupBox(QStringLiteral("Bestanden"), parent), tabFiles(new QTabWidget(this)),
      filNew(fileList(this, "filNew", tr("Te bewerken playlists"))),
      cmdWisNew(namedButton(this, "cmdWisNew", tr("Wis te bewerken"), tr("Wis de gekozen playlist, of alle"))),
      filOK(fileList(this, "filOK", tr("Afgewerkte playlists"))),
      cdmWisKlaar(namedButton(this, "cdmWisKlaar", tr("Wis afgewerkte"), tr("Wis de gekozen playlist, of alle"))),
      cmdHerstellen(namedButton(this, "cmdHerstellen", tr("Herstellen..."),
                                tr("Zet terug wat gewist, overschreven of niet bewaard werd"))),
      files_(platform.files), check_(platform.databases), settings_(settings), step_(step), grid_(grid),
      deletion_(
          {platform.files, platform.prompts, recovery, [&step] { return step.PlaylistTakeRunning; }, std::move(tell)}) {
    tabFiles->setObjectName(QStringLiteral("tabFiles"));
    tabFiles->setAccessibleName(tr("Playlistmappen"));
    tabFiles->addTab(page(filNew, cmdWisNew), QStringLiteral("Te bewerken"));
    tabFiles->addTab(page(filOK, cdmWisKlaar), QStringLiteral("Afgewerkt"));
    setAccessibleName(title());
    // Where the window is low, the playlists are scrolled to, not cut off.
    auto *content = new QWidget;
    auto *parts = new QVBoxLayout(content);
    parts->setContentsMargins(0, 0, 0, 0);
    parts->addWidget(tabFiles);
    parts->addWidget(cmdHerstellen);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(scrollable(content));
    on(tabFiles, &QTabWidget::currentChanged, this, &FilePanel::tabFiles_Click);
    on(filNew, &QListWidget::itemClicked, this, &FilePanel::filNew_Click);
    on(filNew, &QListWidget::itemActivated, this, [this] {
        // The tab key makes an item the current one without selecting it.
        const QSignalBlocker quiet(filNew);
        filNew->currentItem()->setSelected(true);
        filNew_Click();
    });
    // What is selected by keys is opened too: the list never points at another playlist than the grid shows.
    on(filNew, &QListWidget::itemSelectionChanged, this, [this] {
        if (filNew->hasFocus() && QGuiApplication::mouseButtons() == Qt::NoButton) {
            filNew_Click();
        }
    });
    filNew->setItemDelegate(new PlaylistDelegate(filNew));
    on(cmdWisNew, &QPushButton::clicked, this, &FilePanel::cmdWisNew_Click);
    on(cdmWisKlaar, &QPushButton::clicked, this, &FilePanel::cdmWisKlaar_Click);
    on(cmdHerstellen, &QPushButton::clicked, this, &FilePanel::recoverWanted);
}

void FilePanel::refill(QListWidget &list, const QString &folder) {
    const QString selected = selectedName(list);
    const QSignalBlocker quiet(list);
    list.clear();
    list.addItems(files_.list(folder, playlistPattern));
    const QList<QListWidgetItem *> again = list.findItems(selected, Qt::MatchExactly);
    if (!selected.isEmpty() && !again.isEmpty()) {
        list.setCurrentItem(again.first());
    }
}

void FilePanel::setDense(bool dense) {
    setStyleProperty(*this, "dense", dense ? QStringLiteral("true") : QString());
    setTitle(dense ? QString() : accessibleName()); // only now the box asks the style for its margins
}

void FilePanel::refreshNew() {
    refill(*filNew, settings_.NewPath);
    greyUnusable();
    showOpen(open_, progress_);
}

void FilePanel::open(const QString &name) {
    const QSignalBlocker quiet(filNew);
    for (QListWidgetItem *item : filNew->findItems(name, Qt::MatchExactly)) {
        filNew->setCurrentItem(item);
        grid_.openPlaylist(settings_.NewPath, name);
    }
}

void FilePanel::showOpen(const QString &name, const Progress &progress) {
    open_ = name;
    progress_ = progress;
    for (int row = 0; row < filNew->count(); ++row) {
        QListWidgetItem &item = *filNew->item(row);
        const bool isOpen = item.text().compare(name, Qt::CaseInsensitive) == 0;
        const QString behindTheName =
            progress.links == 0 ? QString() : tr("%1 van %2").arg(progress.done).arg(progress.links);
        item.setData(progressRole, isOpen ? QVariant(behindTheName) : QVariant());
        if (isOpen) {
            item.setData(Qt::AccessibleDescriptionRole, toText(progress));
        }
    }
}

void FilePanel::greyUnusable() {
    for (int row = 0; row < filNew->count(); ++row) {
        QListWidgetItem &item = *filNew->item(row);
        const QString problem = check_.problem(settings_.NewPath, item.text());
        if (!problem.isEmpty()) {
            item.setForeground(themeColour(ThemeRole::DisabledText));
            item.setToolTip(problem);
            item.setData(Qt::AccessibleDescriptionRole, problem);
        }
    }
}

void FilePanel::refreshOk() {
    refill(*filOK, settings_.OkPath);
}

void FilePanel::tabFiles_Click() {
    if (step_.PlaylistTakeRunning) {
        return;
    }
    refreshOk();
    refreshNew();
}

void FilePanel::filNew_Click() {
    const QString name = selectedName(*filNew);
    if (step_.PlaylistTakeRunning || name.isEmpty()) {
        return;
    }
    grid_.openPlaylist(settings_.NewPath, name);
}

void FilePanel::cmdWisNew_Click() {
    if (deletion_.deleteToDo(shown(*filNew, settings_.NewPath), [this] { grid_.closePlaylist(); })) {
        ignoringErrors([&] { refreshNew(); });
        grid_.dbgLijst->hide();
    }
}

void FilePanel::cdmWisKlaar_Click() {
    if (deletion_.deleteFinished(shown(*filOK, settings_.OkPath))) {
        refreshOk();
    }
}

} // namespace orvel
