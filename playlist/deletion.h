#pragma once

#include <QStringList>

#include <functional>

namespace orvel {

class FileSystem;
class Prompts;
class Recovery;

/// What deleting playlists needs of the rest of the program; all of it outlives it.
struct DeletionContext {
    FileSystem &files;
    Prompts &prompts;
    Recovery &recovery;
    /// Whether a take of a playlist runs.
    std::function<bool()> takeRuns;
    /// One sentence for the status line.
    std::function<void(const QString &sentence)> tell;
};

/// A list of playlists as the presenter sees it.
struct ShownPlaylists {
    QString folder;
    QStringList names;
    QString selected; ///< empty for none
};

/// Deletes the selected playlist of a list or, without one, all of its folder, after a question whose default is No.
/// What is deleted lies in the recovery folder from then on.
class Deletion {
  public:
    explicit Deletion(DeletionContext context) : context_(std::move(context)) {}

    /// Playlists to do, of which one may be open: closePlaylist is called before anything goes. Every error is ignored,
    /// and what cannot be kept stays. False when nothing was done: nothing is listed, the presenter said no, or a take
    /// runs, which is told.
    bool deleteToDo(const ShownPlaylists &shown, const std::function<void()> &closePlaylist);
    /// Finished playlists, which are never open: also while a take runs. False when nothing was done. Throws what
    /// keeping a file throws; that file and those after it stay.
    bool deleteFinished(const ShownPlaylists &shown);

  private:
    /// What goes; empty when nothing does.
    [[nodiscard]] QStringList wantedGone(const ShownPlaylists &shown, const QString &questionForAll);
    [[nodiscard]] bool takeIsInTheWay();

    DeletionContext context_;
};

} // namespace orvel
