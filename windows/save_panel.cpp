#include "windows/save_panel.h"

#include "platform/file_system.h"
#include "platform/prompts.h"
#include "platform/runtime_error.h"
#include "production/transcode.h"
#include "station/ignore_errors.h"
#include "station/paths.h"
#include "station/shell_copy.h"
#include "windows/on.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QGuiApplication>
#include <QHBoxLayout>

#include <utility>

namespace orvel {

namespace {

/// Restores something however a scope is left.
class Finally {
  public:
    explicit Finally(std::function<void()> action) : action_(std::move(action)) {}
    Finally(const Finally &) = delete;
    Finally &operator=(const Finally &) = delete;
    Finally(Finally &&) = delete;
    Finally &operator=(Finally &&) = delete;
    ~Finally() { action_(); }

  private:
    std::function<void()> action_;
};

QPushButton *button(QWidget *parent, const char *name, const QString &caption, const QString &toolTip,
                    const char *icon) {
    auto *made = new QPushButton(QIcon(QString::fromLatin1(icon)), caption, parent);
    made->setObjectName(QString::fromLatin1(name));
    made->setToolTip(toolTip);
    made->setEnabled(false);
    return made;
}

} // namespace

SavePanel::SavePanel(SaveContext context, QWidget *parent)
    : QWidget(parent), cmdSave(button(this, "cmdSave", QStringLiteral("Bewaar opname"),
                                      tr("Bewaar de opname als voicetrack"), ":/icons/save.svg")),
      cmdImport(button(this, "cmdImport", tr("Importeer"), tr("Gebruik een bestaand geluidsbestand voor deze stap"),
                       ":/icons/sound_import.svg")),
      cmdMultivoice(button(this, "cmdMultivoice", QStringLiteral("Multi - voice"),
                           tr("Spreek deze stap voor elk station apart in"), ":/icons/multivoice.svg")),
      ledMulti(new Lamp(this)), barProgress(new Gauge(this)), context_(std::move(context)),
      FileR(context_.platform.audioFiles.reader()), FileW(context_.platform.audioFiles.mp3Writer()) {
    ledMulti->setObjectName(QStringLiteral("ledMulti"));
    ledMulti->setAccessibleName(tr("Multivoice staat aan"));
    ledMulti->setColour(QColor(0xFF, 0xD0, 0x20));
    barProgress->setObjectName(QStringLiteral("barProgress"));
    barProgress->setAccessibleName(QStringLiteral("Comprimeert bestand"));
    barProgress->setCaption(QStringLiteral("Comprimeert bestand"));
    barProgress->setMinimumWidth(fontMetrics().horizontalAdvance(barProgress->caption()) * 3 / 2);
    barProgress->hide();
    auto *layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(cmdSave);
    layout->addWidget(cmdImport);
    layout->addWidget(cmdMultivoice);
    layout->addWidget(ledMulti);
    layout->addStretch();
    on(cmdSave, &QPushButton::clicked, this, &SavePanel::cmdSave_Click);
    on(cmdMultivoice, &QPushButton::clicked, this, &SavePanel::cmdMultivoice_Click);
    on(&context_.grid, &GridPanel::stepFileChanged, cmdImport, &QWidget::setEnabled);
}

void SavePanel::setFormat(const Mp3Format &format) {
    FileW->setFormat(format);
}

void SavePanel::cmdMultivoice_Click() {
    ledMulti->setLit(!ledMulti->isLit());
}

SavePanel::Take SavePanel::take() const {
    const QString temp = QStringLiteral("\\temp\\");
    const QString &name = context_.step.VoiceTrackName;
    return {name, takeFile(context_.programFolder, temp, name, QStringLiteral(".wav")),
            takeFile(context_.programFolder, temp, name, QStringLiteral(".mp3"))};
}

void SavePanel::cmdSave_Click() {
    // Window events run during the conversion: a second click must not file the take twice.
    if (saving_) {
        return;
    }
    context_.stopPlayer();
    whileBusy([this] {
        markBefore_ = context_.grid.currentImported();
        context_.grid.setCurrentImported(true);
        if (save()) {
            cmdSave->setEnabled(false);
        }
    });
}

void SavePanel::whileBusy(const std::function<void()> &action) {
    saving_ = true;
    context_.setBusy(true);
    const Finally ready([this] {
        saving_ = false;
        context_.setBusy(false);
    });
    action();
}

bool SavePanel::ExternalSave() {
    if (saving_ || context_.step.PlaylistTakeRunning) {
        context_.tell(tr("Deze opname kan nog niet bewaard worden."));
        return false;
    }
    whileBusy([this] { saveVersion(); });
    return true;
}

void SavePanel::saveVersion() {
    const bool isGeneral = StationCode == QStringLiteral("000") || StationCode == QStringLiteral("999");
    Take version = take();
    version.name = isGeneral ? version.name : StationCode + version.name;
    version.mp3 = takeFile(context_.programFolder, QStringLiteral("\\temp\\"), version.name, QStringLiteral(".mp3"));
    if (!isServerThere(version) || !encodeAndFile(version)) {
        return;
    }
    if (!context_.platform.prompts.ask(QStringLiteral("Bent U klaar met deze inteksting ?"),
                                       QStringLiteral("Multivoice inteksting"))) {
        return;
    }
    context_.completion.CheckLijst();
    cmdSave->setEnabled(false);
    ledMulti->setLit(false);
}

bool SavePanel::save() {
    const Take current = take();
    if (RecorderOnly) {
        return saveAs(current);
    }
    if (!context_.settings.UseProcessor) {
        // The take is an MP3 file already.
        const bool filed = fileVoiceTrack(current);
        if (filed) {
            context_.platform.files.remove(current.mp3);
        } else {
            context_.recovery.keep(current.mp3);
        }
        context_.completion.CheckLijst();
        return true;
    }
    if (ledMulti->isLit()) {
        context_.showStations();
        return false;
    }
    return saveForPlaylist(current);
}

bool SavePanel::saveAs(const Take &take) {
    if (!context_.platform.files.fileExists(take.wav)) {
        return false;
    }
    const QString chosen = context_.platform.prompts.saveFileName(
        QStringLiteral("Geef naam en locatie waarmee U het bestand wenst te bewaren"),
        take.name + QStringLiteral(".mp3"));
    if (!chosen.isEmpty()) {
        const QString kept = encodeAndKeep(take);
        settle(kept, shellCopy(take.mp3, chosen), take);
    }
    return true;
}

bool SavePanel::saveForPlaylist(const Take &take) {
    if (!context_.platform.files.fileExists(take.wav)) {
        return false;
    }
    if (!isServerThere(take) || !encodeAndFile(take)) {
        return false;
    }
    context_.completion.CheckLijst();
    return true;
}

bool SavePanel::isServerThere(const Take &take) {
    const QString &folder = context_.settings.VoicetrackPath;
    if (!context_.settings.ServerMode || context_.platform.files.folderExists(folder)) {
        return true;
    }
    const QString sentence =
        tr("%1 is niet bewaard: de map met voicetracks %2 is niet bereikbaar. De opname blijft klaarstaan.")
            .arg(take.name, folder);
    context_.tell(sentence);
    takeBackMark(); // before the box says that nothing was saved
    context_.platform.prompts.message(sentence, QStringLiteral("Foutmelding"), MessageIcon::Exclamation);
    return false;
}

void SavePanel::takeBackMark() {
    context_.grid.setCurrentImported(markBefore_);
}

bool SavePanel::encodeAndFile(const Take &take) {
    FileSystem &files = context_.platform.files;
    const QString kept = encodeAndKeep(take);
    const bool filed = fileVoiceTrack(take);
    const bool isAsBefore = !filed && converted_ && !kept.isEmpty();
    if (isAsBefore) {
        // The next press of the button files it.
        files.move(kept, take.wav);
        takeBackMark();
        context_.tell(tr("%1 is niet weggeschreven; de opname blijft klaarstaan.").arg(take.name));
    } else {
        settle(kept, filed, take);
    }
    if (files.fileExists(take.mp3)) {
        files.remove(take.mp3);
    }
    return !isAsBefore;
}

QString SavePanel::encodeAndKeep(const Take &take) {
    converted_ = TranscodeToMp3(take.wav, take.mp3);
    return context_.platform.files.fileExists(take.wav) ? context_.recovery.keep(take.wav) : QString();
}

void SavePanel::settle(const QString &kept, bool filed, const Take &take) {
    if (filed) {
        context_.recovery.discard(kept);
        context_.tell(tr("%1 is bewaard.").arg(take.name));
    } else if (kept.isEmpty()) {
        context_.tell(tr("Er is geen opname voor %1.").arg(take.name));
    } else if (!converted_) {
        context_.tell(
            tr("%1 kon niet worden omgezet naar MP3; de opname staat veilig in de map herstel.").arg(take.name));
    } else {
        context_.tell(tr("%1 is niet weggeschreven; de opname staat veilig in de map herstel.").arg(take.name));
    }
}

bool SavePanel::fileVoiceTrack(const Take &take) {
    const QString fileName = QStringLiteral(".mp3");
    if (context_.settings.ServerMode) {
        return shellCopy(take.mp3,
                         takeFile(context_.settings.VoicetrackPath, QStringLiteral("\\"), take.name, fileName));
    }
    try {
        context_.platform.files.copy(take.mp3,
                                     takeFile(context_.programFolder, QStringLiteral("\\ok\\"), take.name, fileName));
    } catch (const RuntimeError &error) {
        throw FatalError(error);
    }
    return true;
}

bool SavePanel::shellCopy(const QString &source, const QString &target) {
    return Global::ShellCopyFile(context_.platform, source, target, false, QStringLiteral("Copying...")).copied > 0;
}

bool SavePanel::TranscodeToMp3(const QString &wavPath, const QString &mp3Path) {
    constexpr int pumpIntervalMs = 16;
    QGuiApplication::setOverrideCursor(Qt::WaitCursor);
    barProgress->setValue(0);
    barProgress->show();
    const Finally done([this] {
        QGuiApplication::restoreOverrideCursor();
        barProgress->setValue(0);
        barProgress->hide();
    });
    QElapsedTimer sincePump;
    sincePump.start();
    const bool converted = convert(*FileR, *FileW, wavPath, mp3Path, [&](int percent) {
        barProgress->setValue(percent);
        if (sincePump.elapsed() >= pumpIntervalMs) {
            QCoreApplication::processEvents();
            sincePump.restart();
        }
    });
    if (!converted && context_.platform.files.fileExists(mp3Path)) {
        ignoringErrors([&] { context_.platform.files.remove(mp3Path); });
    }
    return converted;
}

} // namespace orvel
