#include "playlist/frm_export.h"

#include "platform/file_system.h"
#include "shell/paths.h"
#include "shell/shell_copy.h"

#include <QHBoxLayout>
#include <QVBoxLayout>

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
    auto *buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(cmdExport);
    buttons->addWidget(cmdStop);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(browser, 1);
    layout->addWidget(barProgres);
    layout->addWidget(lblResult);
    layout->addLayout(buttons);
    connect(cmdExport, &QPushButton::clicked, this, &frmExport::cmdExport_Click);
    connect(cmdStop, &QPushButton::clicked, this, &frmExport::cmdStop_Click);
}

void frmExport::Form_Load() {
    barProgres->setValue(0);
    lblResult->clear();
    chooseFolder(*browser, context_.settings.ExportPath, context_.drives);
}

void frmExport::cmdExport_Click() {
    const QString &finished = context_.settings.OkPath;
    const QStringList patterns = {QStringLiteral("*.mdb"), QStringLiteral("*.mp3")};
    int total = 0;
    for (const QString &pattern : patterns) {
        total += static_cast<int>(context_.platform.files.list(finished, pattern).size());
    }
    if (total == 0) {
        lblResult->setText(tr("Er is nog niets afgewerkt om te exporteren."));
        return;
    }
    const QString target = withoutRootSeparator(browser->folder());
    barProgres->setMaximum(total);
    barProgres->setValue(0);
    ShellCopyResult result;
    for (const QString &pattern : patterns) {
        const ShellCopyResult part =
            ShellCopyFile(context_.platform, this, joined(finished, QStringLiteral("\\") + pattern), target, false,
                          QStringLiteral("Copieert...."));
        result.copied += part.copied;
        result.skipped += part.skipped;
        barProgres->setValue(result.copied + result.skipped);
    }
    QString sentence = tr("%1 van %2 bestanden gekopieerd.").arg(result.copied).arg(total);
    lblResult->setText(sentence);
    browser->refresh();
}

} // namespace orvel
