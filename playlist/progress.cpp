#include "playlist/progress.h"

#include "playlist/playlist.h"
#include "playlist/step_types.h"
#include "station/ignore_errors.h"

#include <QObject>

namespace orvel {

namespace {

bool isSlot(const Playlist &playlist, int row) {
    bool is = false;
    ignoringErrors([&] { is = playlist.value(row, TypeColumn).toInt() == PresStep; });
    return is;
}

bool isDone(const Playlist &playlist, int row) {
    bool is = false;
    ignoringErrors([&] { is = playlist.value(row, ImportedColumn).toBool(); });
    return is;
}

} // namespace

Progress progressOf(const Playlist &playlist) {
    Progress progress;
    for (int row = 0; row < playlist.stepCount(); ++row) {
        if (isSlot(playlist, row)) {
            ++progress.links;
            progress.done += isDone(playlist, row) ? 1 : 0;
        }
    }
    return progress;
}

QString toText(const Progress &progress) {
    if (progress.links == 0) {
        return {};
    }
    return (progress.links == 1 ? QObject::tr("%1 van %2 link klaar") : QObject::tr("%1 van %2 links klaar"))
        .arg(progress.done)
        .arg(progress.links);
}

int nextOpenSlot(const Playlist &playlist, int row) {
    const int count = playlist.stepCount();
    for (int step = 1; step <= count; ++step) {
        const int next = (std::max(row, -1) + step) % count;
        if (isSlot(playlist, next) && !isDone(playlist, next)) {
            return next;
        }
    }
    return -1;
}

} // namespace orvel
