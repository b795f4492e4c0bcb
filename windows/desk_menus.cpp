#include "windows/desk_menus.h"

#include "playlist/current_step.h"
#include "station/ignore_errors.h"
#include "windows/file_panel.h"
#include "windows/frm_main.h"
#include "windows/grid_panel.h"
#include "windows/on.h"
#include "windows/playback_panel.h"
#include "windows/recorder_panel.h"
#include "windows/save_panel.h"

#include <QAbstractButton>

#include <functional>

namespace orvel {

namespace {

/// An entry with a button's caption that presses it.
void addButton(QMenu &menu, QAbstractButton *button) {
    QAction *entry = menu.addAction(button->icon(), button->text());
    entry->setObjectName(button->objectName());
    entry->setEnabled(button->isEnabled());
    on(entry, &QAction::triggered, button, [button] { button->click(); });
}

void addEntry(QMenu &menu, const char *name, const QString &text, bool isEnabled, QObject *owner,
              const std::function<void()> &action) {
    QAction *entry = menu.addAction(text);
    entry->setObjectName(QString::fromLatin1(name));
    entry->setEnabled(isEnabled);
    on(entry, &QAction::triggered, owner, action);
}

template <class Fill>
void opensMenu(QAbstractItemView &view, QObject *receiver, Fill fill) {
    view.setContextMenuPolicy(Qt::CustomContextMenu);
    on(&view, &QWidget::customContextMenuRequested, receiver, [&view, fill](auto... place) {
        QMenu menu;
        fill(menu);
        (menu.exec(view.viewport()->mapToGlobal(place)), ...);
    });
}

} // namespace

DeskMenus::DeskMenus(const Panels &panels, const Playlist &playlist, const CurrentStep &step, QObject *parent)
    : QObject(parent), panels_(panels), playlist_(playlist), step_(step) {
    opensMenu(*panels.gridPanel->dbgLijst, this, [this](QMenu &menu) { fillGridMenu(menu); });
    opensMenu(*panels.filePanel->filNew, this, [this](QMenu &menu) { fillNewMenu(menu); });
    opensMenu(*panels.filePanel->filOK, this, [this](QMenu &menu) { fillOkMenu(menu); });
}

void DeskMenus::fillGridMenu(QMenu &menu) const {
    GridPanel *grid = panels_.gridPanel;
    bool isHeard = false;
    ignoringErrors([&] { isHeard = canPreview(playlist_, grid->currentRow(), step_); });
    addEntry(menu, "preview", tr("Voorbeluisteren"), isHeard, grid, [grid] { grid->dbgLijst_DblClick(); });
    menu.addSeparator();
    addButton(menu, panels_.recorderPanel->cmdRec);
    addButton(menu, panels_.playbackPanel->cmdPlay);
    addButton(menu, panels_.savePanel->cmdSave);
    addButton(menu, panels_.savePanel->cmdImport);
    menu.addSeparator();
    menu.addAction(panels_.tlbMain->actions().constFirst()); // printing
}

void DeskMenus::fillNewMenu(QMenu &menu) const {
    FilePanel *files = panels_.filePanel;
    const bool isChosen = !files->filNew->selectedItems().isEmpty();
    addEntry(menu, "open", tr("Openen"), isChosen && files->tabFiles->isEnabled() && !step_.PlaylistTakeRunning, files,
             [files] { files->filNew_Click(); });
    addButton(menu, files->cmdWisNew);
    menu.addSeparator();
    addButton(menu, files->cmdHerstellen);
}

void DeskMenus::fillOkMenu(QMenu &menu) const {
    addButton(menu, panels_.filePanel->cdmWisKlaar);
    menu.addSeparator();
    addButton(menu, panels_.filePanel->cmdHerstellen);
}

} // namespace orvel
