#include "windows/frm_convert.h"

#include "platform/audio.h"
#include "platform/file_system.h"
#include "platform/prompts.h"
#include "platform/runtime_error.h"
#include "playlist/field_values.h"
#include "playlist/step_types.h"
#include "production/conversions.h"
#include "production/transcode.h"
#include "station/ignore_errors.h"
#include "station/paths.h"

#include <QCoreApplication>
#include <QGuiApplication>
#include <QScopeGuard>

#include <algorithm>

namespace orvel {

namespace {

const QString errorTitle = QStringLiteral("Foutmelding");
constexpr qint64 pumpIntervalMs = 16;

bool isWav(const QString &file) {
    return file.right(3).toUpper() == QStringLiteral("WAV");
}

} // namespace

void frmConvert::Form_Load() {
    format_ = mp3Format(context_.settings.BitRate, context_.settings.FreeFormat);
    progressconvert->setValue(0);
    progressconvert->setCaption({});
    lstFailed->clear();
    browser->refresh();
    showState();
}

void frmConvert::showState() {
    const bool hasFiles = browser->File1->count() > 0;
    const bool hasFile = !browser->selectedFile().isEmpty();
    cmdBatch->setEnabled(hasFiles && !running_);
    cmdSingle->setEnabled(hasFile && !running_);
    cmdPlay->setEnabled((hasFile || player_->state() == WavePlayer::playing) && !running_);
    browser->setEnabled(!running_);
    cmdQuit->setText(running_ ? tr("Stoppen") : tr("Sluiten"));
}

QString frmConvert::sourcePath(const QString &file) const {
    return inFolder(browser->folder(), file);
}

QString frmConvert::targetPath(const QString &name) const {
    return takeFile(context_.programFolder, QStringLiteral("\\ok\\"), name, QStringLiteral(".mp3"));
}

QString frmConvert::partPath(const Import &import) const {
    return targetPath(import.name) + QStringLiteral(".part%1").arg(import.row);
}

void frmConvert::cmdSingle_Click() {
    if (!context_.step.StepSelected) {
        context_.platform.prompts.message(QStringLiteral("Geen Presentatie gekozen in playlist"), errorTitle,
                                          MessageIcon::Exclamation);
        return;
    }
    if (import({{browser->selectedFile(), context_.step.VoiceTrackName, context_.grid.currentRow()}})) {
        context_.completion.CheckLijst();
    }
}

void frmConvert::cmdBatch_Click() {
    if (context_.datList.presCount() != browser->File1->count()) {
        context_.platform.prompts.message(QStringLiteral("Aantal bestanden stemt niet overeen met aantal bestanden !"),
                                          errorTitle, MessageIcon::Exclamation);
        return;
    }
    browser->selectFile(0);
    const std::vector<Import> imports = batch();
    if (import(imports)) {
        // The last step is the current one then, in the grid as well: what is recorded next belongs to what is
        // selected.
        if (!imports.empty()) {
            ignoringErrors([&] { context_.grid.selectRow(imports.back().row); });
        }
        context_.completion.CheckLijst();
    }
}

std::vector<frmConvert::Import> frmConvert::batch() const {
    const QStringList files = browser->files();
    std::vector<Import> imports;
    qsizetype next = 0;
    for (int row = 0; row < context_.datList.stepCount(); ++row) {
        if (toWholeNumber(context_.datList.value(row, TypeColumn)) == PresStep) {
            imports.push_back({files.at(next), toText(context_.datList.value(row, AtrackColumn)), row});
            next = std::min(next + 1, files.size() - 1);
        }
    }
    return imports;
}

bool frmConvert::import(const std::vector<Import> &imports) {
    // The names and marks of the steps belong to the take until it is stopped.
    if (context_.step.PlaylistTakeRunning) {
        lstFailed->addItem(tr("Er loopt een opname. Importeer als die gestopt is."));
        return false;
    }
    // A name that cannot be a file's stops everything before anything is done.
    for (const Import &one : imports) {
        static_cast<void>(targetPath(one.name));
    }
    struct Running {
        frmConvert &window;
        explicit Running(frmConvert &owner) : window(owner) {
            window.running_ = true;
            window.stopWanted_ = false;
            QGuiApplication::setOverrideCursor(Qt::WaitCursor);
            window.showState();
        }
        Running(const Running &) = delete;
        Running &operator=(const Running &) = delete;
        Running(Running &&) = delete;
        Running &operator=(Running &&) = delete;
        ~Running() {
            window.running_ = false;
            QGuiApplication::restoreOverrideCursor();
            window.showState();
        }
    };
    player_End();
    const Running running(*this);
    sincePump_.start();
    std::vector<bool> converted(imports.size(), true);
    const bool isWhole = ConvertFiles(imports, converted);
    // However this ends, no part of a voice track stays behind.
    const auto cleared = qScopeGuard([&] {
        for (const Import &one : imports) {
            ignoringErrors([&] { context_.platform.files.remove(partPath(one)); });
        }
    });
    bool goesOn = isWhole;
    for (std::size_t i = 0; goesOn && i < imports.size(); ++i) {
        try {
            goesOn = fileOne(imports[i], converted[i]);
        } catch (const RuntimeError &) {
            // What is recorded next belongs to what is selected.
            ignoringErrors([&] { context_.grid.selectRow(imports[i].row); });
            throw;
        }
    }
    return goesOn;
}

bool frmConvert::ConvertFiles(const std::vector<Import> &imports, std::vector<bool> &converted) {
    Conversions conversions(context_.platform.audioFiles, format_);
    std::vector<std::size_t> places;
    for (std::size_t i = 0; i < imports.size(); ++i) {
        if (isWav(imports[i].file)) {
            conversions.add(sourcePath(imports[i].file), partPath(imports[i]));
            places.push_back(i);
        }
    }
    const int total = static_cast<int>(conversions.count());
    if (total == 0) {
        return true;
    }
    progressconvert->setValue(0);
    conversions.run([&](int done, int percent) {
        progressconvert->setValue(percent);
        progressconvert->setCaption(tr("bestand %1 van %2").arg(std::min(done + 1, total)).arg(total));
        QCoreApplication::processEvents();
        return !stopWanted_;
    });
    progressconvert->setValue(100);
    for (std::size_t number = 0; number < places.size(); ++number) {
        converted[places[number]] = conversions.isConverted(number);
    }
    return !stopWanted_;
}

bool frmConvert::fileOne(const Import &import, bool converted) {
    FileSystem &files = context_.platform.files;
    context_.step.VoiceTrackName = import.name;
    if (!isWav(import.file)) {
        if (!copyMp3(import)) {
            return false; // the step keeps the mark and the voice track that it had
        }
    } else if (converted) {
        files.move(partPath(import), targetPath(import.name));
    } else {
        // A voice track that stands there already is better than none.
        noteFailure(import);
    }
    if (import.row >= 0) {
        context_.grid.steps().setImported(import.row, true);
    }
    return true;
}

bool frmConvert::copyMp3(const Import &import) {
    progressconvert->setCaption(import.file);
    return context_.platform.files.copy(
        sourcePath(import.file), targetPath(import.name), [&](qint64 done, qint64 total) {
            progressconvert->setValue(static_cast<int>(done * 100 / std::max<qint64>(total, 1)));
            if (sincePump_.elapsed() >= pumpIntervalMs) {
                QCoreApplication::processEvents();
                sincePump_.restart();
            }
            return !stopWanted_;
        });
}

void frmConvert::noteFailure(const Import &import) {
    const QString sentence =
        tr("%1 kon niet worden omgezet voor stap %2 (%3).").arg(import.file).arg(import.row + 1).arg(import.name);
    lstFailed->addItem(sentence);
    context_.tell(sentence);
}

void frmConvert::cmdPlay_Click() {
    if (player_->state() == WavePlayer::playing) {
        player_End();
        return;
    }
    try {
        player_->setFileName(sourcePath(browser->selectedFile()));
        player_->start();
    } catch (const RuntimeError &error) {
        lstFailed->addItem(tr("%1 kan niet worden beluisterd: %2.").arg(browser->selectedFile(), error.description()));
        return;
    }
    cmdPlay->setText(tr("Stop"));
    cmdPlay->setIcon(stopIcon_);
}

void frmConvert::player_End() {
    player_->stop();
    player_->close();
    cmdPlay->setText(tr("Beluister"));
    cmdPlay->setIcon(playIcon_);
    showState();
}

void frmConvert::reject() {
    if (running_) {
        stopWanted_ = true;
        return;
    }
    player_End();
    QDialog::reject();
}

} // namespace orvel
