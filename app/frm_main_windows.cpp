// The windows that open from the main window; each is made on first use and kept.
#include "app/frm_main.h"

namespace orvel {

namespace {

void bringUp(QWidget &window) {
    window.show();
    window.raise();
    window.activateWindow();
}

} // namespace

TransferContext frmMain::transferContext() {
    return {platform_, settings, drives_,
            [this] {
                filePanel->refreshNew();
                filePanel->refreshOk();
            },
            [this](const QString &sentence) { tell(sentence); }};
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
    if (!station_ || !station_->isVisible()) {
        station_ = new frmStation(
            platform_, programFolder_,
            [this](const QString &code) {
                savePanel->StationCode = code;
                return savePanel->ExternalSave();
            },
            this);
        station_->setAttribute(Qt::WA_DeleteOnClose);
    }
    bringUp(*station_);
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
            PreviewContext{platform_, settings, step, datTracks, datJingles, drives_}, this);
    }
    preview_->Form_Load();
    preview_->open();
}

} // namespace orvel
