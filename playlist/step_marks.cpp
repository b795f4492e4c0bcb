#include "playlist/step_marks.h"

#include "playlist/playlist.h"

#include <QScopeGuard>

namespace orvel {

namespace {

int rowIn(const Playlist &playlist, const StepId &step) {
    for (int row = 0; row < playlist.stepCount(); ++row) {
        if (playlist.value(row, AtrackColumn).toString() == step.name &&
            playlist.value(row, StapColumn).toInt() == step.stap) {
            return row;
        }
    }
    return -1;
}

} // namespace

int StepMarks::rowOf(const StepId &step) const {
    return open_.isOpen() && open_.fileName() == step.playlist ? rowIn(open_, step) : -1;
}

bool StepMarks::isMarked(const StepId &step) const {
    if (const int row = rowOf(step); row >= 0) {
        return open_.value(row, ImportedColumn).toBool();
    }
    Playlist other(databases_, [](const QString &) {});
    other.open(newPath_, step.playlist);
    const int row = rowIn(other, step);
    return row >= 0 && other.value(row, ImportedColumn).toBool();
}

bool StepMarks::mark(const StepId &step, bool done) {
    if (const int row = rowOf(step); row >= 0) {
        const auto told = qScopeGuard([&] { changed_(rowOf(step)); });
        open_.setValue(row, ImportedColumn, done);
        return true;
    }
    if (step.playlist.isEmpty() || (open_.isOpen() && open_.fileName() == step.playlist)) {
        return false;
    }
    Playlist other(databases_, [](const QString &) {});
    other.open(newPath_, step.playlist);
    const int row = rowIn(other, step);
    if (row >= 0) {
        other.setValue(row, ImportedColumn, done);
    }
    return row >= 0;
}

} // namespace orvel
