#pragma once

#include "playlist/transfer.h"
#include "production/sound_drop.h"

#include <QObject>

namespace orvel {

class FilePanel;
class GridPanel;
struct Workplace;

/// What happens to files that are dropped on the main window: sound files on a step, playlists on the list.
class DeskDrops : public QObject {
    Q_OBJECT

  public:
    /// All of it outlives this.
    DeskDrops(Workplace &workplace, TransferContext transfer, GridPanel &grid, FilePanel &files, QObject *parent);

  private:
    SoundDrop sounds_;
    PlaylistImport playlists_;
};

} // namespace orvel
