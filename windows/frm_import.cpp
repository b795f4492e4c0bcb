#include "windows/frm_import.h"

#include "platform/file_system.h"
#include "platform/prompts.h"
#include "platform/runtime_error.h"
#include "playlist/playlist_check.h"
#include "station/ignore_errors.h"
#include "station/paths.h"
#include "station/shell_copy.h"
#include "windows/on.h"

#include <QHBoxLayout>
#include <QVBoxLayout>

namespace orvel {

namespace {

const QString playlistPattern = QStringLiteral("*.mdb");

} // namespace

frmImport::frmImport(TransferContext context, QWidget *parent)
    : QDialog(parent),
      browser(new FolderBrowser(context.platform.files, {QStringLiteral("*")}, FolderBrowser::Files::Shown, this)),
      cmdImport(new QPushButton(QStringLiteral("Start Import"), this)),
      cmdStop(new QPushButton(QStringLiteral("Verlaat dit scherm"), this)), lblResult(new QLabel(this)),
      context_(std::move(context)) {
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
    // Its files would be "safe in the to-do folder" and could be deleted.
    if (context_.platform.files.isSameFolder(source, context_.settings.NewPath)) {
        lblResult->setText(tr("Deze map is zelf de map met te bewerken playlists."));
        return;
    }
    // The playlist of the take could be replaced under it.
    if (context_.takeRuns()) {
        lblResult->setText(tr("Er loopt een opname. Importeer als die gestopt is."));
        return;
    }
    try {
        copyPlaylists(source);
    } catch (...) {
        context_.refreshLists(); // what arrived, arrived
        throw;
    }
    context_.refreshLists();
    close();
}

void frmImport::copyPlaylists(const QString &source) {
    const QStringList names = context_.platform.files.list(source, playlistPattern);
    Global::ShellCopyFile(context_.platform, inFolder(source, playlistPattern), context_.settings.NewPath, false,
                          QStringLiteral("Copieert...."));
    QStringList sentences = {unusable(names)};
    try {
        if (!context_.settings.Nodelete) {
            sentences << offerDeletion(source);
        }
    } catch (...) {
        tell(sentences);
        throw;
    }
    tell(sentences);
}

void frmImport::tell(QStringList sentences) const {
    sentences.removeAll(QString());
    if (!sentences.isEmpty()) {
        context_.tell(sentences.join(u' '));
    }
}

QString frmImport::unusable(const QStringList &names) {
    PlaylistCheck check(context_.platform.databases);
    QStringList others;
    for (const QString &name : names) {
        const bool arrived = context_.platform.files.fileExists(inFolder(context_.settings.NewPath, name));
        if (arrived && !check.problem(context_.settings.NewPath, name).isEmpty()) {
            others << name;
        }
    }
    return others.isEmpty() ? QString() : tr("Geen bruikbare playlist: %1.").arg(others.join(QStringLiteral(", ")));
}

QString frmImport::offerDeletion(const QString &source) {
    if (!context_.platform.prompts.ask(QStringLiteral("Mogen de import-bestanden gewist worden ?"),
                                       QStringLiteral("Import-bestanden wissen"))) {
        return {};
    }
    QStringList kept;
    const QStringList names = context_.platform.files.list(source, playlistPattern);
    for (const QString &name : names) {
        // A file whose copy failed, was stopped or was not wanted is the only one of its kind.
        if (!isSafe(source, name) || !removeSource(source, name)) {
            kept << name;
        }
    }
    return kept.isEmpty() ? QString()
                          : tr("Niet gewist, want niet gekopieerd: %1.").arg(kept.join(QStringLiteral(", ")));
}

bool frmImport::removeSource(const QString &source, const QString &name) const {
    FileSystem &files = context_.platform.files;
    const QString path = inFolder(source, name);
    const QString aside = path + QStringLiteral(".gewist");
    try {
        files.move(path, aside);
        // Both folders may be one by a way that no path shows (a disk that is mounted twice): then the copy went along.
        if (!files.fileExists(inFolder(context_.settings.NewPath, name))) {
            files.move(aside, path);
            return false;
        }
        files.remove(aside);
    } catch (const RuntimeError &error) {
        ignoringErrors([&] { files.move(aside, path); });
        throw RuntimeError(error.number(), path);
    }
    return true;
}

bool frmImport::isSafe(const QString &source, const QString &name) const {
    const FileSystem &files = context_.platform.files;
    const QString copy = inFolder(context_.settings.NewPath, name);
    bool same = false;
    // What cannot be read cannot be compared, and is not safe.
    ignoringErrors([&] { same = files.fileExists(copy) && files.read(copy) == files.read(inFolder(source, name)); });
    return same;
}

} // namespace orvel
