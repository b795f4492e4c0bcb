#include "windows/desk_drops.h"

#include "windows/drop_target.h"
#include "windows/file_panel.h"
#include "windows/grid_panel.h"
#include "windows/workplace.h"

namespace orvel {

DeskDrops::DeskDrops(Workplace &workplace, TransferContext transfer, GridPanel &grid, FilePanel &files, QObject *parent)
    : QObject(parent), sounds_(workplace.importDesk()), playlists_(std::move(transfer)) {
    const auto tell = workplace.view.tell;
    new DropTarget(
        *grid.dbgLijst, [this, tell](const QStringList &paths, int row) { tell(sounds_.forecast(paths, row)); },
        [this](const QStringList &paths, int row) { sounds_.drop(paths, row); });
    new DropTarget(
        *files.filNew, [this, tell](const QStringList &paths, int) { tell(playlists_.forecast(paths)); },
        [this, tell](const QStringList &paths, int) {
            if (const QString problem = playlists_.refusalOf(paths); !problem.isEmpty()) {
                tell(problem);
            } else {
                playlists_.runFiles(paths);
            }
        });
}

} // namespace orvel
