// The windows that open from the main window; each is made on first use and kept.
#include "platform/audio.h"
#include "platform/guarded.h"
#include "playlist/field_values.h"
#include "windows/frm_main.h"

#include <QFileInfo>

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
            platform_, workplace_.settings, stored_, programFolder_,
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
        preview_ = std::make_unique<frmPreview>(
            PreviewContext{platform_, workplace_.step,
                           PreviewSources{platform_.files, workplace_.settings, workplace_.drives, workplace_.datTracks,
                                          workplace_.datJingles, [this](int kind) { openCatalogue(kind); }}},
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

void frmMain::showRecover() {
    if (!recover_) {
        const auto takeRuns = [this] {
            return workplace_.step.PlaylistTakeRunning || panels_.recorderPanel->isCountingDown() ||
                   platform_.sound.recorder().isRecording();
        };
        recover_ = std::make_unique<frmRecover>(
            RecoverContext{platform_.sound,
                           {platform_.files, platform_.prompts, workplace_.recovery, programFolder_, takeRuns},
                           [this](const KeptFile &kept, bool replaced) { recovered(kept, replaced); }},
            this);
    }
    recover_->Form_Load();
    recover_->open();
}

void frmMain::recovered(const KeptFile &kept, bool replaced) {
    switch (kept.kind) {
    case KeptKind::Playlist:
        refreshLists(replaced ? QStringList{kept.name} : QStringList{});
        break;
    case KeptKind::Take:
        offerTake(QFileInfo(kept.name).completeBaseName());
        break;
    case KeptKind::VoiceTrack:
        break;
    }
}

void frmMain::offerTake(const QString &take) {
    if (workplace_.RecorderOnly) {
        workplace_.step.VoiceTrackName = take;
        panels_.stepPanel->lblBestand->setText(take);
        Q_EMIT panels_.recorderPanel->takeReady(true);
        return;
    }
    const Playlist &steps = workplace_.datList;
    for (int row = 0; steps.isOpen() && row < steps.stepCount(); ++row) {
        if (toText(steps.value(row, AtrackColumn)) == take) {
            panels_.gridPanel->selectRow(row);
            Q_EMIT panels_.recorderPanel->takeReady(true);
            return;
        }
    }
}

void frmMain::showProcess(bool visible) const {
    panels_.recorderPanel->lblProcess->setVisible(visible);
    // The window does nothing else until the take is processed.
    panels_.recorderPanel->repaint();
}

} // namespace orvel
