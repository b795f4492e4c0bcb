#include "windows/frm_export.h"

#include "platform/file_system.h"
#include "station/paths.h"
#include "station/shell_copy.h"
#include "windows/on.h"

#include <QDir>
#include <QHBoxLayout>
#include <QVBoxLayout>

#include <algorithm>

namespace orvel {

frmExport::frmExport(TransferContext context, QWidget *parent)
    : QDialog(parent), browser(new FolderBrowser(context.platform.files, {}, FolderBrowser::Files::Hidden, this)),
      barProgres(new Gauge(this)), cmdExport(new QPushButton(QStringLiteral("Start Export"), this)),
      cmdStop(new QPushButton(QStringLiteral("Verlaat dit scherm"), this)), lblResult(new QLabel(this)),
      context_(std::move(context)) {
    setObjectName(QStringLiteral("frmExport"));
    setWindowTitle(QStringLiteral("Exporteren van playlists en voicetracks"));
    barProgres->setObjectName(QStringLiteral("barProgres"));
    barProgres->setAccessibleName(tr("Voortgang"));
    lblResult->setObjectName(QStringLiteral("lblResult"));
    lblResult->setAccessibleDescription(tr("Wat er gekopieerd werd"));
    lblResult->setWordWrap(true);
    lblResult->setMinimumHeight(fontMetrics().height() * 2);
    cmdExport->setObjectName(QStringLiteral("cmdExport"));
    cmdExport->setProperty("role", QStringLiteral("primary"));
    cmdExport->setDefault(true);
    cmdStop->setObjectName(QStringLiteral("cmdStop"));
    cmdStop->setAutoDefault(false);
    layOut();
    on(cmdExport, &QPushButton::clicked, this, &frmExport::cmdExport_Click);
    on(cmdStop, &QPushButton::clicked, this, &frmExport::cmdStop_Click);
}

void frmExport::layOut() {
    auto *buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(cmdExport);
    buttons->addWidget(cmdStop);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(browser, 1);
    layout->addWidget(barProgres);
    layout->addWidget(lblResult);
    layout->addLayout(buttons);
    setMinimumWidth(fontMetrics().averageCharWidth() * 65); // room for the title
}

void frmExport::Form_Load() {
    barProgres->setValue(0);
    lblResult->clear();
    chooseFolder(*browser, context_.settings.ExportPath, context_.drives);
}

std::vector<frmExport::Source> frmExport::sources() const {
    const Settings &settings = context_.settings;
    std::vector<Source> all = {{settings.OkPath, QStringLiteral("*.mdb")}, {settings.OkPath, QStringLiteral("*.mp3")}};
    if (settings.ServerMode && !settings.VoicetrackPath.isEmpty()) {
        all.push_back({settings.VoicetrackPath, QStringLiteral("*.mp3")});
    }
    std::erase_if(all, [this](const Source &source) {
        return context_.platform.files.list(source.folder, source.pattern).isEmpty();
    });
    return all;
}

void frmExport::cmdExport_Click() {
    const QString target = withoutRootSeparator(browser->folder());
    const std::vector<Source> all = sources();
    barProgres->setValue(0);
    if (QDir::isRelativePath(target)) {
        // A drive letter that the station does not have.
        lblResult->setText(tr("De schijf van deze map werd niet gevonden."));
    } else if (all.empty()) {
        lblResult->setText(tr("Er is nog niets afgewerkt om te exporteren."));
    } else if (std::any_of(all.begin(), all.end(), [&](const Source &source) {
                   return context_.platform.files.isSameFolder(source.folder, target);
               })) {
        lblResult->setText(tr("In deze map staan de afgewerkte bestanden al. Kies een andere map."));
    } else {
        copy(all, target);
        browser->refresh();
    }
}

void frmExport::copy(const std::vector<Source> &sources, const QString &target) {
    int total = 0;
    for (const Source &source : sources) {
        total += static_cast<int>(context_.platform.files.list(source.folder, source.pattern).size());
    }
    barProgres->setMaximum(total);
    int copied = 0;
    for (const Source &source : sources) {
        const ShellCopyResult part = Global::ShellCopyFile(context_.platform, inFolder(source.folder, source.pattern),
                                                           target, false, QStringLiteral("Copieert...."),
                                                           [this] { barProgres->setValue(barProgres->value() + 1); });
        copied += part.copied;
        if (part.stopped) {
            break;
        }
    }
    lblResult->setText(tr("%1 van %2 bestanden gekopieerd.").arg(copied).arg(total));
}

} // namespace orvel
