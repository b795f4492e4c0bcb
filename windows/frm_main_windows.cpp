// The windows that open from the main window; each is made on first use and kept.
#include "platform/audio.h"
#include "platform/guarded.h"
#include "windows/frm_main.h"

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
            [this](const QStringList &replaced) {
                panels_.filePanel->refreshNew();
                panels_.filePanel->refreshOk();
                if (replaced.contains(workplace_.datList.fileName(), Qt::CaseInsensitive)) {
                    guarded([this] { reopenPlaylist(); });
                }
            },
            [this](const QString &sentence) { tell(sentence); },
            [this] { return workplace_.step.PlaylistTakeRunning; }};
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
            platform_, workplace_.settings, programFolder_,
            [this] { panels_.gridPanel->steps().setStyles(applyStepStyles(workplace_.settings)); }, this);
    }
    setup_->Form_Load();
    return *setup_;
}

void frmMain::showSetup() {
    bringUp(setup());
}

void frmMain::showStations() {
    frmStation *chooser = station_;
    if (chooser == nullptr || !chooser->isVisible()) {
        const auto save = [this](const QString &code) {
            panels_.savePanel->StationCode = code;
            return panels_.savePanel->ExternalSave();
        };
        chooser = new frmStation(platform_, programFolder_, save, this);
        chooser->setAttribute(Qt::WA_DeleteOnClose);
        station_ = chooser;
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
        preview_ = std::make_unique<frmPreview>(PreviewContext{platform_, workplace_.settings, workplace_.step,
                                                               workplace_.datTracks, workplace_.datJingles,
                                                               workplace_.drives, [this] { reopenCatalogues(); }},
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

void frmMain::showConvert() {
    if (!convert_) {
        convert_ = std::make_unique<frmConvert>(
            ConvertContext{platform_, workplace_.settings, programFolder_, workplace_.step, workplace_.datList,
                           *panels_.gridPanel, *completion_, [this](const QString &sentence) { tell(sentence); }},
            this);
    }
    convert_->Form_Load();
    convert_->open();
}

void frmMain::showProcess(bool visible) const {
    panels_.recorderPanel->lblProcess->setVisible(visible);
    // The window does nothing else until the take is processed.
    panels_.recorderPanel->repaint();
}

} // namespace orvel
