#include "playlist/transfer.h"

#include "platform/file_system.h"
#include "platform/prompts.h"
#include "platform/runtime_error.h"
#include "playlist/playlist_check.h"
#include "station/ignore_errors.h"
#include "station/paths.h"
#include "station/shell_copy.h"

#include <QDir>
#include <QFileInfo>
#include <QObject>
#include <QScopeGuard>

#include <algorithm>

namespace orvel {

namespace {

const QString playlistPattern = QStringLiteral("*.mdb");
const QString copyTitle = QStringLiteral("Copieert....");

} // namespace

std::optional<ForcedFolder> forcedFolder(const QString &settingsPath, const DriveMap &drives) {
    constexpr qsizetype shortestPath = 3;
    if (settingsPath.size() < shortestPath) {
        return {};
    }
    return ForcedFolder{drives.resolve(settingsPath), settingsPath.at(1) == u':' ? settingsPath.left(2) : QString()};
}

QString withoutRootSeparator(const QString &folder) {
    constexpr qsizetype rootLength = 3;
    const bool isDriveRoot = folder.size() == rootLength && folder.at(1) == u':';
    return isDriveRoot ? folder.left(2) : folder;
}

QString PlaylistImport::refusal(const QString &source) const {
    // Its files would be "safe in the to-do folder" and could be deleted.
    if (context_.platform.files.isSameFolder(source, context_.settings.NewPath)) {
        return QObject::tr("Deze map is zelf de map met te bewerken playlists.");
    }
    // The playlist of the take could be replaced under it.
    return context_.takeRuns() ? QObject::tr("Er loopt een opname. Importeer als die gestopt is.") : QString();
}

void PlaylistImport::run(const QString &source) {
    sentences_.clear();
    try {
        copyAndOfferDeletion(source);
    } catch (...) {
        context_.refreshLists({}); // what arrived, arrived
        throw;
    }
    context_.refreshLists({});
}

void PlaylistImport::copyAndOfferDeletion(const QString &source) {
    const auto told = qScopeGuard([this] { tellAll(); });
    const QStringList names = context_.platform.files.list(source, playlistPattern);
    copyPlaylists(inFolder(source, playlistPattern));
    noteUnusable(names);
    if (!context_.settings.Nodelete) {
        offerDeletion(source);
    }
}

void PlaylistImport::tellAll() const {
    if (!sentences_.isEmpty()) {
        context_.tell(sentences_.join(u' '));
    }
}

QString PlaylistImport::refusalOf(const QStringList &paths) const {
    for (const QString &path : paths) {
        const QFileInfo file(path);
        if (file.suffix().compare(QStringLiteral("mdb"), Qt::CaseInsensitive) != 0) {
            return QObject::tr("%1 is geen playlist.").arg(file.fileName());
        }
        if (const QString problem = refusal(file.path()); !problem.isEmpty()) {
            return problem;
        }
    }
    return paths.isEmpty() ? QObject::tr("Hier horen playlists.") : QString();
}

QString PlaylistImport::forecast(const QStringList &paths) const {
    const QString problem = refusalOf(paths);
    if (!problem.isEmpty()) {
        return problem;
    }
    return paths.size() == 1 ? QObject::tr("Laat los om %1 te importeren.").arg(QFileInfo(paths.first()).fileName())
                             : QObject::tr("Laat los om %1 playlists te importeren.").arg(paths.size());
}

void PlaylistImport::runFiles(const QStringList &paths) {
    sentences_.clear();
    const auto told = qScopeGuard([this] {
        tellAll();
        context_.refreshLists({}); // what arrived, arrived
    });
    for (const QString &path : paths) {
        copyPlaylists(path);
        noteUnusable({QFileInfo(path).fileName()});
    }
}

void PlaylistImport::copyPlaylists(const QString &source) {
    CopyWatch watch;
    watch.mayOverwrite = [this](const QString &target) { return mayReplace(target); };
    // At once: the next question may stand open for long, and the open playlist must not be another one under the
    // take that is started meanwhile.
    watch.fileCopied = [this](const QString &target, bool replaced) {
        if (replaced) {
            context_.refreshLists({QFileInfo(target).fileName()});
        }
    };
    Global::ShellCopyFile(context_.platform, source, context_.settings.NewPath, false, copyTitle, watch);
}

bool PlaylistImport::mayReplace(const QString &target) {
    if (context_.takeRuns()) { // one was started while a question stood open
        sentences_ << QObject::tr("Niet overschreven, want er loopt een opname: %1.").arg(QFileInfo(target).fileName());
        return false;
    }
    if (const QString notKept = context_.recovery.keepCopy(target); !notKept.isEmpty()) {
        sentences_ << notKept;
    }
    return true;
}

void PlaylistImport::noteUnusable(const QStringList &names) {
    PlaylistCheck check(context_.platform.databases);
    QStringList others;
    for (const QString &name : names) {
        const bool arrived = context_.platform.files.fileExists(inFolder(context_.settings.NewPath, name));
        if (arrived && !check.problem(context_.settings.NewPath, name).isEmpty()) {
            others << name;
        }
    }
    if (!others.isEmpty()) {
        sentences_ << QObject::tr("Geen bruikbare playlist: %1.").arg(others.join(QStringLiteral(", ")));
    }
}

void PlaylistImport::offerDeletion(const QString &source) {
    if (!context_.platform.prompts.ask(QStringLiteral("Mogen de import-bestanden gewist worden ?"),
                                       QStringLiteral("Import-bestanden wissen"), Preset::No)) {
        return;
    }
    QStringList kept;
    const QStringList names = context_.platform.files.list(source, playlistPattern);
    for (const QString &name : names) {
        // A file whose copy failed, was stopped or was not wanted is the only one of its kind.
        if (!isSafe(source, name) || !removeSource(source, name)) {
            kept << name;
        }
    }
    if (!kept.isEmpty()) {
        sentences_ << QObject::tr("Niet gewist, want niet gekopieerd: %1.").arg(kept.join(QStringLiteral(", ")));
    }
}

bool PlaylistImport::removeSource(const QString &source, const QString &name) const {
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

bool PlaylistImport::isSafe(const QString &source, const QString &name) const {
    const FileSystem &files = context_.platform.files;
    const QString copy = inFolder(context_.settings.NewPath, name);
    bool same = false;
    // What cannot be read cannot be compared, and is not safe.
    ignoringErrors([&] { same = files.fileExists(copy) && files.read(copy) == files.read(inFolder(source, name)); });
    return same;
}

std::vector<PlaylistExport::Source> PlaylistExport::sources() const {
    const Settings &settings = context_.settings;
    std::vector<Source> all = {{settings.OkPath, playlistPattern}, {settings.OkPath, QStringLiteral("*.mp3")}};
    if (settings.ServerMode && !settings.VoicetrackPath.isEmpty()) {
        all.push_back({settings.VoicetrackPath, QStringLiteral("*.mp3")});
    }
    std::erase_if(all, [this](const Source &source) {
        return context_.platform.files.list(source.folder, source.pattern).isEmpty();
    });
    return all;
}

QString PlaylistExport::refusal(const QString &target) const {
    // A drive letter that the station does not have.
    if (QDir::isRelativePath(target)) {
        return QObject::tr("De schijf van deze map werd niet gevonden.");
    }
    const std::vector<Source> all = sources();
    if (all.empty()) {
        return QObject::tr("Er is nog niets afgewerkt om te exporteren.");
    }
    const bool isItself = std::any_of(all.begin(), all.end(), [&](const Source &source) {
        return context_.platform.files.isSameFolder(source.folder, target);
    });
    return isItself ? QObject::tr("In deze map staan de afgewerkte bestanden al. Kies een andere map.") : QString();
}

int PlaylistExport::count() const {
    int total = 0;
    for (const Source &source : sources()) {
        total += static_cast<int>(context_.platform.files.list(source.folder, source.pattern).size());
    }
    return total;
}

QString PlaylistExport::run(const QString &target, const std::function<void()> &fileDone) {
    CopyWatch watch;
    watch.fileDone = fileDone;
    const int total = count();
    int copied = 0;
    for (const Source &source : sources()) {
        const ShellCopyResult part = Global::ShellCopyFile(context_.platform, inFolder(source.folder, source.pattern),
                                                           target, false, copyTitle, watch);
        copied += part.copied;
        if (part.stopped) {
            break;
        }
    }
    return QObject::tr("%1 van %2 bestanden gekopieerd.").arg(copied).arg(total);
}

} // namespace orvel
