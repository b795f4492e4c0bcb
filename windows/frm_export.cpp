#include "windows/frm_export.h"

#include "windows/on.h"

#include <QHBoxLayout>
#include <QVBoxLayout>

namespace orvel {

frmExport::frmExport(TransferContext context, QWidget *parent)
    : QDialog(parent), browser(new FolderBrowser(context.platform.files, {}, FolderBrowser::Files::Hidden, this)),
      barProgres(new Gauge(this)), cmdExport(new QPushButton(QStringLiteral("Start Export"), this)),
      cmdStop(new QPushButton(QStringLiteral("Verlaat dit scherm"), this)), lblResult(new QLabel(this)),
      context_(std::move(context)), export_(context_) {
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
    browser->letBrowse(context_.platform.prompts);
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

void frmExport::cmdExport_Click() {
    const QString target = withoutRootSeparator(browser->folder());
    barProgres->setValue(0);
    lblResult->setText(export_.refusal(target));
    if (lblResult->text().isEmpty()) {
        barProgres->setMaximum(export_.count());
        lblResult->setText(export_.run(target, [this] { barProgres->setValue(barProgres->value() + 1); }));
        browser->refresh();
    }
}

} // namespace orvel
