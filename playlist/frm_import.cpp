#include "playlist/frm_import.h"

#include "platform/file_system.h"
#include "platform/prompts.h"
#include "playlist/playlist_check.h"
#include "shell/paths.h"
#include "shell/shell_copy.h"

#include <QFileInfo>
#include <QHBoxLayout>
#include <QVBoxLayout>

namespace orvel {

namespace {

const QString playlistPattern = QStringLiteral("*.mdb");

QString inFolder(const QString &folder, const QString &name) {
    return joined(folder, QStringLiteral("\\") + name);
}

} // namespace

frmImport::frmImport(TransferContext context, QWidget *parent)
    : QDialog(parent),
      browser(new FolderBrowser(context.platform.files, {QStringLiteral("*")}, FolderBrowser::Files::Shown, this)),
      cmdImport(new QPushButton(QStringLiteral("Start Import"), this)),
      cmdStop(new QPushButton(QStringLiteral("Verlaat dit scherm"), this)), context_(std::move(context)) {
    setObjectName(QStringLiteral("frmImport"));
    setWindowTitle(QStringLiteral("Importeren van playlist(s)"));
    cmdImport->setObjectName(QStringLiteral("cmdImport"));
    cmdImport->setProperty("role", QStringLiteral("primary"));
    cmdImport->setDefault(true);
    cmdStop->setObjectName(QStringLiteral("cmdStop"));
    cmdStop->setAutoDefault(false);
    auto *buttons = new QHBoxLayout;
    buttons->addStretch();
    buttons->addWidget(cmdImport);
    buttons->addWidget(cmdStop);
    auto *layout = new QVBoxLayout(this);
    layout->addWidget(browser, 1);
    layout->addLayout(buttons);
    connect(cmdImport, &QPushButton::clicked, this, &frmImport::cmdImport_Click);
    connect(cmdStop, &QPushButton::clicked, this, &frmImport::cmdStop_Click);
}

void frmImport::Form_Load() {
    chooseFolder(*browser, context_.settings.ImportPath, context_.drives);
}

void frmImport::cmdImport_Click() {
    const QString source = withoutRootSeparator(browser->folder());
    if (isToDoFolder(source)) {
        context_.tell(tr("De gekozen map is zelf de map met te bewerken playlists."));
        return;
    }
    const QStringList names = context_.platform.files.list(source, playlistPattern);
    ShellCopyFile(context_.platform, this, inFolder(source, playlistPattern), context_.settings.NewPath, false,
                  QStringLiteral("Copieert...."));
    tellWhatIsNoPlaylist(names);
    if (!context_.settings.Nodelete) {
        offerDeletion(source);
    }
    context_.refreshLists();
    close();
}

bool frmImport::isToDoFolder(const QString &source) const {
    const QString canonical = QFileInfo(source).canonicalFilePath();
    return !canonical.isEmpty() && canonical == QFileInfo(context_.settings.NewPath).canonicalFilePath();
}

void frmImport::tellWhatIsNoPlaylist(const QStringList &names) {
    PlaylistCheck check(context_.platform.databases);
    QStringList others;
    for (const QString &name : names) {
        const bool arrived = context_.platform.files.fileExists(inFolder(context_.settings.NewPath, name));
        if (arrived && !check.problem(context_.settings.NewPath, name).isEmpty()) {
            others << name;
        }
    }
    if (!others.isEmpty()) {
        context_.tell(tr("Geen bruikbare playlist: %1.").arg(others.join(QStringLiteral(", "))));
    }
}

void frmImport::offerDeletion(const QString &source) {
    if (!context_.platform.prompts.ask(QStringLiteral("Mogen de import-bestanden gewist worden ?"),
                                       QStringLiteral("Import-bestanden wissen"))) {
        return;
    }
    QStringList kept;
    const QStringList names = context_.platform.files.list(source, playlistPattern);
    for (const QString &name : names) {
        // A file whose copy failed, was stopped or was not wanted is the only one of its kind.
        if (isSafe(source, name)) {
            context_.platform.files.remove(inFolder(source, name));
        } else {
            kept << name;
        }
    }
    if (!kept.isEmpty()) {
        context_.tell(tr("Niet gewist, want niet gekopieerd: %1.").arg(kept.join(QStringLiteral(", "))));
    }
}

bool frmImport::isSafe(const QString &source, const QString &name) const {
    const FileSystem &files = context_.platform.files;
    const QString copy = inFolder(context_.settings.NewPath, name);
    return files.fileExists(copy) && files.read(copy) == files.read(inFolder(source, name));
}

} // namespace orvel
