// The windows that open from the main window; each is made on first use and kept.
#include "platform/audio.h"
#include "platform/guarded.h"
#include "recording/player_settings.h"
#include "settings/desk_memory.h"
#include "windows/card_panel.h"
#include "windows/file_panel.h"
#include "windows/frm_adv.h"
#include "windows/frm_convert.h"
#include "windows/frm_delay.h"
#include "windows/frm_export.h"
#include "windows/frm_import.h"
#include "windows/frm_main.h"
#include "windows/frm_preview.h"
#include "windows/frm_recover.h"
#include "windows/frm_setup.h"
#include "windows/frm_splash.h"
#include "windows/frm_station.h"
#include "windows/frm_unfiled.h"
#include "windows/grid_panel.h"
#include "windows/on.h"
#include "windows/recorder_panel.h"

#include <QFileInfo>
#include <QGuiApplication>

namespace orvel {

namespace {

void bringUp(QWidget &window) {
    window.show();
    window.raise();
    window.activateWindow();
}

} // namespace

TransferContext frmMain::transferContext() {
    return {platform_,
            workplace_.settings,
            workplace_.drives,
            workplace_.recovery,
            [this](const QStringList &replaced) { refreshLists(replaced); },
            [this](const QString &sentence) { tell(sentence); },
            [this] { return workplace_.step.PlaylistTakeRunning; }};
}

void frmMain::refreshLists(const QStringList &replaced) {
    panels_.filePanel->refreshNew();
    panels_.filePanel->refreshOk();
    if (replaced.contains(workplace_.datList.fileName(), Qt::CaseInsensitive)) {
        guarded([this] { reopenPlaylist(); });
    }
}

void frmMain::reopenPlaylist() {
    // A take belongs to its playlist until it is stopped.
    if (!workplace_.datList.isOpen() || workplace_.step.PlaylistTakeRunning) {
        return;
    }
    const int row = panels_.gridPanel->currentRow();
    panels_.gridPanel->openPlaylist(workplace_.settings.NewPath, workplace_.datList.fileName());
    panels_.gridPanel->selectRow(row);
}

void frmMain::showImport() {
    if (!import_) {
        import_ = std::make_unique<frmImport>(transferContext(), this);
    }
    import_->Form_Load();
    bringUp(*import_);
}

void frmMain::showExport() {
    if (!export_) {
        export_ = std::make_unique<frmExport>(transferContext(), this);
    }
    export_->Form_Load();
    bringUp(*export_);
}

frmSetup &frmMain::setup() {
    if (!setup_) {
        setup_ = std::make_unique<frmSetup>(
            platform_, workplace_.settings, stored_, workplace_.places.programFolder(),
            [this] { panels_.gridPanel->steps().setStyles(applyStepStyles(workplace_.settings)); }, this);
    }
    setup_->Form_Load();
    return *setup_;
}

void frmMain::showSetup() {
    bringUp(setup());
}

void frmMain::showFirstSetup() {
    // The plain recorder has no use for what would be marked.
    if (isNew_ && !workplace_.session.mode.RecorderOnly) {
        showSetup();
        setup_->markMissing();
    }
}

void frmMain::showStations() {
    frmStation *chooser = station_;
    if (chooser == nullptr || !chooser->isVisible()) {
        const auto save = [this](const QString &code) { return workplace_.saving.ExternalSave(code); };
        const auto look = [this] {
            workplace_.readStations();
            return workplace_.tracks.versions(workplace_.saving.chooserTake());
        };
        chooser = new frmStation(platform_, workplace_.places.programFolder(), save, look,
                                 playerSettings(workplace_.settings), this);
        on(chooser, &QDialog::finished, this, [this] { workplace_.saving.stationsClosed(); });
        chooser->setAttribute(Qt::WA_DeleteOnClose);
        station_ = chooser;
    } else {
        chooser->showVersions();
    }
    bringUp(*chooser);
}

void frmMain::showSplash() {
    if (!about_) {
        about_ = std::make_unique<frmSplash>(this);
    }
    about_->show();
}

void frmMain::showPreview() {
    if (!preview_) {
        preview_ = std::make_unique<frmPreview>(
            PreviewContext{
                platform_, workplace_.step,
                PreviewSources{platform_.files, workplace_.settings, workplace_.drives, workplace_.catalogues},
                loadDesk(platform_.files, workplace_.places.programFolder()).cueVolume},
            this);
    }
    preview_->Form_Load();
    preview_->open();
}

void frmMain::showAdvanced() {
    if (!adv_) {
        adv_ = std::make_unique<frmAdv>(platform_.sound.audioRecord(), this);
    }
    adv_->Form_Load();
    adv_->open();
}

void frmMain::showDelay() {
    if (!delay_) {
        delay_ = std::make_unique<frmDelay>(workplace_.delay, this);
    }
    delay_->Form_Load();
    delay_->open();
}

void frmMain::showConvert() {
    if (!convert_) {
        convert_ = std::make_unique<frmConvert>(workplace_.importDesk(), this);
    }
    convert_->Form_Load();
    convert_->open();
}

void frmMain::showRecover() {
    if (!recover_) {
        recover_ = std::make_unique<frmRecover>(
            RecoverContext{platform_.sound,
                           {platform_.files, platform_.prompts, workplace_.recovery, workplace_.places.programFolder(),
                            [this] { return !workplace_.session.isIdle(); }},
                           [this](const KeptFile &kept, bool replaced) { recovered(kept, replaced); }},
            this);
    }
    recover_->Form_Load();
    recover_->open();
}

void frmMain::recovered(const KeptFile &kept, bool replaced) {
    if (kept.kind == KeptKind::Playlist) {
        refreshLists(replaced ? QStringList{kept.name} : QStringList{});
    } else if (kept.kind == KeptKind::Take) {
        workplace_.showTake(takeNameOf(kept));
    }
}

void frmMain::showUnfiled() {
    std::vector<UnfiledTake> takes = workplace_.unfinished.settle(workplace_.session.mode.RecorderOnly);
    if (takes.empty()) {
        return;
    }
    unfiled_ = std::make_unique<frmUnfiled>(
        platform_.sound, playerSettings(workplace_.settings), std::move(takes),
        [this](const UnfiledTake &waiting) { return workplace_.saving.saveUnfiled(waiting.take); }, this);
    unfiled_->open();
}

void frmMain::showProcess(bool visible) {
    if (visible) {
        QGuiApplication::setOverrideCursor(Qt::WaitCursor);
    } else {
        QGuiApplication::restoreOverrideCursor();
    }
    panels_.recorderPanel->lblProcess->setVisible(visible);
    // The window does nothing else until the take is processed.
    panels_.recorderPanel->repaint();
}

} // namespace orvel
