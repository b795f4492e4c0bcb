// The windows that open from the main window; each is made on first use and kept.
#include "app/frm_main.h"
#include "platform/audio.h"

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
            settings,
            drives_,
            [this] {
                filePanel->refreshNew();
                filePanel->refreshOk();
                reopenPlaylist();
            },
            [this](const QString &sentence) { tell(sentence); },
            [this] { return step.PlaylistTakeRunning; }};
}

void frmMain::reopenPlaylist() {
    if (!datList.isOpen()) {
        return;
    }
    const int row = gridPanel->currentRow();
    gridPanel->openPlaylist(settings.NewPath, datList.fileName());
    gridPanel->selectRow(row);
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
            platform_, settings, programFolder_, [this] { gridPanel->steps().setStyles(applyStepStyles(settings)); },
            this);
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
            savePanel->StationCode = code;
            return savePanel->ExternalSave();
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
        preview_ = std::make_unique<frmPreview>(
            PreviewContext{platform_, settings, step, datTracks, datJingles, drives_, [this] { reopenCatalogues(); }},
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
        convert_ = std::make_unique<frmConvert>(ConvertContext{platform_, settings, programFolder_, step, datList,
                                                               *gridPanel, *completion_,
                                                               [this](const QString &sentence) { tell(sentence); }},
                                                this);
    }
    convert_->Form_Load();
    convert_->open();
}

void frmMain::showProcess(bool visible) const {
    recorderPanel->lblProcess->setVisible(visible);
    // The window does nothing else until the take is processed.
    recorderPanel->repaint();
}

} // namespace orvel
