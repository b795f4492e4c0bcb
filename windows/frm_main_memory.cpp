// How the presenter left the desk, and which playlist stands on it.
#include "platform/file_system.h"
#include "playlist/progress.h"
#include "settings/desk_memory.h"
#include "station/ignore_errors.h"
#include "windows/file_panel.h"
#include "windows/frm_main.h"
#include "windows/frm_preview.h"
#include "windows/grid_panel.h"

#include <QFileInfo>
#include <QScreen>
#include <QStackedWidget>
#include <QTabBar>

namespace orvel {

namespace {

/// Lower screens have no room for the panel and for fourteen steps.
constexpr int tallScreen = 900;

} // namespace

void frmMain::fold(bool folded) {
    isFolded_ = folded;
    QTabWidget &tab = *panels_.tabRec;
    tab.setMaximumHeight(folded ? tab.tabBar()->sizeHint().height() : QWIDGETSIZE_MAX);
    // Nothing that is not seen has the focus, or is read out.
    tab.findChild<QStackedWidget *>(QString(), Qt::FindDirectChildrenOnly)->setHidden(folded);
    showLists();
    panels_.cmdFold->setArrowType(folded ? Qt::UpArrow : Qt::DownArrow);
    panels_.cmdFold->setToolTip(folded ? tr("Toon opnamekaart, mixer en processor (F9)")
                                       : tr("Klap opnamekaart, mixer en processor weg (F9)"));
    panels_.cmdFold->setAccessibleName(panels_.cmdFold->toolTip());
}

void frmMain::restoreDesk() {
    const DeskMemory desk = loadDesk(platform_.files, workplace_.places.programFolder());
    restoreGeometry(desk.window);
    panels_.lists->restoreState(desk.lists);
    panels_.gridPanel->restoreColumns(desk.columns);
    fold(desk.folded.value_or(screen()->availableSize().height() < tallScreen));
    workplace_.talkAlong.setVolume(desk.alongVolume.value_or(workplace_.talkAlong.volume()));
    workplace_.talkAlong.setOn(desk.along);
    if (!desk.playlist.isEmpty() && !workplace_.session.mode.RecorderOnly) {
        // One that is gone or cannot be opened any more is no reason to bother anybody.
        ignoringErrors([&] { panels_.filePanel->open(desk.playlist); });
    }
}

void frmMain::rememberDesk() {
    DeskMemory desk = loadDesk(platform_.files, workplace_.places.programFolder());
    desk.window = saveGeometry();
    desk.lists = panels_.lists->saveState();
    desk.columns = panels_.gridPanel->columns();
    desk.folded = isFolded_;
    if (preview_) {
        desk.cueVolume = preview_->volCue->value();
    }
    desk.along = workplace_.talkAlong.isOn();
    desk.alongVolume = workplace_.talkAlong.volume();
    if (!workplace_.session.mode.RecorderOnly) {
        desk.playlist = workplace_.datList.isOpen() ? workplace_.datList.fileName() : QString();
    }
    saveDesk(platform_.files, workplace_.places.programFolder(), desk);
}

QString frmMain::nextStep() const {
    if (workplace_.session.mode.RecorderOnly) {
        return {};
    }
    return panels_.filePanel->filNew->count() == 0
               ? tr("Er zijn geen playlists. Haal ze binnen met de knop Importeren.")
               : tr("Kies links een playlist.");
}

void frmMain::showProgress() {
    const QString name = workplace_.datList.isOpen() ? workplace_.datList.fileName() : QString();
    const Progress done = progressOf(workplace_.datList);
    const QString progress = toText(done);
    panels_.filePanel->showOpen(name, done);
    panels_.gridPanel->lblEmpty->setText(nextStep());
    const QString program = QStringLiteral("ORVEL");
    const QString playlist = QFileInfo(name).completeBaseName();
    if (playlist.isEmpty()) {
        setWindowTitle(program);
    } else {
        setWindowTitle((progress.isEmpty() ? playlist : tr("%1: %2").arg(playlist, progress)) + QStringLiteral(" - ") +
                       program);
    }
}

} // namespace orvel
