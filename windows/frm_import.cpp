#include "windows/frm_import.h"

#include "windows/on.h"

#include <QHBoxLayout>
#include <QVBoxLayout>

namespace orvel {

frmImport::frmImport(TransferContext context, QWidget *parent)
    : QDialog(parent),
      browser(new FolderBrowser(context.platform.files, {QStringLiteral("*")}, FolderBrowser::Files::Shown, this)),
      cmdImport(new QPushButton(QStringLiteral("Start Import"), this)),
      cmdStop(new QPushButton(QStringLiteral("Verlaat dit scherm"), this)), lblResult(new QLabel(this)),
      context_(std::move(context)), import_(context_) {
    setObjectName(QStringLiteral("frmImport"));
    setWindowTitle(QStringLiteral("Importeren van playlist(s)"));
    cmdImport->setObjectName(QStringLiteral("cmdImport"));
    cmdImport->setProperty("role", QStringLiteral("primary"));
    cmdImport->setDefault(true);
    cmdStop->setObjectName(QStringLiteral("cmdStop"));
    cmdStop->setAutoDefault(false);
    lblResult->setObjectName(QStringLiteral("lblResult"));
    lblResult->setAccessibleDescription(tr("Waarom er niets geïmporteerd werd"));
    lblResult->setWordWrap(true);
    browser->letBrowse(context_.platform.prompts);
    layOut();
    on(cmdImport, &QPushButton::clicked, this, &frmImport::cmdImport_Click);
    on(cmdStop, &QPushButton::clicked, this, &frmImport::cmdStop_Click);
    on(browser, &FolderBrowser::folderChanged, lblResult, &QLabel::clear);
}

void frmImport::layOut() {
    auto *buttons = new QHBoxLayout;
    buttons->addWidget(lblResult, 1);
    buttons->addWidget(cmdImport);
    buttons->addWidget(cmdStop);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(browser, 1);
    layout->addLayout(buttons);
}

void frmImport::Form_Load() {
    chooseFolder(*browser, context_.settings.ImportPath, context_.drives);
}

void frmImport::cmdImport_Click() {
    const QString source = withoutRootSeparator(browser->folder());
    lblResult->setText(import_.refusal(source));
    if (lblResult->text().isEmpty()) {
        import_.run(source);
        close();
    }
}

} // namespace orvel
