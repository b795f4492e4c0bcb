#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

namespace orvel {

class FileSystem;

/// How the presenter left the desk; in a file of its own beside the settings. What the windows keep of themselves is
/// opaque here.
struct DeskMemory {
    QByteArray window;                ///< place and size of the main window
    QByteArray lists;                 ///< how wide the lists are
    QByteArray columns;               ///< of the grid: order, which are hidden, widths
    std::optional<bool> folded;       ///< the panel with card, mixer and processor
    QString playlist;                 ///< that was open; empty for none
    int cueVolume = 16384;            ///< of the preview, 0 .. 65535
    bool along = false;               ///< whether the items around a take are heard with it
    std::optional<int> alongVolume{}; ///< how loud, 0 .. 65535

    bool operator==(const DeskMemory &) const = default;
};

/// What was remembered; nothing where there is no file or it cannot be read.
[[nodiscard]] DeskMemory loadDesk(FileSystem &files, const QString &programFolder);

/// Throws what FileSystem::write() throws.
void saveDesk(FileSystem &files, const QString &programFolder, const DeskMemory &desk);

} // namespace orvel
