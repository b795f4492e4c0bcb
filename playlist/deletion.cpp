#include "playlist/deletion.h"

#include "platform/file_system.h"
#include "platform/prompts.h"
#include "station/ignore_errors.h"
#include "station/paths.h"
#include "station/recovery.h"

#include <QObject>

namespace orvel {

QStringList Deletion::wantedGone(const ShownPlaylists &shown, const QString &questionForAll) {
    if (shown.names.isEmpty()) {
        return {};
    }
    // Chosen before the question: what goes is what was asked about, whatever the lists show afterwards.
    const bool all = shown.selected.isEmpty();
    const QStringList names =
        all ? context_.files.list(shown.folder, QStringLiteral("*.mdb")) : QStringList{shown.selected};
    const QString question =
        all ? questionForAll
            : QStringLiteral("Wenst U het bestand ") + shown.selected + QStringLiteral(" te verwijderen ?");
    if (!context_.prompts.ask(question, QStringLiteral("Playlists verwijderen"), Preset::No)) {
        return {};
    }
    QStringList paths;
    for (const QString &name : names) {
        paths.append(inFolder(shown.folder, name));
    }
    return paths;
}

bool Deletion::takeIsInTheWay() {
    if (!context_.takeRuns()) {
        return false;
    }
    context_.tell(QObject::tr("Er loopt een opname. Wis te bewerken playlists als die gestopt is."));
    return true;
}

bool Deletion::deleteToDo(const ShownPlaylists &shown, const std::function<void()> &closePlaylist) {
    // A take belongs to its playlist until it is stopped; one may have been started while the question stood open.
    if (shown.names.isEmpty() || takeIsInTheWay()) {
        return false;
    }
    const QStringList paths =
        wantedGone(shown, QStringLiteral("Wenst U ALLE nog te bewerken playlists te verwijderen ?"));
    if (paths.isEmpty() || takeIsInTheWay()) {
        return false;
    }
    ignoringErrors(closePlaylist);
    for (const QString &path : paths) {
        ignoringErrors([&] { context_.recovery.keep(path); });
    }
    return true;
}

bool Deletion::deleteFinished(const ShownPlaylists &shown) {
    const QStringList paths = wantedGone(shown, QStringLiteral("Wenst U ALLE afgewerkte playlists te verwijderen ?"));
    for (const QString &path : paths) {
        context_.recovery.keep(path);
    }
    return !paths.isEmpty();
}

} // namespace orvel
