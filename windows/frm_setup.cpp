#include "windows/frm_setup.h"

#include "platform/audio.h"
#include "platform/prompts.h"
#include "settings/setup_rules.h"
#include "widgets/theme.h"

namespace orvel {

namespace {

/// Marks a folder that cannot be used, or is not there yet, with a sign and the reason; an empty reason takes the mark
/// away.
void mark(QLineEdit &edit, QLabel &words, const QString &problem) {
    setStyleProperty(edit, "problem", problem.isEmpty() ? QString() : QStringLiteral("true"));
    edit.setToolTip(problem);
    edit.setAccessibleDescription(problem);
    words.setText(problem.isEmpty() ? QString() : QStringLiteral("\u26A0 ") + problem);
}

} // namespace

void frmSetup::Form_Load() {
    if (isVisible()) {
        return; // brought to the front again: what is being changed stays
    }
    txtPath->setText(settings_.Databasepath);
    txtVoice->setText(settings_.VoicetrackPath);
    chkData->setChecked(saved_.Network);
    chkServer->setChecked(settings_.ServerMode);
    chkMute->setChecked(saved_.Mute);
    ledCBuf->setValue(saved_.CBuffers);
    ledCBufsize->setValue(saved_.Cbuffer_size);
    updCallback->setValue(saved_.CCallBack);
    updCallback_Change();
    updKaart->setRange(-1, static_cast<int>(platform_.sound.outputNames().size()) - 1);
    updKaart->setValue(saved_.CCard);
    updKaart_Change();
    ledCountDown->setValue(settings_.Countdown);
    fraColors->showColours();
    tabSetup->setCurrentIndex(0);
    cobBitrate->setCurrentIndex(saved_.BitRate);
    checkFolders();
}

void frmSetup::updCallback_Change() {
    // One without a name leaves the display as it is.
    if (const QString name = callbackName(updCallback->value()); !name.isEmpty()) {
        ledCallback->setText(name);
    }
}

void frmSetup::updKaart_Change() {
    ledKaart->setText(outputName(platform_.sound.outputNames(), updKaart->value()));
    ledKaart->setAutoScroll(ledKaart->text().size() > ledKaart->characters());
    ledKaart->setToolTip(ledKaart->text());
}

void frmSetup::UpdateWave() {
    const auto count = static_cast<int>(platform_.sound.outputNames().size());
    if (count < 1) {
        platform_.prompts.message(QStringLiteral("Geen geluidskaart gevonden"), errorTitle, MessageIcon::Exclamation);
        return;
    }
    // One below the first device on purpose: the system's default output.
    updKaart->setRange(-1, count - 1);
}

void frmSetup::cmdPath_Click() {
    const QString start = chooserStart(platform_.files, txtPath->text(), programFolder_);
    const QString chosen =
        platform_.prompts.folder(QStringLiteral("Geef de locatie op van de databasebestanden"), start);
    if (!chosen.isEmpty()) {
        txtPath->setText(chosen);
    }
}

void frmSetup::cmdVoice_Click() {
    const QString start = chooserStart(platform_.files, txtVoice->text(), programFolder_);
    const QString chosen =
        platform_.prompts.folder(QStringLiteral("Geef de locatie op van de voicetracks op de server"), start);
    if (!chosen.isEmpty()) {
        txtVoice->setText(chosen);
    }
}

void frmSetup::checkFolders() {
    const QString noDatabases = isNew_ ? missingDatabaseFolder(txtPath->text()) : QString();
    const QString noVoices = isNew_ ? missingVoiceFolder(txtVoice->text()) : QString();
    const QString databases = databaseFolderProblem(platform_.files, txtPath->text(), chkData->isChecked());
    const QString voices = voiceFolderProblem(platform_.files, txtVoice->text(), chkServer->isChecked());
    mark(*txtPath, *lblPath, noDatabases.isEmpty() ? databases : noDatabases);
    mark(*txtVoice, *lblVoice, noVoices.isEmpty() ? voices : noVoices);
}

void frmSetup::markMissing() {
    isNew_ = true;
    checkFolders();
}

Settings frmSetup::edited() const {
    Settings edited = settings_;
    edited.Databasepath = txtPath->text();
    edited.VoicetrackPath = txtVoice->text();
    edited.Cbuffer_size = static_cast<std::int16_t>(ledCBufsize->value());
    edited.CBuffers = static_cast<std::int16_t>(ledCBuf->value());
    edited.CCard = static_cast<std::int16_t>(updKaart->value());
    edited.CCallBack = static_cast<std::int16_t>(updCallback->value());
    edited.Mute = chkMute->isChecked();
    edited.BitRate = chosenBitRate(cobBitrate->currentIndex(), saved_.BitRate);
    edited.Countdown = static_cast<std::int16_t>(ledCountDown->value());
    edited.Network = chkData->isChecked();
    edited.ServerMode = chkServer->isChecked();
    return edited;
}

void frmSetup::cmdSave_Click() {
    const Settings now = edited();
    saveSetup(platform_.files, programFolder_, now);
    saved_ = now;
    applySetup(now, settings_);
    isNew_ = false;
    checkFolders();
    platform_.prompts.message(QStringLiteral("Start het programma opnieuw op"),
                              QStringLiteral("Instellingen gewijzigd"), MessageIcon::Information);
}

} // namespace orvel
