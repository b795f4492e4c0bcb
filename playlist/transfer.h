#pragma once

#include "platform/platform.h"
#include "settings/settings.h"
#include "station/drive_map.h"
#include "station/recovery.h"

#include <QStringList>

#include <functional>
#include <optional>
#include <vector>

namespace orvel {

/// What importing and exporting need of the rest of the program; all of it outlives them.
struct TransferContext {
    Platform &platform;
    const Settings &settings;
    const DriveMap &drives;
    Recovery &recovery;
    /// Both playlist lists show what is on the disk now. replaced: names in the to-do folder that are other playlists
    /// from now on; the open one may be among them.
    std::function<void(const QStringList &replaced)> refreshLists;
    /// One sentence for the status line.
    std::function<void(const QString &sentence)> tell;
    /// Whether a take of a playlist runs.
    std::function<bool()> takeRuns;
};

/// A folder that the settings prescribe, and the drive that the presenter sees above it.
struct ForcedFolder {
    QString folder;
    QString drive; ///< letter and colon; empty where the path has none
};

/// Nothing for a path of less than three characters: the presenter chooses. Drive letters are the station's own.
[[nodiscard]] std::optional<ForcedFolder> forcedFolder(const QString &settingsPath, const DriveMap &drives);

/// A folder that "\*.mdb" can be put behind: of a bare drive root only the letter and the colon.
[[nodiscard]] QString withoutRootSeparator(const QString &folder);

/// Fetches the playlists of a folder into the to-do folder.
class PlaylistImport {
  public:
    explicit PlaylistImport(TransferContext context) : context_(std::move(context)) {}

    /// Why nothing may be imported from a folder now; empty when it may.
    [[nodiscard]] QString refusal(const QString &source) const;
    /// Copies, then offers to delete what was copied. A playlist that is replaced is kept in the recovery folder, and
    /// none is replaced while a take runs. What there is to say is told in one go. Throws what deleting throws; the
    /// lists are refreshed all the same.
    void run(const QString &source);

    /// Why these files cannot be imported now, as a sentence; empty when they can. paths: full ones.
    [[nodiscard]] QString refusalOf(const QStringList &paths) const;
    /// What letting go of them would do, as a sentence.
    [[nodiscard]] QString forecast(const QStringList &paths) const;
    /// Copies playlists, as run() does, and leaves the sources alone.
    void runFiles(const QStringList &paths);

  private:
    void copyAndOfferDeletion(const QString &source);
    /// source: a file, or a pattern of files.
    void copyPlaylists(const QString &source);
    [[nodiscard]] bool mayReplace(const QString &target);
    /// Notes which of the files are no playlists.
    void noteUnusable(const QStringList &names);
    void offerDeletion(const QString &source);
    /// False, and the file stays, when it turns out to be the imported one itself. Throws what deleting throws.
    [[nodiscard]] bool removeSource(const QString &source, const QString &name) const;
    /// Whether the to-do folder has a playlist as it is in the source.
    [[nodiscard]] bool isSafe(const QString &source, const QString &name) const;

    void tellAll() const;

    TransferContext context_;
    QStringList sentences_; ///< of this import
};

/// Hands finished playlists and filed voice tracks on to another folder. No source is changed.
class PlaylistExport {
  public:
    explicit PlaylistExport(TransferContext context) : context_(std::move(context)) {}

    /// Why nothing can be exported to a folder; empty when something can.
    [[nodiscard]] QString refusal(const QString &target) const;
    /// Files to copy.
    [[nodiscard]] int count() const;
    /// Copies them; fileDone is called after each one that was copied or passed over. One sentence about the result.
    QString run(const QString &target, const std::function<void()> &fileDone);

  private:
    /// Files of one folder that match a pattern.
    struct Source {
        QString folder;
        QString pattern;
    };

    /// Those that hold anything.
    [[nodiscard]] std::vector<Source> sources() const;

    TransferContext context_;
};

} // namespace orvel
